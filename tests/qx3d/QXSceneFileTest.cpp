#include <apps/qx3d/QXSceneFile.h>

#include <tests/assimp/QXTestFiles.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QXApp {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Folder = QXAssimp::QXTestFolder;

struct Parsed {
  QXSceneFile m_Scene;
  std::vector<std::string> m_vecProblems;
};

Parsed Parse(std::string const& strText) {
  QXSceneProblems problems("dir/a.qxscene");
  Parsed parsed;
  parsed.m_Scene = ParseScene(strText, "dir/a.qxscene", problems);
  parsed.m_vecProblems = problems.GetLines();
  return parsed;
}

/// What a text is told about, without the path.
std::vector<std::string> Problems(std::string const& strText) {
  std::vector<std::string> vecProblems = Parse(strText).m_vecProblems;
  for (std::string& strProblem : vecProblems) {
    EXPECT_EQ(strProblem.find("dir/a.qxscene:"), 0u) << strProblem;
    strProblem.erase(0, std::string("dir/a.qxscene:").size());
  }
  return vecProblems;
}

/// Enough to be shown.
std::string const Model = "[model]\nfile = m.obj\n";

TEST(QXSceneFile, ModelAloneTakesTheDefaults) {
  Parsed const parsed = Parse("[model]\nfile = tram.obj\n");
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  QXSceneFile const& scene = parsed.m_Scene;
  EXPECT_EQ(scene.m_strPath, "dir/a.qxscene");
  EXPECT_FALSE(scene.m_bBackground);
  EXPECT_TRUE(scene.m_bGround);
  EXPECT_FALSE(scene.m_Camera.m_bEye);
  EXPECT_FALSE(scene.m_Camera.m_bLook);
  EXPECT_EQ(scene.m_Camera.m_dFieldOfView, 0.0);
  EXPECT_THAT(scene.m_vecIcons, IsEmpty());
  ASSERT_EQ(scene.m_vecModels.size(), 1u);
  QXSceneModel const& model = scene.m_vecModels[0];
  EXPECT_EQ(model.m_strFile, "dir/tram.obj");
  EXPECT_EQ(model.m_vecPosition, QXC::QXVector3d(0.0, 0.0, 0.0));
  EXPECT_EQ(model.m_dHeading, 0.0);
  EXPECT_EQ(model.m_dPitch, 0.0);
  EXPECT_EQ(model.m_dRoll, 0.0);
  EXPECT_EQ(model.m_dScale, 1.0);
  EXPECT_EQ(model.m_eUp, UpAxis::Auto);
  EXPECT_EQ(model.m_nLine, 2);
}

TEST(QXSceneFile, EveryKeyArrives) {
  Parsed const parsed = Parse("# a comment\n"
                              "; another\n"
                              "[scene]\n"
                              "background = #102030\n"
                              "ground = no\n"
                              "\n"
                              "[camera]\n"
                              "eye = 1, 2, 3\n"
                              "look = 4 5 6\n"
                              "field-of-view = 45 ; degrees\n"
                              "[model]\n"
                              "file = /models/a b.gltf\n"
                              "position = 604099.125, 5792153.25, -71.5\n"
                              "heading = -90\n"
                              "pitch = 5\n"
                              "roll = 360\n"
                              "scale = 0.001\n"
                              "up = y\n"
                              "[icon]\n"
                              "image = ../icons/caf\xC3\xA9.png\n"
                              "position = -1, 0, 2.5\n"
                              "size = 32, 24\n"
                              "unit = world\n"
                              "color-key = #FF00FF\n"
                              "tolerance = 12\n");
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  QXSceneFile const& scene = parsed.m_Scene;
  EXPECT_TRUE(scene.m_bBackground);
  EXPECT_THAT(scene.m_nBackground, ElementsAre(0x10, 0x20, 0x30));
  EXPECT_FALSE(scene.m_bGround);
  EXPECT_TRUE(scene.m_Camera.m_bEye);
  EXPECT_EQ(scene.m_Camera.m_vecEye, QXC::QXVector3d(1.0, 2.0, 3.0));
  EXPECT_TRUE(scene.m_Camera.m_bLook);
  EXPECT_EQ(scene.m_Camera.m_vecLook, QXC::QXVector3d(4.0, 5.0, 6.0));
  EXPECT_EQ(scene.m_Camera.m_dFieldOfView, 45.0);
  EXPECT_EQ(scene.m_Camera.m_nLine, 7);
  ASSERT_EQ(scene.m_vecModels.size(), 1u);
  QXSceneModel const& model = scene.m_vecModels[0];
  EXPECT_EQ(model.m_strFile, "/models/a b.gltf");
  EXPECT_EQ(model.m_vecPosition, QXC::QXVector3d(604099.125, 5792153.25, -71.5));
  EXPECT_EQ(model.m_dHeading, -90.0);
  EXPECT_EQ(model.m_dPitch, 5.0);
  EXPECT_EQ(model.m_dRoll, 360.0);
  EXPECT_EQ(model.m_dScale, 0.001);
  EXPECT_EQ(model.m_eUp, UpAxis::Y);
  EXPECT_EQ(model.m_nLine, 12);
  ASSERT_EQ(scene.m_vecIcons.size(), 1u);
  QXSceneIcon const& icon = scene.m_vecIcons[0];
  EXPECT_EQ(icon.m_strImage, "dir/../icons/caf\xC3\xA9.png");
  EXPECT_EQ(icon.m_vecPosition, QXC::QXVector3d(-1.0, 0.0, 2.5));
  EXPECT_EQ(icon.m_dWidth, 32.0);
  EXPECT_EQ(icon.m_dHeight, 24.0);
  EXPECT_EQ(icon.m_eUnit, QXIconUnit::World);
  EXPECT_TRUE(icon.m_bColorKey);
  EXPECT_THAT(icon.m_nColorKey, ElementsAre(255, 0, 255));
  EXPECT_EQ(icon.m_nTolerance, 12);
  EXPECT_EQ(icon.m_nLine, 20);
}

