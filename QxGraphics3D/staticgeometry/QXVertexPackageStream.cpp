#include <QxGraphics3D/staticgeometry/QXVertexPackageStream.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base/QdcNumeric.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXPositionSlack.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>
#include <QxGraphics3D/frame/foundation/stream/QXStream.h>
#include <QxGraphics3D/staticgeometry/detail/QXGeometryBytes.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

namespace QXC {

namespace {

constexpr unsigned int UnitNum = QXVertexDataPackage::UnitNum;
/// Greatest number of elements handed to the stream in one call, whose counts are 32 bits wide.
constexpr std::uint64_t BulkNum = std::uint64_t{1} << 30;

/// Coordinates with colour words behind their numbers: a vertex program's parameters, which the wide layout holds as
/// four floats a colour.
struct ColorTail {
  unsigned short m_nDim;
  unsigned short m_nStoredDim;
  unsigned short m_nNumbers;
};
constexpr ColorTail ColorTails[] = {{17, 20, 16}, {29, 35, 27}};

ColorTail const* FindTail(unsigned short nDim) {
  auto const found = std::ranges::find(ColorTails, nDim, &ColorTail::m_nDim);
  return found == std::end(ColorTails) ? nullptr : found;
}

ColorTail const* FindStoredTail(unsigned short nStoredDim) {
  auto const found = std::ranges::find(ColorTails, nStoredDim, &ColorTail::m_nStoredDim);
  return found == std::end(ColorTails) ? nullptr : found;
}

/// Items converted at a time; the largest, of 35 floats, then take 17.5 KiB of stack.
constexpr unsigned int BlockItems = 128;

void Widen(unsigned int nColor, float* pNumbers) {
  unsigned char const arrChannels[] = {
      QDC::QDCREDVAL(nColor), QDC::QDCGREENVAL(nColor), QDC::QDCBLUEVAL(nColor), QDC::QDCALPHAVAL(nColor)};
  for (int i = 0; i < 4; ++i) pNumbers[i] = static_cast<float>(arrChannels[i] / 255.0);
}

// Truncates, and yet every channel that Widen wrote comes back: a channel's quotient repeats its eight bits for ever,
// so the bit behind a float's 24 is a one and all quotients but 0 are rounded up.
unsigned int Narrow(float const* pNumbers) {
  unsigned char arrChannels[4];
  for (int i = 0; i < 4; ++i) arrChannels[i] = static_cast<unsigned char>(QDC::ToInt(pNumbers[i] * 255.0));
  return QDC::QDCRGBA(arrChannels[0], arrChannels[1], arrChannels[2], arrChannels[3]);
}

/// Position and normal dimension in one word. What does not fit is lost; the header says what comes back.
unsigned short PackDimensions(QXVertexDataPackage const& package) {
  if (package.m_nVertexDim == package.m_nNormalDim) return package.m_nVertexDim;
  return static_cast<unsigned short>(package.m_nVertexDim | package.m_nNormalDim << 8);
}

void UnpackDimensions(unsigned short nWord, QXVertexDataPackage& package) {
  bool const isPair = nWord >= 5;
  package.m_nVertexDim = isPair ? nWord & 0xF : nWord;
  package.m_nNormalDim = isPair ? static_cast<unsigned short>(nWord >> 8) : nWord;
}

/// Units that are written.
unsigned int CountUnits(QXVertexDataPackage const& package) {
  unsigned int unit = 0;
  while (unit < UnitNum && package.m_nTexCoordNums[unit] != 0 && package.m_pTexCoords[unit]) ++unit;
  return unit;
}

class Writer {
public:
  Writer(QXVertexDataPackage const& package, QXStream& stream, bool bWide)
      : m_package(package), m_stream(stream), m_bWide(bWide) {}

