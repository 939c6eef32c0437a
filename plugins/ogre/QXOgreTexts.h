/// @file
/// Texts that are drawn once, over a picture that is there.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

#include <QxGraphics3D/frame/QXResourceHolder.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>
#include <QxGraphics3D/text/QXTextLayout.h>

#include <plugins/ogre/QXOgreDrawable.h>

namespace QXC {

class QXOgreGraphics3D;
class QXOgreRenderTarget;
class QXViewport;

/// The texts of TextOut2DText and TextOut3DText, gathered until RenderTexts draws them as labels of a scene of their
/// own, one drawable for each page of glyphs.
///
/// A text keeps its glyphs in the atlas until a Draw does not have it any more: what is said again for each frame is
/// laid out once, and the font engine draws it once.
class QXOgreTexts final : public QXResourceHolder {
public:
  /// @param scene  for the drawables; must outlive this object, as must the renderer
  QXOgreTexts(QXOgreGraphics3D& graphics3D, QXOgreScene& scene);
  ~QXOgreTexts() override;
  QXOgreTexts(QXOgreTexts const&) = delete;
  QXOgreTexts& operator=(QXOgreTexts const&) = delete;

  /// Font of what is added from now on. Fonts have whole points, so pixels are rounded to the nearest of them.
  void SetFont(QdcUnicodeString const& strFaceName, double dPixels);
  /// @param bWindow      1: the position is one of the window's pixels, counted from its lower left corner
  /// @param vecPosition  where the baseline begins
  /// @param nColor       QDCRGBA word
  void Add(QdcUnicodeString const& strText, QXVector3d const& vecPosition, unsigned char bWindow, unsigned int nColor);
  /// Draws what was added over the picture of a viewport, and forgets it.
  /// @param pTarget  of the viewport; null: only forgets
  void Draw(QXOgreRenderTarget* pTarget, QXViewport const* pViewport);

  /// Texts whose glyphs are held.
  unsigned int GetResourceCount() const override { return static_cast<unsigned int>(m_mapLines.size()); }
  /// Gives all glyphs back.
  void ReleaseResources() override;

private:
  struct Text {
    QdcUnicodeString m_strText;
    QXTextStyle m_Style;
    QXVector3d m_vecPosition;
    unsigned int m_nColor;
    unsigned char m_bWindow;
  };
  struct Line {
    QXTextLayout m_Layout;
    bool m_bUsed;
  };
  /// Vertices of the texts of one page.
  struct Page;
  using Pages = std::map<int, Page>;
  using LineMap = std::map<std::tuple<QdcUnicodeString, double, QdcUnicodeString>, Line>;

  QXTextLayout const& LayOut(Text const& text);
  void Collect(unsigned char bWindow, QXVector3d const& vecZero, Pages& pages);
  void DrawPages(Pages const& pages, QXVector3d const& vecZero, unsigned char bWindow, QXOgreRenderTarget& target,
      QXViewport const& viewport);
  void DropUnused();

  QXOgreGraphics3D& m_Graphics3D;
  QXOgreScene& m_Scene;
  QXTextStyle m_Style;
  std::vector<Text> m_arrTexts;
  LineMap m_mapLines;
  std::vector<std::unique_ptr<QXOgreDrawable>> m_arrDrawables;
};

}  // namespace QXC