TEST(QXSceneFile, IconAloneTakesTheDefaults) {
  Parsed const parsed = Parse("[icon]\nposition=1,2,3\nimage=i.png\n");
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  ASSERT_EQ(parsed.m_Scene.m_vecIcons.size(), 1u);
  QXSceneIcon const& icon = parsed.m_Scene.m_vecIcons[0];
  EXPECT_EQ(icon.m_dWidth, 0.0);
  EXPECT_EQ(icon.m_dHeight, 0.0);
  EXPECT_EQ(icon.m_eUnit, QXIconUnit::Pixels);
  EXPECT_FALSE(icon.m_bColorKey);
  EXPECT_EQ(icon.m_nTolerance, 0);
}

TEST(QXSceneFile, PlacedThingsKeepTheirOrder) {
  Parsed const parsed =
      Parse("[model]\nfile=c\n[icon]\nimage=2\nposition=0,0,0\n[model]\nfile=a\n[model]\nfile=b\n[icon]\nimage=1\n"
            "position=0,0,0\n");
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  ASSERT_EQ(parsed.m_Scene.m_vecModels.size(), 3u);
  EXPECT_EQ(parsed.m_Scene.m_vecModels[0].m_strFile, "dir/c");
  EXPECT_EQ(parsed.m_Scene.m_vecModels[1].m_strFile, "dir/a");
  EXPECT_EQ(parsed.m_Scene.m_vecModels[2].m_strFile, "dir/b");
  ASSERT_EQ(parsed.m_Scene.m_vecIcons.size(), 2u);
  EXPECT_EQ(parsed.m_Scene.m_vecIcons[0].m_strImage, "dir/2");
}

TEST(QXSceneFile, LayoutOfLinesDoesNotMatter) {
  EXPECT_THAT(Problems("\xEF\xBB\xBF[model]\r\n  file = m.obj\r\n\t; indented comment\r\n"), IsEmpty());
  EXPECT_THAT(Problems("  [ model ]  ; behind\nfile=m.obj"), IsEmpty());
  EXPECT_THAT(Problems("[model] # behind\nfile = m.obj"), IsEmpty());
  // An indented line is one of its own and no continuation.
  EXPECT_EQ(Parse("[model]\nfile = m.obj\n   heading = 3\n").m_Scene.m_vecModels[0].m_dHeading, 3.0);
}

TEST(QXSceneFile, NamesHoldWhatIsNoComment) {
  EXPECT_EQ(Parse("[model]\nfile = a#1;2=b.obj\n").m_Scene.m_vecModels[0].m_strFile, "dir/a#1;2=b.obj");
  EXPECT_EQ(Parse("[model]\nfile = a.obj ; b\n").m_Scene.m_vecModels[0].m_strFile, "dir/a.obj");
}

