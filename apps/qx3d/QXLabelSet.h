/// @file
/// The labels of a shown scene.
#pragma once

#include <apps/qx3d/QXLabelGlyphs.h>
#include <apps/qx3d/QXLabelParts.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace QXC {
class QXGraphics3D;
class QXRenderOperation3D;
class QXTexture;
}  // namespace QXC

namespace QXApp {

class QXPickTable;

/// Most letters of all labels, the borders of halos counted for themselves: what becomes of them takes a gigabyte until
/// the device has it.
constexpr std::size_t MaxLabelLetters = 2000000;

/// Labels as few drawables that show parts of the library's glyph atlas. On the rendering thread.
class QXLabelSet {
public:
  explicit QXLabelSet(std::size_t nMaxLetters = MaxLabelLetters) : m_nMaxLetters(nMaxLetters) {}
  QXLabelSet(QXLabelSet const&) = delete;
  QXLabelSet& operator=(QXLabelSet const&) = delete;

  /// Makes the labels of a scene. What cannot be shown is left out and told; the scene is shown all the same.
  /// @param vecOrigin  of the scene, world coordinates
  /// @param bounds     of what stands in the scene besides
  void Show(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, std::vector<QXSceneLabel> const& vecLabels,
      QXC::QXVector3d const& vecOrigin, QXC::QXBoundingBox const& bounds, QXSceneProblems& problems);

  /// Gives each drawable an identifier: one has many labels.
  void Number(QXPickTable& table);

  /// Gives drawables and glyphs back. Before the renderer goes.
  void GiveBack(QXC::QXGraphics3D& graphics3D);

  /// Labels of which something is shown.
  unsigned int GetCount() const { return m_nCount; }
  /// Glyphs in the atlas, halos counted for themselves.
  std::size_t GetGlyphCount() const { return m_Glyphs.GetCount(); }
  /// The pages by their numbers, with their places but without pixels.
  std::vector<QXAtlasPage> GetPages() const;

private:
  void AddParts(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXLabelParts& parts, int nLine,
      QXSceneProblems& problems);
  bool AddPart(QXC::QXGraphics3D& graphics3D, std::wstring const& strScene, QXLabelPartKey const& key,
      QXLabelParts::Part& part, QXC::QXTexture& texture);

  std::size_t const m_nMaxLetters;
  QXLabelGlyphs m_Glyphs;
  std::vector<QXC::QXRenderOperation3D*> m_vecDrawables;
  /// Names of the pages that are on the device.
  std::set<std::string> m_setPages;
  QXC::QXBoundingBox m_Bounds;
  unsigned int m_nCount = 0;
  bool m_bTaken = false;
};

}  // namespace QXApp
