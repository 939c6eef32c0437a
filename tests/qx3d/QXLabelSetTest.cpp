// Labels from a scene to a renderer.
#include <apps/qx3d/QXIconSet.h>
#include <apps/qx3d/QXLabelSet.h>
#include <apps/qx3d/QXSceneText.h>
#include <tests/qx3d/QXLabelFixture.h>
#include <tests/renderop/QXBareDrawables.h>

#include <gmock/gmock.h>

#include <malloc.h>

#include <cstdint>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QXLabelSetTest : public QXLabelFixture {
protected:
  ~QXLabelSetTest() override {
    m_Labels.GiveBack(m_Graphics3D);
    EXPECT_EQ(GetDrawables().size(), 0u);
    EXPECT_EQ(GetTextureCount(), 0u);
  }

  std::vector<std::string> Show() {
    QXSceneProblems problems("a.qxscene");
    m_Labels.Show(m_Graphics3D, L"Scene3D", m_vecLabels, QXVector3d(0.0, 0.0, 0.0), m_Bounds, problems);
    return problems.GetLines();
  }

  std::vector<QXC::QXNullRenderOperation3D*> const& GetDrawables() {
    return static_cast<QXC::QXNullRenderOperationManager&>(*m_Graphics3D.GetRenderOperationManager()).GetDrawables();
  }
  unsigned int GetTextureCount() {
    return static_cast<QXC::QXNullTextureManager&>(*m_Graphics3D.GetTextureManager()).GetTextureCount();
  }
  std::string GetLog() { return m_Graphics3D.GetLog().GetText(); }

  QXC::QXBoundingBox m_Bounds{QXVector3d(-50.0, -50.0, 0.0), QXVector3d(50.0, 50.0, 20.0)};
  QXLabelSet m_Labels;
};

TEST_F(QXLabelSetTest, NothingIsNothing) {
  EXPECT_THAT(Show(), IsEmpty());
  EXPECT_EQ(m_Labels.GetCount(), 0u);
  EXPECT_EQ(GetTextureCount(), 0u);
  EXPECT_THAT(m_Labels.GetPages(), IsEmpty());
}

TEST_F(QXLabelSetTest, LabelIsADrawableOfThePage) {
  Add("AB").m_vecPosition = QXVector3d(60.0, 2.0, 3.0);
  EXPECT_THAT(Show(), IsEmpty());
  EXPECT_EQ(m_Labels.GetCount(), 1u);
  EXPECT_EQ(m_Labels.GetGlyphCount(), 2u);
  ASSERT_EQ(GetDrawables().size(), 1u);
  QXC::QXNullRenderOperation3D const& drawable = *GetDrawables()[0];
  EXPECT_EQ(drawable.GetVertexCount(), 8u);
  // Of everything: it is seen from beside its place as well.
  EXPECT_EQ(drawable.GetBoundingBox().GetMin(), QXVector3d(-50.0, -50.0, 0.0));
  EXPECT_EQ(drawable.GetBoundingBox().GetMax(), QXVector3d(60.0, 50.0, 20.0));
  EXPECT_EQ(drawable.GetRenderPriority(), 4);
  for (char const* szCall : {"SetLightEnable(0)", "SetDepthWrite(0)", "SetDepthTest(1)", "SetCullingMode(1)",
           "SetCastShadow(0)", "SetReceiveShadow(0)", "SetShaderPrograms(\"QXLabelVP.glsl\", \"QXLabelFP.glsl\")"})
    EXPECT_THAT(GetLog(), HasSubstr(szCall));
}

TEST_F(QXLabelSetTest, LabelsStandRelativeToAnOriginNearThem) {
  QXVector3d const vecOrigin(604100.0, 5792150.0, 70.0);
  Add("A").m_vecPosition = vecOrigin + QXVector3d(1.0, 2.0, 3.0);
  QXSceneProblems problems("a.qxscene");
  m_Labels.Show(m_Graphics3D, L"Scene3D", m_vecLabels, vecOrigin,
      QXC::QXBoundingBox(vecOrigin, vecOrigin + QXVector3d(9.0, 9.0, 9.0)), problems);
  ASSERT_EQ(GetDrawables().size(), 1u);
  EXPECT_EQ(QXVector3d::ZERO.MultiplyMatrix(GetDrawables()[0]->GetModelMatrix()), vecOrigin);
  EXPECT_EQ(GetDrawables()[0]->GetBoundingBox().GetMax(), QXVector3d(9.0, 9.0, 9.0));
}

