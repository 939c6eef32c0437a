#include "../testing/QXAllocationCounter.h"
#include "QXToldTextures.h"

#include <QxGraphics3D/atlas/QXTextureImageManager.h>
#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>

#include <gtest/gtest.h>

#include <string>

namespace QXC {
namespace {

template <class Manager>
class QXImageAtlasAllocationTest : public testing::Test {
protected:
  QXImageAtlasAllocationTest() { m_Manager.SetTextureManager(&m_Textures); }
  ~QXImageAtlasAllocationTest() override { m_Manager.Clear(); }

  static void Fill(QXTextureImageManager& manager, QXTextureImage& image) {
    image.m_nSize = 16;
    EXPECT_EQ(manager.FindSpaceInBigTextures(&image), 1);
  }
  static void Fill(QXTextureImageManagerEx&, QXTextureImageEx& image) {
    image.m_nWidth = image.m_nHeight = 16;
    image.m_nFormat = 12;
    image.m_bReady = 1;
  }
  static void Load(QXTextureImageManager& manager) { manager.LoadTexture(); }
  static void Load(QXTextureImageManagerEx& manager) { manager.LoadTexture(0); }

  QXToldTextureManager m_Textures;
  Manager m_Manager;
};

using Managers = testing::Types<QXTextureImageManager, QXTextureImageManagerEx>;
TYPED_TEST_SUITE(QXImageAtlasAllocationTest, Managers);

TYPED_TEST(QXImageAtlasAllocationTest, FrameWithoutNewImagesAllocatesNothing) {
  for (int i = 0; i < 500; ++i) {
    auto* const pImage = this->m_Manager.GetTextureImage(std::to_wstring(i).c_str());
    if (i % 5 == 0) continue;
    pImage->m_pTextureData = MakeData(16, 16, 12, 1);
    this->Fill(this->m_Manager, *pImage);
  }
  this->Load(this->m_Manager);
  // A fifth of the images still wait.
  long const nBefore = GetAllocationCount();
  for (int i = 0; i < 10; ++i) this->Load(this->m_Manager);
  EXPECT_EQ(GetAllocationCount(), nBefore);
  auto* const pImage = this->m_Manager.GetTextureImage(L"0");
  pImage->m_pTextureData = MakeData(16, 16, 12, 1);
  this->Fill(this->m_Manager, *pImage);
  this->Load(this->m_Manager);
  EXPECT_EQ(pImage->m_bLoaded, 1);
}

}  // namespace
}  // namespace QXC
