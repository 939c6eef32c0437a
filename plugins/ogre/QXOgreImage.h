/// @file
/// An image on the graphics device.
#pragma once

#include <cstddef>
#include <vector>

#include <OgrePixelFormat.h>
#include <OgreTexture.h>

namespace QXC {

class QXOgreDevice;

/// One mip level in memory.
struct QXOgreLevel {
  unsigned int m_nWidth;
  unsigned int m_nHeight;
  unsigned char const* m_pPixels;  ///< tight rows, or rows of blocks
};

/// An image in memory as the device takes it.
struct QXOgrePixels {
  Ogre::PixelFormat m_eFormat = Ogre::PF_UNKNOWN;
  std::vector<QXOgreLevel> m_arrLevels;  ///< the largest first, at least one
  bool m_bTransparent = false;           ///< some pixel lets through what is behind it
};

/// A part of an image in its cells: pixels, or blocks of 4 x 4 pixels.
struct QXOgrePart {
  std::size_t m_nCellEdge = 1;
  std::size_t m_nCellBytes = 0;
  std::size_t m_nLeft = 0;
  std::size_t m_nTop = 0;
  std::size_t m_nColumns = 0;
  std::size_t m_nRows = 0;
  /// Where it begins in the memory that it is taken from, and from there from row to row, bytes.
  std::size_t m_nFirst = 0;
  std::size_t m_nStep = 0;
};

/// One image with its mip levels on the device, or a stack of layers of one size. Its bytes count in QXTextureMemory
/// from its making until the device has let it go. Rendering thread; destroyed by another thread it goes with the next
/// frame.
class QXOgreImage final {
public:
  /// Uploads. Throws what OGRE throws, and std::runtime_error with a reason if the device does not take the size or the
  /// format.
  /// @param bGenerateLevels  makes the levels that follow a single given one, unless it is made of blocks
  QXOgreImage(QXOgreDevice& device, QXOgrePixels const& pixels, bool bGenerateLevels);
  /// A stack of layers, each of one level, all of the first one's size and format.
  QXOgreImage(QXOgreDevice& device, std::vector<QXOgrePixels> const& arrLayers);
  /// The picture of somebody else, who keeps it and counts its bytes. It may let something through.
  QXOgreImage(QXOgreDevice& device, Ogre::TexturePtr const& pForeign);
  ~QXOgreImage();
  QXOgreImage(QXOgreImage const&) = delete;
  QXOgreImage& operator=(QXOgreImage const&) = delete;

  /// Replaces a part of the first level, which lies inside. The levels are made anew from it; of an image of blocks, which
  /// cannot be made, only the first level is drawn from then on. Throws what OGRE throws.
  /// @param pCells  tight rows of cells in the format of the image
  void Write(QXOgrePart const& part, void const* pCells);
  /// Reads the first level as tight rows of blue, green, red, alpha. Throws what OGRE throws.
  void Read(unsigned char* pPixels) const;
  /// First and last level that are drawn; what does not exist gives way to the nearest level that does.
  void SetLevels(int nFirst, int nLast);

  Ogre::TexturePtr const& GetOgreTexture() const { return m_pTexture; }
  unsigned int GetWidth() const { return m_nWidth; }
  unsigned int GetHeight() const { return m_nHeight; }
  unsigned int GetLevelCount() const { return m_nLevelCount; }
  bool IsStack() const { return m_bStack; }
  bool IsTransparent() const { return m_bTransparent; }
  void SetTransparent() { m_bTransparent = true; }
  /// Of the memory given; that on the device may be another.
  Ogre::PixelFormat GetFormat() const { return m_eFormat; }
  /// OpenGL's number of the texture.
  unsigned int GetID() const { return m_nID; }
  std::size_t GetByteCount() const { return m_nByteCount; }

private:
  void Create(unsigned int nLayers, unsigned int nLevels, bool bGenerateLevels);
  void ReadLuminanceAlpha(unsigned char* pPixels) const;
  void Fill(unsigned int nLayer, unsigned int nLevel, QXOgreLevel const& level);

  QXOgreDevice& m_Device;
  Ogre::TexturePtr m_pTexture;
  Ogre::PixelFormat m_eFormat;
  std::size_t m_nByteCount;
  unsigned int m_nWidth;
  unsigned int m_nHeight;
  unsigned int m_nLevelCount;
  unsigned int m_nID;
  bool m_bStack;
  bool m_bTransparent;
  bool m_bForeign;
  /// OGRE has made the levels and makes them anew.
  bool m_bGenerated;
};

}  // namespace QXC
