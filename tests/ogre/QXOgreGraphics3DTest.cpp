#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include <dlfcn.h>

#include <QxGraphics3D/frame/QXPluginConfigs.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

namespace {

std::string ReadText(std::string const& strPath) {
  std::ifstream file(strPath);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

/// Every first group of a pattern.
std::set<std::string> FindAll(std::string const& strText, char const* szPattern) {
  std::set<std::string> setFound;
  std::regex const pattern(szPattern);
  for (std::sregex_iterator i(strText.begin(), strText.end(), pattern), end; i != end; ++i) setFound.insert((*i)[1]);
  return setFound;
}

}  // namespace

using QXOgreGraphics3D = QXOgreScenery;

TEST_F(QXOgreGraphics3D, ItIsCalledOgreAndRuns) {
  EXPECT_EQ(m_pGraphics3D->GetName(), QdcUnicodeString(L"ogre"));
  EXPECT_EQ(m_pGraphics3D->IsInitialized(), 1);
  EXPECT_EQ(m_pGraphics3D->Initialize(L""), 0);
  EXPECT_EQ(Text(m_pGraphics3D->GetErrorText()), "the renderer is running already");
}

TEST_F(QXOgreGraphics3D, TheConfigurationBesideTheModuleNamesIt) {
  QdcUnicodeString const strModule = QdcUnicodeString::FromUTF8(QX_OGRE_MODULE);
  std::string const strFolder = Text(strModule).substr(0, Text(strModule).rfind('/'));
  QXPluginConfigs::AddSearchFolder(QdcUnicodeString::FromUTF8(strFolder.c_str()));
  QXPluginConfigs const configs;
  QXPluginConfigs::RemoveSearchFolder(QdcUnicodeString::FromUTF8(strFolder.c_str()));
  QdcUnicodeString strError;
  std::unique_ptr<QXPluginModule> const pModule(
      QXPluginModule::Load(configs, QX_PLUGIN_KIND_RENDERER, L"ogre", strError));
  ASSERT_NE(pModule, nullptr) << Text(strError);
  EXPECT_NE(Text(pModule->GetPath()).find("libqx3d_ogre.so"), std::string::npos);
}

TEST_F(QXOgreGraphics3D, TheModuleMakesRenderersOnly) {
  QdcUnicodeString strError;
  std::unique_ptr<QXPluginModule> const pModule(QXPluginModule::LoadFile(
      QdcUnicodeString::FromUTF8(QX_OGRE_MODULE), QX_PLUGIN_KIND_MODEL_READER, L"ogre", strError));
  ASSERT_NE(pModule, nullptr);
  EXPECT_EQ(pModule->Create(strError), nullptr);
}

/// OpenGL asked directly: the renderer's context is the current one.
class QXOpenGLWords {
public:
  QXOpenGLWords() : m_pLibrary(dlopen("libGL.so.1", RTLD_LAZY)) {}
  ~QXOpenGLWords() { dlclose(m_pLibrary); }
  QXOpenGLWords(QXOpenGLWords const&) = delete;
  QXOpenGLWords& operator=(QXOpenGLWords const&) = delete;

