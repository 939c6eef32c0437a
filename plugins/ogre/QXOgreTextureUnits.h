/// @file
/// How textures are looked up.
#pragma once

#include <array>
#include <compare>
#include <map>

#include <OgreTextureUnitState.h>

#include <QxGraphics3D/renderop/QXTexCoordBlock.h>

namespace QXC {

/// Filters in the numbering of QXTextureFilterOption; -1: nobody has said.
struct QXOgreFilters {
  int m_nMin = -1;
  int m_nMag = -1;
  int m_nMip = -1;

  auto operator<=>(QXOgreFilters const&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// What the renderer's state of the texture units says, and the samplers that follow from it.
class QXOgreTextureUnits final {
public:
  static constexpr unsigned int UnitNum = QXTexCoordBlock::UnitNum;

  /// @param nMaxAnisotropy  of the device
  explicit QXOgreTextureUnits(unsigned int nMaxAnisotropy) : m_nMaxAnisotropy(nMaxAnisotropy) {
    for (unsigned int i = 0; i < UnitNum; ++i) m_arrUnits[i].m_nCoordSet = i;
  }

  /// A unit that does not exist is ignored.
  void SetFilters(unsigned int nUnit, QXOgreFilters const& filters);
  void SetAnisotropy(unsigned int nUnit, unsigned int nMaxAnisotropy);
  void SetMipmapBias(unsigned int nUnit, double dBias);
  void SetCoordSet(unsigned int nUnit, unsigned int nSet);
  /// Each unit its own set at first.
  unsigned int GetCoordSet(unsigned int nUnit) const { return nUnit < UnitNum ? m_arrUnits[nUnit].m_nCoordSet : 0; }

  /// The sampler of a unit. Where neither the texture nor the unit says which filter, it is the linear one, between the
  /// levels as well.
  /// @param filters  the texture's own
  Ogre::Sampler& GetSampler(unsigned int nUnit, QXOgreFilters const& filters, bool bRepeatU, bool bRepeatV);

private:
  struct Unit {
    QXOgreFilters m_Filters;
    unsigned int m_nAnisotropy = 1;
    float m_fMipmapBias = 0.0F;
    unsigned int m_nCoordSet = 0;
  };
  struct Key {
    QXOgreFilters m_Filters;
    unsigned int m_nAnisotropy;
    float m_fMipmapBias;
    bool m_bRepeatU;
    bool m_bRepeatV;

    auto operator<=>(Key const&) const = default;  // NOLINT(modernize-use-nullptr)
  };

  Ogre::SamplerPtr Make(Key const& key) const;

  std::array<Unit, UnitNum> m_arrUnits;
  std::map<Key, Ogre::SamplerPtr> m_mapSamplers;
  unsigned int m_nMaxAnisotropy;
};

}  // namespace QXC
