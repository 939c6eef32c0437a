/// @file
/// The lights of a scene.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <vector>

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/view/QXLight.h>

namespace QXC {

struct QXOgreView;

/// The lights of one picture as the programs take them (QX_OGRE_LIGHT_SHADER says which number is what).
struct QXOgreLamps {
  /// As many as fit into the uniforms of every OpenGL 3.3 beside what else the programs take.
  static constexpr std::size_t MOST = 32;
  static constexpr std::size_t NUMBERS = 24;

  int m_nCount = 0;
  /// Those of the first m_nCount lights count.
  std::array<float, MOST* NUMBERS> m_arrNumbers = {};
};

/// A light with its numbers made safe: what is no number counts as not set, colours lie between 0 and 1e6.
struct QXOgreLamp {
  explicit QXOgreLamp(QXLight const& light);

  /// False: it gives no light, being black or without the direction that its type needs.
  bool m_bShines = false;
  /// It has a place, as all but directional lights have.
  bool m_bPlaced = true;
  QXVector3d m_vecPosition;
  /// Of length 1, or 0 where it does not matter.
  QXVector3d m_vecDirection;
  double m_dRange;
  /// Cosines of half the angles; below -1 without a limit.
  double m_dCosInner = -2.0;
  double m_dCosOuter = -2.0;
  double m_dFalloff = 0.0;
  std::array<double, 3> m_arrAttenuation;
  std::array<double, 3> m_arrDiffuse;
  std::array<double, 3> m_arrSpecular;
  std::array<double, 3> m_arrAmbient;
  /// The brightest of the diffuse and ambient channels.
  double m_dBrightness;
  /// How far away less than one step of a channel is left of it; infinite where nothing attenuates it.
  double m_dReach;
};

/// The lights that CreateLight made in one scene. Cost of finding one: the logarithm of their number.
class QXOgreLights final {
public:
  struct Entry {
    /// As the host told it.
    QXLight m_Light;
    QXOgreLamp m_Lamp;
    bool m_bEnable;
    /// How many were made before it.
    std::size_t m_nNumber;
  };

  /// The name is none that it has.
  void Create(QdcUnicodeString const& strName);
  /// False for an unknown name.
  bool Destroy(QdcUnicodeString const& strName);
  /// Null for an unknown name. Good until the light goes.
  Entry* Find(QdcUnicodeString const& strName);
  static void Set(Entry& entry, QXLight const& light);
  /// Whether one is switched on, whatever it shines.
  bool IsAnyEnabled() const;

  /// The lights that matter for a view. Lights whose range ends outside of it are left out. Of more than MOST, the most
  /// important are taken: importance is brightness, for a light with a place times reach / (reach + distance from the
  /// eye), in a parallel view the distance from the line of sight. It falls with every step away, since among equals,
  /// which keep their order, nothing could fade. The last FADING that find a place are dimmed the closer their
  /// importance is to that of the first that finds none, so that lights change places while they are dark.
  /// Allocates nothing. Cost: linear in the lights.
  void Choose(QXOgreView const& view, QXOgreLamps& lamps);

  static constexpr std::size_t FADING = 4;

private:
  struct Candidate {
    QXOgreLamp const* m_pLamp;
    /// In the coordinates of the eye.
    QXVector3d m_vecPlace;
    double m_dImportance;
    std::size_t m_nNumber;
  };

  /// False if the view does not see its light.
  static bool Place(QXOgreLamp const& lamp, QXOgreView const& view, Candidate& candidate);
  /// Of the candidate at a place in the order of importance.
  double WeightOf(std::size_t nCandidate) const;

  std::map<QdcUnicodeString, Entry> m_mapEntries;
  std::size_t m_nMade = 0;
  /// With room for all entries.
  std::vector<Candidate> m_arrCandidates;
};

}  // namespace QXC
