#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>

#include <algorithm>
#include <memory>

namespace QXC {

QXTextureUnitState::QXTextureUnitState()
    : m_nFiltering{TEXTURE_FILTER_LINEAR, TEXTURE_FILTER_LINEAR, TEXTURE_FILTER_POINT} {}

QXTextureUnitState::QXTextureUnitState(QXTextureUnitState const& other) : QXTextureUnitState() {
  *this = other;
}

QXTextureUnitState& QXTextureUnitState::operator=(QXTextureUnitState const& other) {
  if (this == &other) return *this;
  m_matUnit = other.m_matUnit;
  m_strTextureName = other.m_strTextureName;
  std::copy_n(other.m_nFiltering, 3, m_nFiltering);
  RemoveAllEffects();
  for (auto at = other.m_dictEffects.GetStartPosition(); !other.m_dictEffects.IsEOF(at); ++at) SetEffect(*at->second);
  return *this;
}

QXTextureUnitState::~QXTextureUnitState() {
  RemoveAllEffects();
}

unsigned char QXTextureUnitState::IsBlank() const {
  return m_strTextureName.IsEmpty();
}

QdcUnicodeString QXTextureUnitState::GetTextureName() const {
  return m_strTextureName;
}

void QXTextureUnitState::SetTextureName(QdcUnicodeString const& strName) {
  m_strTextureName = strName;
}

int QXTextureUnitState::GetTextureFiltering(int nFilterType) const {
  return nFilterType >= 0 && nFilterType < 3 ? m_nFiltering[nFilterType] : TEXTURE_FILTER_NONE;
}

void QXTextureUnitState::SetTextureFiltering(int nFilterType, int nOption) {
  if (nFilterType >= 0 && nFilterType < 3) m_nFiltering[nFilterType] = nOption;
}

QXMatrix4d const& QXTextureUnitState::GetTextureTransform() const {
  return m_matUnit;
}

QdcDict<int, QXTextureEffect*> const& QXTextureUnitState::GetEffects() const {
  return m_dictEffects;
}

void QXTextureUnitState::SetEffect(QXTextureEffect const& effect) {
  auto pNew = std::make_unique<QXTextureEffect>(effect);  // before the entry: a failing allocation must leave no null
  QXTextureEffect*& pHeld = m_dictEffects[effect.m_nType];
  delete pHeld;
  pHeld = pNew.release();
}

void QXTextureUnitState::RemoveAllEffects() {
  for (auto at = m_dictEffects.GetStartPosition(); !m_dictEffects.IsEOF(at); ++at) delete at->second;
  m_dictEffects.RemoveAll();
}

}  // namespace QXC
