#include <QxGraphics3D/model/QXGeometryInstanceManager.h>

#include <QxGraphics3D/model/QXRenderObjectInstance.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <type_traits>

namespace QXC {
namespace {

class OpenManager : public QXGeometryInstanceManager {
public:
  using QXGeometryInstanceManager::m_dictROInstances;
};

/// Counts itself and says when it goes.
class MortalInstance : public QXRenderObjectInstance {
public:
  explicit MortalInstance(std::function<void()> onEnd = {}) : m_OnEnd(std::move(onEnd)) { ++ms_nLiving; }
  ~MortalInstance() override {
    --ms_nLiving;
    if (m_OnEnd) m_OnEnd();
  }

  static inline int ms_nLiving = 0;

private:
  std::function<void()> m_OnEnd;
};

class QXGeometryInstanceManagerTest : public testing::Test {
protected:
  QXGeometryInstanceManagerTest() { MortalInstance::ms_nLiving = 0; }
  ~QXGeometryInstanceManagerTest() override {
    m_pManager.reset();
    EXPECT_EQ(MortalInstance::ms_nLiving, 0);
  }
  std::unique_ptr<OpenManager> m_pManager = std::make_unique<OpenManager>();
};

TEST_F(QXGeometryInstanceManagerTest, ANewOneIsEmpty) {
  EXPECT_EQ(m_pManager->IsExists(L""), 0);
  EXPECT_EQ(m_pManager->GetROInstance(L"tree").IsNull(), 1);
  EXPECT_EQ(m_pManager->m_dictROInstances.GetCount(), 0u);
  EXPECT_TRUE(std::has_virtual_destructor_v<QXGeometryInstanceManager>);
}

TEST_F(QXGeometryInstanceManagerTest, TakesAMeshOverAndSharesItByName) {
  auto* const pTree = new MortalInstance;
  QXROInstancePtr const pAdded = m_pManager->AddROInstance(L"tree", pTree);
  EXPECT_EQ(pAdded.GetPointer(), pTree);
  EXPECT_EQ(pAdded.UseCount(), 2u);
  EXPECT_EQ(m_pManager->GetROInstance(L"tree").GetPointer(), pTree);
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 1);
  EXPECT_EQ(m_pManager->IsExists(L"house"), 0);
}

TEST_F(QXGeometryInstanceManagerTest, AKnownNameGetsTheNewMeshAndHoldersKeepTheOld) {
  auto* const pOld = new MortalInstance;
  QXROInstancePtr const pHeld = m_pManager->AddROInstance(L"tree", pOld);
  auto* const pNew = new MortalInstance;
  EXPECT_EQ(m_pManager->AddROInstance(L"tree", pNew).GetPointer(), pNew);
  EXPECT_EQ(m_pManager->GetROInstance(L"tree").GetPointer(), pNew);
  EXPECT_EQ(pHeld.GetPointer(), pOld);
  EXPECT_EQ(pHeld.UseCount(), 1u);
  EXPECT_EQ(MortalInstance::ms_nLiving, 2);
  m_pManager->AddROInstance(L"tree", new MortalInstance);
  EXPECT_EQ(MortalInstance::ms_nLiving, 2);
}

TEST_F(QXGeometryInstanceManagerTest, NullStoresNothingAndGivesWhatIsThere) {
  EXPECT_EQ(m_pManager->AddROInstance(L"tree", nullptr).IsNull(), 1);
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 0);
  auto* const pTree = new MortalInstance;
  m_pManager->AddROInstance(L"tree", pTree);
  EXPECT_EQ(m_pManager->AddROInstance(L"tree", nullptr).GetPointer(), pTree);
  EXPECT_EQ(m_pManager->IsExists(L"tree"), 1);
}

TEST_F(QXGeometryInstanceManagerTest, TheSameMeshUnderTwoNamesIsCountedOnce) {
  auto* const pTree = new MortalInstance;
  m_pManager->AddROInstance(L"tree", pTree);
  EXPECT_EQ(m_pManager->AddROInstance(L"bush", pTree).UseCount(), 3u);
  EXPECT_EQ(m_pManager->AddROInstance(L"tree", pTree).UseCount(), 3u);
  m_pManager->Remove(L"tree");
  EXPECT_EQ(MortalInstance::ms_nLiving, 1);
  m_pManager->Remove(L"bush");
  EXPECT_EQ(MortalInstance::ms_nLiving, 0);
}

TEST_F(QXGeometryInstanceManagerTest, AMeshOfAnotherManagerIsShared) {
  OpenManager other;
  auto* const pTree = new MortalInstance;
  other.AddROInstance(L"tree", pTree);
  m_pManager->AddROInstance(L"tree", pTree);
  other.RemoveAll();
  EXPECT_EQ(m_pManager->GetROInstance(L"tree").UseCount(), 2u);
}