  std::string GetString(unsigned int eName) const {
    auto const pfn = reinterpret_cast<unsigned char const* (*)(unsigned int)>(dlsym(m_pLibrary, "glGetString"));
    return reinterpret_cast<char const*>(pfn(eName));
  }
  std::array<float, 2> GetFloats(unsigned int eName) const {
    auto const pfn = reinterpret_cast<void (*)(unsigned int, float*)>(dlsym(m_pLibrary, "glGetFloatv"));
    std::array<float, 2> arrValues{};
    pfn(eName, arrValues.data());
    return arrValues;
  }
  bool HasExtension(std::string const& strName) const {
    auto const pfn =
        reinterpret_cast<unsigned char const* (*)(unsigned int, unsigned int)>(dlsym(m_pLibrary, "glGetStringi"));
    auto const nCount = static_cast<unsigned int>(GetFloats(0x821D)[0]);
    for (unsigned int i = 0; i < nCount; ++i)
      if (strName == reinterpret_cast<char const*>(pfn(0x1F03, i))) return true;
    return false;
  }

private:
  void* m_pLibrary;
};

TEST_F(QXOgreGraphics3D, CapabilitiesAreThoseOfTheDevice) {
  QXGraphics3DCapabilities const& capabilities = QXC::QXGraphics3D::m_Capabilities;
  QXOpenGLWords const words;
  EXPECT_EQ(Text(capabilities.GetDeviceName()), words.GetString(0x1F01));
  EXPECT_EQ(capabilities.GetMaxTextureSize(), static_cast<int>(words.GetFloats(0x0D33)[0]));
  EXPECT_EQ(capabilities.GetNumTextureUnits(), std::min(16, static_cast<int>(words.GetFloats(0x8872)[0])));
  EXPECT_EQ(capabilities.GetMaxPointSize(), words.GetFloats(0x0B12)[1]);
  bool const bAnisotropy = words.HasExtension("GL_EXT_texture_filter_anisotropic");
  EXPECT_EQ(capabilities.HasCapability(CAP_ANISOTROPY), bAnisotropy ? 1 : 0);
  EXPECT_EQ(capabilities.GetMaxAnisotropy(), bAnisotropy ? words.GetFloats(0x84FF)[0] : 0.0F);
  EXPECT_EQ(capabilities.HasCapability(CAP_TEXTURE_COMPRESSION),
      words.HasExtension("GL_EXT_texture_compression_s3tc") ? 1 : 0);
  // Windows have one, so that the capability would be a lie without its bits.
  EXPECT_EQ(capabilities.HasCapability(CAP_HWSTENCIL), capabilities.GetStencilBufferBitDepth() > 0 ? 1 : 0);
  for (Capabilities const eCapability :
      {CAP_AUTOMIPMAP, CAP_BLENDING, CAP_CUBEMAPPING, CAP_VERTEX_PROGRAM, CAP_FRAGMENT_PROGRAM, CAP_HWRENDER_TO_TEXTURE,
          CAP_INSTANCING, CAP_NON_POWER_OF_2_TEXTURES, CAP_TEXTURE_FLOAT})
    EXPECT_EQ(capabilities.HasCapability(eCapability), 1) << "OpenGL 3.3 has " << eCapability;
  if (Text(capabilities.GetDeviceName()).find("llvmpipe") != std::string::npos) {
    EXPECT_EQ(capabilities.GetVendor(), GPU_SOFTWARE);
  }
  EXPECT_EQ(QXMathEngine::m_msGraphics3DType, GRAPHICS3D_IMMEDIATE);
}

TEST_F(QXOgreGraphics3D, NoTargetIsLargerThanTheDeviceCanDraw) {
  auto const nMost = static_cast<unsigned int>(QXC::QXGraphics3D::m_Capabilities.GetMaxTextureSize());
  EXPECT_EQ(m_pGraphics3D->CreateRenderTexture(L"large", PF_A8R8G8B8, nMost + 1, 1, 0, 32, L""), nullptr);
}

TEST_F(QXOgreGraphics3D, ScenesHaveNamesOfTheirOwn) {
  EXPECT_EQ(m_pGraphics3D->GetSceneName(0), QdcUnicodeString(L"3D"));
  EXPECT_EQ(m_pGraphics3D->GetSceneName(1), QdcUnicodeString(L""));
  EXPECT_EQ(m_pGraphics3D->HasScene(L"3D"), 1);
  EXPECT_EQ(m_pGraphics3D->HasScene(L"city"), 0);
  EXPECT_EQ(m_pGraphics3D->CreateScene(L"city"), 1);
  EXPECT_EQ(m_pGraphics3D->HasScene(L"city"), 1);
  EXPECT_EQ(m_pGraphics3D->CreateScene(L"city"), 0);
  EXPECT_EQ(m_pGraphics3D->CreateScene(L""), 0);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("a name of its own"), std::string::npos);
  m_pGraphics3D->DestroyScene(L"city");
  m_pGraphics3D->DestroyScene(L"nowhere");
  EXPECT_EQ(m_pGraphics3D->HasScene(L"city"), 0);
  EXPECT_EQ(m_pGraphics3D->CreateScene(L"city"), 1);
}

