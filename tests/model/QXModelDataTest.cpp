#include <QxGraphics3D/model/QXModelData.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/model/QXModelDataPtr.h>
#include <QxGraphics3D/model/QXModelManager.h>

#include <tests/QXFieldOrder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>

namespace QXC {
namespace {

class OpenModelData : public QXModelData {
public:
  using QXModelData::m_pModelDataInfo;
  using QXModelData::m_pModelManager;
  using QXModelData::QXModelData;
};

ModelDataInfo* MakeInfo(wchar_t const* szName) {
  auto pInfo = std::make_unique<ModelDataInfo>();
  pInfo->SetName(szName);
  return pInfo.release();
}

TEST(QXModelData, ANewOneHasNothing) {
  QXModelData const model;
  EXPECT_EQ(model.GetModelDataInfo(), nullptr);
  EXPECT_EQ(model.GetModelManager(), nullptr);
}

TEST(QXModelData, FieldsStandInTheirOrderBehindTheTable) {
  OpenModelData const model;
  ExpectInOrder({&model, &model.m_pModelDataInfo, &model.m_pModelManager});
  EXPECT_TRUE(std::has_virtual_destructor_v<QXModelData>);
}

TEST(QXModelData, TakesTheInfoOfItsConstructorOver) {
  QXModelManager manager;
  ModelDataInfo* const pInfo = MakeInfo(L"tree");
  QXModelData const model(&manager, pInfo);
  EXPECT_EQ(model.GetModelDataInfo(), pInfo);
  EXPECT_EQ(model.GetModelManager(), &manager);
}

TEST(QXModelData, SetModelDataInfoReplacesAndDropsTheFormer) {
  QXModelData model(nullptr, MakeInfo(L"tree"));
  ModelDataInfo* const pInfo = MakeInfo(L"house");
  model.SetModelDataInfo(pInfo);
  EXPECT_EQ(model.GetModelDataInfo(), pInfo);
  model.SetModelDataInfo(nullptr);
  EXPECT_EQ(model.GetModelDataInfo(), nullptr);
}

TEST(QXModelData, SetModelDataInfoKeepsTheOneThatIsHeldAlready) {
  QXModelData model(nullptr, MakeInfo(L"tree"));
  model.SetModelDataInfo(model.GetModelDataInfo());
  ASSERT_NE(model.GetModelDataInfo(), nullptr);
  EXPECT_TRUE(model.GetModelDataInfo()->GetName() == L"tree");
}

TEST(QXModelData, ACopyHasAModelOfItsOwnAndTheSameManager) {
  QXModelManager manager;
  QXModelData const source(&manager, MakeInfo(L"tree"));
  QXModelData copy(source);
  ASSERT_NE(copy.GetModelDataInfo(), nullptr);
  EXPECT_NE(copy.GetModelDataInfo(), source.GetModelDataInfo());
  EXPECT_TRUE(copy.GetModelDataInfo()->GetName() == L"tree");
  EXPECT_EQ(copy.GetModelManager(), &manager);
  copy.GetModelDataInfo()->SetName(L"bush");
  EXPECT_TRUE(source.GetModelDataInfo()->GetName() == L"tree");
}

TEST(QXModelData, ACopyOfNothingHasNothing) {
  QXModelData const source;
  QXModelData const copy(source);
  EXPECT_EQ(copy.GetModelDataInfo(), nullptr);
  EXPECT_EQ(copy.GetModelManager(), nullptr);
}

TEST(QXModelData, AssignmentCopiesIntoTheInfoThatIsThere) {
  QXModelManager manager;
  QXModelData const source(&manager, MakeInfo(L"tree"));
  ModelDataInfo* const pInfo = MakeInfo(L"house");
  QXModelData model(nullptr, pInfo);
  model = source;
  EXPECT_EQ(model.GetModelDataInfo(), pInfo);
  EXPECT_TRUE(pInfo->GetName() == L"tree");
  EXPECT_EQ(model.GetModelManager(), &manager);
}

TEST(QXModelData, AssignmentMakesAnInfoWhereThereIsNone) {
  QXModelData const source(nullptr, MakeInfo(L"tree"));
  QXModelData model;
  model = source;
  ASSERT_NE(model.GetModelDataInfo(), nullptr);
  EXPECT_NE(model.GetModelDataInfo(), source.GetModelDataInfo());
  EXPECT_TRUE(model.GetModelDataInfo()->GetName() == L"tree");
}

TEST(QXModelData, AssignmentOfNothingLeavesTheInfoAndTakesTheManager) {
  QXModelManager manager;
  QXModelData const source(&manager, nullptr);
  ModelDataInfo* const pInfo = MakeInfo(L"house");
  QXModelData model(nullptr, pInfo);
  model = source;
  EXPECT_EQ(model.GetModelDataInfo(), pInfo);
  EXPECT_TRUE(pInfo->GetName() == L"house");
  EXPECT_EQ(model.GetModelManager(), &manager);
}

TEST(QXModelData, AssignmentToItselfChangesNothing) {
  QXModelManager manager;
  QXModelData model(&manager, MakeInfo(L"tree"));
  ModelDataInfo* const pInfo = model.GetModelDataInfo();
  model = *&model;
  EXPECT_EQ(model.GetModelDataInfo(), pInfo);
  EXPECT_TRUE(pInfo->GetName() == L"tree");
  EXPECT_EQ(model.GetModelManager(), &manager);
}

TEST(QXModelData, ReleaseForgetsBothAndMayBeRepeated) {
  QXModelManager manager;
  QXModelData model(&manager, MakeInfo(L"tree"));
  model.Release();
  EXPECT_EQ(model.GetModelDataInfo(), nullptr);
  EXPECT_EQ(model.GetModelManager(), nullptr);
  model.Release();
  EXPECT_EQ(model.GetModelDataInfo(), nullptr);
}

TEST(QXModelData, ReleaseWithoutAnInfoTellsNothing) {
  QXModelManager manager;
  QXModelData model(&manager, nullptr);
  model.Release();
  EXPECT_EQ(model.GetModelManager(), nullptr);
}

TEST(QXModelData, ForgetsAManagerThatDies) {
  auto pManager = std::make_unique<QXModelManager>();
  QXModelData model(pManager.get(), MakeInfo(L"tree"));
  QXModelData copy(model);
  { QXModelData const gone(model); }
  pManager.reset();
  EXPECT_EQ(model.GetModelManager(), nullptr);
  EXPECT_EQ(copy.GetModelManager(), nullptr);
  EXPECT_NE(model.GetModelDataInfo(), nullptr);
}

TEST(QXModelData, TheManagerOfAnAssignedModelIsTheOneThatEndsIt) {
  auto pFormer = std::make_unique<QXModelManager>();
  auto pLater = std::make_unique<QXModelManager>();
  QXModelData model(pFormer.get(), MakeInfo(L"tree"));
  QXModelData const source(pLater.get(), nullptr);
  model = source;
  pFormer.reset();
  EXPECT_EQ(model.GetModelManager(), pLater.get());
  pLater.reset();
  EXPECT_EQ(model.GetModelManager(), nullptr);
}

// A derived class may set its cache by hand, for a model that shall tell nobody or another one.
TEST(QXModelData, ACacheThatWasSetByHandDoesNotDisturbTheList) {
  auto pManager = std::make_unique<QXModelManager>();
  QXModelData const before(pManager.get(), nullptr);
  alignas(OpenModelData) unsigned char place[sizeof(OpenModelData)];
  auto* const pSilent = new (place) OpenModelData(pManager.get(), MakeInfo(L"tree"));
  pSilent->m_pModelManager = nullptr;
  pSilent->~OpenModelData();
  std::fill(std::begin(place), std::end(place), static_cast<unsigned char>(0xa5));
  {
    OpenModelData adopted(nullptr, MakeInfo(L"tree"));
    adopted.m_pModelManager = pManager.get();
    adopted.Release();
    EXPECT_EQ(adopted.GetModelManager(), nullptr);
  }
  QXModelData const after(pManager.get(), nullptr);
  OpenModelData forgotten(pManager.get(), nullptr);
  forgotten.m_pModelManager = nullptr;
  pManager.reset();
  EXPECT_EQ(before.GetModelManager(), nullptr);
  EXPECT_EQ(after.GetModelManager(), nullptr);
  EXPECT_EQ(std::count(std::begin(place), std::end(place), 0xa5), std::ssize(place)) << "the cache wrote where it was";
}

// --- The pointer ---

TEST(QXModelDataPtr, IsASharedPointerWithNothingAdded) {
  EXPECT_TRUE((std::is_base_of_v<QXSharedPtr<QXModelData>, QXModelDataPtr>));
  EXPECT_EQ(sizeof(QXModelDataPtr), sizeof(QXSharedPtr<QXModelData>));
  EXPECT_EQ(QXModelDataPtr().IsNull(), 1);
  EXPECT_EQ(QXModelDataPtr(nullptr).IsNull(), 1);
}

TEST(QXModelDataPtr, CopiesShareAndMovesTakeOver) {
  QXModelDataPtr pFirst(new QXModelData);
  EXPECT_EQ(pFirst.UseCount(), 1u);
  QXModelDataPtr pSecond(pFirst);
  EXPECT_EQ(pFirst.UseCount(), 2u);
  QXModelDataPtr pThird(std::move(pSecond));
  EXPECT_EQ(pFirst.UseCount(), 2u);
  EXPECT_EQ(pSecond.IsNull(), 1);  // NOLINT(bugprone-use-after-move)
  pSecond = pThird;
  EXPECT_EQ(pFirst.UseCount(), 3u);
  pFirst = std::move(pThird);
  EXPECT_EQ(pFirst.UseCount(), 2u);
  EXPECT_EQ(pFirst.GetPointer(), pSecond.GetPointer());
}

TEST(QXModelDataPtr, APlainAddressThatIsHeldAlreadyIsShared) {
  QXModelDataPtr pFirst(new QXModelData(nullptr, MakeInfo(L"tree")));
  QXModelDataPtr pSecond(pFirst.GetPointer());
  EXPECT_EQ(pFirst.UseCount(), 2u);
  QXModelDataPtr pThird(new QXModelData);
  pThird.Bind(pFirst.GetPointer());
  pThird.Bind(pFirst.GetPointer());
  EXPECT_EQ(pFirst.UseCount(), 3u);
  pFirst.SetNull();
  pThird.Bind(nullptr);
  EXPECT_EQ(pThird.IsNull(), 1);
  EXPECT_EQ(pSecond.UseCount(), 1u);
  EXPECT_TRUE(pSecond->GetModelDataInfo()->GetName() == L"tree");
}

/// Binds a plain address while it dies.
class BindingModelData : public QXModelData {
public:
  BindingModelData(QXModelData* pNext, QXModelDataPtr& pHolder) : m_pNext(pNext), m_pHolder(pHolder) {}
  ~BindingModelData() override { m_pHolder.Bind(m_pNext); }

private:
  QXModelData* m_pNext;
  QXModelDataPtr& m_pHolder;
};

TEST(QXModelDataPtr, WhatDiesInABindMayBindTheSameAddress) {
  auto* const pNext = new QXModelData;
  QXModelDataPtr pOther;
  QXModelDataPtr pHolder(new BindingModelData(pNext, pOther));
  pHolder.Bind(pNext);
  EXPECT_EQ(pHolder.GetPointer(), pNext);
  EXPECT_EQ(pOther.GetPointer(), pNext);
  EXPECT_EQ(pNext->GetModelManager(), nullptr);
  EXPECT_EQ(pHolder.UseCount(), 2u);
}

class CountingModelDataPtr : public QXModelDataPtr {
public:
  using QXModelDataPtr::QXModelDataPtr;
  void Destroy() override {
    ++m_nDestroyed;
    QXModelDataPtr::Destroy();
  }
  int m_nDestroyed = 0;
};

TEST(QXModelDataPtr, ABindDestroysByTheHoldersOwnForm) {
  CountingModelDataPtr pHolder(new QXModelData);
  pHolder.Bind(new QXModelData);
  EXPECT_EQ(pHolder.m_nDestroyed, 1);
  QXModelDataPtr const pShared(new QXModelData);
  pHolder.Bind(pShared.GetPointer());
  EXPECT_EQ(pHolder.m_nDestroyed, 2);
  pHolder.Bind(nullptr);
  EXPECT_EQ(pHolder.m_nDestroyed, 2);
  EXPECT_EQ(pShared.UseCount(), 1u);
}

TEST(QXModelDataPtr, CopiesOfAModelAreCountedApart) {
  QXModelDataPtr const pFirst(new QXModelData);
  QXModelDataPtr const pCopy(new QXModelData(*pFirst));
  EXPECT_EQ(pFirst.UseCount(), 1u);
  EXPECT_EQ(pCopy.UseCount(), 1u);
  *pCopy = *pFirst;
  QXModelDataPtr const pAgain(pCopy.GetPointer());
  EXPECT_EQ(pFirst.UseCount(), 1u);
  EXPECT_EQ(pCopy.UseCount(), 2u);
}

}  // namespace
}  // namespace QXC