TEST_F(QXLabelSetTest, TheLibraryForgetsTheTexturesOfARendererThatGoes) {
  Add("A");
  EXPECT_THAT(Show(), IsEmpty());
  QXC::QXTextureFontManager& manager = QXC::QXTextureFontManager::GetSingleton();
  EXPECT_NE(manager.GetTexture(L"Font_BigTexture_0"), nullptr);
  manager.SetTextureManager(m_Graphics3D.GetTextureManager());
  m_Labels.GiveBack(m_Graphics3D);
  EXPECT_EQ(manager.GetTexture(L"Font_BigTexture_0"), nullptr);
}

TEST_F(QXLabelSetTest, OverlayAndFlatLabelsAskForWhatTheyNeed) {
  QXSceneLabel& label = Add("A");
  label.m_bDepth = false;
  label.m_eFacing = QXLabelFacing::Flat;
  label.m_dHeight = 3.0;
  EXPECT_THAT(Show(), IsEmpty());
  EXPECT_THAT(GetLog(), HasSubstr("SetDepthTest(0)"));
  EXPECT_THAT(GetLog(), testing::Not(HasSubstr("SetShaderPrograms")));
}

TEST_F(QXLabelSetTest, GlyphsStandOnceInThePageWhateverNumberOfLabelsHasThem) {
  for (int i = 0; i < 100; ++i) {
    QXSceneLabel& label = Add(i % 2 == 0 ? "ABBA" : "B");
    label.m_bHalo = i % 3 == 0;
  }
  EXPECT_THAT(Show(), IsEmpty());
  EXPECT_EQ(m_Labels.GetCount(), 100u);
  EXPECT_EQ(m_Labels.GetGlyphCount(), 4u);
  std::vector<QXAtlasPage> vecPages = m_Labels.GetPages();
  ASSERT_EQ(vecPages.size(), 1u);
  EXPECT_EQ(vecPages[0].m_strName, "Font_BigTexture_0");
  EXPECT_EQ(vecPages[0].m_nSize, 1024);
  EXPECT_EQ(vecPages[0].m_strFormat, "PF_BYTE_LA (5)");
  std::vector<std::string> vecNames;
  for (QXAtlasTile const& tile : vecPages[0].m_vecTiles) {
    EXPECT_EQ(tile.m_nSize, 128);
    vecNames.push_back(tile.m_strName);
  }
  EXPECT_THAT(vecNames, testing::UnorderedElementsAre("A U+0041, default font 75", "A U+0041, default font 75 halo",
                            "B U+0042, default font 75", "B U+0042, default font 75 halo"));
  // Two kinds of drawables: halos and letters.
  EXPECT_EQ(GetDrawables().size(), 2u);
}

TEST_F(QXLabelSetTest, PixelsOfTheGlyphsAreOnTheDevice) {
  Add("A");
  EXPECT_THAT(Show(), IsEmpty());
  std::vector<QXAtlasPage> vecPages = m_Labels.GetPages();
  ASSERT_EQ(vecPages.size(), 1u);
  ASSERT_EQ(ReadAtlasPage(m_Graphics3D, vecPages[0]), "");
  auto const alpha = [&](std::size_t x, std::size_t y) { return vecPages[0].m_vecPixels[4 * (1024 * y + x) + 3]; };
  // A box of 10 by 70 in a margin of one pixel.
  EXPECT_EQ(alpha(0, 0), 0);
  EXPECT_EQ(alpha(1, 1), 255);
  EXPECT_EQ(alpha(10, 70), 255);
  EXPECT_EQ(alpha(11, 70), 0);
  EXPECT_EQ(alpha(10, 71), 0);
}

