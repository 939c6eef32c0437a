#include <plugins/ogre/QXOgreTextureUnits.h>

#include <algorithm>
#include <cmath>

#include <OgreTextureManager.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>

namespace QXC {

namespace {

/// More than any device adds to or takes from the level.
constexpr double MAX_BIAS = 16.0;

/// The texture's word before the unit's, and both before the usual filter.
int Choose(int nOwn, int nUnit) {
  for (int const nFilter : {nOwn, nUnit})
    if (nFilter >= TEXTURE_FILTER_NONE && nFilter <= TEXTURE_FILTER_ANISOTROPIC) return nFilter;
  return TEXTURE_FILTER_LINEAR;
}

/// A texture is always looked up somehow: no filter is the nearest pixel.
Ogre::FilterOptions ToOgre(int nFilter, bool bAnisotropic) {
  if (nFilter == TEXTURE_FILTER_ANISOTROPIC || (nFilter == TEXTURE_FILTER_LINEAR && bAnisotropic))
    return Ogre::FO_ANISOTROPIC;
  return nFilter == TEXTURE_FILTER_LINEAR ? Ogre::FO_LINEAR : Ogre::FO_POINT;
}

}  // namespace

void QXOgreTextureUnits::SetFilters(unsigned int nUnit, QXOgreFilters const& filters) {
  if (nUnit < UnitNum) m_arrUnits[nUnit].m_Filters = filters;
}

void QXOgreTextureUnits::SetAnisotropy(unsigned int nUnit, unsigned int nMaxAnisotropy) {
  if (nUnit < UnitNum) m_arrUnits[nUnit].m_nAnisotropy = std::clamp(nMaxAnisotropy, 1U, std::max(m_nMaxAnisotropy, 1U));
}

void QXOgreTextureUnits::SetMipmapBias(unsigned int nUnit, double dBias) {
  if (nUnit < UnitNum && std::isfinite(dBias))
    m_arrUnits[nUnit].m_fMipmapBias = static_cast<float>(std::clamp(dBias, -MAX_BIAS, MAX_BIAS));
}

void QXOgreTextureUnits::SetCoordSet(unsigned int nUnit, unsigned int nSet) {
  if (nUnit < UnitNum && nSet < UnitNum) m_arrUnits[nUnit].m_nCoordSet = nSet;
}

Ogre::Sampler& QXOgreTextureUnits::GetSampler(
    unsigned int nUnit, QXOgreFilters const& filters, bool bRepeatU, bool bRepeatV) {
  Unit const& unit = m_arrUnits[std::min(nUnit, UnitNum - 1)];
  Key key{{Choose(filters.m_nMin, unit.m_Filters.m_nMin), Choose(filters.m_nMag, unit.m_Filters.m_nMag),
              Choose(filters.m_nMip, unit.m_Filters.m_nMip)},
      unit.m_nAnisotropy, unit.m_fMipmapBias, bRepeatU, bRepeatV};
  bool const bAsked =
      key.m_Filters.m_nMin == TEXTURE_FILTER_ANISOTROPIC || key.m_Filters.m_nMag == TEXTURE_FILTER_ANISOTROPIC;
  if (bAsked && key.m_nAnisotropy == 1) key.m_nAnisotropy = std::max(m_nMaxAnisotropy, 1U);
  Ogre::SamplerPtr& pSampler = m_mapSamplers[key];
  if (!pSampler) pSampler = Make(key);
  return *pSampler;
}

Ogre::SamplerPtr QXOgreTextureUnits::Make(Key const& key) const {
  Ogre::SamplerPtr pSampler = Ogre::TextureManager::getSingleton().createSampler();
  bool const bAnisotropic = key.m_nAnisotropy > 1;
  int const nMip = key.m_Filters.m_nMip;
  pSampler->setFiltering(ToOgre(key.m_Filters.m_nMin, bAnisotropic), ToOgre(key.m_Filters.m_nMag, bAnisotropic),
      nMip == TEXTURE_FILTER_NONE ? Ogre::FO_NONE : ToOgre(std::min<int>(nMip, TEXTURE_FILTER_LINEAR), false));
  Ogre::TextureAddressingMode const eModeU = key.m_bRepeatU ? Ogre::TAM_WRAP : Ogre::TAM_CLAMP;
  Ogre::TextureAddressingMode const eModeV = key.m_bRepeatV ? Ogre::TAM_WRAP : Ogre::TAM_CLAMP;
  pSampler->setAddressingMode(eModeU, eModeV, Ogre::TAM_CLAMP);
  pSampler->setAnisotropy(key.m_nAnisotropy);
  pSampler->setMipmapBias(key.m_fMipmapBias);
  return pSampler;
}

}  // namespace QXC
