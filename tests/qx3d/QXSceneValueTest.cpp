#include <apps/qx3d/QXSceneValue.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

double Number(char const* szText, double dMin = -1000.0, double dMax = 1000.0) {
  double dNumber = -7777.0;
  std::string const strProblem = ReadNumber(szText, dMin, dMax, dNumber);
  EXPECT_EQ(strProblem.empty(), dNumber != -7777.0) << szText;
  return dNumber;
}

constexpr double Refused = -7777.0;

TEST(QXSceneValue, NumbersAreDecimalAndFinite) {
  EXPECT_EQ(Number("12.5"), 12.5);
  EXPECT_EQ(Number("-.5"), -0.5);
  EXPECT_EQ(Number("1e2"), 100.0);
  EXPECT_EQ(Number("0"), 0.0);
  for (char const* szText : {"nan", "NAN", "inf", "-inf", "infinity", "1e999", "-1e999", "1e-999", "0x10", "1.5.2",
           "12a", "a12", "", "-", ".", "1,5", "1 2", "1e", "--1", "\xC2\xB2", "one"})
    EXPECT_EQ(Number(szText), Refused) << szText;
}

TEST(QXSceneValue, RangeEndsBelongToIt) {
  EXPECT_EQ(Number("-360", -360.0, 360.0), -360.0);
  EXPECT_EQ(Number("360", -360.0, 360.0), 360.0);
  EXPECT_EQ(Number("360.001", -360.0, 360.0), Refused);
  double dNumber = 1.0;
  EXPECT_EQ(ReadNumber("9", 1.0, 2.5, dNumber), "'9' is no number from 1 to 2.5; write it as 12.5");
  EXPECT_EQ(dNumber, 1.0);
}

TEST(QXSceneValue, WholeNumbersHaveNoFraction) {
  int nNumber = -1;
  EXPECT_EQ(ReadWholeNumber("255", 0, 255, nNumber), "");
  EXPECT_EQ(nNumber, 255);
  EXPECT_EQ(ReadWholeNumber("0", 0, 255, nNumber), "");
  EXPECT_EQ(nNumber, 0);
  for (char const* szText : {"256", "-1", "2.5", "1e9", "nan", ""}) {
    EXPECT_NE(ReadWholeNumber(szText, 0, 255, nNumber), "") << szText;
    EXPECT_EQ(nNumber, 0) << szText;
  }
}

TEST(QXSceneValue, LengthsAreAboveZero) {
  double dLength = 3.0;
  EXPECT_EQ(ReadLength("1e15", dLength), "");
  EXPECT_EQ(dLength, 1e15);
  for (char const* szText : {"0", "-0", "-1", "1.1e15", "nan", "inf", "0x10", "1, 2", ""}) {
    EXPECT_NE(ReadLength(szText, dLength).find("; "), std::string::npos) << szText;
    EXPECT_EQ(dLength, 1e15) << szText;
  }
}

TEST(QXSceneValue, OneLengthIsForBothSides) {
  double dWidth = 0.0;
  double dHeight = 0.0;
  EXPECT_EQ(ReadLengths("32", dWidth, dHeight), "");
  EXPECT_EQ(dWidth, 32.0);
  EXPECT_EQ(dHeight, 32.0);
  for (char const* szText : {"16,24.5", "16 24.5", "16 ,  24.5", "16\t24.5"}) {
    dWidth = 0.0;
    EXPECT_EQ(ReadLengths(szText, dWidth, dHeight), "") << szText;
    EXPECT_EQ(dWidth, 16.0) << szText;
    EXPECT_EQ(dHeight, 24.5) << szText;
  }
  for (char const* szText : {"0", "16,0", "-1,5", "1,2,3", "16x24", "1e16,1", "16,", ",16", "nan, 3"})
    EXPECT_NE(ReadLengths(szText, dWidth, dHeight), "") << szText;
  EXPECT_EQ(dWidth, 16.0);
  EXPECT_EQ(dHeight, 24.5);
}

