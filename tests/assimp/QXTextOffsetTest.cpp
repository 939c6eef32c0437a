#include <plugins/assimp/QXTextOffset.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <tests/assimp/QXTestFiles.h>

#include <gtest/gtest.h>

namespace QXAssimp {
namespace {

using Type = QXC::QXFileType;

std::string Move(int nType, std::string const& strText, double (&dOffset)[3]) {
  std::vector<unsigned char> vecBytes = ToBytes(strText);
  SubtractOffset(nType, vecBytes, dOffset);
  return std::string(vecBytes.begin(), vecBytes.end());
}

TEST(QXTextOffset, MapCoordinatesAreMovedAndEverythingElseStays) {
  double dOffset[3];
  std::string const strMoved = Move(Type::EM_MODEL_OBJ,
      "# far\n  v 604099.5 5792153.25 71.5 0.5\r\nvn 604099 0 1\nv\t604101.5 +5792155.25 73.5\nf 1 2 1\nv 604099.501 "
      "5792153.251 71.501",
      dOffset);
  EXPECT_EQ(dOffset[0], 604101.0);
  EXPECT_EQ(dOffset[1], 5792154.0);
  EXPECT_EQ(dOffset[2], 0.0);
  EXPECT_EQ(
      strMoved, "# far\nv -1.5 -0.75 71.5 0.5\r\nvn 604099 0 1\nv 0.5 1.25 73.5\nf 1 2 1\nv -1.499 -0.749 71.501");
}

TEST(QXTextOffset, ModelNearTheOriginOrAroundItIsLeftAlone) {
  double dOffset[3];
  for (std::string const& strText :
      {std::string("v 16000 1 2\nv 16001 2 3\n"), std::string("v -50000 0 0\nv 50001 0 0\n"), std::string("v a b c\n"),
          std::string("v 1 2\n"), std::string("v 900000"), std::string("vertex 900000 1 2\n"), std::string()}) {
    EXPECT_EQ(Move(Type::EM_MODEL_OBJ, strText, dOffset), strText);
    EXPECT_EQ(dOffset[0], 0.0);
  }
}

TEST(QXTextOffset, TextStlIsMovedAndOthersAreNot) {
  double dOffset[3];
  std::string const strStl = "solid a\n vertex 604099.5 1 2\n vertex 604100.5 1 2\nendsolid\n";
  EXPECT_EQ(Move(Type::EM_MODEL_STL, strStl, dOffset), "solid a\nvertex -0.5 1 2\nvertex 0.5 1 2\nendsolid\n");
  EXPECT_EQ(dOffset[0], 604100.0);
  EXPECT_EQ(Move(Type::EM_MODEL_PLY, strStl, dOffset), strStl);
  EXPECT_EQ(dOffset[0], 0.0);
  std::string const strBinary = "x" + strStl;
  EXPECT_EQ(Move(Type::EM_MODEL_STL, strBinary, dOffset), strBinary);
}

TEST(QXTextOffset, NumbersThatAreNoneAreLeftAlone) {
  double dOffset[3];
  std::string const strText = "v nan 604099 1\nv inf 604099 1\nv 1e400 604099 1\n";
  EXPECT_EQ(Move(Type::EM_MODEL_OBJ, strText, dOffset), strText);
}

}  // namespace
}  // namespace QXAssimp
