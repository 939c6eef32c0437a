// Users on other threads let go of patches while the render thread makes, moves, renders and drops them.
#include "../QXThreadDuration.h"

#include <QxGraphics3D/atlas/QXRenderTextureManager.h>
#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

namespace QXC {
namespace {

/// Patches on their way from the render thread to those who use and drop them.
class QXPatchQueue {
public:
  void Push(QXRenderTexturePatch* pPatch) {
    std::lock_guard const lock(m_Mutex);
    m_arrPatches.push_back(pPatch);
  }
  std::vector<QXRenderTexturePatch*> PopAll() {
    std::lock_guard const lock(m_Mutex);
    return std::exchange(m_arrPatches, {});
  }

private:
  std::mutex m_Mutex;
  std::vector<QXRenderTexturePatch*> m_arrPatches;
};

TEST(QXRenderTextureThreads, PatchesAreLetGoOfOnAnyThread) {
  constexpr int nUsers = 7;
  QXNullGraphics3D graphics;
  graphics.Initialize(QdcUnicodeString());
  QXRenderTextureManager& manager = QXRenderTextureManager::GetSingleton();
  manager.SetGraphics3D(&graphics);
  QXPatchQueue arrQueues[nUsers];
  std::atomic<bool> bStop{false};
  std::atomic<int> nDropped{0};
  std::vector<std::thread> arrThreads;
  for (QXPatchQueue& queue : arrQueues) {
    arrThreads.emplace_back([&] {
      while (true) {
        bool const bLast = bStop;
        QdcArray<QXRenderTexturePatch*> arrUseless;
        for (QXRenderTexturePatch* const pPatch : queue.PopAll()) arrUseless.Add(pPatch);
        nDropped += static_cast<int>(arrUseless.GetSize());
        manager.AddUselessTexture(arrUseless);
        if (bLast) return;
        std::this_thread::yield();
      }
    });
  }
  std::mt19937 random(615);
  auto const end = std::chrono::steady_clock::now() + GetThreadDuration();
  int nMade = 0;
  do {
    for (int i = 0; i < 20; ++i) {
      QdcUnicodeString strName;
      strName.Format(L"patch %d", nMade++);
      QXRenderTexturePatch* const pPatch = manager.GetRenderTexturePatch(strName, 4U << random() % 8, 1);
      if (random() % 4 == 0) pPatch->Resize(4U << random() % 8, 1);
      if (random() % 4 == 0) pPatch->SetNeedRender();
      arrQueues[random() % nUsers].Push(pPatch);
    }
    manager.RenderToTexture();
    if (random() % 8 == 0) manager.ClearUselessTexture();
  } while (std::chrono::steady_clock::now() < end);
  bStop = true;
  for (std::thread& thread : arrThreads) thread.join();
  manager.ClearUselessTexture();
  EXPECT_EQ(nDropped.load(), nMade);
  // All are gone: names that were used begin anew.
  for (int i = 0; i < nMade; i += 7) {
    QdcUnicodeString strName;
    strName.Format(L"patch %d", i);
    ASSERT_EQ(manager.GetRenderTexturePatch(strName, 4, 4)->GetRef(), 1);
  }
  manager.Clear();
}

}  // namespace
}  // namespace QXC