TEST(QXSceneFile, UnknownSectionsAndKeysAreToldWithTheKnownOnes) {
  EXPECT_THAT(Problems("[modell]\nfile = m.obj\nwhatever\n" + Model),
      ElementsAre("1: there is no section [modell]; known are [scene], [camera], [model], [instances], [icon], "
                  "[symbol], [label], [data], [static], [light], [fog], [sky], [ocean]",
          HasSubstr("3: expected [section]")));
  EXPECT_THAT(Problems("[model]\nfile = m.obj\nFile = x\n"),
      ElementsAre("3: [model] has no key 'File'; known are file, position, heading, pitch, roll, scale, up"));
  EXPECT_THAT(Problems("file = m.obj\n" + Model), ElementsAre(HasSubstr("1: 'file' stands before the first section")));
}

TEST(QXSceneFile, EverySectionKnowsItsKeys) {
  EXPECT_THAT(Problems("[scene]\nx = 1\n[camera]\nx = 1\n" + Model + "[icon]\nimage=a\nposition=1,1,1\nx = 1\n"),
      ElementsAre("2: [scene] has no key 'x'; known are background, ground, sun, ambient",
          "4: [camera] has no key 'x'; known are eye, look, field-of-view",
          "10: [icon] has no key 'x'; known are image, symbol, position, size, unit, color-key, tolerance"));
}

TEST(QXSceneFile, MissingKeysAreToldAtTheSection) {
  EXPECT_THAT(Problems("\n[model]\nheading = 1\n[icon]\n"),
      ElementsAre("2: [model] lacks 'file'; add it", "4: [icon] lacks 'image' or 'symbol'; add one of them",
          "4: [icon] lacks 'position'; add it"));
}

TEST(QXSceneFile, RefusedKeyIsNotMissingAsWell) {
  EXPECT_THAT(Problems("[icon]\nimage = a\nposition = here\n"), ElementsAre(HasSubstr("3: 'here' is no position")));
  EXPECT_THAT(Problems("[model]\nfile =\n"), ElementsAre(HasSubstr("2: 'file' has no value")));
  EXPECT_THAT(Problems("[model]\nfile m.obj\n"), ElementsAre(HasSubstr("2: expected [section], key = value")));
  EXPECT_THAT(Problems("[model]\nfile = \xFF\n"), ElementsAre(HasSubstr("2: the line is no UTF-8")));
}

TEST(QXSceneFile, LineThatIsRefusedExcusesItsOwnSectionAlone) {
  EXPECT_THAT(Problems("x\n[model]\n[icon]\nimage =\n[model]\n"),
      ElementsAre(HasSubstr("1: expected [section]"), HasSubstr("2: [model] lacks 'file'"),
          HasSubstr("4: 'image' has no value"), HasSubstr("5: [model] lacks 'file'")));
}

TEST(QXSceneFile, RepeatedKeysAreToldWithTheFirst) {
  Parsed const parsed = Parse("[model]\nfile = m.obj\nheading = 1\nfile = n.obj\nheading = 2\n");
  EXPECT_THAT(
      parsed.m_vecProblems, ElementsAre("dir/a.qxscene:4: 'file' stands in line 2 already; leave one of the two out",
                                "dir/a.qxscene:5: 'heading' stands in line 3 already; leave one of the two out"));
  EXPECT_EQ(parsed.m_Scene.m_vecModels[0].m_dHeading, 1.0);
}

TEST(QXSceneFile, SceneAndCameraStandOnce) {
  EXPECT_THAT(Problems("[scene]\n[camera]\n" + Model + "[scene]\nground = no\n[camera]\nbad = 1\n"),
      ElementsAre("5: there is a section [scene] in line 1 already; make one of the two",
          "7: there is a section [camera] in line 2 already; make one of the two"));
}

