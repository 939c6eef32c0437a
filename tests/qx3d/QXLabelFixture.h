/// @file
/// Labels in a font of boxes, of which every edge is known.
#pragma once

#include <apps/qx3d/QXSceneFile.h>

#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullRenderOperationManager.h>
#include <QxGraphics3D/testing/QXNullTextureManager.h>
#include <QxGraphics3D/testing/QXRecordingGraphics3D.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/text/QXTrueType.h>
#include <tests/text/QXFontsFixture.h>

#include <string>
#include <vector>

namespace QXApp {

/// The default font has A, a box 10 wide, and B, one of 20, at 75 points, where 100 pixels are an em. Both are 70 high,
/// stand on the baseline and begin 5 behind the pen, which moves by 20 and 30.
class QXLabelFixture : public QXC::QXFontsFixture {
protected:
  static constexpr int PixelSize = 75;

  QXLabelFixture() {
    Forget();
    WriteDefaultFont();
    EXPECT_NE(m_Graphics3D.Initialize(QXC::QdcUnicodeString()), 0);
    m_Graphics3D.GetLog().Clear();
  }
  ~QXLabelFixture() override { Forget(); }

  QXSceneLabel& Add(std::string const& strText) {
    QXSceneLabel label;
    label.m_strText = strText;
    label.m_nSize = PixelSize;
    label.m_nLine = 10 * static_cast<int>(m_vecLabels.size() + 1);
    m_vecLabels.push_back(label);
    return m_vecLabels.back();
  }

  QXC::QXRecordingGraphics3D m_Graphics3D;
  std::vector<QXSceneLabel> m_vecLabels;

private:
  /// The next test's fonts are others under the same names.
  static void Forget() {
    QXC::QXTextureFontManager::GetSingleton().Clear();
    delete QXC::QXTrueType::ms_pSingleton;
    QXC::QXTrueType::ms_pSingleton = nullptr;
  }
};

}  // namespace QXApp