TEST_F(QXLabelSetTest, CharactersAboveThePlaneAreToldOnceAndLeftOut) {
  Add("AB");
  Add("A\xF0\x9F\x98\x80"
      "B\xF0\x9F\x98\x81");
  Add("\xF0\x9F\x98\x80");
  Add("\xF0\x9F\x98\x80"
      "A")
      .m_nSize = 12;
  EXPECT_THAT(Show(), ElementsAre("a.qxscene:20: characters above U+FFFF cannot be drawn and are left out: "
                                  "U+1F600, U+1F601; write others"));
  // One has nothing left; what is left of the others is closed up.
  EXPECT_EQ(m_Labels.GetCount(), 3u);
  unsigned int nVertices = 0;
  for (QXC::QXNullRenderOperation3D const* pDrawable : GetDrawables()) nVertices += pDrawable->GetVertexCount();
  EXPECT_EQ(nVertices, 4u * (2 + 2 + 1));
}

TEST_F(QXLabelSetTest, CharactersWithoutAGlyphAreToldOnceAndLeftOut) {
  Add("ACDEFGHA");
  Add("CB").m_bBold = true;
  EXPECT_THAT(Show(), ElementsAre("a.qxscene:10: no font has these characters, which are left out: U+0043, U+0044, "
                                  "U+0045, U+0046, U+0047 and 1 more; install a font that has them, or write others"));
  EXPECT_EQ(m_Labels.GetCount(), 2u);
  m_Labels.GiveBack(m_Graphics3D);
  m_vecLabels.clear();
  // The last one that could have a key.
  Add("\xEF\xBF\xBF");
  EXPECT_THAT(Show(), ElementsAre(HasSubstr("no font has these characters, which are left out: U+FFFF;")));
}

TEST_F(QXLabelSetTest, WithoutAnyFontTheSceneIsShownWithoutLabels) {
  std::filesystem::remove(m_Folder.m_Path / "default.fon");
  Add("A");
  EXPECT_THAT(Show(), ElementsAre(HasSubstr("no font has these characters, which are left out: U+0041;")));
  EXPECT_EQ(m_Labels.GetCount(), 0u);
  EXPECT_THAT(m_Labels.GetPages(), IsEmpty());
}

TEST_F(QXLabelSetTest, UnknownFontIsToldOnceAndTheDefaultFontStandsIn) {
  WriteFont("known.ttf", QXC::SimpleFont(u"Known"));
  Add("A").m_strFont = "Nowhere";
  Add("B").m_strFont = "Nowhere";
  Add("B").m_strFont = "Known";
  Add("B").m_strFont = "@Known";
  EXPECT_THAT(Show(), ElementsAre("a.qxscene:10: there is no font 'Nowhere', so the default font, Default, stands in; "
                                  "install it, or name one that 'qx3d fonts' lists"));
  EXPECT_EQ(m_Labels.GetCount(), 4u);
}

TEST_F(QXLabelSetTest, GlyphsTooLargeForAPageAreTold) {
  QXSceneLabel& label = Add("A");
  label.m_nSize = 1200;
  EXPECT_THAT(Show(), ElementsAre(HasSubstr("the glyph atlas has no place for these characters, which are left out: "
                                            "U+0041; use fewer fonts and sizes, or smaller ones")));
}

TEST_F(QXLabelSetTest, LabelsBeyondTheMostLettersAreLeftOutAndToldOnce) {
  QXLabelSet labels(9);
  Add("ABA").m_bHalo = true;
  Add("ABB");
  Add("A");
  Add("B");
  QXSceneProblems problems("a.qxscene");
  labels.Show(m_Graphics3D, L"Scene3D", m_vecLabels, QXVector3d(0.0, 0.0, 0.0), m_Bounds, problems);
  EXPECT_THAT(problems.GetLines(), ElementsAre("a.qxscene:30: the labels have more than 9 letters, with each border "
                                               "counted as one more, and this label and all further ones are left out; "
                                               "shorten their texts, or make two scenes of it"));
  EXPECT_EQ(labels.GetCount(), 2u);
  EXPECT_EQ(GetDrawables().size(), 2u);
  labels.GiveBack(m_Graphics3D);
  static_assert(MaxLabelLetters == 2000000);
}