TEST(QXSceneFile, ValuesAreToldAtTheirLines) {
  EXPECT_THAT(
      Problems("[scene]\nbackground = blue\nground = maybe\n[camera]\neye = 1,2\nlook = nan,0,0\n"
               "field-of-view = 0\n[model]\nfile = a\nposition = 1e16,0,0\nheading = 361\npitch = inf\nroll = 0x10\n"
               "scale = 0\nup = x\n[icon]\nimage = b\nposition = 0,0,1e999\nsize = -1\nunit = metres\n"
               "color-key = #12\ntolerance = 256\n"),
      ElementsAre(HasSubstr("2: 'blue'"), HasSubstr("3: 'maybe'"), HasSubstr("5: '1,2'"), HasSubstr("6: 'nan,0,0'"),
          HasSubstr("7: '0'"), HasSubstr("10: '1e16,0,0'"), HasSubstr("11: '361'"), HasSubstr("12: 'inf'"),
          HasSubstr("13: '0x10'"), HasSubstr("14: '0'"), HasSubstr("15: 'x'"), HasSubstr("18: '0,0,1e999'"),
          HasSubstr("19: '-1'"), HasSubstr("20: 'metres'"), HasSubstr("21: '#12'"), HasSubstr("22: '256'")));
}

TEST(QXSceneFile, FieldOfViewHasItsEnds) {
  for (char const* szGood : {"1", "150"})
    EXPECT_THAT(Problems(Model + "[camera]\nfield-of-view = " + szGood), IsEmpty());
  for (char const* szBad : {"0.9", "150.1", "-40"})
    EXPECT_EQ(Problems(Model + "[camera]\nfield-of-view = " + szBad).size(), 1u) << szBad;
}

TEST(QXSceneFile, KeysThatContradictEachOtherAreTold) {
  EXPECT_THAT(Problems("[camera]\neye = 1,2,3\nlook = 1,2,3\n" + Model),
      ElementsAre("1: eye and look are the same point; move one of them"));
  EXPECT_THAT(Problems("[camera]\neye = 0,0,0\n" + Model), IsEmpty());
  EXPECT_THAT(
      Problems("[icon]\nimage = a\nposition = 0,0,0\nunit = world\n"), ElementsAre(HasSubstr("1: unit = world asks")));
  EXPECT_THAT(Problems("[icon]\nimage = a\nposition = 0,0,0\ntolerance = 1\n"),
      ElementsAre(HasSubstr("1: tolerance is about")));
}

TEST(QXSceneFile, SceneInAScene) {
  EXPECT_THAT(Problems("[model]\nfile = a.qxscene\n"),
      ElementsAre(HasSubstr("2: 'a.qxscene' is a scene, and a scene holds no scenes; ")));
  EXPECT_THAT(Problems("[model]\nfile = x/B.QxScene\n"), ElementsAre(HasSubstr("holds no scenes")));
  EXPECT_TRUE(IsSceneName("a/b.QXSCENE"));
  EXPECT_FALSE(IsSceneName("a.qxscene/b"));
  EXPECT_FALSE(IsSceneName(".qxscene"));
  EXPECT_FALSE(IsSceneName(""));
}

TEST(QXSceneFile, NothingToShowIsTold) {
  for (char const* szText : {"", "\n\n", "# just a comment\n", "[scene]\nground = no\n", "\xEF\xBB\xBF"})
    EXPECT_THAT(Problems(szText), ElementsAre(HasSubstr(" there is nothing to show; add a [model]"))) << szText;
}

TEST(QXSceneFile, FaultyLinesAreToldAndTheOthersRead) {
  std::string const strText =
      "[model]\nfile = m.obj\nheading = \xFF\n" + std::string("he\0ding = 3\n", 12) + "pitch = 7\n";
  Parsed const parsed = Parse(strText);
  EXPECT_THAT(parsed.m_vecProblems,
      ElementsAre(HasSubstr(":3: the line is no UTF-8"), HasSubstr(":4: the line holds a zero byte")));
  EXPECT_EQ(parsed.m_Scene.m_vecModels[0].m_dPitch, 7.0);
  EXPECT_THAT(Problems(Model + "[\n"), ElementsAre(HasSubstr("3: expected [name]")));
  EXPECT_THAT(Problems(Model + "[]\n"), ElementsAre(HasSubstr("3: expected [name]")));
  EXPECT_THAT(Problems(Model + "[model] file = x\n"), ElementsAre(HasSubstr("3: expected [name]")));
  EXPECT_THAT(Problems(Model + "[" + std::string(50, 'x') + "]\n"), ElementsAre(HasSubstr("3: expected [name]")));
  EXPECT_THAT(Problems(Model + "[" + std::string(49, 'x') + "]\n"), ElementsAre(HasSubstr("3: there is no section")));
  EXPECT_THAT(Problems(Model + "= 3\n"), ElementsAre(HasSubstr("3: there is no key before")));
  EXPECT_THAT(Problems(Model + "just text"), ElementsAre(HasSubstr("3: expected [section], key = value")));
  // Of a section whose name is unknown its keys are not told; they are none of the section before.
  EXPECT_THAT(Problems(Model + "[model\nfile = n.obj\n"), ElementsAre(HasSubstr("3: expected [name]")));
}

