// Many threads on the image atlases, one of them rendering. What two of them touch at once without a lock is a report
// of the thread sanitizer; what gets lost shows in the counts at the end.

#include "../QXSentTextures.h"
#include "../QXThreadDuration.h"

#include <QxGraphics3D/atlas/QXTextureImageManager.h>
#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace QXC {
namespace {

std::atomic<int> g_nLiveTextures{0};

using QXPixels = QXSentTexture<4>;

class QXLiveTexture : public QXPixels {
public:
  explicit QXLiveTexture(QdcUnicodeString const& strName) : QXPixels(strName) { ++g_nLiveTextures; }
  ~QXLiveTexture() override { --g_nLiveTextures; }

  void LoadTexture(unsigned char bOnlyIfNeeded, unsigned char bReleaseImage) override {
    QXPixels::LoadTexture(bOnlyIfNeeded, bReleaseImage);
    ++ms_nSent;
  }
};

QXTextureData* MakePixels(unsigned int nSize) {
  auto* const pData = new QXTextureData;
  pData->m_nWidth = pData->m_nHeight = nSize;
  pData->m_eFormat = PF_A8R8G8B8;
  pData->m_nDataSize = nSize * nSize * 4;
  pData->m_pPixels = new unsigned char[pData->m_nDataSize]();
  return pData;
}

/// Seven threads work, each with a random number generator of its own, while the calling one renders.
void Hammer(std::function<void(std::mt19937&, int nThread)> const& work, std::function<void()> const& render) {
  constexpr int kWorkers = 7;
  std::printf("seeds 500 to %d\n", 500 + kWorkers - 1);
  std::atomic<bool> bStop{false};
  std::vector<std::thread> arrThreads;
  for (int i = 0; i < kWorkers; ++i) {
    arrThreads.emplace_back([&, i] {
      std::mt19937 random(static_cast<unsigned int>(500 + i));
      while (!bStop) work(random, i);
    });
  }
  auto const end = std::chrono::steady_clock::now() + GetThreadDuration();
  while (std::chrono::steady_clock::now() < end) render();
  bStop = true;
  for (std::thread& thread : arrThreads) thread.join();
}

/// Names that one thread holds. A record is filled by the thread that made it, before it gets a slot or is ready: so
/// nobody fills those whose names are shared, and a thread's own names are never used a second time.
class QXHeldNames {
public:
  explicit QXHeldNames(int nThread) : m_nThread(nThread) {}

  bool IsFull() const { return m_arrNames.size() >= 20; }
  QdcUnicodeString AddShared(std::mt19937& random) {
    m_arrNames.emplace_back().Format(L"shared/%u", static_cast<unsigned int>(random() % 8));
    return m_arrNames.back();
  }
  QdcUnicodeString AddOwn() {
    m_arrNames.emplace_back().Format(L"%d/%d", m_nThread, m_nLast++);
    return m_arrNames.back();
  }
  QdcUnicodeString Take(std::mt19937& random) {
    std::swap(m_arrNames[random() % m_arrNames.size()], m_arrNames.back());
    QdcUnicodeString const strName = m_arrNames.back();
    m_arrNames.pop_back();
    return strName;
  }
  std::vector<QdcUnicodeString> const& GetNames() const { return m_arrNames; }

private:
  int m_nThread;
  int m_nLast = 0;
  std::vector<QdcUnicodeString> m_arrNames;
};

class QXImageAtlasThreads : public testing::Test {
protected:
  void SetUp() override {
    QXLiveTexture::ms_nSent = 0;
    g_nLiveTextures = 0;
  }

