#include <plugins/assimp/QXTextEncoding.h>

#include <tests/assimp/QXTestFiles.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <gtest/gtest.h>

#include <cstddef>

namespace QXAssimp {
namespace {

using QXC::QXFileType;
using Bytes = std::vector<unsigned char>;

constexpr int TextTypes[] = {QXFileType::EM_MODEL_OBJ, QXFileType::EM_MODEL_GLTF, QXFileType::EM_MODEL_COLLADA,
    QXFileType::EM_MODEL_PLY, QXFileType::EM_MODEL_STL, QXFileType::EM_MODEL_FBX};

/// The text with so many bytes a character.
Bytes Widen(std::string const& strText, std::size_t nWidth, bool bBigEndian) {
  Bytes vecBytes;
  for (char c : strText)
    for (std::size_t i = 0; i < nWidth; ++i)
      vecBytes.push_back(i == (bBigEndian ? nWidth - 1 : 0) ? static_cast<unsigned char>(c) : 0);
  return vecBytes;
}

Bytes Join(Bytes vecFirst, Bytes const& vecSecond) {
  vecFirst.insert(vecFirst.end(), vecSecond.begin(), vecSecond.end());
  return vecFirst;
}

TEST(QXTextEncoding, WideTextIsRefusedWithOrWithoutAMark) {
  std::string const strText = "v 0 0 0\n";
  Bytes const arrWide[] = {Widen(strText, 2, false), Widen(strText, 2, true), Widen(strText, 4, false),
      Widen(strText, 4, true), Join({0xFF, 0xFE}, Widen(strText, 2, false)),
      Join({0xFE, 0xFF}, Widen(strText, 2, true)), Join({0xFF, 0xFE, 0, 0}, Widen(strText, 4, false)),
      Join({0, 0, 0xFE, 0xFF}, Widen(strText, 4, true)),
      // Letters that are no plain ones, behind a mark.
      {0xFF, 0xFE, 0x2D, 0x4E}, {0xFE, 0xFF}};
  for (int nType : TextTypes) {
    for (std::size_t i = 0; i < std::size(arrWide); ++i) {
      Bytes vecBytes = arrWide[i];
      std::string strError;
      EXPECT_FALSE(PrepareText(nType, vecBytes, strError)) << nType << ", " << i;
      EXPECT_NE(strError.find("UTF-8"), std::string::npos) << strError;
    }
  }
}

TEST(QXTextEncoding, MarkOfUtf8GoesAway) {
  for (int nType : TextTypes) {
    Bytes vecBytes = ToBytes("\xEF\xBB\xBFsolid a");
    std::string strError;
    EXPECT_TRUE(PrepareText(nType, vecBytes, strError)) << nType;
    EXPECT_EQ(vecBytes, ToBytes("solid a")) << nType;
  }
}

TEST(QXTextEncoding, OtherTextStaysAsItIs) {
  for (std::string const& strText : {std::string(), std::string("v"),
           std::string("v 0 0 0\n# Gr\xC3\xB6\xC3\x9F"
                       "e\n"),
           std::string("\xEF\xBB"), std::string("\xFF")}) {
    Bytes vecBytes = ToBytes(strText);
    std::string strError;
    EXPECT_TRUE(PrepareText(QXFileType::EM_MODEL_OBJ, vecBytes, strError));
    EXPECT_EQ(vecBytes, ToBytes(strText));
  }
}

TEST(QXTextEncoding, BinaryFilesAreNotLookedAt) {
  Bytes vecStl = Widen("header of letters with zeros in between", 2, false);
  vecStl.resize(80);
  vecStl.insert(vecStl.end(), {1, 0, 0, 0});
  vecStl.resize(134);
  std::string strError;
  Bytes vecBytes = vecStl;
  EXPECT_TRUE(PrepareText(QXFileType::EM_MODEL_STL, vecBytes, strError));
  EXPECT_EQ(vecBytes, vecStl);
  // One byte more, and it is no binary file by its size.
  vecBytes.push_back(0);
  EXPECT_FALSE(PrepareText(QXFileType::EM_MODEL_STL, vecBytes, strError));
  for (int nType : {QXFileType::EM_MODEL_3DS, QXFileType::EM_MODEL_GLB}) {
    Bytes const vecMarked = {0xEF, 0xBB, 0xBF, 0};
    vecBytes = vecMarked;
    EXPECT_TRUE(PrepareText(nType, vecBytes, strError)) << nType;
    EXPECT_EQ(vecBytes, vecMarked) << nType;
    vecBytes = {0xFF, 0xFE, 0, 0};
    EXPECT_TRUE(PrepareText(nType, vecBytes, strError)) << nType;
  }
}

}  // namespace
}  // namespace QXAssimp