TEST(QXSceneFile, LongLinesAreToldAndNotCut) {
  std::string const strName(MaxSceneLine - std::string("file = ").size(), 'n');
  Parsed const fits = Parse("[model]\nfile = " + strName + "\n");
  EXPECT_THAT(fits.m_vecProblems, IsEmpty());
  EXPECT_EQ(fits.m_Scene.m_vecModels[0].m_strFile, "dir/" + strName);
  EXPECT_THAT(Problems("[model]\nfile = " + strName + "n\nheading = 400\n"),
      ElementsAre(HasSubstr("2: the line is longer than 190 bytes"), HasSubstr("3: '400'")));
  EXPECT_THAT(Problems(Model + std::string(10u << 20, 'x')), ElementsAre(HasSubstr("3: the line is longer")));
  EXPECT_THAT(Problems(Model + "# " + std::string(10u << 20, 'x') + "\nheading = 1\n"), IsEmpty())
      << "comments are free";
}

TEST(QXSceneFile, ProblemsAreBoundedAndCounted) {
  std::string strText = Model;
  for (int i = 0; i < 100; ++i) strText += "x\n";
  std::vector<std::string> const vecProblems = Problems(strText);
  ASSERT_EQ(vecProblems.size(), QXSceneProblems::ms_nMaxKept + 1);
  EXPECT_THAT(vecProblems[0], HasSubstr("3: "));
  EXPECT_THAT(vecProblems[19], HasSubstr("22: "));
  EXPECT_EQ(vecProblems[20], " 80 more; mend these first");
}

TEST(QXSceneFile, HundredThousandIconsAreReadAndMoreAreToldOnce) {
  std::string const strIcon = "[icon]\nimage = pin.png\nposition = 604099.125, 5792153.25, 71.5\nsize = 24, 24\n";
  std::string strText;
  for (std::size_t i = 0; i < MaxScenePlacements; ++i) strText += strIcon;
  Parsed const full = Parse(strText);
  EXPECT_THAT(full.m_vecProblems, IsEmpty());
  EXPECT_EQ(full.m_Scene.m_vecIcons.size(), MaxScenePlacements);
  Parsed const more = Parse(strText + strIcon + strIcon + strIcon);
  EXPECT_THAT(more.m_vecProblems, ElementsAre(HasSubstr(":400001: a scene has at most 100000 of these")));
}

TEST(QXSceneFile, CutAnywhereItIsReadOrTold) {
  std::string const strText =
      "\xEF\xBB\xBF# caf\xC3\xA9\r\n[scene]\nbackground = 1,2,3\nground=yes\n[camera]\neye=1,2,3 ; c\n[model]\nfile = "
      "m\n"
      "up = z\n[icon]\nimage = \xE5\x9C\xB0.png\nposition = 1,2,3\nsize = 3\ncolor-key = #010203\n";
  EXPECT_THAT(Problems(strText), IsEmpty());
  for (std::size_t nSize = 0; nSize < strText.size(); ++nSize) {
    Parsed const parsed = Parse(strText.substr(0, nSize));
    EXPECT_LE(parsed.m_vecProblems.size(), 3u) << nSize;
    bool const bShows = !parsed.m_Scene.m_vecModels.empty() || !parsed.m_Scene.m_vecIcons.empty();
    EXPECT_TRUE(bShows || parsed.m_vecProblems.size() == 1 || nSize < 20) << nSize;
  }
}

std::vector<std::string> ReadProblems(std::string const& strPath) {
  std::vector<std::string> vecProblems;
  ReadSceneFile(strPath, vecProblems);
  return vecProblems;
}

