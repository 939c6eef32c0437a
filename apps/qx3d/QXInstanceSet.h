/// @file
/// The instances of a shown scene.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <cstddef>
#include <string>
#include <vector>

namespace QXC {
class QXGraphics3D;
class QXInstancing;
class QXRenderOperation3D;
class QXRenderOperationMultiIndex;
}  // namespace QXC

namespace QXApp {

struct QXInstanceGroup;
struct QXSceneInstances;

/// Hands instances to a renderer: to its hardware instancing, or as a drawable for each mesh of each instance where it
/// has none.
class QXInstanceSet {
public:
  /// Most drawables for a renderer without instancing: each has a copy of its mesh.
  static constexpr std::size_t ms_nMaxDrawables = 100000;

  /// Adds one mesh of a group.
  /// @param mesh     copied, with its textures
  /// @param section  what the scene says of all instances of the group
  /// @param nFirstID  identifier of the first place, from which on each has its own; 0: none can be picked
  /// @return  empty, or why it cannot be shown
  std::string Add(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXC::QXRenderOperationMultiIndex& mesh,
      QXInstanceGroup const& group, QXSceneInstances const& section, unsigned int nFirstID = 0);
  /// Before the renderer and its textures go.
  void GiveBack(QXC::QXGraphics3D& graphics3D);

  /// Meshes that are drawn at many places.
  std::size_t GetMeshCount() const { return m_nMeshes; }
  /// Those of the last view, over all meshes.
  std::size_t CountDrawn(QXC::QXGraphics3D& graphics3D) const;

private:
  std::string AddDrawables(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene,
      QXC::QXRenderOperationMultiIndex& mesh, QXInstanceGroup const& group, QXSceneInstances const& section,
      unsigned int nFirstID);

  std::vector<QXC::QXInstancing*> m_vecInstancings;
  std::vector<QXC::QXRenderOperation3D*> m_vecDrawables;
  std::size_t m_nMeshes = 0;
};

}  // namespace QXApp
