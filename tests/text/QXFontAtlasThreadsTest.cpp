// Eight threads ask for glyphs of one manager and release them while one uploads. What two of them touch at once without
// a lock is a report of the thread sanitizer; what gets lost shows in the counts at the end.
#include "../QXSentTextures.h"
#include "../QXThreadDuration.h"
#include "QXFontAtlasFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>
#include <vector>

namespace QXC {
namespace {

using QXGlyphPage = QXSentTexture<2>;

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
  auto const end = std::chrono::steady_clock::now() + GetThreadDuration();
  while (std::chrono::steady_clock::now() < end) manager.AddCharBitmapToTexture();
  bStop = true;
  for (std::thread& thread : arrThreads) thread.join();
}

class QXFontAtlasThreads : public QXFontAtlasFixture {};

TEST_F(QXFontAtlasThreads, GlyphsComeAndGoWhileOneThreadUploads) {
  QXSentTextureManager<QXGlyphPage> textures;
  QXTextureFontManager manager;
  manager.SetTextureManager(&textures);
  QXGlyphPage::ms_nSent = 0;
  Hammer(manager);
  EXPECT_GT(QXGlyphPage::ms_nSent.load(), 0);
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