/// Bytes of memory that are in use; 0 where the sanitizers count them.
std::size_t CountBytesInUse() {
  auto const info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

TEST_F(QXLabelSetTest, PicturesOfLettersWithoutAPlaceAreNotKept) {
  // Boxes of 280 pixels by 40, 80, and so on to 6000: 250 MB of pictures.
  QXC::QXFontMaker font = QXC::SimpleFont(u"Many");
  font.m_nGlyphs = 151;
  font.m_arrCharmaps = {{3, 1, {}}};
  std::string strText;
  for (std::uint32_t c = 0x100; c < 0x100 + 150; ++c) {
    font.m_arrCharmaps[0].m_arrCharacters.push_back(c);
    strText += static_cast<char>(0xC0 | c >> 6);
    strText += static_cast<char>(0x80 | (c & 0x3F));
  }
  WriteFont("many.ttf", font);
  QXSceneLabel& label = Add(strText);
  label.m_strFont = "Many";
  label.m_nSize = 300;
  QXSceneProblems problems("a.qxscene");
  QXC::QXTextureFontManager manager;
  manager.SetTextureManager(m_Graphics3D.GetTextureManager());
  QXLabelGlyphs glyphs;
  std::size_t const nBefore = CountBytesInUse();
  glyphs.Take(manager, m_vecLabels, problems);
  EXPECT_LT(CountBytesInUse(), nBefore + (std::size_t{150} << 20)) << "most of it the textures of those that fit";
  EXPECT_EQ(glyphs.GetCount(), 25u);
  EXPECT_THAT(problems.GetLines(), ElementsAre(HasSubstr("U+0119, U+011A, U+011B, U+011C, U+011D and 120 more")));
  glyphs.GiveBack();
  manager.Clear();
}

TEST_F(QXLabelSetTest, SecondSceneIsShownLikeTheFirst) {
  Add("AB");
  EXPECT_THAT(Show(), IsEmpty());
  m_Labels.GiveBack(m_Graphics3D);
  EXPECT_EQ(m_Labels.GetCount(), 0u);
  EXPECT_EQ(GetTextureCount(), 0u);
  EXPECT_THAT(Show(), IsEmpty());
  EXPECT_EQ(m_Labels.GetCount(), 1u);
  EXPECT_EQ(m_Labels.GetGlyphCount(), 2u);
}

/// Has no texture for anybody.
class EmptyTextureManager final : public QXC::QXTextureManager {
public:
  QXC::QXTexture* GetTexture(QXC::QdcUnicodeString const&, unsigned char) override { return nullptr; }
  unsigned char ManagerOperation2(QXC::QdcUnicodeString const&) const override { return 0; }
};

TEST_F(QXLabelSetTest, RendererThatMakesNoTextureIsTold) {
  QXC::QXTextureManager* pManager = m_Graphics3D.m_pTextureManager;
  EmptyTextureManager empty;
  m_Graphics3D.m_pTextureManager = &empty;
  Add("AB");
  std::vector<std::string> const vecProblems = Show();
  EXPECT_EQ(m_Labels.GetCount(), 0u);
  EXPECT_THAT(m_Labels.GetPages(), IsEmpty());
  m_Labels.GiveBack(m_Graphics3D);
  m_Graphics3D.m_pTextureManager = nullptr;
  EXPECT_THAT(Show(), ElementsAre(HasSubstr("a.qxscene:10: the renderer keeps no textures, so that no labels are")));
  m_Graphics3D.m_pTextureManager = pManager;
  EXPECT_THAT(vecProblems, ElementsAre(HasSubstr("smaller ones, or another renderer")));
}

TEST_F(QXLabelSetTest, RendererThatMakesNoDrawableIsToldOnce) {
  QXC::QXRenderOperationManager* pManager = m_Graphics3D.m_pRenderOperationManager;
  QXC::QXBareRenderOperationManager bare;
  m_Graphics3D.m_pRenderOperationManager = &bare;
  Add("AB").m_bHalo = true;
  Add("A").m_bDepth = false;
  EXPECT_THAT(Show(), ElementsAre(HasSubstr("a.qxscene:10: the renderer cannot draw labels")));
  EXPECT_EQ(m_Labels.GetCount(), 0u);
  EXPECT_EQ(m_Labels.GetGlyphCount(), 0u);
  EXPECT_THAT(m_Labels.GetPages(), IsEmpty());
  m_Graphics3D.m_pRenderOperationManager = pManager;
}

}  // namespace
}  // namespace QXApp
