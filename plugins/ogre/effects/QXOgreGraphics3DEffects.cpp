// Effects on finished pictures.

#include <cmath>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreRenderTarget.h>
#include <plugins/ogre/effects/QXOgreBloom.h>

namespace QXC {

namespace {

constexpr wchar_t const* BLOOM = L"bloom";

double* FindParameter(QXBloomSetting& setting, QdcUnicodeString const& strName) {
  if (strName == L"threshold") return &setting.m_dThreshold;
  if (strName == L"intensity") return &setting.m_dIntensity;
  return strName == L"radius" ? &setting.m_dRadius : nullptr;
}

}  // namespace

unsigned char QXOgreGraphics3D::AddCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) {
  auto* const pOwn = dynamic_cast<QXOgreRenderTarget*>(pTarget);
  if (!pOwn || !m_setTargets.contains(pOwn)) {
    SetErrorText("an effect needs a target of this renderer");
    return 0;
  }
  if (!(strName == BLOOM)) {
    SetErrorText("there is no effect '" + ToUtf8(strName) + "', only 'bloom'");
    return 0;
  }
  pOwn->SetBloom(true);
  return 1;
}

void QXOgreGraphics3D::RemoveCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) {
  auto* const pOwn = dynamic_cast<QXOgreRenderTarget*>(pTarget);
  if (pOwn && m_setTargets.contains(pOwn) && strName == BLOOM) pOwn->SetBloom(false);
}

unsigned char QXOgreGraphics3D::SetCompositorParameter(
    QdcUnicodeString const& strName, QdcUnicodeString const& strParameter, double dValue) {
  QXBloomSetting setting = m_BloomSetting;
  double* const pValue = strName == BLOOM ? FindParameter(setting, strParameter) : nullptr;
  if (!pValue || std::isnan(dValue)) {
    SetErrorText("the effect 'bloom' has the numbers 'threshold', 'intensity' and 'radius', not '" + ToUtf8(strName) +
                 "' with '" + ToUtf8(strParameter) + "' of " + std::to_string(dValue));
    return 0;
  }
  *pValue = dValue;
  SetBloomSetting(setting);
  return 1;
}

void QXOgreGraphics3D::SetCompositorEnable(QdcUnicodeString const& strName, unsigned char bEnable) {
  if (strName == BLOOM) m_bBloomEnabled = bEnable != 0;
}

unsigned char QXOgreGraphics3D::IsCompositorEnable(QdcUnicodeString const& strName) const {
  return strName == BLOOM && m_bBloomEnabled;
}

void QXOgreGraphics3D::SetBloomSetting(QXBloomSetting const& setting) {
  m_BloomSetting = QXOgreBloom::Limit(setting, m_BloomSetting);
}

}  // namespace QXC
