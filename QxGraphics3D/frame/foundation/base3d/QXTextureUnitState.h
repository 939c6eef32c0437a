/// @file
/// One texture of a material pass.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

class QXStream;

/// How a texture unit gets its coordinates when they do not come from the vertices.
enum QXTextureEffectType : int {
  TEXTURE_EFFECT_ENVIRONMENT_MAP = 0,  ///< reflection; the subtype 0 to 3 says which map
  TEXTURE_EFFECT_PROJECTIVE = 1,       ///< projected from a frustum like a slide
};

/// Which of the three filters of a texture unit is meant.
enum QXTextureFilterType : int {
  TEXTURE_FILTER_MINIFICATION = 0,
  TEXTURE_FILTER_MAGNIFICATION = 1,
  TEXTURE_FILTER_MIPMAP = 2,
};

/// What a filter does.
enum QXTextureFilterOption : int {
  TEXTURE_FILTER_NONE = 0,
  TEXTURE_FILTER_POINT = 1,
  TEXTURE_FILTER_LINEAR = 2,
  TEXTURE_FILTER_ANISOTROPIC = 3,
};

/// One effect of a texture unit: a type of QXTextureEffectType and a number that the type gives a meaning.
struct QXTextureEffect {
  int m_nType = 0;
  int m_nSubType = 0;
};

/// A texture name with the transformation of its coordinates, its filters and its effects. Copies are deep.
class QXGRAPHICS3D_API QXTextureUnitState {
public:
  /// Applied to the texture coordinates; the identity in a new unit.
  QXMatrix4d m_matUnit;

  /// Without a texture, minified and magnified linearly, mipmaps by the nearest level.
  QXTextureUnitState();
  QXTextureUnitState(QXTextureUnitState const& other);
  QXTextureUnitState& operator=(QXTextureUnitState const& other);
  ~QXTextureUnitState();

  /// 1 if the unit names no texture: the renderer then switches it off.
  unsigned char IsBlank() const;
  QdcUnicodeString const& GetTextureName() const { return m_strTextureName; }
  void SetTextureName(QdcUnicodeString const& strName);

  /// @param nFilterType  one of QXTextureFilterType
  /// @return  one of QXTextureFilterOption; TEXTURE_FILTER_NONE for any other filter type
  int GetTextureFiltering(int nFilterType) const;
  /// Ignores a filter type that is none of QXTextureFilterType.
  void SetTextureFiltering(int nFilterType, int nOption);

  QXMatrix4d const& GetTextureTransform() const;

  /// The effects by their type. The objects belong to the unit.
  QdcDict<int, QXTextureEffect*> const& GetEffects() const;
  /// Adds the effect, or replaces the one of the same type. A unit of more than 16 types is not read back by Load.
  void SetEffect(QXTextureEffect const& effect);
  void RemoveAllEffects();

  /// Replaces the unit by what Save wrote; of two effects of one type the later counts, and more than 16 are refused.
  /// @return  0 if the stream ended early or makes no sense; the unit is then as it was
  /// Failure: the allocator's exception; memory only as far as the bytes that remain could fill it.
  unsigned char Load(QXStream& stream);
  /// Writes GetDataSize bytes: the texture's name, not its pixels, the transform, the filters and the effects in the
  /// order of their types.
  void Save(QXStream& stream) const;
  /// Bytes that Save writes.
  int GetDataSize() const;

private:
  QdcUnicodeString m_strTextureName;
  int m_nFiltering[3];
  QdcDict<int, QXTextureEffect*> m_dictEffects;
};

}  // namespace QXC
