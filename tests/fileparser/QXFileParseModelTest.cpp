#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>

#include <tests/fileparser/QXModelMaker.h>

#include <gtest/gtest.h>

#include <memory>

namespace QXC {
namespace {

/// Gives a new model at every Open. Models are counted by what the address sanitizer sees at the end.
class MakingParser : public QXFileParseModel {
public:
  unsigned char Open(QXImportParams*) override {
    auto* pModel = new ModelDataInfo;
    pModel->AddMesh(MakeTriangle());
    SetModelDataInfo(pModel);
    return 1;
  }
  QdcUnicodeString const& GetErrorText() const override { return m_strError; }
  void Drop() { SetModelDataInfo(nullptr); }
  void SetAgain(ModelDataInfo* pModel) {
    SetModelDataInfo(pModel);
    SetModelDataInfo(pModel);
  }

private:
  QdcUnicodeString m_strError;
};

TEST(QXFileParseModel, ModelPassesToTheFirstCallerAlone) {
  MakingParser parser;
  EXPECT_EQ(parser.GetModelDataInfo(), nullptr);
  parser.Open(nullptr);
  std::unique_ptr<ModelDataInfo> const pModel(parser.GetModelDataInfo());
  ASSERT_NE(pModel, nullptr);
  EXPECT_EQ(pModel->GetMeshCount(), 1);
  EXPECT_EQ(parser.GetModelDataInfo(), nullptr);
}

TEST(QXFileParseModel, FetchedModelOutlivesItsParser) {
  auto pParser = std::make_unique<MakingParser>();
  pParser->Open(nullptr);
  std::unique_ptr<ModelDataInfo> const pModel(pParser->GetModelDataInfo());
  pParser.reset();
  EXPECT_EQ(pModel->GetMeshCount(), 1);
}

TEST(QXFileParseModel, ModelThatNobodyFetchedDiesWithTheParserOrTheNextOpen) {
  MakingParser parser;
  parser.Open(nullptr);
  parser.Open(nullptr);
  parser.Drop();
  EXPECT_EQ(parser.GetModelDataInfo(), nullptr);
  parser.Open(nullptr);
}

TEST(QXFileParseModel, SettingTheModelHeldKeepsIt) {
  MakingParser parser;
  auto* pModel = new ModelDataInfo;
  pModel->AddMesh(MakeTriangle());
  parser.SetAgain(pModel);
  std::unique_ptr<ModelDataInfo> const pFetched(parser.GetModelDataInfo());
  EXPECT_EQ(pFetched.get(), pModel);
  EXPECT_EQ(pFetched->GetMeshCount(), 1);
}

}  // namespace
}  // namespace QXC
