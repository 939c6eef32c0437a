#include <QxGraphics3D/model/QXModelManager.h>

#include <QxGraphics3D/model/QXModelData.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>

#include <tests/model/QXToyModels.h>

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>

namespace QXC {
namespace {

class OpenModelManager : public QXModelManager {
public:
  using QXModelManager::m_dictModels;
  using QXModelManager::m_nMemorySize;
};

class QXModelManagerTest : public testing::Test {
protected:
  QdcUnicodeString NameIn(QXModelDataPtr const& pModel) { return pModel->GetModelDataInfo()->GetName(); }
  QXModelDataPtr Create(wchar_t const* szName) {
    ModelDataInfo info;
    return m_pManager->CreateManual(szName, &info);
  }

  QXToyModels m_Toys;
  std::unique_ptr<OpenModelManager> m_pManager = std::make_unique<OpenModelManager>();
};

TEST_F(QXModelManagerTest, ANewOneIsEmpty) {
  EXPECT_EQ(m_pManager->m_dictModels.GetCount(), 0u);
  EXPECT_EQ(m_pManager->IsExists(L""), 0);
  EXPECT_EQ(m_pManager->IsExists(L"a.toy"), 0);
  EXPECT_EQ(m_pManager->GetByFileName(L"a.toy").IsNull(), 1);
  EXPECT_EQ(m_pManager->m_nMemorySize, 0u);
  EXPECT_TRUE(std::has_virtual_destructor_v<QXModelManager>);
}

TEST_F(QXModelManagerTest, FieldsStandInTheirOrder) {
  EXPECT_LT(static_cast<void const*>(m_pManager.get()), static_cast<void const*>(&m_pManager->m_dictModels));
  EXPECT_LT(static_cast<void const*>(&m_pManager->m_dictModels), static_cast<void const*>(&m_pManager->m_nMemorySize));
}

TEST_F(QXModelManagerTest, TheMemoryFigureIsStoredAndNothingMore) {
  EXPECT_EQ(m_pManager->GetMemorySize(), 0u);
  EXPECT_EQ(m_pManager->GetMemoryUsage(), 0u);
  m_pManager->SetMemorySize(1);
  Create(L"tree");
  Create(L"house");
  EXPECT_EQ(m_pManager->GetMemorySize(), 1u);
  EXPECT_EQ(m_pManager->GetMemoryUsage(), 1u);
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 1);
  m_pManager->SetMemorySize(4000000000u);
  EXPECT_EQ(m_pManager->GetMemoryUsage(), 4000000000u);
}

// --- Loading ---

TEST_F(QXModelManagerTest, AModelIsReadOnce) {
  QXModelDataPtr const pFirst = m_pManager->GetModelData(L"/models/a.toy");
  ASSERT_EQ(pFirst.IsNull(), 0);
  EXPECT_EQ(pFirst->GetModelManager(), m_pManager.get());
  EXPECT_TRUE(NameIn(pFirst) == L"/models/a.toy");
  QXModelDataPtr const pSecond = m_pManager->GetModelData(L"/models/a.toy");
  EXPECT_EQ(pSecond.GetPointer(), pFirst.GetPointer());
  EXPECT_EQ(pFirst.UseCount(), 3u);
  EXPECT_EQ(m_pManager->GetByFileName(L"/models/a.toy").GetPointer(), pFirst.GetPointer());
  EXPECT_EQ(m_pManager->IsExists(L"/models/a.toy"), 1);
  EXPECT_EQ(QXToyModels::ms_nOpened, 1);
  EXPECT_EQ(QXToyModels::ms_nParsers, 0);
}

TEST_F(QXModelManagerTest, GetByFileNameReadsNothing) {
  EXPECT_EQ(m_pManager->GetByFileName(L"/models/a.toy").IsNull(), 1);
  EXPECT_EQ(m_pManager->IsExists(L"/models/a.toy"), 0);
  EXPECT_EQ(QXToyModels::ms_nOpened, 0);
}

TEST_F(QXModelManagerTest, AFileThatCannotBeReadLeavesNothingAndIsTriedAgain) {
  for (int nTry = 1; nTry <= 3; ++nTry) {
    EXPECT_EQ(m_pManager->GetModelData(L"/models/broken.toy").IsNull(), 1);
    EXPECT_EQ(m_pManager->IsExists(L"/models/broken.toy"), 0);
    EXPECT_EQ(QXToyModels::ms_nOpened, nTry);
    EXPECT_EQ(QXToyModels::ms_nParsers, 0);
  }
}

TEST_F(QXModelManagerTest, AFileOfNoKnownTypeGivesNull) {
  EXPECT_EQ(m_pManager->Load(L"/models/a.unknown").IsNull(), 1);
  EXPECT_EQ(m_pManager->Load(L"/models/a").IsNull(), 1);
  EXPECT_EQ(m_pManager->Load(L"").IsNull(), 1);
  EXPECT_EQ(m_pManager->m_dictModels.GetCount(), 0u);
}

// The parser of a picture is no parser of models, whatever it would say of the file.
TEST_F(QXModelManagerTest, APictureGivesNull) {
  EXPECT_EQ(m_pManager->Load(L"/models/bark.png").IsNull(), 1);
  EXPECT_EQ(m_pManager->IsExists(L"/models/bark.png"), 0);
}

TEST_F(QXModelManagerTest, ATypeWhoseParserCannotBeMadeGivesNull) {
  QXFileParseManager::RegisterFileParser(
      QXToyModels::Type, [] { return static_cast<QXFileParser*>(nullptr); }, [](QXFileParser*) {});
  EXPECT_EQ(m_pManager->Load(L"a.toy").IsNull(), 1);
  QXFileParseManager::RegisterFileParser(QXToyModels::Type, nullptr, nullptr);
  EXPECT_EQ(m_pManager->IsExists(L"a.toy"), 0);
}

TEST_F(QXModelManagerTest, ASecondLoadReplacesAndHoldersKeepTheOld) {
  QXModelDataPtr pOld = m_pManager->Load(L"a.toy");
  QXModelDataPtr const pNew = m_pManager->Load(L"a.toy");
  EXPECT_NE(pNew.GetPointer(), pOld.GetPointer());
  EXPECT_EQ(m_pManager->GetByFileName(L"a.toy").GetPointer(), pNew.GetPointer());
  EXPECT_EQ(pOld.UseCount(), 1u);
  EXPECT_TRUE(NameIn(pOld) == L"a.toy");
}

// Models are known to the cache by their names alone.
TEST_F(QXModelManagerTest, AnOlderHolderThatDiesTakesTheNewEntryOut) {
  QXModelDataPtr pOld = m_pManager->Load(L"a.toy");
  QXModelDataPtr const pNew = m_pManager->Load(L"a.toy");
  pOld.SetNull();
  EXPECT_EQ(m_pManager->IsExists(L"a.toy"), 0);
  EXPECT_EQ(pNew.UseCount(), 1u);
  EXPECT_TRUE(NameIn(pNew) == L"a.toy");
}

TEST_F(QXModelManagerTest, AnEntryThatNobodyHoldsIsReplacedToo) {
  Create(L"house");
  m_pManager->Load(L"a.toy");
  QXModelDataPtr const pNew = m_pManager->Load(L"a.toy");
  EXPECT_EQ(pNew.UseCount(), 2u);
  EXPECT_EQ(m_pManager->m_dictModels.GetCount(), 2u);
}

TEST_F(QXModelManagerTest, ALoadThatFailsLeavesTheFormerEntry) {
  QXModelDataPtr const pFormer = m_pManager->Load(L"a.toy");
  QXToyModels::ms_bFail = true;
  EXPECT_EQ(m_pManager->Load(L"a.toy").IsNull(), 1);
  EXPECT_EQ(m_pManager->GetByFileName(L"a.toy").GetPointer(), pFormer.GetPointer());
}

TEST_F(QXModelManagerTest, AParserThatBringsNoModelMakesAnEntryWithoutOne) {
  QXModelDataPtr pModel = m_pManager->GetModelData(L"empty.toy");
  ASSERT_EQ(pModel.IsNull(), 0);
  EXPECT_EQ(pModel->GetModelDataInfo(), nullptr);
  EXPECT_EQ(m_pManager->IsExists(L"empty.toy"), 1);
  m_pManager->GetModelData(L"empty.toy");
  EXPECT_EQ(QXToyModels::ms_nOpened, 1);
  pModel->Release();
  EXPECT_EQ(m_pManager->IsExists(L"empty.toy"), 1) << "without a name there is no key to remove";
  m_pManager->Remove(L"empty.toy");
  EXPECT_EQ(pModel.UseCount(), 1u);
}

TEST_F(QXModelManagerTest, AModelWithAnotherNameStaysUnderItsKeyWhenReleased) {
  QXModelDataPtr const pModel = m_pManager->Load(L"nameless.toy");
  pModel->Release();
  ASSERT_EQ(m_pManager->IsExists(L"nameless.toy"), 1);
  QXModelDataPtr const pEntry = m_pManager->GetModelData(L"nameless.toy");
  EXPECT_EQ(pEntry.GetPointer(), pModel.GetPointer());
  EXPECT_EQ(pEntry->GetModelDataInfo(), nullptr);
  EXPECT_EQ(QXToyModels::ms_nOpened, 1);
}

TEST_F(QXModelManagerTest, AParserMayUseTheCache) {
  bool bInside = false;
  QXToyModels::ms_OnOpen = [&] {
    if (std::exchange(bInside, true)) return;
    m_pManager->Load(L"b.toy");
    m_pManager->Load(L"a.toy");
    m_pManager->RemoveAll();
    m_pManager->Load(L"b.toy");
  };
  QXModelDataPtr const pModel = m_pManager->Load(L"a.toy");
  EXPECT_EQ(m_pManager->GetByFileName(L"a.toy").GetPointer(), pModel.GetPointer());
  EXPECT_EQ(m_pManager->IsExists(L"b.toy"), 1);
  EXPECT_EQ(m_pManager->m_dictModels.GetCount(), 2u);
}

// --- Models made by hand ---

TEST_F(QXModelManagerTest, CreateManualCopiesAndRenames) {
  ModelDataInfo info;
  info.SetName(L"draft");
  info.SetUpAxis(QX_UP_Z);
  QXModelDataPtr const pModel = m_pManager->CreateManual(L"tree", &info);
  ASSERT_EQ(pModel.IsNull(), 0);
  EXPECT_TRUE(info.GetName() == L"tree");
  EXPECT_TRUE(NameIn(pModel) == L"tree");
  EXPECT_NE(pModel->GetModelDataInfo(), &info);
  EXPECT_EQ(pModel->GetModelDataInfo()->GetUpAxis(), QX_UP_Z);
  EXPECT_EQ(pModel->GetModelManager(), m_pManager.get());
  EXPECT_EQ(m_pManager->GetModelData(L"tree").GetPointer(), pModel.GetPointer());
  info.SetUpAxis(QX_UP_UNKNOWN);
  EXPECT_EQ(pModel->GetModelDataInfo()->GetUpAxis(), QX_UP_Z);
}

TEST_F(QXModelManagerTest, CreateManualOfNothingGivesNullAndLeavesTheFormerEntry) {
  EXPECT_EQ(m_pManager->CreateManual(L"tree", nullptr).IsNull(), 1);
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
  QXModelDataPtr const pFormer = Create(L"tree");
  EXPECT_EQ(m_pManager->CreateManual(L"tree", nullptr).IsNull(), 1);
  EXPECT_EQ(m_pManager->GetByFileName(L"tree").GetPointer(), pFormer.GetPointer());
}

TEST_F(QXModelManagerTest, CreateManualReplacesAndHoldersKeepTheOld) {
  QXModelDataPtr const pOld = Create(L"tree");
  QXModelDataPtr const pNew = Create(L"tree");
  EXPECT_NE(pNew.GetPointer(), pOld.GetPointer());
  EXPECT_EQ(m_pManager->GetByFileName(L"tree").GetPointer(), pNew.GetPointer());
  EXPECT_NE(pOld->GetModelDataInfo(), nullptr);
}

TEST_F(QXModelManagerTest, CreateManualTakesTheInfoOfTheEntryItReplaces) {
  Create(L"house");
  Create(L"tree");
  ModelDataInfo* const pInfo = m_pManager->GetByFileName(L"tree")->GetModelDataInfo();
  QXModelDataPtr const pModel = m_pManager->CreateManual(L"tree", pInfo);
  ASSERT_EQ(pModel.IsNull(), 0);
  EXPECT_TRUE(NameIn(pModel) == L"tree");
  EXPECT_EQ(pModel.UseCount(), 2u);
}

TEST_F(QXModelManagerTest, AnyTextIsAName) {
  QXModelDataPtr const pEmpty = Create(L"");
  EXPECT_EQ(m_pManager->GetByFileName(L"").GetPointer(), pEmpty.GetPointer());
  QdcUnicodeString strBuffer(L"tree");
  strBuffer.SetLength(100);
  ModelDataInfo info;
  QXModelDataPtr const pTree = m_pManager->CreateManual(strBuffer, &info);
  EXPECT_EQ(m_pManager->GetByFileName(L"tree").GetPointer(), pTree.GetPointer());
  EXPECT_EQ(m_pManager->GetByFileName(strBuffer).GetPointer(), pTree.GetPointer());
  m_pManager->Remove(strBuffer);
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
}

// Whoever walks the dictionary hands its own keys over, which go with their entries.
TEST_F(QXModelManagerTest, ANameMayBeTheKeyOfTheEntryThatGoes) {
  QdcUnicodeString const strPath(L"/a/path/that/is/long/enough/for/memory/of/its/own/tree.toy");
  m_pManager->Load(strPath);
  auto const getKey = [this]() -> QdcUnicodeString const& {
    return m_pManager->m_dictModels.GetStartPosition()->first;
  };
  QXModelDataPtr const pLoaded = m_pManager->Load(getKey());
  EXPECT_TRUE(NameIn(pLoaded) == strPath);
  EXPECT_EQ(m_pManager->GetByFileName(strPath).GetPointer(), pLoaded.GetPointer());
  ModelDataInfo info;
  QXModelDataPtr pMade = m_pManager->CreateManual(getKey(), &info);
  EXPECT_TRUE(NameIn(pMade) == strPath);
  EXPECT_EQ(m_pManager->GetByFileName(strPath).GetPointer(), pMade.GetPointer());
  pMade.SetNull();
  m_pManager->Remove(getKey());
  EXPECT_EQ(m_pManager->m_dictModels.GetCount(), 0u);
  EXPECT_EQ(m_pManager->IsExists(strPath), 0);
}

// --- Removing ---

TEST_F(QXModelManagerTest, RemovingAnUnknownNameDoesNothing) {
  m_pManager->Remove(L"tree");
  Create(L"house");
  m_pManager->Remove(L"tree");
  m_pManager->Remove(L"");
  EXPECT_EQ(m_pManager->m_dictModels.GetCount(), 1u);
}

TEST_F(QXModelManagerTest, ARemovedModelLivesOnWithItsHolder) {
  QXModelDataPtr const pModel = Create(L"tree");
  m_pManager->Remove(L"tree");
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
  EXPECT_EQ(pModel.UseCount(), 1u);
  EXPECT_TRUE(NameIn(pModel) == L"tree");
  EXPECT_EQ(pModel->GetModelManager(), m_pManager.get());
}

// A model takes its own key out while it dies, in the middle of its removal. The only entry is the hard case.
TEST_F(QXModelManagerTest, AModelThatOnlyTheCacheHoldsDiesWhenItIsRemoved) {
  for (int nOthers = 0; nOthers < 3; ++nOthers) {
    Create(L"tree");
    if (nOthers > 0) Create(L"house");
    if (nOthers > 1) Create(L"a");
    m_pManager->Remove(L"tree");
    EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
    EXPECT_EQ(m_pManager->m_dictModels.GetCount(), static_cast<unsigned>(nOthers));
    m_pManager->RemoveAll();
  }
}

TEST_F(QXModelManagerTest, RemoveAllLeavesHeldModelsValid) {
  m_pManager->RemoveAll();
  QXModelDataPtr const pModel = Create(L"tree");
  Create(L"house");
  m_pManager->Load(L"a.toy");
  m_pManager->Load(L"empty.toy");
  m_pManager->Load(L"nameless.toy");
  m_pManager->RemoveAll();
  EXPECT_EQ(m_pManager->m_dictModels.GetCount(), 0u);
  EXPECT_EQ(pModel.UseCount(), 1u);
  EXPECT_TRUE(NameIn(pModel) == L"tree");
}

TEST_F(QXModelManagerTest, AModelThatDiesMayTakeTheKeyOfAnotherOut) {
  Create(L"house");
  Create(L"tree")->GetModelDataInfo()->SetName(L"house");
  m_pManager->Remove(L"tree");
  EXPECT_EQ(m_pManager->IsExists(L"house"), 0);
  // The same while all are removed: what is next in the list is gone when its turn comes.
  Create(L"b");
  Create(L"c");
  Create(L"a")->GetModelDataInfo()->SetName(L"b");
  m_pManager->RemoveAll();
  EXPECT_EQ(m_pManager->m_dictModels.GetCount(), 0u);
}

TEST_F(QXModelManagerTest, ReleaseRemovesTheKeyAndEmptiesTheModel) {
  QXModelDataPtr const pModel = m_pManager->Load(L"a.toy");
  pModel->Release();
  EXPECT_EQ(m_pManager->IsExists(L"a.toy"), 0);
  EXPECT_EQ(pModel.UseCount(), 1u);
  EXPECT_EQ(pModel->GetModelDataInfo(), nullptr);
  EXPECT_EQ(pModel->GetModelManager(), nullptr);
}

TEST_F(QXModelManagerTest, AModelThatOnlyTheCacheHoldsMayBeReleased) {
  Create(L"tree").GetPointer();
  QXModelData* const pModel = m_pManager->GetByFileName(L"tree").GetPointer();
  pModel->Release();
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
}

TEST_F(QXModelManagerTest, NotifyingTakesTheNameOutAndNothingMore) {
  QXModelDataPtr const pModel = Create(L"tree");
  m_pManager->NotifyModelManager(pModel.GetPointer());
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
  EXPECT_NE(pModel->GetModelDataInfo(), nullptr);
  EXPECT_EQ(pModel->GetModelManager(), m_pManager.get());
  m_pManager->NotifyModelManager(pModel.GetPointer());
  m_pManager->NotifyModelManager(nullptr);
  QXModelData bare;
  m_pManager->NotifyModelManager(&bare);
}

// --- Ends ---

TEST_F(QXModelManagerTest, HeldModelsOutliveTheManager) {
  QXModelDataPtr pEntry = Create(L"tree");
  QXModelDataPtr pRemoved = Create(L"house");
  m_pManager->Remove(L"house");
  m_pManager.reset();
  EXPECT_EQ(pEntry->GetModelManager(), nullptr);
  EXPECT_EQ(pRemoved->GetModelManager(), nullptr);
  EXPECT_TRUE(NameIn(pEntry) == L"tree");
  EXPECT_EQ(pEntry.UseCount(), 1u);
  pEntry.SetNull();
  pRemoved->Release();
}

// Another manager at the same address must not hear of models that it never had.
TEST_F(QXModelManagerTest, ALateReleaseIsNotTheBusinessOfTheNextManager) {
  alignas(QXModelManager) unsigned char place[sizeof(QXModelManager)];
  auto* pFirst = new (place) QXModelManager;
  ModelDataInfo info;
  QXModelDataPtr pModel = pFirst->CreateManual(L"tree", &info);
  pFirst->~QXModelManager();
  auto* pSecond = new (place) QXModelManager;
  pSecond->CreateManual(L"tree", &info);
  pModel.SetNull();
  EXPECT_EQ(pSecond->IsExists(L"tree"), 1);
  pSecond->~QXModelManager();
}

TEST_F(QXModelManagerTest, CopiesShareTheModelsWhichStayTheFirstOnes) {
  QXModelDataPtr const pModel = Create(L"tree");
  m_pManager->SetMemorySize(7);
  OpenModelManager copy(*m_pManager);
  EXPECT_EQ(copy.GetByFileName(L"tree").GetPointer(), pModel.GetPointer());
  EXPECT_EQ(copy.GetMemorySize(), 7u);
  EXPECT_EQ(pModel.UseCount(), 3u);
  EXPECT_EQ(pModel->GetModelManager(), m_pManager.get());
  pModel->Release();
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
  EXPECT_EQ(copy.IsExists(L"tree"), 1);
}

TEST_F(QXModelManagerTest, ACopyMayEndBeforeAndAfterTheFirst) {
  Create(L"tree");
  { OpenModelManager const copy(*m_pManager); }
  QXModelDataPtr const pModel = m_pManager->GetByFileName(L"tree");
  EXPECT_EQ(pModel->GetModelManager(), m_pManager.get());
  OpenModelManager copy(*m_pManager);
  m_pManager.reset();
  EXPECT_EQ(copy.GetByFileName(L"tree").GetPointer(), pModel.GetPointer());
  EXPECT_EQ(pModel->GetModelManager(), nullptr);
}

TEST_F(QXModelManagerTest, AssignmentTakesTheOthersModelsInPlaceOfItsOwn) {
  Create(L"tree");
  m_pManager->SetMemorySize(5);
  OpenModelManager other;
  ModelDataInfo info;
  other.CreateManual(L"tree", &info);
  QXModelDataPtr const pHouse = other.CreateManual(L"house", &info);
  other = *m_pManager;
  EXPECT_EQ(other.IsExists(L"house"), 0);
  EXPECT_EQ(other.GetByFileName(L"tree").GetPointer(), m_pManager->GetByFileName(L"tree").GetPointer());
  EXPECT_EQ(other.GetMemorySize(), 5u);
  EXPECT_EQ(pHouse.UseCount(), 1u);
}

TEST_F(QXModelManagerTest, AssignmentToItselfChangesNothing) {
  QXModelDataPtr const pModel = Create(L"tree");
  *m_pManager = *&*m_pManager;
  EXPECT_EQ(m_pManager->GetByFileName(L"tree").GetPointer(), pModel.GetPointer());
  EXPECT_EQ(pModel.UseCount(), 2u);
}

TEST_F(QXModelManagerTest, AHolderOfAPlainAddressSharesWithTheCache) {
  Create(L"tree");
  {
    QXModelDataPtr const pModel(m_pManager->GetByFileName(L"tree").GetPointer());
    EXPECT_EQ(pModel.UseCount(), 2u);
  }
  EXPECT_NE(m_pManager->GetByFileName(L"tree")->GetModelDataInfo(), nullptr);
}

// What a derived class does to the dictionary itself is seen at the next look-up.
TEST_F(QXModelManagerTest, ChangesOfTheDictionaryItselfAreSeen) {
  QXModelDataPtr const pModel = Create(L"tree");
  m_pManager->m_dictModels[L"bush"] = pModel;
  EXPECT_EQ(m_pManager->GetByFileName(L"bush").GetPointer(), pModel.GetPointer());
  m_pManager->m_dictModels.RemoveKey(L"tree");
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
  EXPECT_EQ(m_pManager->IsExists(L"bush"), 1);
  m_pManager->m_dictModels.RemoveAll();
  EXPECT_EQ(m_pManager->IsExists(L"bush"), 0);
  Create(L"house");
  EXPECT_EQ(m_pManager->IsExists(L"house"), 1);
}

// --- Registration ---

class QXModelRegistration : public testing::Test {
protected:
  QXModelRegistration() { EXPECT_EQ(QXModelManager::GetSingletonPtr(), nullptr); }
};

TEST_F(QXModelRegistration, TheFirstIsRegisteredACopyIncluded) {
  auto pFirst = std::make_unique<QXModelManager>();
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), pFirst.get());
  QXModelManager const second;
  QXModelManager const copy(*pFirst);
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), pFirst.get());
  pFirst.reset();
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), nullptr);
  QXModelManager const later(second);
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), &later);
}