TEST(QXSceneValue, PositionsTakeCommasOrBlanks) {
  for (char const* szText : {"604099.125,-2,3e2", "604099.125 -2 3e2", "604099.125 ,  -2,\t3e2"}) {
    QXC::QXVector3d vec;
    EXPECT_EQ(ReadPosition(szText, vec), "") << szText;
    EXPECT_EQ(vec, QXC::QXVector3d(604099.125, -2.0, 300.0)) << szText;
  }
  QXC::QXVector3d vec(1.0, 2.0, 3.0);
  for (char const* szText : {"1,2", "1,2,3,4", "1,,2,3", "1,2,", ",1,2,3", "1,2,nan", "1,2,inf", "1,2,1e999",
           "0x10,0,0", "1;2;3", "1e15,0,1.0001e15", ""}) {
    EXPECT_NE(ReadPosition(szText, vec).find("; "), std::string::npos) << szText;
    EXPECT_EQ(vec, QXC::QXVector3d(1.0, 2.0, 3.0)) << szText;
  }
  EXPECT_EQ(ReadPosition("1e15,-1e15,0", vec), "");
}

TEST(QXSceneValue, OffsetsAreTwoNumbers) {
  for (char const* szText : {"4,-2.5", "4 -2.5", "4 , -2.5"}) {
    double dOffset[2] = {0.0, 0.0};
    EXPECT_EQ(ReadOffset(szText, dOffset), "") << szText;
    EXPECT_EQ(dOffset[0], 4.0) << szText;
    EXPECT_EQ(dOffset[1], -2.5) << szText;
  }
  double dOffset[2] = {1.0, 2.0};
  for (char const* szText : {"1", "1,2,3", "1,,2", "1,nan", "inf,1", "1.0001e15,0", ""}) {
    EXPECT_NE(ReadOffset(szText, dOffset).find("; "), std::string::npos) << szText;
    EXPECT_EQ(dOffset[0], 1.0) << szText;
    EXPECT_EQ(dOffset[1], 2.0) << szText;
  }
  EXPECT_EQ(ReadOffset("-1e15,1e15", dOffset), "");
}

TEST(QXSceneValue, ColoursAreHexadecimalOrThreeBytes) {
  unsigned char nColor[3] = {1, 2, 3};
  EXPECT_EQ(ReadColor("#C7de01", nColor), "");
  EXPECT_EQ(nColor[0], 0xC7);
  EXPECT_EQ(nColor[1], 0xDE);
  EXPECT_EQ(nColor[2], 0x01);
  EXPECT_EQ(ReadColor("255, 0,17", nColor), "");
  EXPECT_EQ(nColor[0], 255);
  EXPECT_EQ(nColor[1], 0);
  EXPECT_EQ(nColor[2], 17);
  for (char const* szText : {"#C7DEF", "#C7DEF22", "C7DEF2", "#C7DEG2", "#-7DEF2", "# 7DEF2", "256,0,0", "-1,0,0",
           "1.5,0,0", "1,2", "1,2,3,4", "red", "", "#", "nan,0,0"})
    EXPECT_NE(ReadColor(szText, nColor).find("; write"), std::string::npos) << szText;
  EXPECT_EQ(nColor[2], 17);
}

TEST(QXSceneValue, WordsAreKnownOnes) {
  bool bYes = false;
  EXPECT_EQ(ReadYesNo("yes", bYes), "");
  EXPECT_TRUE(bYes);
  for (char const* szText : {"Yes", "true", "1", ""}) EXPECT_NE(ReadYesNo(szText, bYes), "") << szText;
  EXPECT_TRUE(bYes);
  EXPECT_EQ(ReadYesNo("no", bYes), "");
  EXPECT_FALSE(bYes);
  std::size_t nWord = 9;
  EXPECT_EQ(ReadWord("world", {"pixels", "world"}, nWord), "");
  EXPECT_EQ(nWord, 1u);
  EXPECT_EQ(ReadWord("World", {"pixels", "world"}, nWord), "'World' is not known here; write one of: pixels, world");
  EXPECT_EQ(nWord, 1u);
}

}  // namespace
}  // namespace QXApp
