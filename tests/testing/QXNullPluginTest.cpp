#include <memory>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/QXGraphics3D.h>
#include <QxGraphics3D/frame/QXPluginConfigs.h>
#include <QxGraphics3D/frame/QXPluginModule.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>

namespace QXC {
namespace {

TEST(QXNullPlugin, IsFoundByNameAndRunsAFrame) {
  QXPluginConfigs const configs;
  QdcUnicodeString strError;
  std::unique_ptr<QXPluginModule> const pModule(
      QXPluginModule::Load(configs, QX_PLUGIN_KIND_RENDERER, L"null", strError));
  ASSERT_NE(pModule, nullptr) << strError.ToMBString().Cstr();
  auto* const pGraphics3D = static_cast<QXGraphics3D*>(pModule->Create(strError));
  ASSERT_NE(pGraphics3D, nullptr) << strError.ToMBString().Cstr();
  EXPECT_TRUE(pGraphics3D->GetName() == L"null");
  ASSERT_EQ(pGraphics3D->Initialize(QdcUnicodeString()), 1);
  QXRenderTarget* const pTarget = pGraphics3D->CreateRenderWindow(L"main", nullptr, 8, 4, 0);
  ASSERT_NE(pTarget, nullptr);
  pGraphics3D->AttachRenderTarget(pTarget);
  QXCamera* const pCamera = pGraphics3D->CreateCamera(L"eye", pGraphics3D->GetSceneName(0));
  ASSERT_NE(pCamera, nullptr);
  pTarget->AddViewport(pCamera, 0, 0.0, 0.0, 1.0, 1.0)->m_BackgroundColor = QXColorValue3D(1.0, 0.0, 0.0, 1.0);
  pGraphics3D->UpdateAllRenderTargets();
  unsigned char arrPixels[8 * 4 * 4] = {};
  EXPECT_EQ(pTarget->CopyToMemory(arrPixels, sizeof(arrPixels)), 1);
  EXPECT_EQ(arrPixels[2], 255);
  EXPECT_EQ(arrPixels[3], 255);
  pGraphics3D->ShutDown();
  pModule->Destroy(pGraphics3D);
}

TEST(QXNullPlugin, KnowsNoOtherKind) {
  QXPluginConfigs const configs;
  QXPluginConfig config;
  QdcUnicodeString strPath;
  ASSERT_EQ(configs.Find(QX_PLUGIN_KIND_RENDERER, L"null", config, strPath), 1);
  QdcUnicodeString strError;
  std::unique_ptr<QXPluginModule> const pModule(
      QXPluginModule::LoadFile(strPath, QX_PLUGIN_KIND_MODEL_READER, L"null", strError));
  ASSERT_NE(pModule, nullptr) << strError.ToMBString().Cstr();
  EXPECT_EQ(pModule->Create(strError), nullptr);
  EXPECT_FALSE(strError.IsEmpty());
}

}  // namespace
}  // namespace QXC
