// Particles, skeletons and the glow of what is bright.
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/renderop/QXBoneKey.h>
#include <QxGraphics3D/renderop/QXParticleSystem3D.h>
#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/view/QXBloomSetting.h>

#include <examples/gallery/QXGalleryPictures.h>
#include <examples/gallery/QXGalleryStage.h>

namespace QXGallery {

namespace {

using QXC::QXColorValue3D;
using QXC::QXVector3d;

QXC::QXMatrix4d Translation(QXVector3d const& vecPlace) {
  QXC::QXMatrix4d mat;
  mat.SetTrans(vecPlace);
  return mat;
}

/// Particles of a kind, as many seconds after their beginning.
bool AddParticles(QXGalleryStage& stage, wchar_t const* szKind, QXVector3d const& vecPlace, double dSeconds) {
  QXC::QXParticleSystem3D* const pMade = stage.GetManager().CreateParticleSystem(L"3D", szKind);
  if (!pMade) return false;
  QXC::QXParticleSystem3D& system = stage.Keep(pMade);
  system.SetModelMatrix(Translation(vecPlace));
  system.Advance(dSeconds);
  return true;
}

bool DrawSmoke(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  stage.AddView({5.0, -10.0, 4.5}, {0.0, 0.0, 2.6});
  return AddParticles(stage, L"smoke", {-2.4, 0.3, 1.6}, 9.0);
}

bool DrawFire(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  stage.GetTarget().SetAmbientLight({0.12, 0.14, 0.22, 1.0});
  stage.GetTarget().SetDiffuseLight({0.18, 0.18, 0.25, 1.0});
  stage.AddView({4.0, -9.0, 3.0}, {0.0, -0.5, 1.0});
  stage.GetTarget().SetBackgroundColor({0.03, 0.04, 0.09, 1.0});
  return AddParticles(stage, L"fire", {-1.2, -3.2, 0.1}, 5.0) && AddParticles(stage, L"smoke", {-1.2, -3.2, 1.6}, 5.0);
}

bool DrawFountain(QXGalleryStage& stage) {
  QXGalleryMesh mesh = MakeYard();
  mesh.AddCylinder({-0.3, -3.4, 0.0}, 1.4, 1.4, 0.3, CHALK).AddCylinder({-0.3, -3.4, 0.3}, 0.2, 0.12, 0.5, CHALK);
  stage.Add(mesh);
  stage.AddView({6.0, -15.0, 5.0}, {0.0, 0.0, 2.7});
  return AddParticles(stage, L"fountain", {-0.3, -3.4, 0.8}, 6.0);
}

bool DrawRain(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  stage.GetTarget().SetAmbientLight({0.42, 0.44, 0.48, 1.0});
  stage.GetTarget().SetDiffuseLight({0.2, 0.2, 0.2, 1.0});
  stage.AddView({5.0, -9.0, 3.5}, {0.0, 0.0, 1.2});
  stage.GetTarget().SetBackgroundColor({0.4, 0.44, 0.5, 1.0});
  return AddParticles(stage, L"rain", {0.0, 0.0, 14.0}, 6.0);
}

bool DrawSnow(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  stage.GetTarget().SetAmbientLight({0.5, 0.52, 0.58, 1.0});
  stage.GetTarget().SetDiffuseLight({0.3, 0.3, 0.3, 1.0});
  stage.AddView({5.0, -9.0, 3.5}, {0.0, 0.0, 1.2});
  stage.GetTarget().SetBackgroundColor({0.5, 0.55, 0.62, 1.0});
  return AddParticles(stage, L"snow", {0.0, 0.0, 13.0}, 20.0);
}

constexpr int BONES = 6;
constexpr double BONE_LENGTH = 0.6;

/// A trunk in which each vertex belongs to the two bones between which it stands.
std::unique_ptr<QXC::QXRenderOperationMultiIndex> MakeTrunk() {
  QXGalleryMesh mesh;
  for (int i = 0; i < 4 * BONES; ++i) {
    double const dStep = BONE_LENGTH / 4.0;
    mesh.AddCylinder({0.0, 0.0, i * dStep}, 0.32 - 0.01 * i, 0.31 - 0.01 * i, dStep, i / 2 % 2 == 0 ? BRICK : CHALK);
  }
  auto pOperation = mesh.MakeOperation();
  QXC::QXVertexBlock const& block = *pOperation->m_pVertexBlock;
  if (!pOperation->m_pTexCoordBlock) pOperation->m_pTexCoordBlock = new QXC::QXTexCoordBlock;
  float* arrSets[2] = {};
  for (unsigned int i = 0; i < 2; ++i) {
    unsigned int const nSet = i == 0 ? QXC::QXSkeletonAnimation::BONE_SET : QXC::QXSkeletonAnimation::WEIGHT_SET;
    arrSets[i] = new float[std::size_t{block.m_nVertexCount} * 4]();
    pOperation->m_pTexCoordBlock->m_pBuffers[nSet] = arrSets[i];
    pOperation->m_pTexCoordBlock->m_nDims[nSet] = 4;
    pOperation->m_pTexCoordBlock->m_nCounts[nSet] = block.m_nVertexCount;
  }
  for (std::size_t i = 0; i < block.m_nVertexCount; ++i) {
    double const dHeight = block.m_pBuffer[i * block.m_nStride + static_cast<std::size_t>(block.m_nPositionOffset) + 2];
    double const dPlace = std::clamp(dHeight / BONE_LENGTH - 0.5, 0.0, BONES - 1.0);
    double const dLower = std::min(std::floor(dPlace), BONES - 2.0);
    arrSets[0][4 * i] = static_cast<float>(dLower);
    arrSets[0][4 * i + 1] = static_cast<float>(dLower + 1.0);
    arrSets[1][4 * i] = static_cast<float>(1.0 - (dPlace - dLower));
    arrSets[1][4 * i + 1] = static_cast<float>(dPlace - dLower);
  }
  return pOperation;
}

/// Each bone leans a little more than the one under it, to one side and, two seconds later, to the other.
QXC::QXSkeletonAnimation& MakeSway(QXGalleryStage& stage) {
  QXC::QXSkeletonAnimation& skeleton = stage.Keep(stage.GetManager().CreateSkeletonAnimation(L"sway"));
  for (int i = 0; i < BONES; ++i) {
    QXVector3d const vecPlace(0.0, 0.0, i == 0 ? 0.0 : BONE_LENGTH);
    skeleton.AddBone(L"bone", i - 1, Translation(vecPlace));
    QXC::QXBoneKey arrKeys[2];
    for (int k = 0; k < 2; ++k) {
      arrKeys[k].m_dTime = 2.0 * k;
      arrKeys[k].m_vecPosition = vecPlace;
      arrKeys[k].m_qRotation.FromAngleAxis((k == 0 ? -0.27 : 0.27) * (i > 0 ? 1.0 : 0.0), QXVector3d(0.0, 1.0, 0.0));
    }
    QXC::QdcArray<QXC::QXAnimationKey*> arrPointers;
    for (QXC::QXBoneKey& key : arrKeys) arrPointers.Add(&key);
    skeleton.SetKeys(i, arrPointers);
  }
  return skeleton;
}

bool DrawSkeleton(QXGalleryStage& stage) {
  stage.Add(QXGalleryMesh().AddFloor(6, {0.8, 0.82, 0.78, 1.0}, {0.62, 0.66, 0.6, 1.0}));
  auto const pTrunk = MakeTrunk();
  for (int i = 0; i < 5; ++i) {
    // A skeleton has one time, so trunks that sway apart from each other have one each.
    QXC::QXSkeletonAnimation& skeleton = MakeSway(stage);
    skeleton.SetTime(0.5 * i);
    QXC::QXRenderOperation3D& trunk = stage.Keep(stage.GetManager().CreateRenderOperation3D(L"3D", 1));
    trunk.SetRenderOperationMultiIndex(pTrunk.get());
    trunk.SetModelMatrix(Translation({2.2 * i - 4.4, 0.0, 0.0}));
    trunk.SetSkeletonAnimation(&skeleton);
  }
  stage.AddView({0.0, -13.5, 3.6}, {0.0, 0.0, 1.4});
  return true;
}

bool DrawLamps(QXGalleryStage& stage) {
  stage.Add(MakeYard());
  stage.GetTarget().SetAmbientLight({0.16, 0.17, 0.24, 1.0});
  stage.GetTarget().SetDiffuseLight({0.14, 0.14, 0.2, 1.0});
  QXColorValue3D const arrColors[] = {{1.0, 0.9, 0.6, 1.0}, {1.0, 0.35, 0.25, 1.0}, {0.5, 0.8, 1.0, 1.0}};
  for (int i = 0; i < 9; ++i) {
    QXGalleryMesh lamp;
    lamp.AddSphere({-4.0 + i, -2.8 + 0.6 * std::sin(1.9 * i), 1.1 + 0.5 * std::cos(2.3 * i)}, 0.14, arrColors[i % 3]);
    stage.Add(lamp).SetLightEnable(0);
  }
  stage.AddView({3.0, -9.0, 3.2}, {0.0, 0.0, 0.9});
  stage.GetTarget().SetBackgroundColor({0.04, 0.05, 0.1, 1.0});
  return true;
}

bool DrawBloom(QXGalleryStage& stage) {
  DrawLamps(stage);
  QXC::QXBloomSetting setting;
  setting.m_dThreshold = 0.6;
  setting.m_dIntensity = 2.0;
  setting.m_dRadius = 0.07;
  stage.GetGraphics3D().SetBloomSetting(setting);
  return stage.GetGraphics3D().AddCompositor(&stage.GetTarget(), L"bloom") != 0;
}

constexpr std::array PICTURES = {
    QXGalleryPicture{"particles-smoke", "Particles of the kind \"smoke\", blended from back to front.", DrawSmoke},
    QXGalleryPicture{"particles-fire", "\"fire\" adds its light to what is behind; smoke rises from it.", DrawFire},
    QXGalleryPicture{"particles-fountain", "\"fountain\": 800 particles on their way up and down.", DrawFountain},
    QXGalleryPicture{"particles-rain", "\"rain\": each drop is drawn along its way.", DrawRain},
    QXGalleryPicture{"particles-snow", "\"snow\" over the yard.", DrawSnow},
    QXGalleryPicture{"skeleton",
        "Five trunks of one mesh, bent by the bones of a skeleton at five times of one movement.", DrawSkeleton},
    QXGalleryPicture{"bloom-off", "Lamps that are bright and nothing more.", DrawLamps},
    QXGalleryPicture{"bloom-on", "The same with the effect \"bloom\": what is bright glows.", DrawBloom},
};

}  // namespace

std::span<QXGalleryPicture const> GetParticlePictures() {
  return PICTURES;
}

}  // namespace QXGallery