TEST_F(QXOgreGraphics3D, ASceneHasObjectsWhileThereIsSomethingToDraw) {
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
  QXRenderOperation3D* const pOperation = DrawSquare(0.0F, 0.0F, 1.0F, 1.0F, 0.0F, RED);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 1);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"nowhere"), 0);
  pOperation->SetVisible(0);
  EXPECT_EQ(m_pGraphics3D->HasRenderableObjects(L"3D"), 0);
}

TEST_F(QXOgreGraphics3D, CamerasAreFoundByNameAndNeedAScene) {
  EXPECT_EQ(m_pGraphics3D->GetCamera(L"camera"), m_pCamera);
  EXPECT_EQ(m_pCamera->GetName(), QdcUnicodeString(L"camera"));
  EXPECT_EQ(m_pGraphics3D->GetCamera(L"nobody"), nullptr);
  EXPECT_EQ(m_pGraphics3D->CreateCamera(L"camera", L"3D"), nullptr);
  EXPECT_EQ(m_pGraphics3D->CreateCamera(L"second", L"nowhere"), nullptr);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("nowhere"), std::string::npos);
}

TEST_F(QXOgreGraphics3D, TargetsNeedANameOfTheirOwnAndAPossibleSize) {
  auto const make = [this](wchar_t const* szName, unsigned int nWidth, unsigned int nHeight) {
    return m_pGraphics3D->CreateRenderTexture(szName, PF_A8R8G8B8, nWidth, nHeight, 0, 32, L"");
  };
  EXPECT_EQ(make(L"picture", 10, 10), nullptr);
  EXPECT_EQ(make(L"", 10, 10), nullptr);
  EXPECT_EQ(make(L"none", 0, 10), nullptr);
  EXPECT_EQ(make(L"none", 10, 0), nullptr);
  EXPECT_EQ(make(L"huge", 100000, 100000), nullptr);
  EXPECT_EQ(make(L"huge", 0xFFFFFFFF, 1), nullptr);
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("4294967295 x 1"), std::string::npos);
  QXRenderTarget* const pSmall = make(L"small", 1, 1);
  ASSERT_NE(pSmall, nullptr);
  delete pSmall;
  // The name is free again.
  QXRenderTarget* const pAgain = make(L"small", 2, 2);
  ASSERT_NE(pAgain, nullptr);
  delete pAgain;
}

TEST_F(QXOgreGraphics3D, AReflectionTargetIsATexture) {
  QXRenderTarget* const pTarget = m_pGraphics3D->CreateReflectRenderTarget(L"mirror", 20, 10, L"3D");
  ASSERT_NE(pTarget, nullptr);
  EXPECT_EQ(pTarget->IsTextureTarget(), 1);
  EXPECT_EQ(pTarget->GetWidth(), 20U);
  delete pTarget;
}

TEST_F(QXOgreGraphics3D, DrawablesAreCountedAndMovedBetweenScenes) {
  QXRenderOperationManager& manager = *m_pGraphics3D->GetRenderOperationManager();
  EXPECT_EQ(manager.GetRenderOperationCount(), 0U);
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  EXPECT_EQ(manager.GetRenderOperationCount(), 1U);
  manager.DetachRenderOperation3D(pOperation);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(manager.AttachRenderOperation3D(pOperation, L"nowhere"), 0);
  EXPECT_EQ(manager.AttachRenderOperation3D(nullptr, L"3D"), 0);
  EXPECT_EQ(manager.AttachRenderOperation3D(pOperation, L"3D"), 1);
  EXPECT_EQ(manager.AttachRenderOperation3D(pOperation, L"3D"), 1);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 1U);
  m_arrOperations.clear();
  manager.DestroyRenderOperation3D(pOperation);
  manager.DestroyRenderOperation3D(nullptr);
  EXPECT_EQ(manager.GetRenderOperationCount(), 0U);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
}

