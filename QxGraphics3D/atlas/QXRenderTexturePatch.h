/// @file
/// A square of a shared render texture.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXRenderTextureManager;

/// Where something that is rendered once and shown often stands: a name, a size, and a square of one of the big
/// textures of QXRenderTextureManager, which makes patches and owns them. What is seen in it is drawn by whoever asked
/// for it, under the scene node of the big texture: that node is shown in a parallel view from above of the world
/// rectangle (0, 0) to (2048, 2048), y upwards, so that a patch of s pixels at (x, y) covers x to x + s and 2048 - y - s
/// to 2048 - y.
///
/// A copy is a mere record of the same place: copying takes no place, and destroying a copy gives none back.
/// Threads: no lock of its own. SetSize, Resize and SetNeedRender belong on the render thread: the first two may make a
/// texture, and the marks are read there without a lock.
class QXGRAPHICS3D_API QXRenderTexturePatch {
public:
  QXRenderTexturePatch(QXRenderTexturePatch const& other);
  QXRenderTexturePatch& operator=(QXRenderTexturePatch const& other);
  ~QXRenderTexturePatch();

  /// Stores height and width, in this order, and takes a new place; the old one is not given back. For
  /// QXRenderTextureManager::GetRenderTexturePatch, which counts it.
  void SetSize(unsigned int nHeight, unsigned int nWidth);
  /// Stores width and height, in this order (the opposite of SetSize: hosts are written to both), and moves the patch
  /// of this name to a place of the new size. Position and big texture may be others afterwards.
  void Resize(unsigned int nWidth, unsigned int nHeight);
  /// 0 if the patch has no place: it is larger than a big texture, or the renderer could not make one. The location is
  /// all zeros then and means nothing.
  unsigned char IsPlaced() const { return m_bPlaced; }

  /// Upper left corner in the big texture, in pixels from its upper left corner.
  void GetPos(unsigned int& nX, unsigned int& nY) const;
  /// Name of the big texture: "RenderTexture_BigTexture_" and its index.
  QdcUnicodeString GetTextureName() const;
  /// Marks the big texture for the next QXRenderTextureManager::RenderToTexture, with all that stands on it.
  void SetNeedRender();

  /// The centre of the square, in pixels from the upper left corner of the big texture.
  int GetRow() const { return m_nRow; }
  void SetRow(int nRow) { m_nRow = nRow; }
  int GetCol() const { return m_nCol; }
  void SetCol(int nCol) { m_nCol = nCol; }
  /// The square's edge is 2048 / 2^lod pixels.
  int GetLod() const { return m_nLod; }
  void SetLod(int nLod) { m_nLod = nLod; }
  int GetTextureIndex() const { return m_nTextureIndex; }
  void SetTextureIndex(int nTextureIndex) { m_nTextureIndex = nTextureIndex; }
  /// Pixels asked for. The square's edge is the smallest power of two that holds both.
  unsigned int GetWidth() const { return m_nWidth; }
  unsigned int GetHeight() const { return m_nHeight; }

  /// The key in the manager when the patch was made; another name here does not enter it again.
  QdcUnicodeString const& GetName() const { return m_strName; }
  void SetName(QdcUnicodeString const& strName) { m_strName = strName; }

  /// Users. A plain number, changed under the manager's lock.
  int GetRef() const { return m_nRefCount; }
  void AddRef() { ++m_nRefCount; }
  void DecRef() { --m_nRefCount; }

private:
  friend class QXRenderTextureManager;

  explicit QXRenderTexturePatch(QXRenderTextureManager* pManager);
  void StoreSize(unsigned int nWidth, unsigned int nHeight);

  int m_nRow = 0;
  int m_nCol = 0;
  int m_nLod = 0;
  int m_nTextureIndex = 0;
  QdcUnicodeString m_strName;
  int m_nRefCount = 0;
  unsigned int m_nHeight = 0;
  unsigned int m_nWidth = 0;
  /// What the allocator is asked for.
  unsigned int m_nSize = 0;
  /// Never null.
  QXRenderTextureManager* m_pManager;
  /// Without it the removal of a patch that found no place would clear a cell of big texture 0.
  unsigned char m_bPlaced = 0;
};

}  // namespace QXC