TEST_F(QXGeometryInstanceManagerTest, RemoveDropsOneNameAndIgnoresUnknownOnes) {
  m_pManager->AddROInstance(L"tree", new MortalInstance);
  m_pManager->AddROInstance(L"house", new MortalInstance);
  m_pManager->Remove(L"car");
  EXPECT_EQ(MortalInstance::ms_nLiving, 2);
  m_pManager->Remove(L"tree");
  EXPECT_EQ(MortalInstance::ms_nLiving, 1);
  EXPECT_EQ(m_pManager->IsExists(L"house"), 1);
}

TEST_F(QXGeometryInstanceManagerTest, RemoveAllLeavesHeldMeshesAlive) {
  m_pManager->RemoveAll();
  QXROInstancePtr const pHeld = m_pManager->AddROInstance(L"tree", new MortalInstance);
  m_pManager->AddROInstance(L"house", new MortalInstance);
  m_pManager->RemoveAll();
  EXPECT_EQ(m_pManager->m_dictROInstances.GetCount(), 0u);
  EXPECT_EQ(pHeld.UseCount(), 1u);
  EXPECT_EQ(MortalInstance::ms_nLiving, 1);
}

TEST_F(QXGeometryInstanceManagerTest, MeshesDieWithTheManagerOrWithTheirLastHolder) {
  QXROInstancePtr pHeld = m_pManager->AddROInstance(L"tree", new MortalInstance);
  m_pManager->AddROInstance(L"house", new MortalInstance);
  m_pManager.reset();
  EXPECT_EQ(MortalInstance::ms_nLiving, 1);
  pHeld.SetNull();
  EXPECT_EQ(MortalInstance::ms_nLiving, 0);
}

// What a plug-in does while its drawable dies.
TEST_F(QXGeometryInstanceManagerTest, AMeshThatDiesMayCallBack) {
  auto const callBack = [this] {
    m_pManager->Remove(L"a");
    m_pManager->Remove(L"b");
    m_pManager->IsExists(L"c");
  };
  for (wchar_t const* const szName : {L"a", L"b", L"c"}) {
    m_pManager->AddROInstance(szName, new MortalInstance(callBack));
  }
  m_pManager->AddROInstance(L"c", new MortalInstance(callBack));
  EXPECT_EQ(m_pManager->m_dictROInstances.GetCount(), 1u);
  m_pManager->AddROInstance(L"a", new MortalInstance(callBack));
  m_pManager->AddROInstance(L"b", new MortalInstance(callBack));
  m_pManager->RemoveAll();
  EXPECT_EQ(m_pManager->m_dictROInstances.GetCount(), 0u);
}

// One after the other, and under the names of before: the others are still there, and a new name stays.
TEST_F(QXGeometryInstanceManagerTest, AMeshThatDiesWithAllSeesTheOthers) {
  unsigned char bSecond = 0;
  auto const callBack = [&] {
    bSecond = m_pManager->IsExists(L"b");
    m_pManager->AddROInstance(L"c", new MortalInstance);
  };
  m_pManager->AddROInstance(L"a", new MortalInstance(callBack));
  m_pManager->AddROInstance(L"b", new MortalInstance);
  m_pManager->RemoveAll();
  EXPECT_EQ(bSecond, 1);
  EXPECT_EQ(m_pManager->IsExists(L"b"), 0);
  EXPECT_EQ(m_pManager->IsExists(L"c"), 1);
}

TEST_F(QXGeometryInstanceManagerTest, CopiesShareTheMeshes) {
  auto* const pTree = new MortalInstance;
  m_pManager->AddROInstance(L"tree", pTree);
  OpenManager copy(*m_pManager);
  OpenManager assigned;
  assigned.AddROInstance(L"house", new MortalInstance);
  assigned = *m_pManager;
  EXPECT_EQ(copy.GetROInstance(L"tree").GetPointer(), pTree);
  EXPECT_EQ(assigned.GetROInstance(L"tree").GetPointer(), pTree);
  EXPECT_EQ(assigned.IsExists(L"house"), 0);
  EXPECT_EQ(MortalInstance::ms_nLiving, 1);
  EXPECT_EQ(copy.GetROInstance(L"tree").UseCount(), 4u);
  assigned = *&assigned;
  EXPECT_EQ(assigned.IsExists(L"tree"), 1);
  m_pManager->RemoveAll();
  EXPECT_EQ(copy.IsExists(L"tree"), 1);
}

}  // namespace
}  // namespace QXC