TEST(QXSceneFile, FilesThatAreNoScenesAreTold) {
  Folder const folder;
  EXPECT_THAT(ReadProblems(folder.Path("gone.qxscene")),
      ElementsAre(folder.Path("gone.qxscene") + ": no such file; correct the name"));
  EXPECT_THAT(ReadProblems(folder.Path()), ElementsAre(HasSubstr(": this is a directory; ")));
  EXPECT_THAT(ReadProblems("/dev/null"), ElementsAre(HasSubstr(": this is no regular file; ")));
  EXPECT_THAT(ReadProblems(folder.Path("\xFF.qxscene")), ElementsAre(HasSubstr(": the name is no UTF-8 text; ")));
  EXPECT_THAT(ReadProblems(folder.Write("empty.qxscene", "")), ElementsAre(HasSubstr("nothing to show")));
  EXPECT_THAT(
      ReadProblems(folder.Write("model.obj", "v 0 0 0\n")), ElementsAre(HasSubstr(": this is no scene by its name; ")));
  std::string const strHuge = folder.Write("huge.qxscene", "");
  std::filesystem::resize_file(strHuge, (std::uintmax_t{128} << 20) + 1);
  EXPECT_THAT(ReadProblems(strHuge), ElementsAre(HasSubstr("larger than 128 MiB; ")));
}

TEST(QXSceneFile, NamedFilesAreLookedForFromTheScenesFolder) {
  Folder const folder;
  folder.Write("there.obj", "v");
  std::filesystem::create_directory(folder.Path("sub"));
  std::string const strScene =
      folder.Write("a.qxscene", "[model]\nfile = there.obj\n[model]\nfile = sub/../there.obj\n[model]\nfile = "
                                "gone.obj\n[model]\nfile = gone.obj\n"
                                "[icon]\nimage = sub\nposition = 0,0,0\n[icon]\nimage = /dev/null\nposition = 0,0,0\n");
  EXPECT_THAT(ReadProblems(strScene),
      ElementsAre(strScene + ":6: " + folder.Path("gone.obj") +
                      ": no such file; correct the name, which counts from the scene's folder",
          strScene + ":10: " + folder.Path("sub") + ": this is a directory; name a file inside it",
          strScene + ":13: /dev/null: this is no regular file; name another one"));
}

TEST(QXSceneFile, MissingFilesAreToldBesideOtherProblems) {
  Folder const folder;
  std::string const strScene = folder.Write("a.qxscene", "[model]\nfile = gone.obj\nheading = x\n[bad]\n");
  EXPECT_THAT(ReadProblems(strScene), ElementsAre(HasSubstr(":2: "), HasSubstr(":3: "), HasSubstr(":4: ")));
}

TEST(QXSceneFile, SymbolsAreReadWhereverTheyStand) {
  Parsed const parsed = Parse("[icon]\nsymbol = mill\nposition = 0,0,0\n[symbol]\nname = mill\nfile = m.obj\n"
                              "pixels = 96\nheading = 30\nelevation = 45\nup = y\n");
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  ASSERT_EQ(parsed.m_Scene.m_vecSymbols.size(), 1u);
  QXSceneSymbol const& symbol = parsed.m_Scene.m_vecSymbols[0];
  EXPECT_EQ(symbol.m_strName, "mill");
  EXPECT_EQ(std::filesystem::path(symbol.m_strFile).filename(), "m.obj");
  EXPECT_EQ(symbol.m_nPixels, 96);
  EXPECT_EQ(symbol.m_dHeading, 30.0);
  EXPECT_EQ(symbol.m_dElevation, 45.0);
  EXPECT_EQ(symbol.m_eUp, UpAxis::Y);
  EXPECT_EQ(symbol.m_nLine, 6);
  EXPECT_EQ(parsed.m_Scene.m_vecIcons[0].m_strSymbol, "mill");
  EXPECT_EQ(parsed.m_Scene.m_vecIcons[0].m_strImage, "");
}

TEST(QXSceneFile, SymbolsHaveDefaults) {
  Parsed const parsed = Parse("[icon]\nsymbol = a\nposition = 0,0,0\n[symbol]\nname = a\nfile = m.obj\n");
  ASSERT_EQ(parsed.m_Scene.m_vecSymbols.size(), 1u);
  EXPECT_EQ(parsed.m_Scene.m_vecSymbols[0].m_nPixels, 64);
  EXPECT_EQ(parsed.m_Scene.m_vecSymbols[0].m_dElevation, 30.0);
}