TEST_F(QXOgreGraphics3D, ADrawableOfAnUnknownSceneOrNotAttachedStandsInNone) {
  QXRenderOperationManager& manager = *m_pGraphics3D->GetRenderOperationManager();
  auto const pMesh = MakeMesh({{-1.0F, -1.0F, 0.0F}, {1.0F, -1.0F, 0.0F}, {1.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2}, RED);
  std::unique_ptr<QXRenderOperation3D> const pLost(manager.CreateRenderOperation3D(L"nowhere", 1));
  std::unique_ptr<QXRenderOperation3D> const pLoose(manager.CreateRenderOperation3D(L"3D", 0));
  for (QXRenderOperation3D* const pOperation : {pLost.get(), pLoose.get()}) {
    ASSERT_NE(pOperation, nullptr);
    pOperation->SetRenderOperationMultiIndex(pMesh.get());
  }
  EXPECT_EQ(Frame().At(40, 40), BACKGROUND_PIXEL);
  EXPECT_EQ(manager.AttachRenderOperation3D(pLost.get(), L"3D"), 1);
  EXPECT_EQ(Frame().At(40, 40), RED_PIXEL);
}

TEST_F(QXOgreGraphics3D, ObjectsAnswerToTheirSelectionIdentifier) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  pOperation->SetSelectionID(5);
  EXPECT_EQ(pOperation->GetSelectionID(), 5U);
  QXBoundingBox box;
  EXPECT_EQ(m_pGraphics3D->GetObjectBoundingBox(5, box), 1);
  EXPECT_EQ(box.GetMax(), QXVector3d(0.5, 0.5, 0.0));
  EXPECT_EQ(m_pGraphics3D->GetObjectBoundingBox(6, box), 0);
  EXPECT_EQ(m_pGraphics3D->GetObjectBoundingBox(0, box), 0);
  m_pGraphics3D->SetObjectVisible(5, 0);
  m_pGraphics3D->SetObjectVisible(6, 0);
  EXPECT_EQ(m_pGraphics3D->IsObjectVisible(5), 0);
  EXPECT_EQ(m_pGraphics3D->IsObjectVisible(6), 0);
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  m_pGraphics3D->SetObjectVisible(5, 1);
  EXPECT_EQ(m_pGraphics3D->IsObjectVisible(5), 1);
}

TEST_F(QXOgreGraphics3D, AnObjectsColourIsMultipliedAndGivenBack) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, QXColorValue3D::White);
  pOperation->SetColor(QXColorValue3D(1.0, 0.5, 1.0, 1.0));
  pOperation->SetSelectionID(5);
  m_pGraphics3D->SetObjectColor(5, QXColorValue3D(0.5, 0.5, 0.5, 1.0));
  m_pGraphics3D->SetObjectColor(5, QXColorValue3D(0.0, 1.0, 1.0, 1.0));
  m_pGraphics3D->SetObjectColor(6, RED);
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{0, 128, 255, 255}));
  EXPECT_EQ(pOperation->GetColor(), QXColorValue3D(1.0, 0.5, 1.0, 1.0));
  m_pGraphics3D->ResetObjectColor(5);
  m_pGraphics3D->ResetObjectColor(6);
  EXPECT_EQ(Frame().At(32, 32), (QXPixel{255, 128, 255, 255}));
}

TEST_F(QXOgreGraphics3D, TheSelectionIsExactlyTheObjectsNamed) {
  QXRenderOperation3D* const pFirst = DrawSquare(-1.0F, -1.0F, 0.0F, 1.0F, 0.0F, RED);
  QXRenderOperation3D* const pSecond = DrawSquare(0.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  QXRenderOperation3D* const pUnnamed = DrawSquare(0.0F, -1.0F, 1.0F, 0.0F, 1.0F, RED);
  pFirst->SetSelectionID(1);
  pSecond->SetSelectionID(2);
  m_pGraphics3D->SetSelectionColor(GREEN);
  QdcArray<unsigned int> arrIDs;
  arrIDs.Add(2);
  arrIDs.Add(0);
  m_pGraphics3D->SetSelectedObjects(arrIDs);
  QXPicture const picture = Frame();
  EXPECT_EQ(picture.At(16, 32), RED_PIXEL);
  EXPECT_EQ(picture.At(48, 16), GREEN_PIXEL);
  EXPECT_EQ(picture.At(48, 48), RED_PIXEL);
  EXPECT_EQ(pUnnamed->IsSelected(), 0);
  m_pGraphics3D->ClearSelectedObjects();
  EXPECT_EQ(pSecond->IsSelected(), 0);
  // The colour is that of drawables to come as well.
  QXRenderOperation3D* const pLater = DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 2.0F, RED);
  pLater->SetSelected(1);
  EXPECT_EQ(Frame().At(32, 32), GREEN_PIXEL);
}

