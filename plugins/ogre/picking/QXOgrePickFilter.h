/// @file
/// What takes part in a selection pass.
#pragma once

#include <set>

#include <QxGraphics3D/frame/QXSceneOperation.h>

namespace QXC {

/// Drawables and billboards by their identifiers: all of them, or those of some layers. What has no identifier hides
/// what is behind it as in the picture, but belongs to no layer.
struct QXOgrePickFilter {
  QXSceneOperation const* m_pNumbering = nullptr;
  /// Null or empty: everything is drawn, else what is of other layers is seen through.
  std::set<int> const* m_pLayers = nullptr;

  bool Takes(unsigned int nIdentifier) const {
    if (!m_pLayers || m_pLayers->empty()) return true;
    int nLayer = 0;
    int nObject = 0;
    m_pNumbering->GetID(nIdentifier, nLayer, nObject);
    return nIdentifier != 0 && m_pLayers->contains(nLayer);
  }
};

}  // namespace QXC
