#include <plugins/assimp/QXFormatCheck.h>

#include <tests/assimp/QXTestFiles.h>

#include <gtest/gtest.h>

namespace QXAssimp {
namespace {

using Type = QXC::QXFileType;

struct WholeFile {
  char const* m_szName;
  int m_nType;
  /// Bytes at the end that may be missing without harm: the last line end, the name behind an end mark.
  std::size_t m_nSpare;
};

class QXFormatCheckFiles : public testing::TestWithParam<WholeFile> {};

TEST_P(QXFormatCheckFiles, WholeFilePassesAndEveryShorterOneDoesNot) {
  std::vector<unsigned char> const vecWhole = ReadTestFile(ModelPath(GetParam().m_szName));
  std::string strError;
  EXPECT_TRUE(CheckFormat(GetParam().m_nType, vecWhole, strError)) << strError;
  for (std::size_t nLength = 0; nLength + GetParam().m_nSpare < vecWhole.size(); ++nLength) {
    // A block of its own of exactly this length, so that a sanitizer sees its end.
    std::vector<unsigned char> const vecCut(vecWhole.begin(), vecWhole.begin() + static_cast<std::ptrdiff_t>(nLength));
    strError.clear();
    EXPECT_FALSE(CheckFormat(GetParam().m_nType, vecCut, strError)) << nLength;
    EXPECT_FALSE(strError.empty()) << nLength;
    EXPECT_EQ(strError.find('\n'), std::string::npos) << nLength;
  }
}

INSTANTIATE_TEST_SUITE_P(Models, QXFormatCheckFiles,
    testing::Values(WholeFile{"block.3ds", Type::EM_MODEL_3DS, 0}, WholeFile{"block.glb", Type::EM_MODEL_GLB, 0},
        WholeFile{"block.stl", Type::EM_MODEL_STL, 7}, WholeFile{"block-binary.stl", Type::EM_MODEL_STL, 0},
        WholeFile{"block.ply", Type::EM_MODEL_PLY, 1}, WholeFile{"block-little.ply", Type::EM_MODEL_PLY, 0},
        WholeFile{"block-big.ply", Type::EM_MODEL_PLY, 0}),
    [](testing::TestParamInfo<WholeFile> const& testCase) {
      std::string strName = testCase.param.m_szName;
      for (char& c : strName)
        if (c == '.' || c == '-') c = '_';
      return strName;
    });

std::string CheckText(int nType, std::string const& strText) {
  std::string strError;
  return CheckFormat(nType, ToBytes(strText), strError) ? std::string() : strError;
}

TEST(QXFormatCheck, FilesWithoutAMarkOfTheirEndPass) {
  EXPECT_EQ(CheckText(Type::EM_MODEL_OBJ, "v 0 0"), "");
  EXPECT_EQ(CheckText(Type::EM_MODEL_GLTF, "{"), "");
}

TEST(QXFormatCheck, ListCountThatItsChunkCannotHoldIsRefused) {
  std::vector<unsigned char> vecBytes = ReadTestFile(ModelPath("block.3ds"));
  // The vertex list is the chunk 0x4110; its count stands behind the chunk's six bytes.
  for (std::size_t i = 0; i + 8 < vecBytes.size(); ++i) {
    if (vecBytes[i] != 0x10 || vecBytes[i + 1] != 0x41) continue;
    vecBytes[i + 6] = 9;
    std::string strError;
    EXPECT_FALSE(CheckFormat(Type::EM_MODEL_3DS, vecBytes, strError));
    EXPECT_NE(strError.find("list"), std::string::npos) << strError;
    return;
  }
  FAIL() << "the model has no vertex list";
}

TEST(QXFormatCheck, OtherGltfVersionIsNamed) {
  std::vector<unsigned char> vecBytes = ReadTestFile(ModelPath("block.glb"));
  vecBytes[4] = 1;
  std::string strError;
  EXPECT_FALSE(CheckFormat(Type::EM_MODEL_GLB, vecBytes, strError));
  EXPECT_EQ(strError, "this is glTF of another version than 2");
}

TEST(QXFormatCheck, BytesBehindTheLastTriangleOfAnStlAreNoHarm) {
  std::vector<unsigned char> vecBytes = ReadTestFile(ModelPath("block-binary.stl"));
  vecBytes.push_back(0);
  std::string strError;
  EXPECT_TRUE(CheckFormat(Type::EM_MODEL_STL, vecBytes, strError)) << strError;
}

TEST(QXFormatCheck, BinaryStlWhoseHeaderSaysSolidIsTakenByItsSize) {
  std::vector<unsigned char> vecBytes = ReadTestFile(ModelPath("block-binary.stl"));
  std::string const strSolid = "solid ";
  std::copy(strSolid.begin(), strSolid.end(), vecBytes.begin());
  std::string strError;
  EXPECT_TRUE(CheckFormat(Type::EM_MODEL_STL, vecBytes, strError)) << strError;
}

TEST(QXFormatCheck, PlyHeadersThatClaimTheWorldAreRefused) {
  std::string const strTail = "property float x\nend_header\n1 2 3\n";
  EXPECT_NE(CheckText(Type::EM_MODEL_PLY, "ply\nformat ascii 1.0\nelement vertex 4000000000\n" + strTail), "");
  EXPECT_NE(CheckText(Type::EM_MODEL_PLY,
                "ply\nformat binary_little_endian 1.0\nelement vertex 18446744073709551615\n" + strTail),
      "");
  EXPECT_NE(CheckText(Type::EM_MODEL_PLY, "ply\nformat ascii 1.0\nelement vertex -1\n" + strTail), "");
  EXPECT_NE(CheckText(Type::EM_MODEL_PLY, "ply\nformat ascii 1.0\nproperty float x\nend_header\n"), "");
  EXPECT_NE(
      CheckText(Type::EM_MODEL_PLY, "ply\nformat ascii 1.0\nelement vertex 1\nproperty word x\nend_header\n1\n"), "");
  EXPECT_EQ(CheckText(Type::EM_MODEL_PLY,
                "ply\r\nformat ascii 1.0\r\nelement vertex 3\r\nproperty float x\r\nend_header\r\n1 2 3"),
      "");
}

TEST(QXFormatCheck, ColladaListOfAnythingButNumbersIsRefused) {
  std::vector<unsigned char> vecBytes = ReadTestFile(ModelPath("block.dae"));
  std::string strText(vecBytes.begin(), vecBytes.end());
  EXPECT_EQ(CheckText(Type::EM_MODEL_COLLADA, strText), "");
  strText[strText.find("<p>") + 5] = 'x';
  EXPECT_NE(CheckText(Type::EM_MODEL_COLLADA, strText).find("list of numbers"), std::string::npos);
}

TEST(QXFormatCheck, ColladaElementsWhoseNamesOnlyBeginAlikePass) {
  EXPECT_EQ(CheckText(Type::EM_MODEL_COLLADA, "<param name=\"X\">abc</param><vertices>x</vertices><p/>"), "");
  EXPECT_EQ(CheckText(Type::EM_MODEL_COLLADA, "<p"), "");
}

std::vector<unsigned char> MakeBinaryFbx(std::initializer_list<unsigned int> vecOffsets) {
  std::vector<unsigned char> vecBytes = ToBytes(std::string("Kaydara FBX Binary  \0\x1A\0", 23));
  auto const append = [&](unsigned int nValue) {
    for (int i = 0; i < 4; ++i) vecBytes.push_back(static_cast<unsigned char>(nValue >> (8 * i)));
  };
  append(7300);
  for (unsigned int nOffset : vecOffsets) append(nOffset);
  return vecBytes;
}

TEST(QXFormatCheck, BinaryFbxEndsWithAnEmptyRecord) {
  std::string strError;
  EXPECT_TRUE(CheckFormat(Type::EM_MODEL_FBX, MakeBinaryFbx({31, 0}), strError)) << strError;
  EXPECT_FALSE(CheckFormat(Type::EM_MODEL_FBX, MakeBinaryFbx({31}), strError));
  EXPECT_FALSE(CheckFormat(Type::EM_MODEL_FBX, MakeBinaryFbx({4000, 0}), strError));
  EXPECT_FALSE(CheckFormat(Type::EM_MODEL_FBX, MakeBinaryFbx({27, 0}), strError))
      << "a record that ends where it begins";
  EXPECT_FALSE(CheckFormat(Type::EM_MODEL_FBX, MakeBinaryFbx({}), strError));
}

}  // namespace
}  // namespace QXAssimp