  QXSentTextureManager<QXLiveTexture> m_Textures;
  std::vector<QXHeldNames> m_arrHeld{
      QXHeldNames(0), QXHeldNames(1), QXHeldNames(2), QXHeldNames(3), QXHeldNames(4), QXHeldNames(5), QXHeldNames(6)};
};

TEST_F(QXImageAtlasThreads, ImagesComeAndGoWhileOneThreadRenders) {
  QXTextureImageManager manager;
  manager.SetTextureManager(&m_Textures);
  QXTextureImageManager* const pKept = std::exchange(QXSingleton<QXTextureImageManager>::ms_pSingleton, &manager);
  auto const work = [&](std::mt19937& random, int nThread) {
    QXHeldNames& held = m_arrHeld[static_cast<std::size_t>(nThread)];
    if (held.IsFull()) {
      manager.RemoveTextureImage(held.Take(random));
    } else if (random() % 4 == 0) {
      manager.GetTextureImage(held.AddShared(random));
    } else {
      QdcUnicodeString const strName = held.AddOwn();
      QXTextureImage* const pImage = manager.GetTextureImage(strName);
      pImage->m_nSize = 4u << random() % 4;
      pImage->m_pTextureData = MakePixels(pImage->m_nSize);
      manager.FindSpaceInBigTextures(pImage);
      if (random() % 3 != 0) return;
      // One user for the list, one that this thread takes away itself.
      manager.GetTextureImage(strName);
      QdcArray<QXTextureImage*> arrUseless;
      arrUseless.Add(pImage);
      manager.AddUselessTexture(arrUseless);
    }
  };
  Hammer(work, [&] { manager.LoadTexture(); });
  manager.LoadTexture();
  for (QXHeldNames const& held : m_arrHeld) {
    for (QdcUnicodeString const& strName : held.GetNames()) manager.RemoveTextureImage(strName);
  }
  EXPECT_GT(QXLiveTexture::ms_nSent.load(), 0);
  // Nothing is left: no texture has a user, and the whole of the first big texture is free.
  EXPECT_EQ(g_nLiveTextures.load(), 0);
  QXTextureImage* const pWhole = manager.GetTextureImage(L"whole");
  pWhole->m_nSize = 1024;
  pWhole->m_pTextureData = MakePixels(4);
  manager.FindSpaceInBigTextures(pWhole);
  EXPECT_EQ(pWhole->m_nLocation, 512u | 512u << 10);
  QXSingleton<QXTextureImageManager>::ms_pSingleton = pKept;
}

TEST_F(QXImageAtlasThreads, ReadyImagesAreLoadedWhileOthersAreMade) {
  QXTextureImageManagerEx manager;
  manager.SetTextureManager(&m_Textures);
  QXTextureImageManagerEx* const pKept = std::exchange(QXSingleton<QXTextureImageManagerEx>::ms_pSingleton, &manager);
  auto const work = [&](std::mt19937& random, int nThread) {
    QXHeldNames& held = m_arrHeld[static_cast<std::size_t>(nThread)];
    if (held.IsFull()) {
      manager.RemoveTextureImage(held.Take(random), random() % 4 != 0);
    } else if (random() % 4 == 0) {
      manager.GetTextureImage(held.AddShared(random));
    } else {
      QXTextureImageEx* const pImage = manager.GetTextureImage(held.AddOwn());
      pImage->m_nWidth = pImage->m_nHeight = 4u << random() % 2;
      pImage->m_nFormat = PF_A8R8G8B8;
      pImage->m_pTextureData = MakePixels(pImage->m_nWidth);
      pImage->m_bReady = 1;
    }
  };
  Hammer(work, [&] { manager.LoadTexture(1); });
  for (QXHeldNames const& held : m_arrHeld) {
    for (QdcUnicodeString const& strName : held.GetNames()) manager.RemoveTextureImage(strName, 1);
  }
  EXPECT_GT(QXLiveTexture::ms_nSent.load(), 0);
  manager.Clear();
  EXPECT_EQ(g_nLiveTextures.load(), 0);
  EXPECT_EQ(manager.GetTextureImage(L"shared/1")->m_nRefCount, 1);
  QXSingleton<QXTextureImageManagerEx>::ms_pSingleton = pKept;
}

}  // namespace
}  // namespace QXC
