/// @file
/// Common header of the render operations that keep their geometry in packages.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>
#include <QxGraphics3D/renderop/QXIndexBlock.h>
#include <QxGraphics3D/renderop/QXRenderOperationType.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

namespace QXC {

/// Matrix, bounds, colour and geometry packages of one drawable, with the state that a renderer reads beside
/// them. The numbered state fields are fixed in order, width and default only; the renderer gives them meaning.
///
/// Ownership: the matrix, the index package and both blocks are owned and deleted with the operation.
/// Copying:   shallow. Copy construction and assignment copy the type, the colour, the bounds and the *pointers*,
///            so two copies own the same objects: destroy only one of them, after taking the pointers out of the
///            other. Assignment drops the destination's old pointers without freeing them. The state fields and
///            m_bDirty are not copied.
/// Threads:   one at a time.
class QXGRAPHICS3D_API QXRenderOperationBase {
public:
  QXRenderOperationBase();
  QXRenderOperationBase(QXRenderOperationBase const& other);
  QXRenderOperationBase& operator=(QXRenderOperationBase const& other);
  /// Not virtual: delete an operation as what it is.
  ~QXRenderOperationBase();

  QXRenderOperationType GetRenderOperationType() const;
  void SetRenderOperationType(QXRenderOperationType eType);

  /// The model matrix; null: the geometry stands in world coordinates.
  QXMatrix4d* GetMatrix() const;
  /// Stores a new copy of the matrix, which may be the operation's own, and deletes the old one.
  void SetMatrix(QXMatrix4d& matModel);

  /// Bounds in the coordinates of the vertices.
  QXBoundingBox& GetBoundingBox();
  void SetBoundingBox(QXBoundingBox& box);

  QXRenderOperationType m_eType = QX_RENDER_OPERATION_SINGLE;
  QXMatrix4d* m_pMatrix = nullptr;
  QXBoundingBox m_Bounds;
  QXVertexIndexPackage* m_pVertexIndexPackage = nullptr;
  QXVertexBlock* m_pVertexBlock = nullptr;
  QXIndexBlock* m_pIndexBlock = nullptr;
  QXColorValue3D m_Color{1.0, 1.0, 1.0, 1.0};
  int m_nMode0 = 0;
  int m_nMode1 = 3;
  int m_nMode2 = 3;
  unsigned char m_bSwitch0 = 0;
  unsigned char m_bSwitch1 = 0;
  int m_nMode3 = 4;
  float m_fParam = 0.0F;
  unsigned char m_bSwitch2 = 0;
  int m_nMode4 = 0;
  double m_dFactor0 = 1.0;
  /// These four belong to the multi-index form, which sets them to 1.
  double m_dFactor1 = 0.0;
  int m_nCount1 = 0;
  double m_dFactor2 = 0.0;
  int m_nCount2 = 0;
  /// 1: the buffers changed and the renderer must build its own anew. Only the renderer clears it.
  unsigned char m_bDirty = 1;
};

}  // namespace QXC
