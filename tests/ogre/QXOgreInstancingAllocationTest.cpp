// What a frame allocates does not depend on how many instances there are, nor on how many of them move.
#include <tests/ogre/QXOgreInstancing.h>
#include <tests/testing/QXAllocationCounter.h>

namespace QXC {

class QXOgreInstancingAllocation : public QXOgreInstancingScenery {
protected:
  /// Calls of operator new in a frame, once nothing is new any more.
  long CountFrame() {
    m_pGraphics3D->UpdateAllRenderTargets();
    m_pGraphics3D->UpdateAllRenderTargets();
    long const nBefore = GetAllocationCount();
    m_pGraphics3D->UpdateAllRenderTargets();
    return GetAllocationCount() - nBefore;
  }
  static std::vector<QXMatrix4d> MakeField(unsigned int nCount) { return MakePlacements(nCount, 37, QXVector3d::ZERO); }
};

TEST_F(QXOgreInstancingAllocation, ThousandsOfPlacesTakeAsManyAsOne) {
  GiveSquare(0.01F);
  Add(At(0, 0, 0));
  long const nOne = CountFrame();
  auto const arrField = MakeField(10000);
  m_pManager->AddPlacements(m_pTrees, arrField.data(), 10000);
  EXPECT_EQ(CountFrame(), nOne);
  EXPECT_GT(Drawn(), 1000U);
  // Seen from elsewhere, with other places in sight.
  m_pCamera->SetPosition(0.5, 0.5, 10.0);
  EXPECT_EQ(CountFrame(), nOne);
  m_pManager->SetVisibleDistance(m_pTrees, 9.0, 11.0);
  EXPECT_EQ(CountFrame(), nOne);
}

TEST_F(QXOgreInstancingAllocation, BlendedPlacesAreSortedWithoutAny) {
  GiveSquare(0.01F);
  Add(At(0, 0, 0));
  m_pManager->SetPlacementColor(m_pTrees, 0, QXColorValue3D(1.0, 1.0, 1.0, 0.5));
  long const nOne = CountFrame();
  auto const arrField = MakeField(10000);
  m_pManager->AddPlacements(m_pTrees, arrField.data(), 10000);
  EXPECT_EQ(CountFrame(), nOne);
}

TEST_F(QXOgreInstancingAllocation, MovingAllOfThemTakesNone) {
  GiveSquare(0.01F);
  auto const arrField = MakeField(10000);
  m_pManager->AddPlacements(m_pTrees, arrField.data(), 10000);
  CountFrame();
  long const nBefore = GetAllocationCount();
  m_pManager->SetPlacements(m_pTrees, 0, arrField.data(), 10000);
  m_pManager->Update();
  m_pManager->GetBoundingBox(m_pTrees);
  EXPECT_EQ(GetAllocationCount(), nBefore);
}

}  // namespace QXC
