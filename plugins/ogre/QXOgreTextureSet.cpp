#include <plugins/ogre/QXOgreTextureSet.h>

#include <algorithm>

#include <QxGraphics3D/renderop/QXTexturePackage.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

namespace QXC {

namespace {

/// The texture of a unit of a package, found by name where the package has that alone.
QXTexture* FindTexture(QXTexturePackage const& package, unsigned int nUnit, QXTextureManager* pManager) {
  if (package.m_pTextures[nUnit] || nUnit > 0 || !pManager || package.m_strTextureName.IsEmpty())
    return package.m_pTextures[nUnit];
  pManager->Lock();
  QXTexture* const pTexture = pManager->GetTexture(package.m_strTextureName, 0);
  pManager->Unlock();
  return pTexture;
}

}  // namespace

void QXOgreTextureSet::Assign(QXTexturePackage const& package, QXTextureManager* pManager) {
  // The new uses first: a texture that stays is never without a user.
  QXOgreTextureSet former;
  former.m_arrUnits.swap(m_arrUnits);
  for (unsigned int i = 0; i < QXTexturePackage::UnitNum; ++i) {
    QXTexture* const pTexture = FindTexture(package, i, pManager);
    if (!pTexture) continue;
    SetTexture(i, pTexture);
    SetMatrix(i, package.m_matTextures[i]);
    if (!package.m_bFlag && HasTextures()) return;
  }
}

QXOgreTextureSet::Unit& QXOgreTextureSet::Demand(unsigned int nUnit) {
  auto const position = std::lower_bound(m_arrUnits.begin(), m_arrUnits.end(), nUnit,
      [](Unit const& unit, unsigned int nNumber) { return unit.m_nUnit < nNumber; });
  if (position != m_arrUnits.end() && position->m_nUnit == nUnit) return *position;
  return *m_arrUnits.insert(position, Unit{nUnit, QXMatrix4d::IDENTITY, nullptr});
}

void QXOgreTextureSet::SetTexture(unsigned int nUnit, QXTexture* pTexture) {
  if (nUnit >= QXTexturePackage::UnitNum) return;
  QXOgreTextureSource* const pSource = QXOgreTextureSource::Of(pTexture);
  // Made before the former one is given back, which may be the same.
  auto pUse = pSource ? std::make_unique<QXOgreTextureUse>(pSource) : nullptr;
  Demand(nUnit).m_pUse.swap(pUse);
}

void QXOgreTextureSet::SetMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) {
  if (nUnit < QXTexturePackage::UnitNum) Demand(nUnit).m_matTexture = matTexture;
}

bool QXOgreTextureSet::HasTextures() const {
  return std::any_of(m_arrUnits.begin(), m_arrUnits.end(), [](Unit const& unit) { return unit.GetSource(); });
}

QXMatrix4d const& QXOgreTextureSet::GetMatrix(unsigned int nUnit) const {
  for (Unit const& unit : m_arrUnits)
    if (unit.m_nUnit == nUnit) return unit.m_matTexture;
  return QXMatrix4d::IDENTITY;
}

}  // namespace QXC
