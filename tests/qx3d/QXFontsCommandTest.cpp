// The list of fonts, and what a name means.
#include <apps/qx3d/QXFontsCommand.h>
#include <apps/qx3d/QXViewOptions.h>
#include <tests/text/QXFontsFixture.h>

#include <QxGraphics3D/text/QXTrueType.h>

#include <algorithm>

namespace QXApp {
namespace {

using QXC::Named;
using QXC::QXFontMaker;
using QXC::QXTrueType;
using QXC::SimpleFont;

struct Printed {
  int m_nExitStatus = -1;
  std::string m_strOut;
  std::string m_strError;
};

class QXFontsCommand : public QXC::QXFontsFixture {
protected:
  QXFontsCommand() { Forget(); }
  ~QXFontsCommand() override { Forget(); }

  static Printed Run(QXFontsOptions const& options) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Printed printed;
    printed.m_nExitStatus = RunFonts(options);
    printed.m_strOut = testing::internal::GetCapturedStdout();
    printed.m_strError = testing::internal::GetCapturedStderr();
    return printed;
  }
  static Printed Find(char const* szName, bool bBold = false, bool bItalic = false) {
    QXFontsOptions options;
    options.m_strFind = szName;
    options.m_bBold = bBold;
    options.m_bItalic = bItalic;
    return Run(options);
  }
  std::string Path(char const* szFile) const { return QXC::Narrow(m_Folder.GetFile(szFile)); }
  std::string Answer(char const* szName, char const* szFile, int nFace, char const* szWhy) const {
    return std::string("name   ") + szName + "\nfile   " + Path(szFile) + "\nface   " + std::to_string(nFace) +
           "\nwhy    " + szWhy + "\n";
  }

private:
  /// The next test's default font is another.
  static void Forget() {
    delete QXTrueType::ms_pSingleton;
    QXTrueType::ms_pSingleton = nullptr;
  }
};

TEST_F(QXFontsCommand, ListHasEveryFaceAndMarksTheDefaultFont) {
  WriteFont(
      "a.ttf", QXFontMaker({Named(2052, 1, u"\u6587\u6cc9"), Named(1033, 1, u"Spring"), Named(1033, 2, u"Bold")}));
  WriteFont("b.ttc", QXFontMaker::MakeCollection({SimpleFont(u"One"), SimpleFont(u"Two", u"BoldItalic")}));
  WriteFont("c.ttf", SimpleFont(u"House", u"Italic"));
  Register(L"House", L"c.ttf");
  QXC::QXStringEx::SetResString(L"IMl001", L"House");
  Printed const printed = Run({});
  EXPECT_EQ(printed.m_nExitStatus, 0) << printed.m_strError;
  EXPECT_EQ(printed.m_strOut, "family         style        face  fallback  file\n"
                              "Spring (\u6587\u6cc9)  bold            0            " +
                                  Path("a.ttf") +
                                  "\n"
                                  "House          italic          0  default   " +
                                  Path("c.ttf") +
                                  "\n"
                                  "One            regular         0            " +
                                  Path("b.ttc") +
                                  "\n"
                                  "Two            bold italic     1            " +
                                  Path("b.ttc") +
                                  "\n"
                                  "4 faces below " +
                                  QXC::Narrow(m_Folder.GetName()) + "/, default font House\n");
}

TEST_F(QXFontsCommand, ListTellsThatTheDefaultFontIsMissing) {
  WriteFont("a.ttf", SimpleFont(u"House"));
  QXC::QXStringEx::SetResString(L"IMl001", L"Other");
  Printed const printed = Run({});
  EXPECT_EQ(printed.m_nExitStatus, 0);
  EXPECT_TRUE(printed.m_strOut.ends_with(", default font Other, which is not there\n")) << printed.m_strOut;
}

TEST_F(QXFontsCommand, FolderWithoutFontsIsAFailure) {
  Printed const printed = Run({});
  EXPECT_EQ(printed.m_nExitStatus, 1);
  EXPECT_EQ(printed.m_strOut, "");
  EXPECT_NE(printed.m_strError.find("no .ttf or .ttc font"), std::string::npos);
}

TEST_F(QXFontsCommand, FolderCanBeNamed) {
  WriteFont("sub/a.ttf", SimpleFont(u"House"));
  WriteFont("b.ttf", SimpleFont(u"Garden"));
  QXFontsOptions options;
  options.m_strFolder = Path("sub");
  Printed const printed = Run(options);
  EXPECT_EQ(printed.m_nExitStatus, 0);
  EXPECT_NE(printed.m_strOut.find("House"), std::string::npos);
  EXPECT_EQ(printed.m_strOut.find("Garden"), std::string::npos);
  options.m_strFolder = Path("nowhere");
  Printed const failed = Run(options);
  EXPECT_EQ(failed.m_nExitStatus, 1);
  EXPECT_EQ(failed.m_strError, "qx3d: " + Path("nowhere") + ": no such folder; correct the name\n");
  options.m_strFolder = "\xFF";
  EXPECT_EQ(Run(options).m_nExitStatus, 1);
}

TEST_F(QXFontsCommand, NameIsAnsweredWithItsFileAndWhy) {
  WriteDefaultFont();
  WriteFont("house.ttf", SimpleFont(u"House Sans"));
  WriteFont("house-bold.ttf", SimpleFont(u"House Sans", u"Bold"));
  WriteFont("pair.ttc", QXFontMaker::MakeCollection({SimpleFont(u"One"), SimpleFont(u"Two")}));
  WriteFont("listed.fon", SimpleFont(u"Listed"));
  Register(L"MyFont", L"listed.fon");
  Register(L"Gone", L"gone.ttf");
  EXPECT_EQ(Find("House").m_strOut,
      Answer("House, regular", "house.ttf", 0, "it is the first regular face whose name begins so"));
  EXPECT_EQ(Find("House", true).m_strOut,
      Answer("House, bold", "house-bold.ttf", 0, "it is the first bold face whose name begins so"));
  EXPECT_EQ(Find("House", false, true).m_strOut,
      Answer(
          "House, italic", "house.ttf", 0, "no italic face has a name that begins so; this is the first regular one"));
  EXPECT_EQ(
      Find("Two").m_strOut, Answer("Two, regular", "pair.ttc", 1, "it is the first regular face whose name begins so"));
  EXPECT_EQ(Find("@My Font", true, true).m_strOut,
      Answer("My Font, bold italic", "listed.fon", 0,
          "the registry section Graphics3DDefaultFonts names this file, for all styles"));
  EXPECT_EQ(Find("My Font").m_strOut,
      Answer("My Font, regular", "listed.fon", 0, "the registry section Graphics3DDefaultFonts names this file"));
  EXPECT_EQ(Find("Nobody").m_strOut,
      Answer("Nobody, regular", "default.fon", 0,
          "neither the registry nor any font file knows the name: the default font, Default, stands in"));
  EXPECT_EQ(Find("Gone").m_strOut,
      Answer("Gone, regular", "default.fon", 0,
          ("the registry section Graphics3DDefaultFonts names a file that is not there or has no such face (" +
              Path("gone.ttf") + "): the default font, Default, stands in")
              .c_str()));
}

TEST_F(QXFontsCommand, NameWithoutAnyFontIsAFailure) {
  WriteFont("house.ttf", SimpleFont(u"House"));
  QXC::QXStringEx::SetResString(L"IMl001", L"Other");
  Printed const printed = Find("Nobody");
  EXPECT_EQ(printed.m_nExitStatus, 1);
  EXPECT_EQ(printed.m_strOut, "");
  EXPECT_EQ(printed.m_strError,
      "qx3d: Nobody: neither the registry nor any font file knows the name: the default font, Other, stands in, but is "
      "not there either; install it, or set the registry\n");
}

TEST_F(QXFontsCommand, AnswerIsWhatATextGets) {
  WriteDefaultFont();
  WriteFont("house.ttf", SimpleFont(u"House Sans"));
  for (char const* const szName : {"House", "Nobody"}) {
    bool const bDefault = Find(szName).m_strOut.find("default.fon") != std::string::npos;
    QXTrueType& fonts = QXTrueType::GetSingleton();
    FT_FaceRec_* const pFace = fonts.GetFace(QXC::QdcUnicodeString::FromUTF8(szName), QXTrueType::FACE_REGULAR);
    EXPECT_EQ(pFace == fonts.m_pDefaultFace, bDefault) << szName;
  }
}

TEST_F(QXFontsCommand, LineEndsInNamesAreNotPrinted) {
  WriteFont("a.ttf", SimpleFont(u"Ho\nuse\x1B"));
  Printed const printed = Run({});
  EXPECT_EQ(printed.m_strOut.find('\x1B'), std::string::npos);
  EXPECT_EQ(std::count(printed.m_strOut.begin(), printed.m_strOut.end(), '\n'), 3);
}

}  // namespace
}  // namespace QXApp
