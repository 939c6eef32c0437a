// Models at many places, from their files to a renderer.
#include <apps/qx3d/QXInstanceModels.h>
#include <apps/qx3d/QXInstanceSet.h>
#include <apps/qx3d/QXSceneModels.h>

#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>
#include <QxGraphics3D/testing/QXNullHwInstancingManager.h>
#include <QxGraphics3D/testing/QXNullRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullScene.h>

#include <tests/assimp/QXTestFiles.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QXApp {
namespace {

using QXC::QXVector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A renderer as it is, or one without instancing.
class Renderer final : public QXC::QXNullGraphics3D {
public:
  explicit Renderer(bool bInstancing) {
    Initialize(QXC::QdcUnicodeString());
    if (!bInstancing) m_pHwInstancingManager = nullptr;
  }
  QXC::QXNullInstancing* FindInstancing(wchar_t const* szName) {
    return static_cast<QXC::QXNullInstancing*>(GetHwInstancingManager()->GetInstancing(szName));
  }
};

class QXInstanceSetTest : public testing::Test {
protected:
  QXInstanceSetTest() {
    m_strBlock = m_Folder.Write("block.obj", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.obj")));
    m_Folder.Write("block.mtl", QXAssimp::ReadTestFile(QXAssimp::ModelPath("block.mtl")));
  }

  QXSceneInstances& Add(std::vector<QXScenePlace> const& vecPlaces) {
    QXSceneInstances instances;
    instances.m_strFile = m_strBlock;
    instances.m_eUp = UpAxis::Z;
    instances.m_vecPlaces = vecPlaces;
    instances.m_nLine = 2;
    m_Scene.m_vecInstances.push_back(instances);
    return m_Scene.m_vecInstances.back();
  }

  void Load() {
    m_Models.Load(
        m_Scene, UpAxis::Auto, [this](std::string const& strStep) { m_vecSteps.push_back(strStep); }, m_Problems,
        m_vecPictureProblems);
  }

  /// Hands everything over. @return  what went wrong
  std::string Show(Renderer& renderer) {
    for (QXInstanceGroup const& group : m_Models.GetGroups())
      for (QXScenePart& part : m_Models.GetModel(group.m_nModel).m_vecParts) {
        std::string strReason =
            m_Set.Add(renderer, L"Scene3D", *part.m_pOperation, group, m_Scene.m_vecInstances[group.m_nSection]);
        if (!strReason.empty()) return strReason;
      }
    return std::string();
  }

  QXAssimp::QXTestFolder m_Folder;
  std::string m_strBlock;
  QXSceneFile m_Scene;
  QXSceneProblems m_Problems{"s.qxscene"};
  std::vector<std::string> m_vecPictureProblems;
  std::vector<std::string> m_vecSteps;
  QXInstanceModels m_Models;
  QXInstanceSet m_Set;
};

TEST_F(QXInstanceSetTest, FileIsReadOnceForAllItsSections) {
  Add({{QXVector3d(0, 0, 0), true, 0.0, 1.0}});
  Add({{QXVector3d(5, 0, 0), true, 0.0, 1.0}, {QXVector3d(9, 0, 0), true, 90.0, 2.0}});
  Load();
  EXPECT_TRUE(m_Problems.IsEmpty()) << m_Problems.GetLines()[0];
  EXPECT_THAT(m_vecSteps, ElementsAre("reading " + m_strBlock));
  ASSERT_EQ(m_Models.GetGroups().size(), 2u);
  EXPECT_EQ(m_Models.GetGroups()[1].m_nModel, 0u);
  EXPECT_EQ(m_Models.GetInstanceCount(), 3u);
  EXPECT_EQ(m_Models.GetTriangleCount(), 36u);
  // The block is 2 x 3 x 4; turned by a quarter its length goes east, and its width south.
  QXC::QXBoundingBox const& bounds = m_Models.GetBounds();
  EXPECT_EQ(bounds.GetMin(), QXVector3d(0.0, -4.0, 0.0));
  EXPECT_EQ(bounds.GetMax(), QXVector3d(15.0, 3.0, 8.0));
}

TEST_F(QXInstanceSetTest, MaterialsOfOneTextureAreOneMesh) {
  // Two materials, of which neither has a picture.
  m_strBlock = m_Folder.Write("two.obj", "mtllib two.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nusemtl a\nf 1 2 3\n"
                                         "usemtl b\nf 1 2 4\n");
  m_Folder.Write("two.mtl", "newmtl a\nKd 1 0 0\nnewmtl b\nKd 0 1 0\n");
  Add({{QXVector3d(), true, 0.0, 1.0}});
  Load();
  ASSERT_TRUE(m_Problems.IsEmpty()) << m_Problems.GetLines()[0];
  ASSERT_EQ(m_Models.GetModel(0).m_vecParts.size(), 1u);
  EXPECT_EQ(m_Models.GetModel(0).m_vecParts[0].m_pOperation->m_pVertexBlock->m_nVertexCount, 6u);
  EXPECT_EQ(m_Models.GetModel(0).m_nTriangles, 2u);
}

TEST_F(QXInstanceSetTest, ModelsThatCannotBeShownAreToldAtTheirLines) {
  Add({{QXVector3d(), true, 0.0, 1.0}}).m_strFile = m_Folder.Write("bad.obj", "nothing");
  Add({{QXVector3d(), true, 0.0, 1e15}}).m_nLine = 9;
  Load();
  ASSERT_EQ(m_Problems.GetLines().size(), 2u);
  EXPECT_THAT(m_Problems.GetLines()[0], HasSubstr("s.qxscene:2: " + m_Folder.Path("bad.obj") + ": "));
  EXPECT_THAT(
      m_Problems.GetLines()[1], HasSubstr("s.qxscene:9: " + m_strBlock + ": an instance is placed beyond 1e15"));
}

TEST_F(QXInstanceSetTest, InstancingGetsMeshPlacesColourAndDistance) {
  QXSceneInstances& instances =
      Add({{QXVector3d(6000000, 0, 0), true, 0.0, 1.0}, {QXVector3d(5, 0, 0), true, 90.0, 2.0}});
  instances.m_nColor[1] = 51;
  instances.m_dDistance = 300.0;
  Load();
  Renderer renderer(true);
  EXPECT_EQ(Show(renderer), "");
  EXPECT_EQ(m_Set.GetMeshCount(), 1u);
  QXC::QXNullInstancing const* pInstancing = renderer.FindInstancing(L"Instances0");
  ASSERT_NE(pInstancing, nullptr);
  ASSERT_EQ(pInstancing->m_arrPlacements.size(), 2u);
  EXPECT_EQ(pInstancing->m_arrPlacements[0].m_matPlacement[3][0], 6000000.0);
  EXPECT_EQ(QXVector3d(0, 1, 0).MultiplyMatrix(pInstancing->m_arrPlacements[1].m_matPlacement), QXVector3d(7, 0, 0));
  EXPECT_EQ(pInstancing->m_arrPlacements[0].m_Color.g, 0.2);
  EXPECT_EQ(pInstancing->m_arrPlacements[0].m_Color.r, 1.0);
  EXPECT_EQ(pInstancing->m_dFarDist, 300.0);
  // Where the block stands in the world: its mesh may have another zero than its file.
  QXC::QXBoundingBox const box = pInstancing->GetPlacementBounds(pInstancing->m_arrPlacements[0]);
  EXPECT_EQ(box.GetMin(), QXVector3d(6000000.0, 0.0, 0.0));
  EXPECT_EQ(box.GetMax(), QXVector3d(6000002.0, 3.0, 4.0));
  EXPECT_THAT(renderer.FindScene(L"Scene3D")->GetDrawables(), IsEmpty());
  m_Set.GiveBack(renderer);
  EXPECT_EQ(renderer.GetHwInstancingManager()->GetInstancingCount(), 0u);
}

TEST_F(QXInstanceSetTest, WithoutInstancingEachIsADrawable) {
  QXSceneInstances& instances = Add({{QXVector3d(10, 0, 0), true, 0.0, 1.0}, {QXVector3d(5, 0, 0), true, 90.0, 2.0}});
  instances.m_nColor[1] = 51;
  Load();
  Renderer renderer(false);
  EXPECT_EQ(Show(renderer), "");
  auto const& arrDrawables = renderer.FindScene(L"Scene3D")->GetDrawables();
  ASSERT_EQ(arrDrawables.size(), 2u);
  EXPECT_EQ(arrDrawables[0]->GetWorldBoundingBox().GetMin(), QXVector3d(10.0, 0.0, 0.0));
  EXPECT_EQ(arrDrawables[0]->GetWorldBoundingBox().GetMax(), QXVector3d(12.0, 3.0, 4.0));
  EXPECT_EQ(arrDrawables[1]->GetWorldBoundingBox().GetMax(), QXVector3d(11.0, 0.0, 8.0));
  EXPECT_EQ(arrDrawables[1]->GetColor().g, 0.2);
  m_Set.GiveBack(renderer);
  EXPECT_THAT(renderer.FindScene(L"Scene3D")->GetDrawables(), IsEmpty());
}

TEST_F(QXInstanceSetTest, WithoutInstancingThereIsALimit) {
  Add(std::vector<QXScenePlace>(QXInstanceSet::ms_nMaxDrawables + 1, {QXVector3d(), true, 0.0, 1.0}));
  Load();
  Renderer renderer(false);
  EXPECT_THAT(Show(renderer), HasSubstr("the renderer has no instancing, and these would be more than 100000"));
  EXPECT_THAT(renderer.FindScene(L"Scene3D")->GetDrawables(), IsEmpty());
}

TEST_F(QXInstanceSetTest, UnknownSceneIsTold) {
  Add({{QXVector3d(), true, 0.0, 1.0}});
  Load();
  Renderer renderer(true);
  QXScenePart& part = m_Models.GetModel(0).m_vecParts[0];
  EXPECT_THAT(m_Set.Add(renderer, L"Nowhere", *part.m_pOperation, m_Models.GetGroups()[0], m_Scene.m_vecInstances[0]),
      HasSubstr("the renderer makes no instances"));
}

TEST_F(QXInstanceSetTest, BakedInstancesCountAsModels) {
  Add({{QXVector3d(0, 0, 0), true, 0.0, 1.0}, {QXVector3d(5, 0, 0), true, 0.0, 1.0}});
  QXSceneModels models;
  models.LoadInstances(
      m_Scene, UpAxis::Auto, [](std::string const&) {}, m_Problems, m_vecPictureProblems);
  EXPECT_TRUE(m_Problems.IsEmpty());
  EXPECT_EQ(models.GetTriangleCount(), 24u);
  QXC::QXBoundingBox nothing;
  nothing.SetNULL();
  QXScene const scene = models.Build(nothing);
  EXPECT_EQ(scene.m_nMeshes, 2u);
  EXPECT_EQ(scene.m_Bounds.GetMax(), QXVector3d(7.0, 3.0, 4.0));
}

}  // namespace
}  // namespace QXApp
