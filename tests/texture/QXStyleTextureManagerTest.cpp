#include <QxGraphics3D/texture/QXStyleTextureManager.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureInfo.h>

#include <gtest/gtest.h>

#include <memory>

namespace QXC {
namespace {

QXTextureInfo MakeInfo(wchar_t const* szName, unsigned char* pPixels) {
  QXTextureInfo info;
  info.m_strName = szName;
  info.m_nWidth = 2;
  info.m_nHeight = 1;
  info.m_eFormat = PF_L8;
  info.m_pPixels = pPixels;
  return info;
}

TEST(QXStyleTextureManager, NamedPixelsAreCopiedAndFound) {
  unsigned char pixels[2] = {5, 6};
  QXTextureInfo const info = MakeInfo(L"hatch", pixels);
  EXPECT_EQ(QXStyleTextureManager::AddStyleTexture(&info), 1);
  pixels[0] = 0;
  QXTextureData* const pData = QXStyleTextureManager::GetStyleTexture(L"hatch");
  ASSERT_NE(pData, nullptr);
  EXPECT_EQ(pData->m_nWidth, 2u);
  EXPECT_EQ(pData->m_nHeight, 1u);
  EXPECT_EQ(pData->m_eFormat, PF_L8);
  ASSERT_NE(pData->m_pPixels, nullptr);
  EXPECT_EQ(pData->m_pPixels[0], 5);
  EXPECT_EQ(pData->m_pPixels[1], 6);
  EXPECT_EQ(QXStyleTextureManager::GetStyleTexture(L"hatch"), pData);
}

TEST(QXStyleTextureManager, NothingIsStoredWithoutAName) {
  unsigned char pixels[2] = {};
  QXTextureInfo const info = MakeInfo(L"", pixels);
  EXPECT_EQ(QXStyleTextureManager::AddStyleTexture(&info), 0);
  EXPECT_EQ(QXStyleTextureManager::AddStyleTexture(nullptr), 0);
  EXPECT_EQ(QXStyleTextureManager::GetStyleTexture(L""), nullptr);
  EXPECT_EQ(QXStyleTextureManager::GetStyleTexture(L"unheard of"), nullptr);
}

TEST(QXStyleTextureManager, ReplacedRecordStaysWithWhomItWasGiven) {
  unsigned char first[2] = {1, 2};
  unsigned char second[2] = {3, 4};
  QXTextureInfo const former = MakeInfo(L"dots", first);
  QXTextureInfo const next = MakeInfo(L"dots", second);
  QXStyleTextureManager::AddStyleTexture(&former);
  std::unique_ptr<QXTextureData> const pFormer(QXStyleTextureManager::GetStyleTexture(L"dots"));
  EXPECT_EQ(QXStyleTextureManager::AddStyleTexture(&next), 1);
  EXPECT_EQ(pFormer->m_pPixels[0], 1);
  EXPECT_EQ(QXStyleTextureManager::GetStyleTexture(L"dots")->m_pPixels[0], 3);
}

TEST(QXStyleTextureManager, DestructorDeletesEveryRecord) {
  static int ms_nDead;
  struct Record : QXTextureData {
    ~Record() override { ++ms_nDead; }
  };
  struct Store : QXStyleTextureManager {
    using QXStyleTextureManager::m_dictTextures;
  };
  ms_nDead = 0;
  {
    Store store;
    store.m_dictTextures[L"a"] = new Record();
    store.m_dictTextures[L"b"] = new Record();
    store.m_dictTextures[L"c"] = nullptr;
  }
  EXPECT_EQ(ms_nDead, 2);
}

}  // namespace
}  // namespace QXC