  void Write() {
    m_stream << static_cast<int>(m_package.m_nOptions) << PackDimensions(m_package);
    WritePadding();
    WriteNumbers(m_package.m_pVertices, m_package.m_nVertexNum, m_package.m_nVertexStride, m_package.m_nVertexDim);
    WriteNumbers(m_package.m_pNormals, m_package.m_nNormalNum, m_package.m_nNormalStride, m_package.m_nNormalDim);
    WriteColors();
    if (m_bWide) WriteSecondColors();
    unsigned int const nUnits = CountUnits(m_package);
    m_stream << static_cast<int>(nUnits);
    for (unsigned int unit = 0; unit < nUnits; ++unit) {
      if (m_bWide) {
        WriteWideUnit(unit);
      } else {
        WriteUnit(unit);
      }
    }
  }

private:
  void WritePadding() {
    if (m_bWide) m_stream << static_cast<unsigned char>(0) << static_cast<unsigned char>(0);
  }

  template <class T>
  void WriteArray(T const* pItems, std::uint64_t nNum) {
    for (; nNum > BulkNum; nNum -= BulkNum, pItems += BulkNum) m_stream.Save(pItems, BulkNum);
    m_stream.Save(pItems, static_cast<unsigned int>(nNum));
  }

  void WriteNumbers(float const* pNumbers, unsigned int nNum, unsigned short nStride, unsigned short nDim) {
    m_stream << nNum;
    if (nNum == 0 || !pNumbers) return;
    m_stream << nStride;
    WritePadding();
    WriteArray(pNumbers, std::uint64_t{nNum} * nDim);
  }

  void WriteColors() {
    m_stream << m_package.m_nColorNum;
    if (m_package.m_nColorNum == 0 || !m_package.m_pColors) return;
    m_stream << m_package.m_nColorStride;
    WritePadding();
    if (m_bWide) {
      WriteWideColors(m_package.m_pColors, m_package.m_nColorNum);
    } else {
      WriteArray(m_package.m_pColors, m_package.m_nColorNum);
    }
  }

  void WriteSecondColors() {
    m_stream << m_package.m_nSecondColorNum;
    if (m_package.m_pSecondColors) WriteWideColors(m_package.m_pSecondColors, m_package.m_nSecondColorNum);
  }

  void WriteUnit(unsigned int nUnit) {
    unsigned short const nDim = m_package.m_nTexDims[nUnit];
    unsigned int const nNum = m_package.m_nTexCoordNums[nUnit];
    m_stream << nDim << nNum << m_package.m_nTexCoordStrides[nUnit];
    WriteArray(m_package.m_pTexCoords[nUnit], std::uint64_t{nNum} * nDim);
  }

  void WriteWideUnit(unsigned int nUnit) {
    unsigned short const nDim = m_package.m_nTexDims[nUnit];
    unsigned int const nNum = m_package.m_nTexCoordNums[nUnit];
    float const* const pNumbers = m_package.m_pTexCoords[nUnit];
    ColorTail const* const pTail = FindTail(nDim);
    m_stream << nNum << (pTail ? pTail->m_nStoredDim : nDim) << m_package.m_nTexCoordStrides[nUnit];
    if (!pTail) return WriteArray(pNumbers, std::uint64_t{nNum} * nDim);
    WriteBlocks(nNum, pTail->m_nStoredDim, [&](unsigned int nItem, float* pStored) {
      float const* const pItem = pNumbers + std::uint64_t{nItem} * nDim;
      std::copy_n(pItem, pTail->m_nNumbers, pStored);
      for (unsigned int i = pTail->m_nNumbers, to = i; i < nDim; ++i, to += 4)
        Widen(std::bit_cast<unsigned int>(pItem[i]), pStored + to);
    });
  }

  void WriteWideColors(unsigned int const* pColors, unsigned int nNum) {
    WriteBlocks(nNum, 4, [&](unsigned int nItem, float* pStored) { Widen(pColors[nItem], pStored); });
  }

  /// Calls convert(index, where its nStoredDim floats go) for each item and writes a block of them at a time.
  template <class Converter>
  void WriteBlocks(unsigned int nNum, unsigned int nStoredDim, Converter convert) {
    float arrBlock[BlockItems * 35];
    for (unsigned int done = 0; done < nNum;) {
      unsigned int const nItems = std::min(BlockItems, nNum - done);
      for (unsigned int i = 0; i < nItems; ++i) convert(done + i, arrBlock + i * nStoredDim);
      m_stream.Save(arrBlock, nItems * nStoredDim);
      done += nItems;
    }
  }

