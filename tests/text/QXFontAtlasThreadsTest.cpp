// Eight threads ask for glyphs of one manager and release them while one uploads. What two of them touch at once without
// a lock is a report of the thread sanitizer; what gets lost shows in the counts at the end.
#include "../QXBareTexture.h"
#include "QXFontAtlasFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>
#include <vector>

namespace QXC {
namespace {

std::atomic<int> g_nSent{0};

class QXSentTexture : public QXBareTexture {
public:
  using QXBareTexture::QXBareTexture;

  void LoadTexture(unsigned char, unsigned char) override { m_nBindID = 1; }
  // Reads the pixels, as a device does.
  void LoadSubTexture(int, int, int nWidth, int nHeight, int, int, void const* pPixels, unsigned int) override {
    auto const* const pBytes = static_cast<unsigned char const*>(pPixels);
    for (int i = 0; i < nWidth * nHeight * 2; ++i) m_nSum += pBytes[i];
    ++g_nSent;
  }

  unsigned int m_nSum = 0;
};

class QXSharedTextureManager : public QXTextureManager {
public:
  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override {
    if (QXTextureCacheEntry* const pEntry = FindCacheEntry(strName)) return pEntry->GetTexture();
    if (!bCreate) return nullptr;
    auto* const pTexture = new QXSentTexture(strName);
    AddToCache(strName, new QXTextureCacheEntry(pTexture));
    return pTexture;
  }
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override {
    return FindCacheEntry(strName) ? 1 : 0;
  }
  std::size_t GetCount() const { return m_mapCache.size(); }
};

/// How long to go on; a longer run is asked for by QX_THREAD_SECONDS.
std::chrono::milliseconds GetDuration() {
  char const* const szSeconds = std::getenv("QX_THREAD_SECONDS");
  return szSeconds ? std::chrono::seconds(std::atoi(szSeconds)) : std::chrono::milliseconds(400);
}

/// Asks for glyphs and releases them, and gives all of them back at the end.
template <class Manager>
void AskAndRelease(Manager& manager, unsigned int nSeed, std::atomic<bool> const& bStop) {
  std::mt19937 random(nSeed);
  std::vector<QXFontKey> arrHeld;
  QXTextStyle style;
  style.SetFaceName(L"sample");
  while (!bStop) {
    if (arrHeld.size() < 40 && random() % 5 < 3) {
      // All threads share the keys; sizes differ, so that pages fill and empty.
      std::uint32_t const nSize = 1 + static_cast<std::uint32_t>(random() % 30);
      style.SetSize(nSize * 4);
      QXFontKey const key((L'!' + static_cast<std::uint32_t>(random() % 90)) << 16 | nSize, L"sample");
      if (!manager.GetTextureFont(key, style)) continue;
      arrHeld.push_back(key);
    } else if (!arrHeld.empty()) {
      std::swap(arrHeld[random() % arrHeld.size()], arrHeld.back());
      manager.DelTextureFont(arrHeld.back());
      arrHeld.pop_back();
    }
  }
  for (QXFontKey const& key : arrHeld) manager.DelTextureFont(key);
}

template <class Manager>
void Hammer(Manager& manager) {
  constexpr unsigned int kThreads = 8;
  std::printf("seeds 800 to %u\n", 800 + kThreads - 1);
  std::atomic<bool> bStop{false};
  std::vector<std::thread> arrThreads;
  for (unsigned int i = 0; i < kThreads; ++i) {
    arrThreads.emplace_back([&, i] { AskAndRelease(manager, 800 + i, bStop); });
  }
  auto const end = std::chrono::steady_clock::now() + GetDuration();
  while (std::chrono::steady_clock::now() < end) manager.AddCharBitmapToTexture();
  bStop = true;
  for (std::thread& thread : arrThreads) thread.join();
}

class QXFontAtlasThreads : public QXFontAtlasFixture {};

TEST_F(QXFontAtlasThreads, GlyphsComeAndGoWhileOneThreadUploads) {
  QXSharedTextureManager textures;
  QXTextureFontManager manager;
  manager.SetTextureManager(&textures);
  g_nSent = 0;
  Hammer(manager);
  EXPECT_GT(g_nSent.load(), 0);
  // Each request had its release: every page that had glyphs has gone.
  EXPECT_EQ(textures.GetCount(), 0u);
}

TEST_F(QXFontAtlasThreads, GlyphsInMemoryComeAndGoWhileOneThreadUploads) {
  QXMemoryTextureFontManager manager;
  Hammer(manager);
  EXPECT_EQ(manager.GetTextureDataFromMemory(PageName(0)), nullptr);
  QXTextureFont const* const pFont = GetShaped(manager, Blank(1), 10, 10);
  ASSERT_NE(pFont, nullptr);
  EXPECT_EQ(pFont->m_Key.m_nKey, Location(8, 8, 6, 0));
}

}  // namespace
}  // namespace QXC
