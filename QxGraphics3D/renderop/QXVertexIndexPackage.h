/// @file
/// One index range of a multi-index operation.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

/// Indices of one range, drawn with the texture package at the same place of the operation.
/// Ownership: the buffer is `new unsigned short[]` or `new unsigned int[]` as m_nIndexType says, and is freed
///            with the package only if m_bBufferOwned is set. The operation deletes the package only if
///            m_bPackageOwned is set.
struct QXGRAPHICS3D_API QXVertexIndexPackage {
  QXVertexIndexPackage() = default;
  ~QXVertexIndexPackage();

  QXVertexIndexPackage(QXVertexIndexPackage const&) = delete;
  QXVertexIndexPackage& operator=(QXVertexIndexPackage const&) = delete;

  /// 0: 16-bit entries, 1: 32-bit entries.
  int m_nIndexType = 0;
  void* m_pIndices = nullptr;
  /// Entries that are drawn, counted from m_nStart.
  unsigned int m_nIndexNum = 0;
  /// First entry that is drawn.
  unsigned int m_nStart = 0;
  /// A QXOperationType; other values are kept.
  int m_eOperationType = QX_OPERATION_TRIANGLE_LIST;
  /// Multiplied with the vertex colours of the range.
  QXColorValue3D m_Color{1.0, 1.0, 1.0, 1.0};
  unsigned char m_bBufferOwned = 1;
  unsigned char m_bPackageOwned = 1;
};

}  // namespace QXC