  QXVertexDataPackage const& m_package;
  QXStream& m_stream;
  bool m_bWide;
};

// Every array is put into the package only when it is whole, so a package that failed half-way has no count that its
// arrays do not have.
class Reader {
public:
  Reader(QXVertexDataPackage& package, QXStream& stream, bool bWide)
      : m_package(package), m_stream(stream), m_bWide(bWide) {}

  bool Read() {
    return ReadHeader() &&
           ReadNumbers(m_package.m_pVertices, m_package.m_nVertexNum, m_package.m_nVertexStride, m_package.m_nVertexDim,
               detail::kPositionSlack) &&
           ReadNumbers(
               m_package.m_pNormals, m_package.m_nNormalNum, m_package.m_nNormalStride, m_package.m_nNormalDim, 0) &&
           ReadColors() && (!m_bWide || ReadSecondColors()) && ReadUnits();
  }

private:
  bool ReadHeader() {
    int nOptions = 0;
    unsigned short nDimensions = 0;
    m_stream >> nOptions >> nDimensions;
    SkipPadding();
    if (!m_stream.IsGood()) return false;
    m_package.m_nOptions = static_cast<unsigned int>(nOptions);
    // Before the dimensions change: older arrays have other ones.
    Drop(m_package.m_pVertices, m_package.m_nVertexNum);
    Drop(m_package.m_pNormals, m_package.m_nNormalNum);
    UnpackDimensions(nDimensions, m_package);
    return true;
  }

  void SkipPadding() {
    unsigned char nIgnored = 0;
    if (m_bWide) m_stream >> nIgnored >> nIgnored;
  }

  template <class T>
  static void Drop(T*& pItems, unsigned int& nNum) {
    delete[] pItems;
    pItems = nullptr;
    nNum = 0;
  }

  /// The count of an array that replaces the one given, which is freed. A lost count reads as 0: the caller must not
  /// take that for an empty array.
  template <class T>
  unsigned int ReadCount(T*& pItems, unsigned int& nNum) {
    Drop(pItems, nNum);
    return ReadCount();
  }
  unsigned int ReadCount() {
    m_nCountPosition = m_stream.GetPosition();
    unsigned int nCount = 0;
    m_stream >> nCount;
    return nCount;
  }

  void ReadStride(unsigned short& nStride) {
    m_stream >> nStride;
    SkipPadding();
  }

  /// Memory for nNum numbers that stand in the stream with nStoredNum floats or words; null when the stream cannot
  /// hold them, so that a wrong count costs nothing. Not filled: the bytes come at once.
  template <class T>
  std::unique_ptr<T[]> Allocate(std::uint64_t nNum, std::uint64_t nStoredNum, std::size_t nSlack = 0) {
    if (nNum == 0 || !m_stream.CanHold(static_cast<QXInt64>(nStoredNum), sizeof(T))) {
      m_stream.Fail(m_nCountPosition);
      return nullptr;
    }
    std::unique_ptr<T[]> pItems(new (std::nothrow) T[nNum + nSlack]);
    if (pItems) std::memset(pItems.get() + nNum, 0, nSlack * sizeof(T));
    return pItems;
  }

  /// Gives the array to the package if all of it came.
  template <class T>
  bool Keep(std::unique_ptr<T[]>& pRead, unsigned int nCount, T*& pItems, unsigned int& nNum) {
    if (!m_stream.IsGood()) return false;
    pItems = pRead.release();
    nNum = nCount;
    return true;
  }

