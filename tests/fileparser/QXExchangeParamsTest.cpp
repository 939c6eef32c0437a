#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

#include <gtest/gtest.h>

#include <memory>

namespace QXC {
namespace {

TEST(QXExchangeParams, FreshOnesNameNothing) {
  QXImportParams const params;
  EXPECT_EQ(params.GetFilePathName().IsEmpty(), 1);
  EXPECT_EQ(params.GetFileType(), -1);
  EXPECT_EQ(params.GetText().IsEmpty(), 1);
}

TEST(QXExchangeParams, ManagerGivesTypeAndTextToTheParser) {
  std::unique_ptr<QXImportParams> const pParams(QXExchangeParamsManager::MakeImportParams(203, L"hint"));
  ASSERT_NE(pParams, nullptr);
  EXPECT_EQ(pParams->GetFileType(), 203);
  EXPECT_TRUE(pParams->GetText() == L"hint");
  EXPECT_EQ(pParams->GetFilePathName().IsEmpty(), 1);
}

TEST(QXExchangeParams, ManagerMakesNoneForATypeThatNobodyKnows) {
  EXPECT_EQ(QXExchangeParamsManager::MakeImportParams(QXFileType::EM_UNKNOWN, L""), nullptr);
  EXPECT_EQ(QXExchangeParamsManager::MakeImportParams(-2, L""), nullptr);
  std::unique_ptr<QXImportParams> const pParams(QXExchangeParamsManager::MakeImportParams(0, L""));
  EXPECT_NE(pParams, nullptr);
}

TEST(QXExchangeParams, CopiesAreIndependent) {
  QXImportParams params;
  params.SetFilePathName(L"a.obj");
  QXImportParams copy(params);
  copy.SetFilePathName(L"b.obj");
  EXPECT_TRUE(params.GetFilePathName() == L"a.obj");
  EXPECT_TRUE(copy.GetFilePathName() == L"b.obj");
}

TEST(QXExchangeParams, AreDeletedThroughTheirBase) {
  std::unique_ptr<QXExchangeParams> pParams = std::make_unique<QXImportParams>();
  pParams->SetFilePathName(L"a.obj");
  EXPECT_TRUE(pParams->GetFilePathName() == L"a.obj");
}

}  // namespace
}  // namespace QXC
