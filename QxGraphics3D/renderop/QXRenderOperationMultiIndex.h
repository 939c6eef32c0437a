/// @file
/// A drawable of one vertex block and any number of index ranges.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/renderop/QXRenderOperationBase.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXTexturePackage.h>

namespace QXC {

/// One set of vertices (m_pVertexBlock and m_pTexCoordBlock) with index ranges, each of its own textures. This is
/// what a host hands to QXRenderOperation3D::SetRenderOperationMultiIndex.
///
/// Ownership: the texture coordinate block is owned; a package of an index range is deleted by RemoveAll and by
///            the destructor only if its own ownership byte is set.
/// Copying:   shallow, as QXRenderOperationBase: packages and blocks are shared, so destroy only one copy.
/// Threads:   one at a time.
class QXGRAPHICS3D_API QXRenderOperationMultiIndex : public QXRenderOperationBase {
public:
  QXRenderOperationMultiIndex();
  QXRenderOperationMultiIndex(QXRenderOperationMultiIndex const& other);
  QXRenderOperationMultiIndex& operator=(QXRenderOperationMultiIndex const& other);
  ~QXRenderOperationMultiIndex();

  /// Appends an index range and marks the operation as changed; nothing at all happens if pIndex is null.
  /// @param pIndex    taken over if its m_bPackageOwned is set
  /// @param pTexture  taken over if its m_bOwned is set; null for an untextured range
  void SetAt(QXVertexIndexPackage* pIndex, QXTexturePackage* pTexture);

  /// Number of index ranges.
  int GetSize() const;

  /// Place i of one array belongs to place i of the other.
  QdcArray<QXVertexIndexPackage*> const& GetIndexPackageArray() const;
  QdcArray<QXTexturePackage*> const& GetTexturePackageArray() const;

  /// Deletes the owned packages of the first m_nSize pairs and empties both arrays down to their storage. Packages
  /// that others own stay alive. m_bDirty stays as it is.
  void RemoveAll();

  QXTexCoordBlock* m_pTexCoordBlock = nullptr;
  /// Pairs in the two arrays. RemoveAll and the destructor look at no more than these.
  int m_nSize = 0;
  QdcArray<QXVertexIndexPackage*> m_arrIndexPackages;
  QdcArray<QXTexturePackage*> m_arrTexturePackages;
};

}  // namespace QXC