  template <class T>
  bool ReadArray(unsigned int nCount, unsigned int nDim, std::size_t nSlack, T*& pItems, unsigned int& nNum) {
    std::uint64_t nLeft = std::uint64_t{nCount} * nDim;
    auto pRead = Allocate<T>(nLeft, nLeft, nSlack);
    if (!pRead) return false;
    T* pTo = pRead.get();
    for (; nLeft > BulkNum; nLeft -= BulkNum, pTo += BulkNum) m_stream.Load(pTo, BulkNum);
    m_stream.Load(pTo, static_cast<unsigned int>(nLeft));
    return Keep(pRead, nCount, pItems, nNum);
  }

  bool ReadNumbers(
      float*& pNumbers, unsigned int& nNum, unsigned short& nStride, unsigned short nDim, std::size_t nSlack) {
    unsigned int const nCount = ReadCount(pNumbers, nNum);
    nStride = 0;
    if (nCount == 0) return m_stream.IsGood() != 0;
    ReadStride(nStride);
    return ReadArray(nCount, nDim, nSlack, pNumbers, nNum);
  }

  bool ReadColors() {
    unsigned int const nCount = ReadCount(m_package.m_pColors, m_package.m_nColorNum);
    m_package.m_nColorStride = 0;
    if (nCount == 0) return m_stream.IsGood() != 0;
    ReadStride(m_package.m_nColorStride);
    if (m_bWide) return ReadWideColors(nCount, m_package.m_pColors, m_package.m_nColorNum);
    return ReadArray(nCount, 1, 0, m_package.m_pColors, m_package.m_nColorNum);
  }

  bool ReadSecondColors() {
    unsigned int const nCount = ReadCount(m_package.m_pSecondColors, m_package.m_nSecondColorNum);
    m_package.m_nSecondColorStride = 0;
    if (nCount == 0) return m_stream.IsGood() != 0;
    return ReadWideColors(nCount, m_package.m_pSecondColors, m_package.m_nSecondColorNum);
  }

  bool ReadUnits() {
    for (unsigned int unit = 0; unit < UnitNum; ++unit) {
      Drop(m_package.m_pTexCoords[unit], m_package.m_nTexCoordNums[unit]);
      m_package.m_nTexCoordStrides[unit] = 0;
    }
    // A negative count is a great one.
    unsigned int const nUnits = ReadCount();
    if (nUnits > UnitNum) m_stream.Fail(m_nCountPosition);
    if (!m_stream.IsGood()) return false;
    for (unsigned int unit = 0; unit < nUnits; ++unit) {
      if (!ReadUnit(unit)) return false;
    }
    return true;
  }

  bool ReadUnit(unsigned int nUnit) {
    unsigned int nCount = 0;
    unsigned short nDim = 0;
    if (m_bWide) {
      nCount = ReadCount();
      m_stream >> nDim;
    } else {
      m_stream >> nDim;
      nCount = ReadCount();
    }
    m_stream >> m_package.m_nTexCoordStrides[nUnit];
    ColorTail const* const pTail = m_bWide ? FindStoredTail(nDim) : nullptr;
    m_package.m_nTexDims[nUnit] = pTail ? pTail->m_nDim : nDim;
    if (nCount == 0) return m_stream.IsGood() != 0;
    float*& pNumbers = m_package.m_pTexCoords[nUnit];
    unsigned int& nNum = m_package.m_nTexCoordNums[nUnit];
    return pTail ? ReadTailed(*pTail, nCount, pNumbers, nNum) : ReadArray(nCount, nDim, 0, pNumbers, nNum);
  }

  bool ReadTailed(ColorTail const& tail, unsigned int nCount, float*& pNumbers, unsigned int& nNum) {
    auto pRead = Allocate<float>(std::uint64_t{nCount} * tail.m_nDim, std::uint64_t{nCount} * tail.m_nStoredDim);
    if (!pRead) return false;
    ReadBlocks(nCount, tail.m_nStoredDim, [&](unsigned int nItem, float const* pStored) {
      float* const pItem = pRead.get() + std::uint64_t{nItem} * tail.m_nDim;
      std::copy_n(pStored, tail.m_nNumbers, pItem);
      // Bytes, because as a float the word may be a signalling NaN, which a register could turn into a quiet one.
      for (unsigned int i = tail.m_nNumbers, from = i; i < tail.m_nDim; ++i, from += 4) {
        unsigned int const nColor = Narrow(pStored + from);
        std::memcpy(pItem + i, &nColor, sizeof nColor);
      }
    });
    return Keep(pRead, nCount, pNumbers, nNum);
  }