TEST_F(QXOgreGraphics3D, ProjectionsMapTheirWindowToTheClipCube) {
  QXMatrix4d mat;
  m_pGraphics3D->MakeFrustumMatrix(-1.0, 3.0, -2.0, 1.0, 2.0, 50.0, mat);
  auto const clip = [&](QXVector3d const& vec) {
    double arrPoint[4] = {vec.x, vec.y, vec.z, 1.0};
    double arrFlat[16];
    QXC::QXGraphics3D::MakeRowGLMatrix(arrFlat, mat);
    QXMatrix4d::MultMatrixVecd(arrFlat, arrPoint, arrPoint);
    return QXVector3d(arrPoint[0] / arrPoint[3], arrPoint[1] / arrPoint[3], arrPoint[2] / arrPoint[3]);
  };
  auto const expectNear = [](QXVector3d const& vec, QXVector3d const& vecExpected) {
    EXPECT_NEAR((vec - vecExpected).Length(), 0.0, 1.0e-12);
  };
  expectNear(clip({-1.0, -2.0, -2.0}), {-1.0, -1.0, -1.0});
  expectNear(clip({3.0, 1.0, -2.0}), {1.0, 1.0, -1.0});
  expectNear(clip({75.0, 25.0, -50.0}), {1.0, 1.0, 1.0});
  m_pGraphics3D->MakeProjectionMatrix(std::acos(0.0), 2.0, 1.0, 10.0, mat);
  expectNear(clip({2.0, 1.0, -1.0}), {1.0, 1.0, -1.0});
  expectNear(clip({-20.0, 10.0, -10.0}), {-1.0, 1.0, 1.0});
  m_pGraphics3D->MakeOrthoMatrix(-1.0, 3.0, -2.0, 1.0, 2.0, 50.0, mat);
  expectNear(clip({3.0, -2.0, -50.0}), {1.0, -1.0, 1.0});
  QXMatrix4d matSame;
  m_pGraphics3D->ConvertProjectionMatrix(mat, matSame);
  EXPECT_EQ(matSame, mat);
  EXPECT_EQ(m_pGraphics3D->GetMinimumDepthInputValue(), -1.0);
  EXPECT_EQ(m_pGraphics3D->GetMaximumDepthInputValue(), 1.0);
}

TEST_F(QXOgreGraphics3D, AnObliqueProjectionPutsThePlaneNear) {
  QXMatrix4d mat;
  m_pGraphics3D->MakeProjectionMatrix(1.0, 1.5, 1.0, 100.0, mat);
  // Everything beyond z = -5 that leans a little.
  QXPlane plane(QXVector3d(0.1, -0.2, -1.0), -5.0);
  m_pGraphics3D->ApplyObliqueDepthProjection(mat, plane);
  auto const depth = [&](QXVector3d const& vec) {
    double const dZ = vec.x * mat[0][2] + vec.y * mat[1][2] + vec.z * mat[2][2] + mat[3][2];
    double const dW = vec.x * mat[0][3] + vec.y * mat[1][3] + vec.z * mat[2][3] + mat[3][3];
    return dZ / dW;
  };
  EXPECT_NEAR(depth({0.0, 0.0, -5.0}), -1.0, 1.0e-12);
  EXPECT_NEAR(depth({1.0, 0.5, -5.0}), -1.0, 1.0e-12);
  EXPECT_LT(depth({0.0, 0.0, -4.0}), -1.0);
  EXPECT_GT(depth({0.0, 0.0, -6.0}), -1.0);
  QXMatrix4d const matBefore = mat;
  m_pGraphics3D->ApplyObliqueDepthProjection(mat, QXPlane());
  EXPECT_EQ(mat, matBefore);
}

TEST_F(QXOgreGraphics3D, PrioritisedTargetsAreUpdatedLowestNumberFirst) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  m_pGraphics3D->m_PrioritisedRenderTargets[4] = m_pTarget;
  m_pGraphics3D->m_PrioritisedRenderTargets[2] = nullptr;
  m_pGraphics3D->UpdatePrioritisedRenderTargets();
  EXPECT_EQ(QXPicture(*m_pTarget).At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreGraphics3D, CountersRunUntilTheyAreBegunAnew) {
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  m_pGraphics3D->BeginGeometryCount();
  m_pGraphics3D->UpdateAllRenderTargets();
  m_pGraphics3D->UpdateAllRenderTargets();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 2U);
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 4U);
  EXPECT_EQ(m_pGraphics3D->GetVertexCount(), 8U);
  m_pGraphics3D->BeginGeometryCount();
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  EXPECT_EQ(m_pGraphics3D->GetFaceCount(), 0U);
}

