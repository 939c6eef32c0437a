/// @file
/// From laid out labels to the operations that a renderer draws.
#pragma once

#include <apps/qx3d/QXVertexCollector.h>

#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <cstddef>
#include <map>

namespace QXC {
class QXTextLayout;
}

namespace QXApp {

struct QXSceneLabel;

/// What the quads of one drawable have in common; the first are drawn first.
struct QXLabelPartKey {
  /// Nothing hides them.
  bool m_bOverlay = false;
  /// They face the camera; else they lie in the world.
  bool m_bFacing = false;
  /// The letters themselves; else the borders under all of them.
  bool m_bLetters = false;
  /// Of the glyph atlas.
  int m_nPage = 0;
  /// Cell of the world, level axes, counted from the origin: floats have to reach over it.
  int m_nCellX = 0;
  int m_nCellY = 0;

  // The check takes the zero inside the comparison that the compiler writes for a pointer.
  auto operator<=>(QXLabelPartKey const&) const = default;  // NOLINT(modernize-use-nullptr)

  /// For QXRenderOperation3D::SetRenderPriority: after everything else, which has 0.
  int GetPriority() const { return 1 + 4 * (m_bOverlay ? 1 : 0) + 2 * (m_bFacing ? 1 : 0) + (m_bLetters ? 1 : 0); }
};

/// Merges the glyphs of labels into few drawables, colours in the vertices: the number of draw operations follows the
/// pages of the atlas and not the labels. Vertices stand relative to the origin of their part.
class QXLabelParts {
public:
  struct Part {
    QXVertexCollector m_Collector;
    QXC::QXVector3d m_vecOrigin;
  };

  /// @param vecOrigin  of the scene
  /// @param bounds     of the scene, which say how wide a cell is
  QXLabelParts(QXC::QXVector3d const& vecOrigin, QXC::QXBoundingBox const& bounds);

  /// @param layout  of the label's text in its size, with borders if it has a halo
  void Add(QXSceneLabel const& label, QXC::QXTextLayout const& layout);

  /// Of all labels, borders counted for themselves. Each costs some 400 bytes until the device has it.
  std::size_t GetQuadCount() const { return m_nQuads; }

  std::map<QXLabelPartKey, Part>& GetParts() { return m_mapParts; }

private:
  QXC::QXVector3d m_vecOrigin;
  double m_dCellSize;
  std::map<QXLabelPartKey, Part> m_mapParts;
  std::size_t m_nQuads = 0;
};

}  // namespace QXApp
