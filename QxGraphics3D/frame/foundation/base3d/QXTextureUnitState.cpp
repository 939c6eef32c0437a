#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>

#include <algorithm>
#include <memory>
#include <utility>

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

unsigned char QXTextureUnitState::Load(QXStream& stream) {
  constexpr unsigned int EffectSize = 8;
  // An effect takes twelve times its bytes in memory: without an end to them a file of nothing else could take more
  // than readers of files promise. There are two types so far.
  constexpr int MostEffects = 16;
  QXTextureUnitState loaded;
  int nEffects = 0;
  stream >> loaded.m_strTextureName;
  detail::LoadMatrix(stream, loaded.m_matUnit);
  stream.Load(loaded.m_nFiltering, 3);
  QXUInt64 const nPosition = stream.GetPosition();
  if (!detail::LoadCount(stream, nEffects, EffectSize)) return 0;
  if (nEffects > MostEffects) {
    stream.Fail(nPosition);
    return 0;
  }
  for (int i = 0; i < nEffects; ++i) {
    QXTextureEffect effect;
    stream >> effect.m_nType >> effect.m_nSubType;
    loaded.SetEffect(effect);
  }
  if (!stream.IsGood()) return 0;
  m_strTextureName = std::move(loaded.m_strTextureName);
  m_matUnit = loaded.m_matUnit;
  std::copy_n(loaded.m_nFiltering, 3, m_nFiltering);
  std::swap(m_dictEffects, loaded.m_dictEffects);
  return 1;
}

void QXTextureUnitState::Save(QXStream& stream) const {
  stream << m_strTextureName;
  detail::SaveMatrix(stream, m_matUnit);
  stream.Save(m_nFiltering, 3);
  stream << static_cast<int>(m_dictEffects.GetCount());
  for (auto at = m_dictEffects.GetStartPosition(); !m_dictEffects.IsEOF(at); ++at)
    stream << at->second->m_nType << at->second->m_nSubType;
}

int QXTextureUnitState::GetDataSize() const {
  constexpr int FixedSize = detail::MatrixSize + 3 * 4 + 4;
  return QXStream::GetStringSize(m_strTextureName) + FixedSize + 8 * static_cast<int>(m_dictEffects.GetCount());
}

}  // namespace QXC
