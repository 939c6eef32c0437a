/// @file
/// The container of a KTX2 file: what it holds, and where.
#pragma once

#include <cstdint>
#include <vector>

namespace QXC::detail {

/// How the pixels of a file are stored, once a supercompression is undone.
enum class QXKtx2Encoding { R8, R8G8, R8G8B8, B8G8R8, R8G8B8A8, B8G8R8A8, Bc1Rgb, Bc1Rgba, Bc3, Bc7, Uastc, Etc1s };

/// What is done to the bytes of every level as a whole. The numbers are those of the files.
enum class QXKtx2Scheme : std::uint32_t { None = 0, BasisLz = 1, Zstandard = 2, Zlib = 3 };

/// What the four channels that a UASTC or ETC1S block decodes to stand for. Files of fewer channels repeat red to
/// compress better; the descriptor tells which.
enum class QXKtx2Colors {
  AsDecoded,
  Opaque,         ///< red, green, blue; what is in alpha means nothing
  Red,            ///< red, three times
  RedThenGreen,   ///< red three times, green in alpha
  RedGreenBeside  ///< red in red, green in green
};

/// What of a file is refused, before anything is allocated for it.
struct QXKtx2Limits {
  std::uint32_t m_nMaxEdge = 65536;
  std::uint64_t m_nMaxBytes = 1ULL << 30;  ///< of all levels that are asked for, decoded
};

/// A range of bytes within the file.
struct QXKtx2Range {
  unsigned char const* m_pBytes = nullptr;
  std::uint64_t m_nSize = 0;
};

/// The parsed head of a file that is in memory; every range that it hands out lies inside the file. Keys and values are
/// passed over: neither orientation nor swizzle are applied.
/// Source: KTX 2.0 text; the descriptor: Khronos Data Format text; numbers of the formats: Vulkan.
class QXKtx2File {
public:
  /// @param pBytes  borrowed as long as the object is used
  /// @return  false, and the object is of no use, for files that are cut short or contradict themselves: lengths that
  ///          are not those of the pixels named, more levels than there are halvings, a descriptor of another colour
  ///          model than the format; and for files that are not read: 3D and 1D textures, formats not named above, an
  ///          edge beyond the limit.
  bool Open(unsigned char const* pBytes, std::uint64_t nSize, QXKtx2Limits const& limits);

  QXKtx2Encoding GetEncoding() const { return m_eEncoding; }
  QXKtx2Scheme GetScheme() const { return m_eScheme; }
  QXKtx2Colors GetColors() const { return m_eColors; }
  /// Pictures of one level: layers times faces. The first of them stands first.
  std::uint64_t GetImagesPerLevel() const { return m_nImages; }
  /// At least 1.
  unsigned int GetLevelCount() const { return static_cast<unsigned int>(m_arrLevels.size()); }
  /// A level as it stands in the file; 0 is the largest.
  QXKtx2Range GetLevel(unsigned int nLevel) const { return m_arrLevels[nLevel]; }
  /// The codebooks of BasisLZ; empty with other schemes.
  QXKtx2Range GetGlobalData() const { return m_GlobalData; }

  unsigned int GetWidth(unsigned int nLevel = 0) const { return Halved(m_nWidth, nLevel); }
  unsigned int GetHeight(unsigned int nLevel = 0) const { return Halved(m_nHeight, nLevel); }
  /// Bytes that one picture of a level takes in its encoding; 0 with ETC1S, where the file says it of each one.
  std::uint64_t GetStoredSize(unsigned int nLevel) const;
  /// Bytes that the first nLevels levels have as handed out: four a pixel, and of BC7 what is stored.
  std::uint64_t GetDecodedSize(unsigned int nLevels) const;

private:
  bool ReadHeader(QXKtx2Limits const& limits);
  bool ReadDescriptor();
  bool CheckDescriptor(unsigned char const* pBlock, std::uint64_t nSamples);
  bool ReadLevels();
  bool CheckLength(unsigned int nLevel, std::uint64_t nLength, std::uint64_t nUnpacked) const;
  bool ReadGlobalData();
  bool TakeRange(std::uint64_t nOffset, std::uint64_t nLength, QXKtx2Range& range) const;

  static unsigned int Halved(unsigned int nEdge, unsigned int nLevel) {
    return nEdge >> nLevel == 0 ? 1 : nEdge >> nLevel;
  }

  QXKtx2Range m_File;
  QXKtx2Encoding m_eEncoding = QXKtx2Encoding::R8G8B8A8;
  QXKtx2Scheme m_eScheme = QXKtx2Scheme::None;
  QXKtx2Colors m_eColors = QXKtx2Colors::AsDecoded;
  unsigned int m_nWidth = 0;
  unsigned int m_nHeight = 0;
  std::uint64_t m_nImages = 0;
  std::vector<QXKtx2Range> m_arrLevels;
  QXKtx2Range m_GlobalData;
};

}  // namespace QXC::detail