TEST_F(QXOgreGraphics3D, TheRenderSystemHasANameAndAVersion) {
  QdcArray<QdcUnicodeString> arrNames;
  m_pGraphics3D->GetRenderSystems(arrNames);
  ASSERT_EQ(arrNames.GetSize(), 1U);
  EXPECT_EQ(m_pGraphics3D->SelectRenderSystem(arrNames[0]), 1);
  EXPECT_EQ(m_pGraphics3D->SelectRenderSystem(L"Glide"), 0);
  EXPECT_EQ(m_pGraphics3D->GetRenderSystemName(), arrNames[0]);
  EXPECT_FALSE(m_pGraphics3D->GetRenderSystemVersion().IsEmpty());
  EXPECT_EQ(m_pGraphics3D->IsRenderSystemSupported(arrNames[0]), 1);
  EXPECT_EQ(m_pGraphics3D->IsRenderSystemSupported(L"Glide"), 0);
}

TEST_F(QXOgreGraphics3D, PlainStateIsKept) {
  m_pGraphics3D->SetCullingMode(CULLING_CLOCKWISE);
  EXPECT_EQ(m_pGraphics3D->GetCullingMode(), CULLING_CLOCKWISE);
  QXMatrix4d mat;
  mat.SetTrans({1.0, 2.0, 3.0});
  m_pGraphics3D->SetWorldMatrix(mat);
  EXPECT_EQ(m_pGraphics3D->m_matWorld, mat);
  m_pGraphics3D->SwapAllRenderTargetBuffers(1);
}

TEST_F(QXOgreGraphics3D, WhatItCannotDoAnswersNothing) {
  EXPECT_EQ(m_pGraphics3D->BeginList(), 0U);
  EXPECT_EQ(m_pGraphics3D->BindGpuProgram(L"a", L"b"), 0);
  EXPECT_EQ(m_pGraphics3D->CreateVertexSelectionRenderTarget(L"vertices", 8, 8, L"3D"), nullptr);
  EXPECT_EQ(m_pGraphics3D->CreateMultiRenderTarget(L"multi", 8, 8, 2), nullptr);
  EXPECT_EQ(m_pGraphics3D->AddResourceFolder(L"/tmp"), 0);
  unsigned int nWidth = 7;
  unsigned int nHeight = 7;
  EXPECT_EQ(m_pGraphics3D->GetHMDRenderSize(nWidth, nHeight), 0);
  EXPECT_EQ(nWidth, 0U);
  EXPECT_EQ(nHeight, 0U);
}

// The table is what a host reads before it relies on an operation, so it must not fall behind the code.
TEST(QXOgreReadme, ListsExactlyTheOperationsWithoutWork) {
  std::string const strFolder = QX_SOURCE_DIR "/plugins/ogre/";
  std::set<std::string> setCode = FindAll(ReadText(strFolder + "QXOgreUnsupported.h"), R"((\w+)\([^;{]*override)");
  ASSERT_GT(setCode.size(), 40U);
  char const* const szEmptyBodies = R"((\w+)\([^;{}]*override\s*\{\s*(?:return (?:0|nullptr);)?\s*\})";
  for (char const* const szHeader :
      {"QXOgreRenderOperation3D.h", "QXOgreRenderOperationManager.h", "QXOgreRenderTarget.h"})
    setCode.merge(FindAll(ReadText(strFolder + szHeader), szEmptyBodies));
  // Nothing to do there, rather than not done.
  for (char const* const szDone : {"NotifyCameraStateChange", "ApplyCameraToTarget"}) setCode.erase(szDone);
  std::set<std::string> setTable;
  std::istringstream lines(ReadText(strFolder + "README.md"));
  for (std::string strLine; std::getline(lines, strLine);)
    if (strLine.starts_with("| ")) setTable.merge(FindAll(strLine, R"(`(\w+)`)"));
  EXPECT_EQ(setTable, setCode);
}

}  // namespace QXC
