// A frame in which nothing changed allocates nothing.
#include <QxGraphics3D/atlas/QXRenderTextureManager.h>
#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>

#include "../testing/QXAllocationCounter.h"

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QXRenderTextureAllocation, RenderingNothingAllocatesNothing) {
  QXNullGraphics3D graphics;
  graphics.Initialize(QdcUnicodeString());
  QXRenderTextureManager& manager = QXRenderTextureManager::GetSingleton();
  manager.SetGraphics3D(&graphics);
  QdcUnicodeString const strNames[] = {L"first patch", L"second patch", L"third patch"};
  for (QdcUnicodeString const& strName : strNames) {
    manager.GetRenderTexturePatch(strName, 2048, 2048)->SetNeedRender();
  }
  manager.RenderToTexture();
  long const nBefore = GetAllocationCount();
  for (int i = 0; i < 100; ++i) manager.RenderToTexture();
  EXPECT_EQ(GetAllocationCount() - nBefore, 0);
  manager.Clear();
}

TEST(QXRenderTextureAllocation, MovingAPatchAllocatesNothing) {
  QXNullGraphics3D graphics;
  graphics.Initialize(QdcUnicodeString());
  QXRenderTextureManager& manager = QXRenderTextureManager::GetSingleton();
  manager.SetGraphics3D(&graphics);
  QXRenderTexturePatch* const pPatch = manager.GetRenderTexturePatch(L"patch", 64, 64);
  long const nBefore = GetAllocationCount();
  for (unsigned int i = 0; i < 100; ++i) pPatch->Resize(4 + 20 * i, 100);
  EXPECT_EQ(GetAllocationCount() - nBefore, 0);
  manager.Clear();
}

}  // namespace
}  // namespace QXC
