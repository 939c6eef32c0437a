#include <filesystem>
#include <fstream>

#include <unistd.h>

#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

using QXOgreLifecycle = QXOgreScenery;

TEST(QXOgreStart, BeforeInitializeEveryRequestIsRefusedWithAReason) {
  QXOgrePtr const pGraphics3D = MakeRenderer();
  EXPECT_EQ(pGraphics3D->IsInitialized(), 0);
  EXPECT_TRUE(pGraphics3D->GetErrorText().IsEmpty());
  EXPECT_EQ(pGraphics3D->CreateScene(L"scene"), 0);
  EXPECT_FALSE(pGraphics3D->GetErrorText().IsEmpty());
  EXPECT_EQ(pGraphics3D->CreateRenderWindow(L"window", nullptr, 10, 10, 0), nullptr);
  EXPECT_EQ(pGraphics3D->CreateRenderTexture(L"texture", PF_A8R8G8B8, 10, 10, 0, 32, L""), nullptr);
  EXPECT_EQ(pGraphics3D->CreateCamera(L"camera", L"3D"), nullptr);
  EXPECT_EQ(pGraphics3D->GetRenderSystemName(), QdcUnicodeString(L""));
  EXPECT_EQ(pGraphics3D->GetRenderSystemVersion(), QdcUnicodeString(L""));
  pGraphics3D->UpdateAllRenderTargets();
  std::unique_ptr<QXRenderOperation3D> const pOperation(
      pGraphics3D->GetRenderOperationManager()->CreateRenderOperation3D(L"3D", 1));
  ASSERT_NE(pOperation, nullptr);
  auto const pMesh = MakeMesh({{0.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2});
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  pOperation->SetColor(QXColorValue3D::Black);
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
}

TEST(QXOgreStart, OneRunsAtATimeAndTheNextMayFollow) {
  QXOgrePtr pFirst = MakeRenderer();
  ASSERT_EQ(pFirst->Initialize(L""), 1) << Text(pFirst->GetErrorText());
  QXOgrePtr const pSecond = MakeRenderer();
  EXPECT_EQ(pSecond->Initialize(L""), 0);
  EXPECT_NE(Text(pSecond->GetErrorText()).find("already in use"), std::string::npos);
  pFirst.reset();
  EXPECT_EQ(pSecond->Initialize(L""), 1) << Text(pSecond->GetErrorText());
}

TEST(QXOgreStart, AMediaFolderThatIsNotThereIsNoHindrance) {
  QXOgrePtr const pGraphics3D = MakeRenderer();
  EXPECT_EQ(pGraphics3D->Initialize(L"/nowhere/at/all"), 1) << Text(pGraphics3D->GetErrorText());
}

/// A folder of its own with one file that stands for the render system, gone with the object.
class QXMediaFolder {
public:
  QXMediaFolder() : m_Path(std::filesystem::temp_directory_path() / ("qx_ogre_" + std::to_string(getpid()))) {
    std::filesystem::create_directories(m_Path);
  }
  ~QXMediaFolder() { std::filesystem::remove_all(m_Path); }
  QXMediaFolder(QXMediaFolder const&) = delete;
  QXMediaFolder& operator=(QXMediaFolder const&) = delete;
  std::filesystem::path const& GetPath() const { return m_Path; }
  QdcUnicodeString GetText() const { return QdcUnicodeString::FromUTF8(m_Path.c_str()); }

private:
  std::filesystem::path m_Path;
};

TEST(QXOgreStart, ARenderSystemThatIsNoneIsToldInOneLine) {
  QXMediaFolder const folder;
  std::ofstream(folder.GetPath() / "RenderSystem_GL3Plus.so") << "no library";
  QXOgrePtr const pGraphics3D = MakeRenderer();
  EXPECT_EQ(pGraphics3D->Initialize(folder.GetText()), 0);
  std::string const strError = Text(pGraphics3D->GetErrorText());
  EXPECT_NE(strError.find("RenderSystem_GL3Plus.so"), std::string::npos) << strError;
  EXPECT_EQ(strError.find('\n'), std::string::npos);
  // The next try starts from nothing.
  EXPECT_EQ(pGraphics3D->Initialize(L""), 1) << Text(pGraphics3D->GetErrorText());
}

TEST(QXOgreStart, ARenderSystemUnderItsVersionedNameIsFoundToo) {
  QXMediaFolder const folder;
  std::filesystem::create_symlink(
      QX_OGRE_PLUGIN_DIR "/RenderSystem_GL3Plus.so", folder.GetPath() / "RenderSystem_GL3Plus.so." QX_OGRE_VERSION);
  QXOgrePtr const pGraphics3D = MakeRenderer();
  EXPECT_EQ(pGraphics3D->Initialize(folder.GetText()), 1) << Text(pGraphics3D->GetErrorText());
}

TEST_F(QXOgreLifecycle, ASecondLifeDrawsTheSamePicture) {
  DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  std::vector<unsigned char> const arrFirst = Frame().GetBytes();
  for (QXRenderOperation3D* const pOperation : m_arrOperations) delete pOperation;
  m_arrOperations.clear();
  for (int i = 0; i < 3; ++i) {
    m_pGraphics3D.reset();
    SetUp();
    DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
    EXPECT_EQ(Frame().GetBytes(), arrFirst);
    for (QXRenderOperation3D* const pOperation : m_arrOperations) delete pOperation;
    m_arrOperations.clear();
  }
}

TEST_F(QXOgreLifecycle, DrawablesMayOutliveTheRenderer) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  Frame();
  m_pGraphics3D.reset();
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
  EXPECT_EQ(pOperation->GetDeviceMemory(), 0U);
  auto const pMesh = MakeMesh({{0.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2});
  pOperation->SetRenderOperationMultiIndex(pMesh.get());
  pOperation->SetVisible(0);
  EXPECT_EQ(pOperation->GetVertexCount(), 0U);
}

TEST_F(QXOgreLifecycle, TargetsMayOutliveTheRenderer) {
  QXRenderTarget* const pTexture = m_pGraphics3D->CreateRenderTexture(L"left", PF_A8R8G8B8, 8, 8, 0, 32, L"");
  QXRenderTarget* const pWindow = m_pGraphics3D->CreateRenderWindow(L"window", nullptr, 8, 8, 0);
  ASSERT_NE(pTexture, nullptr);
  ASSERT_NE(pWindow, nullptr);
  for (QXRenderTarget* const pTarget : {pTexture, pWindow}) AddViewport(*pTarget, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_pGraphics3D.reset();
  for (QXRenderTarget* const pTarget : {pTexture, pWindow}) {
    EXPECT_EQ(pTarget->GetViewport(0)->GetCamera(), nullptr);
    EXPECT_EQ(pTarget->GetGraphics3D(), nullptr);
    pTarget->Update();
    pTarget->SwapBuffers(0);
    pTarget->ReSize(16, 16);
    pTarget->SetSceneAntialias(1);
    unsigned char arrPixels[8 * 8 * 4];
    EXPECT_EQ(pTarget->CopyToMemory(arrPixels, sizeof(arrPixels)), 0);
    delete pTarget;
  }
}

TEST_F(QXOgreLifecycle, ADestroyedCameraLeavesItsViewportsWithoutOne) {
  QXRenderTarget* const pLoose = m_pGraphics3D->CreateRenderTexture(L"loose", PF_A8R8G8B8, 8, 8, 0, 32, L"");
  QXViewport const* const pLooseViewport = AddViewport(*pLoose, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
  m_pGraphics3D->DestroyCamera(m_pCamera);
  EXPECT_EQ(m_pViewport->GetCamera(), nullptr);
  EXPECT_EQ(pLooseViewport->GetCamera(), nullptr);
  EXPECT_EQ(m_pGraphics3D->GetCamera(L"camera"), nullptr);
  m_pGraphics3D->UpdateAllRenderTargets();
  m_pGraphics3D->DestroyCamera(nullptr);
  EXPECT_NE(m_pGraphics3D->CreateCamera(L"camera", L"3D"), nullptr);
  delete pLoose;
}

TEST_F(QXOgreLifecycle, ADestroyedSceneTakesItsCamerasAndLeavesItsDrawables) {
  QXRenderOperation3D* const pOperation = DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  m_pGraphics3D->DestroyScene(L"3D");
  EXPECT_EQ(m_pGraphics3D->GetCamera(L"camera"), nullptr);
  EXPECT_EQ(m_pViewport->GetCamera(), nullptr);
  m_pGraphics3D->UpdateAllRenderTargets();
  ASSERT_EQ(m_pGraphics3D->CreateScene(L"3D"), 1);
  m_pViewport->SetCamera(MakeCamera(L"camera"));
  EXPECT_EQ(Frame().At(32, 32), BACKGROUND_PIXEL);
  EXPECT_EQ(m_pGraphics3D->GetRenderOperationManager()->AttachRenderOperation3D(pOperation, L"3D"), 1);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreLifecycle, TargetsComeAndGoBetweenFrames) {
  DrawSquare(-0.5F, -0.5F, 0.5F, 0.5F, 0.0F, RED);
  for (int i = 0; i < 10; ++i) {
    QXRenderTarget* const pTarget = MakeTarget(L"guest", 16 + static_cast<unsigned int>(i), 16);
    AddViewport(*pTarget, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
    EXPECT_EQ(Frame(pTarget).At(8, 8), RED_PIXEL);
    m_pGraphics3D->DeleteRenderTarget(pTarget);
    EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
  }
  m_pGraphics3D->ShutDown();
  m_pGraphics3D->UpdateAllRenderTargets();
}

}  // namespace QXC
