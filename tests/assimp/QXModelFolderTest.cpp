#include <plugins/assimp/QXModelFolder.h>
#include <plugins/assimp/QXMtlMaps.h>

#include <tests/assimp/QXTestFiles.h>

#include <assimp/IOStream.hpp>

#include <gtest/gtest.h>

#include <memory>

namespace QXAssimp {
namespace {

std::string ReadAll(QXModelFolder& folder, char const* szFile) {
  Assimp::IOStream* pStream = folder.Open(szFile, "rb");
  if (pStream == nullptr) return "(null)";
  std::string strText(pStream->FileSize(), '\0');
  EXPECT_EQ(pStream->Read(strText.data(), 1, strText.size()), strText.size());
  folder.Close(pStream);
  return strText;
}

TEST(QXModelFolder, ModelComesFromMemoryAndCompanionsFromTheFolder) {
  QXTestFolder const files;
  files.Write("part.mtl", "companion");
  files.Write("model.obj", "not this one");
  std::vector<unsigned char> const vecModel = ToBytes("the model");
  QXMtlMaps maps;
  QXModelFolder folder(files.Path(), "model.obj", vecModel, maps);
  EXPECT_TRUE(folder.Exists("model.obj"));
  EXPECT_EQ(ReadAll(folder, "model.obj"), "the model");
  EXPECT_TRUE(folder.Exists("part.mtl"));
  EXPECT_EQ(ReadAll(folder, "./part.mtl"), "companion");
  EXPECT_FALSE(folder.Exists("missing.mtl"));
  EXPECT_EQ(ReadAll(folder, "missing.mtl"), "(null)");
}

TEST(QXModelFolder, NothingOutsideTheFolderIsOpened) {
  QXTestFolder const files;
  std::filesystem::create_directory(files.Path("model"));
  std::filesystem::create_directory(files.Path("model-other"));
  files.Write("secret", "secret");
  files.Write("model-other/secret", "secret");
  files.Write("model/inside", "inside");
  std::filesystem::create_symlink(files.Path("secret"), files.Path("model/link"));
  std::filesystem::create_symlink(files.Path("model/inside"), files.Path("model/good-link"));
  std::vector<unsigned char> const vecModel;
  QXMtlMaps maps;
  QXModelFolder folder(files.Path("model"), "model.obj", vecModel, maps);
  for (std::string const& strFile : {std::string("../secret"), files.Path("secret"), std::string("link"),
           std::string("../model-other/secret"), std::string("/etc/passwd"), std::string("."), std::string("")}) {
    EXPECT_FALSE(folder.Exists(strFile.c_str())) << strFile;
    EXPECT_EQ(ReadAll(folder, strFile.c_str()), "(null)") << strFile;
  }
  EXPECT_EQ(ReadAll(folder, "inside"), "inside");
  EXPECT_EQ(ReadAll(folder, "../model/inside"), "inside");
  EXPECT_EQ(ReadAll(folder, "good-link"), "inside");
}

TEST(QXModelFolder, WithoutAFolderThereAreNoCompanions) {
  std::vector<unsigned char> const vecModel = ToBytes("x");
  QXMtlMaps maps;
  QXModelFolder folder("", "model.obj", vecModel, maps);
  EXPECT_FALSE(folder.Exists("/etc/passwd"));
  EXPECT_FALSE(folder.Exists("etc/passwd"));
}

TEST(QXModelFolder, NothingIsWritten) {
  QXTestFolder const files;
  std::vector<unsigned char> const vecModel = ToBytes("x");
  QXMtlMaps maps;
  QXModelFolder folder(files.Path(), "model.obj", vecModel, maps);
  EXPECT_EQ(folder.Open("new", "wb"), nullptr);
  EXPECT_EQ(folder.Open("model.obj", "r+"), nullptr);
  EXPECT_FALSE(std::filesystem::exists(files.Path("new")));
}

TEST(QXModelFolder, StreamMovesInsideItsBytesAlone) {
  std::vector<unsigned char> const vecModel = ToBytes("0123456789");
  QXMtlMaps maps;
  QXModelFolder folder("", "model.obj", vecModel, maps);
  std::unique_ptr<Assimp::IOStream> const pStream(folder.Open("model.obj", "r"));
  char szText[20] = {};
  EXPECT_EQ(pStream->Read(szText, 4, 3), 2u);
  EXPECT_EQ(pStream->Tell(), 8u);
  EXPECT_EQ(pStream->Seek(static_cast<std::size_t>(-2), aiOrigin_CUR), aiReturn_SUCCESS);
  EXPECT_EQ(pStream->Tell(), 6u);
  EXPECT_EQ(pStream->Seek(3, aiOrigin_END), aiReturn_SUCCESS);
  EXPECT_EQ(pStream->Tell(), 7u);
  EXPECT_EQ(pStream->Seek(11, aiOrigin_SET), aiReturn_FAILURE);
  EXPECT_EQ(pStream->Seek(11, aiOrigin_END), aiReturn_FAILURE);
  EXPECT_EQ(pStream->Tell(), 7u);
  EXPECT_EQ(pStream->Seek(10, aiOrigin_SET), aiReturn_SUCCESS);
  EXPECT_EQ(pStream->Read(szText, 1, 1), 0u);
  EXPECT_EQ(pStream->Write("x", 1, 1), 0u);
}

}  // namespace
}  // namespace QXAssimp