TEST_F(QXModelRegistration, TheEndOfAnyUnregisters) {
  QXModelManager const first;
  { QXModelManager const second; }
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), nullptr);
  QXModelManager& made = QXModelManager::GetSingleton();
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), &made);
  EXPECT_NE(&made, &first);
  delete &made;
}

TEST_F(QXModelRegistration, TheEndOfTheSecondRendererUnregistersTheFirstOnes) {
  QXNullGraphics3D first;
  ModelDataInfo info;
  QXModelDataPtr const pModel = first.m_pModelManager->CreateManual(L"tree", &info);
  QXModelDataPtr pOther;
  {
    QXNullGraphics3D second;
    EXPECT_EQ(QXModelManager::GetSingletonPtr(), first.m_pModelManager);
    pOther = second.m_pModelManager->CreateManual(L"tree", &info);
  }
  EXPECT_EQ(QXModelManager::GetSingletonPtr(), nullptr);
  EXPECT_EQ(pOther->GetModelManager(), nullptr);
  pOther.SetNull();
  EXPECT_EQ(first.m_pModelManager->GetByFileName(L"tree").GetPointer(), pModel.GetPointer());
}

TEST_F(QXModelRegistration, ModelsAreHeldOverTheEndOfTheirRenderer) {
  QXModelDataPtr pModel;
  {
    QXNullGraphics3D graphics;
    ModelDataInfo info;
    pModel = graphics.m_pModelManager->CreateManual(L"tree", &info);
    graphics.ClearResource();
    EXPECT_EQ(graphics.m_pModelManager, nullptr);
  }
  EXPECT_EQ(pModel->GetModelManager(), nullptr);
  EXPECT_EQ(pModel.UseCount(), 1u);
  EXPECT_TRUE(pModel->GetModelDataInfo()->GetName() == L"tree");
}

}  // namespace
}  // namespace QXC