TEST(QXSceneFile, SymbolsAndIconsMustMatch) {
  std::string const strIcon = "[icon]\nsymbol = a\nposition = 0,0,0\n";
  std::string const strSymbol = "[symbol]\nname = a\nfile = m.obj\n";
  EXPECT_THAT(Problems(strIcon + strIcon), ElementsAre(HasSubstr("2: there is no symbol 'a'; add a [symbol]")));
  EXPECT_THAT(Problems(strIcon + strSymbol + strSymbol),
      ElementsAre(HasSubstr("9: there is a symbol 'a' in line 6 already; give one of the two another name")));
  EXPECT_THAT(Problems(strSymbol + strIcon + "image = i.png\n"), ElementsAre(HasSubstr("an image or a symbol; leave")));
  EXPECT_THAT(Problems(strSymbol + strIcon + "color-key = #FF00FF\n"), ElementsAre(HasSubstr("color-key is about an")));
  EXPECT_THAT(Problems(strSymbol + strIcon + "[symbol]\nname = b\nfile = b.qxscene\npixels = 7\nelevation = 91\n"),
      ElementsAre(HasSubstr("9: 'b.qxscene' is a scene"), HasSubstr("10: "), HasSubstr("11: ")));
  EXPECT_THAT(
      Problems("[symbol]\nname = a\nfile = b.gml\n" + strIcon), ElementsAre(HasSubstr("3: 'b.gml' is map data")));
  EXPECT_THAT(Problems("[symbol]\npixels = 16\n" + strIcon),
      ElementsAre(HasSubstr("[symbol] lacks 'name'; add it"), HasSubstr("[symbol] lacks 'file'; add it"),
          HasSubstr("there is no symbol 'a'")));
}

std::string const Label = "[label]\ntext = a\nposition = 0,0,0\n";

TEST(QXSceneFile, LabelAloneTakesTheDefaults) {
  Parsed const parsed = Parse("[label]\ntext = Braunschweig\nposition = 1, 2, 3\n");
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  ASSERT_EQ(parsed.m_Scene.m_vecLabels.size(), 1u);
  QXSceneLabel const& label = parsed.m_Scene.m_vecLabels[0];
  EXPECT_EQ(label.m_strText, "Braunschweig");
  EXPECT_EQ(label.m_strFont, "");
  EXPECT_EQ(label.GetSize(), 12);
  EXPECT_FALSE(label.m_bBold);
  EXPECT_FALSE(label.m_bItalic);
  EXPECT_THAT(label.m_nColor, ElementsAre(0, 0, 0));
  EXPECT_FALSE(label.m_bHalo);
  EXPECT_EQ(label.m_vecPosition, QXC::QXVector3d(1.0, 2.0, 3.0));
  EXPECT_EQ(label.m_dRotation, 0.0);
  EXPECT_THAT(label.m_dOffset, ElementsAre(0.0, 0.0));
  EXPECT_EQ(label.m_nAlignX, 0);
  EXPECT_EQ(label.m_nAlignY, -1);
  EXPECT_TRUE(label.m_bDepth);
  EXPECT_EQ(label.m_eFacing, QXLabelFacing::Camera);
  EXPECT_EQ(label.m_nLine, 2);
}

TEST(QXSceneFile, EveryKeyOfALabelArrives) {
  Parsed const parsed =
      Parse("[label]\ntext = \xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0\nposition = 604099.125, -2, 75\n"
            "font = Noto Sans CJK SC\nsize = 300\nbold = yes\nitalic = yes\ncolor = #102030\nhalo = 255, 254, 253\n"
            "rotation = -45.5\noffset = 4, -2.5\nalign = top-right\ndepth = off\nfacing = flat\nheight = 6.5\n");
  EXPECT_THAT(parsed.m_vecProblems, IsEmpty());
  ASSERT_EQ(parsed.m_Scene.m_vecLabels.size(), 1u);
  QXSceneLabel const& label = parsed.m_Scene.m_vecLabels[0];
  EXPECT_EQ(label.m_strText, "\xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0");
  EXPECT_EQ(label.m_strFont, "Noto Sans CJK SC");
  EXPECT_EQ(label.GetSize(), 300);
  EXPECT_TRUE(label.m_bBold);
  EXPECT_TRUE(label.m_bItalic);
  EXPECT_THAT(label.m_nColor, ElementsAre(0x10, 0x20, 0x30));
  EXPECT_TRUE(label.m_bHalo);
  EXPECT_THAT(label.m_nHalo, ElementsAre(255, 254, 253));
  EXPECT_EQ(label.m_vecPosition, QXC::QXVector3d(604099.125, -2.0, 75.0));
  EXPECT_EQ(label.m_dRotation, -45.5);
  EXPECT_THAT(label.m_dOffset, ElementsAre(4.0, -2.5));
  EXPECT_EQ(label.m_nAlignX, 1);
  EXPECT_EQ(label.m_nAlignY, 1);
  EXPECT_FALSE(label.m_bDepth);
  EXPECT_EQ(label.m_eFacing, QXLabelFacing::Flat);
  EXPECT_EQ(label.m_dHeight, 6.5);
}

