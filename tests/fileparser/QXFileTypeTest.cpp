#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QXFileType, NumbersAreThoseThatHostsStore) {
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".3ds"), 200);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".gltf"), 201);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".glb"), 202);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".obj"), 203);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".ply"), 204);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".stl"), 205);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".dae"), 206);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".fbx"), 207);
}

TEST(QXFileType, ExtensionIsKnownInAnyCase) {
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".ObJ"), QXFileType::EM_MODEL_OBJ);
}

TEST(QXFileType, ExtensionWithoutItsDotOrOfNothingIsUnknown) {
  EXPECT_EQ(QXFileType::ExtNameToFileType(L"obj"), -1);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L""), -1);
  EXPECT_EQ(QXFileType::ExtNameToFileType(L".doc"), -1);
}

TEST(QXFileType, ModelTypesAreThoseOfTheTableAndNoOthers) {
  for (int nType = 200; nType <= 207; ++nType) EXPECT_EQ(QXFileType::IsModelType(nType), 1) << nType;
  for (int nType : {-1, 0, 124, 199, 208, 1000}) EXPECT_EQ(QXFileType::IsModelType(nType), 0) << nType;
}

TEST(QXFileType, TypeGivesItsExtensionBack) {
  QdcArray<QdcUnicodeString> arrExtNames;
  QXFileType::GetModelExtNames(arrExtNames);
  ASSERT_EQ(arrExtNames.GetSize(), 8u);
  for (QdcUnicodeString const& strExt : arrExtNames)
    EXPECT_TRUE(QXFileType::FileTypeToExtName(QXFileType::ExtNameToFileType(strExt)) == strExt);
  EXPECT_EQ(QXFileType::FileTypeToExtName(-1).IsEmpty(), 1);
}

}  // namespace
}  // namespace QXC
