/// @file
/// The textures of a drawable or of one of its ranges.
#pragma once

#include <memory>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

#include <plugins/ogre/QXOgreTextureSource.h>

namespace QXC {

class QXTextureManager;
struct QXTexturePackage;

/// Textures and coordinate transforms of texture units, counted as uses. Only units that have one take memory.
class QXOgreTextureSet final {
public:
  struct Unit {
    unsigned int m_nUnit;
    QXMatrix4d m_matTexture;
    /// Null where the unit has a transform alone.
    std::unique_ptr<QXOgreTextureUse> m_pUse;

    /// Null without a texture, or once it has died.
    QXOgreTextureSource* GetSource() const { return m_pUse ? m_pUse->GetSource() : nullptr; }
  };

  /// Takes the place of what the set had. A package without a pointer in its first unit is looked for by its name.
  /// @param pManager  null: names are not looked up
  void Assign(QXTexturePackage const& package, QXTextureManager* pManager);
  /// Null takes the texture away; the transform stays.
  void SetTexture(unsigned int nUnit, QXTexture* pTexture);
  void SetMatrix(unsigned int nUnit, QXMatrix4d const& matTexture);

  /// Whether a unit has a texture that lives.
  bool HasTextures() const;
  /// In the order of their numbers.
  std::vector<Unit> const& GetUnits() const { return m_arrUnits; }
  /// The transform of a unit, the identity if it has none.
  QXMatrix4d const& GetMatrix(unsigned int nUnit) const;

private:
  Unit& Demand(unsigned int nUnit);

  std::vector<Unit> m_arrUnits;
};

}  // namespace QXC
