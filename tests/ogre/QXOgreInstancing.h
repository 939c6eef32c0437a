/// @file
/// Instancings beside the drawables that show the same.
#pragma once

#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>
#include <QxGraphics3D/model/QXRenderObjectInstance.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

/// A renderer with an instancing "trees" in the scene that its camera draws.
class QXOgreInstancingScenery : public QXOgreScenery {
protected:
  void SetUp() override {
    QXOgreScenery::SetUp();
    if (!m_pTarget) return;
    m_pManager = m_pGraphics3D->GetHwInstancingManager();
    ASSERT_NE(m_pManager, nullptr);
    m_pTrees = m_pManager->CreateInstancing(L"trees", L"3D");
    ASSERT_NE(m_pTrees, nullptr) << Text(m_pGraphics3D->GetErrorText());
  }

  static QXMatrix4d At(double dX, double dY, double dZ) {
    QXMatrix4d mat;
    mat.SetTrans(QXVector3d(dX, dY, dZ));
    return mat;
  }
  unsigned int Add(QXMatrix4d const& mat) { return m_pManager->AddPlacements(m_pTrees, &mat, 1); }
  /// A square of half an edge around the origin, in two triangles of one range.
  static std::unique_ptr<QXRenderOperationMultiIndex> MakeSquare(float fHalf, QXColorValue3D const& color) {
    auto pMesh = MakeMesh({{-fHalf, -fHalf, 0}, {fHalf, -fHalf, 0}, {fHalf, fHalf, 0}, {-fHalf, fHalf, 0}});
    AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, color);
    return pMesh;
  }
  void GiveSquare(float fHalf = 0.1F, QXColorValue3D const& color = RED) {
    EXPECT_EQ(m_pManager->SetMesh(m_pTrees, MakeSquare(fHalf, color).get()), 1);
  }
  /// A roof with normals, colours of its vertices and two ranges.
  static std::unique_ptr<QXRenderOperationMultiIndex> MakeRoof() {
    QXVector3d const left(-0.8, 0.0, 0.6);
    QXVector3d const right(0.8, 0.0, 0.6);
    auto pMesh = MakeMesh({{-0.2F, -0.2F, 0.0F, left, 0xFF4080FF}, {0.0F, -0.2F, 0.2F, left, 0xFFFFFFFF},
                              {0.0F, 0.2F, 0.2F, left, 0xFFFFFFFF}, {-0.2F, 0.2F, 0.0F, left, 0xFF40FF80},
                              {0.0F, -0.2F, 0.2F, right, 0xFFFFFFFF}, {0.2F, -0.2F, 0.0F, right, 0xFFFF40FF},
                              {0.2F, 0.2F, 0.0F, right, 0xFFFFFF40}, {0.0F, 0.2F, 0.2F, right, 0xFFFFFFFF}},
        true, true);
    AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, QXColorValue3D(1.0, 0.8, 0.6, 1.0));
    AddRange<unsigned int>(*pMesh, {4, 5, 6, 4, 6, 7}, QXColorValue3D(0.7, 1.0, 0.9, 1.0));
    return pMesh;
  }
  /// Turned, scaled, sometimes mirrored, and anywhere the camera sees and beyond.
  static std::vector<QXMatrix4d> MakePlacements(unsigned int nCount, unsigned int nSeed, QXVector3d const& vecMiddle) {
    std::mt19937 engine(nSeed);
    std::uniform_real_distribution<double> across(-1.2, 1.2);
    std::uniform_real_distribution<double> size(0.3, 1.5);
    std::uniform_real_distribution<double> angle(0.0, 6.28);
    std::vector<QXMatrix4d> arrPlacements;
    for (unsigned int i = 0; i < nCount; ++i) {
      double const dSin = std::sin(angle(engine));
      double const dCos = std::sqrt(1.0 - dSin * dSin);
      QXMatrix4d mat;
      mat[0][0] = dCos * size(engine);
      mat[0][1] = dSin * size(engine);
      mat[1][0] = -dSin * size(engine);
      mat[1][1] = dCos * size(engine) * (i % 3 == 0 ? -1.0 : 1.0);
      mat[2][2] = size(engine);
      mat.SetTrans(vecMiddle + QXVector3d(across(engine), across(engine), 3.0 * across(engine)));
      arrPlacements.push_back(mat);
    }
    return arrPlacements;
  }
  /// One drawable a placement.
  void DrawEach(QXRenderOperationMultiIndex& mesh, std::vector<QXMatrix4d> const& arrPlacements) {
    for (QXMatrix4d const& mat : arrPlacements) Draw(mesh)->SetModelMatrix(mat);
  }
  void DeleteDrawables() {
    for (QXRenderOperation3D* const pOperation : m_arrOperations) delete pOperation;
    m_arrOperations.clear();
  }
  /// Corners fall on the middles of pixels once in a million times, and rounding then decides.
  static void ExpectSame(QXPicture const& first, QXPicture const& second, int nMostDifferent = 4) {
    int nDifferent = 0;
    for (std::size_t i = 0; i < first.GetBytes().size(); i += 4) {
      bool bSame = true;
      for (std::size_t k = 0; k < 4; ++k)
        bSame = bSame && std::abs(int{first.GetBytes()[i + k]} - int{second.GetBytes()[i + k]}) <= 1;
      nDifferent += bSame ? 0 : 1;
    }
    EXPECT_LE(nDifferent, nMostDifferent);
  }
  /// Pixels that are not the background.
  static int CountDrawn(QXPicture const& picture) {
    int nDrawn = 0;
    for (unsigned int y = 0; y < SIZE; ++y)
      for (unsigned int x = 0; x < SIZE; ++x) nDrawn += picture.At(x, y) == BACKGROUND_PIXEL ? 0 : 1;
    return nDrawn;
  }
  unsigned int Drawn() const { return m_pManager->GetDrawnPlacementCount(m_pTrees); }

  QXHwInstancingManager* m_pManager = nullptr;
  QXInstancing* m_pTrees = nullptr;
};

}  // namespace QXC
