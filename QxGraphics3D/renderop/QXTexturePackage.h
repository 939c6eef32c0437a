/// @file
/// Textures of one index range.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

class QXTexture;

/// The textures of 8 units and how their coordinates are transformed.
/// Ownership: no pointer is owned and no reference is counted; the owner of the textures outlives the package.
/// Copying:   field by field, pointers as pointers.
struct QXGRAPHICS3D_API QXTexturePackage {
  static constexpr unsigned int UnitNum = 8;

  QXTexturePackage() = default;
  QXTexturePackage(QXTexturePackage const&) = default;
  QXTexturePackage& operator=(QXTexturePackage const&) = default;
  /// Nulls the pointers and frees nothing.
  ~QXTexturePackage();

  /// The host's numbers of the textures, -1 for none.
  int m_nTextureIDs[UnitNum] = {-1, -1, -1, -1, -1, -1, -1, -1};
  /// Null where a unit has no texture.
  QXTexture* m_pTextures[UnitNum] = {};
  /// Applied to the coordinates of the unit, identity by default.
  QXMatrix4d m_matTextures[UnitNum];
  /// For the host that fills the package.
  void* m_pExtra = nullptr;
  /// Name in the texture manager, empty for an untextured range.
  QdcUnicodeString m_strTextureName;
  /// 1: the operation that holds the package deletes it.
  unsigned char m_bOwned = 1;
  /// 1: every unit is loaded before drawing, 0: the first that has a texture.
  unsigned char m_bFlag = 0;
};

}  // namespace QXC