TEST(QXSceneFile, LabelStandsOnAnyOfNinePoints) {
  std::vector<std::string> const vecWords{
      "bottom-left", "bottom", "bottom-right", "left", "center", "right", "top-left", "top", "top-right"};
  for (int i = 0; i < 9; ++i) {
    std::string const strAlign = "align = " + vecWords[static_cast<std::size_t>(i)] + "\n";
    QXSceneFile const scene = Parse(Label + strAlign).m_Scene;
    EXPECT_EQ(scene.m_vecLabels.at(0).m_nAlignX, i % 3 - 1) << strAlign;
    EXPECT_EQ(scene.m_vecLabels.at(0).m_nAlignY, i / 3 - 1) << strAlign;
  }
}

TEST(QXSceneFile, FlatLabelsAreDrawnMoreFinelyUnlessTheySay) {
  std::string const strFlat = Label + "facing = flat\nheight = 2\n";
  EXPECT_EQ(Parse(strFlat).m_Scene.m_vecLabels.at(0).GetSize(), 36);
  EXPECT_EQ(Parse(strFlat + "size = 8\n").m_Scene.m_vecLabels.at(0).GetSize(), 8);
}

TEST(QXSceneFile, HeightBelongsToFlatLabels) {
  EXPECT_THAT(Problems(Label + "facing = flat\n"), ElementsAre(HasSubstr("1: facing = flat asks for a height")));
  EXPECT_THAT(Problems(Label + "height = 3\n"), ElementsAre(HasSubstr("1: height is about a label that lies in")));
  EXPECT_THAT(Problems(Label + "facing = camera\nheight = 3\n"), ElementsAre(HasSubstr("add facing = flat")));
}

TEST(QXSceneFile, BadValuesOfLabelsAreTold) {
  EXPECT_THAT(Problems("[label]\nposition = 0,0,0\n"), ElementsAre("1: [label] lacks 'text'; add it"));
  EXPECT_THAT(Problems("[label]\ntext = a\n"), ElementsAre("1: [label] lacks 'position'; add it"));
  EXPECT_THAT(Problems("[label]\ntext =\nposition = 0,0,0\n"), ElementsAre(HasSubstr("2: 'text' has no value")));
  EXPECT_THAT(Problems(Label + "size = 0\n"), ElementsAre(HasSubstr("4: '0' is no whole number from 1 to 300")));
  EXPECT_THAT(Problems(Label + "size = 301\n"), ElementsAre(HasSubstr("from 1 to 300")));
  EXPECT_THAT(Problems(Label + "size = 12.5\n"), ElementsAre(HasSubstr("from 1 to 300")));
  EXPECT_THAT(Problems(Label + "bold = 1\n"), ElementsAre(HasSubstr("neither yes nor no")));
  EXPECT_THAT(Problems(Label + "halo = white\n"), ElementsAre(HasSubstr("'white' is no colour")));
  EXPECT_THAT(Problems(Label + "offset = 3\n"), ElementsAre(HasSubstr("'3' is no offset")));
  EXPECT_THAT(Problems(Label + "align = middle\n"), ElementsAre(HasSubstr("write one of: top-left, top,")));
  EXPECT_THAT(Problems(Label + "depth = yes\n"), ElementsAre(HasSubstr("write one of: on, off")));
  EXPECT_THAT(Problems(Label + "facing = up\n"), ElementsAre(HasSubstr("write one of: camera, flat")));
  EXPECT_THAT(Problems(Label + "rotation = 361\n"), ElementsAre(HasSubstr("no number from -360 to 360")));
  EXPECT_THAT(Problems(Label + "x = 1\n"),
      ElementsAre("4: [label] has no key 'x'; known are text, position, font, size, bold, italic, color, halo, "
                  "rotation, offset, align, depth, facing, height"));
}

}  // namespace
}  // namespace QXApp