  bool ReadWideColors(unsigned int nCount, unsigned int*& pColors, unsigned int& nNum) {
    auto pRead = Allocate<unsigned int>(nCount, std::uint64_t{nCount} * 4);
    if (!pRead) return false;
    ReadBlocks(nCount, 4, [&](unsigned int nItem, float const* pStored) { pRead[nItem] = Narrow(pStored); });
    return Keep(pRead, nCount, pColors, nNum);
  }

  /// Calls convert(index, its nStoredDim floats) for each item, reading a block of them at a time.
  template <class Converter>
  void ReadBlocks(unsigned int nCount, unsigned int nStoredDim, Converter convert) {
    float arrBlock[BlockItems * 35];
    for (unsigned int done = 0; done < nCount && m_stream.IsGood();) {
      unsigned int const nItems = std::min(BlockItems, nCount - done);
      m_stream.Load(arrBlock, nItems * nStoredDim);
      if (!m_stream.IsGood()) return;
      for (unsigned int i = 0; i < nItems; ++i) convert(done + i, arrBlock + i * nStoredDim);
      done += nItems;
    }
  }

  QXVertexDataPackage& m_package;
  QXStream& m_stream;
  bool m_bWide;
  /// Where the last count stands, the place to tell when it cannot be.
  QXUInt64 m_nCountPosition = 0;
};

}  // namespace

unsigned char LoadVertexPackage(QXVertexDataPackage& package, QXStream& stream, unsigned char bWide) {
  return Reader(package, stream, bWide != 0).Read();
}

unsigned char LoadVertexPackage(QXVertexDataPackage* pPackage, QXStream& stream, unsigned char bWide) {
  return pPackage ? LoadVertexPackage(*pPackage, stream, bWide) : static_cast<unsigned char>(0);
}

void SaveVertexPackage(QXVertexDataPackage const& package, QXStream& stream, unsigned char bWide) {
  Writer(package, stream, bWide != 0).Write();
}

void SaveVertexPackage(QXVertexDataPackage const* pPackage, QXStream& stream, unsigned char bWide) {
  if (pPackage) SaveVertexPackage(*pPackage, stream, bWide);
}

int GetVertexPackageSize(QXVertexDataPackage const& package) {
  return detail::ToDataSize(detail::GetVertexPackageBytes(package));
}

int GetVertexPackageSize(QXVertexDataPackage const* pPackage) {
  return pPackage ? GetVertexPackageSize(*pPackage) : 0;
}

QXInt64 detail::GetVertexPackageBytes(QXVertexDataPackage const& package) {
  auto const array = [](void const* pItems, unsigned int nNum, unsigned short nDim) -> QXInt64 {
    return nNum != 0 && pItems ? 2 + QXInt64{4} * nNum * nDim : 0;
  };
  QXInt64 nBytes = 10 + array(package.m_pVertices, package.m_nVertexNum, package.m_nVertexDim);
  nBytes += 4 + array(package.m_pNormals, package.m_nNormalNum, package.m_nNormalDim);
  nBytes += array(package.m_pTangents, package.m_nTangentNum, package.m_nTangentDim);
  nBytes += array(package.m_pBinormals, package.m_nBinormalNum, package.m_nBinormalDim);
  nBytes += 4 + array(package.m_pColors, package.m_nColorNum, 1);
  nBytes += 4 + array(package.m_pSecondColors, package.m_nSecondColorNum, 1);
  nBytes += 4;
  for (unsigned int unit = 0; unit < CountUnits(package); ++unit)
    nBytes += 8 + QXInt64{4} * package.m_nTexCoordNums[unit] * package.m_nTexDims[unit];
  return nBytes;
}

}  // namespace QXC
