// What plug-ins see of the frame loop and of the renderer's end: which operations are called on them, in which order,
// and what stands in the renderer meanwhile.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/atlas/QXTextureImageManagerEx.h>
#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/model/QXModelManager.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include "QXTestGraphics3D.h"
#include "QXTestTarget.h"

namespace QXC {
namespace {

using Lines = std::vector<std::string>;

std::string NameOf(QXRenderTarget const* pTarget) {
  return pTarget ? std::string(pTarget->GetName().ToMBString().Cstr()) : std::string("none");
}

/// Overrides what the loop calls by its virtual operations. Its name and state are its own, so that a renderer that
/// looked at the members instead would go wrong.
class QXCallTarget : public QXTestTarget {
public:
  QXCallTarget(QXTestLog& log, wchar_t const* szName, unsigned char bActive)
      : QXTestTarget(log), m_strOwnName(szName), m_bOwnActive(bActive) {}
  ~QXCallTarget() override {
    if (m_pRenderer) Say("dies, finds " + NameOf(m_pRenderer->GetRenderTarget(m_strSought)));
  }

  QdcUnicodeString const& GetName() const override { return m_strOwnName; }
  unsigned char IsActive() const override { return m_bOwnActive; }
  void SetActive(unsigned char bActive) override {
    Say("active " + std::to_string(bActive));
    m_bOwnActive = bActive;
  }
  void Update() override {
    Say("update, refresh " + std::to_string(IsCurTargetRefresh()));
    if (m_bAskAgain) SetCurTargetRefresh(1);
  }

  void Say(std::string const& strWhat) {
    m_Log.m_arrLines.push_back(std::string(m_strOwnName.ToMBString().Cstr()) + " " + strWhat);
  }

  QdcUnicodeString m_strOwnName;
  unsigned char m_bOwnActive;
  /// Asks for another refresh while it updates.
  bool m_bAskAgain = false;
  /// If set, the renderer in which it looks for m_strSought while it dies.
  QXGraphics3D* m_pRenderer = nullptr;
  QdcUnicodeString m_strSought;
};

/// Writes down the attachments with the target that is active at that moment.
class QXAttachGraphics3D : public QXTestGraphics3D {
public:
  explicit QXAttachGraphics3D(QXTestLog& log) : m_Log(log) {}
  void AttachReflectRenderTarget(QXRenderTarget* pTarget) override { Say("reflect", pTarget); }
  void AttachSelectionRenderTarget(QXRenderTarget* pTarget) override { Say("selection", pTarget); }
  void AttachVertexSelectionRenderTarget(QXRenderTarget* pTarget) override { Say("vertices", pTarget); }

private:
  void Say(char const* szWhich, QXRenderTarget* pTarget) {
    m_Log.m_arrLines.push_back(std::string(szWhich) + " " + NameOf(pTarget) + " for " + NameOf(m_pActiveRenderTarget));
  }
  QXTestLog& m_Log;
};

class QXGraphics3DCallOrder : public testing::Test {
protected:
  QXGraphics3DCallOrder() : m_Graphics(m_Log) {}
  ~QXGraphics3DCallOrder() override { m_Graphics.ShutDown(); }

  QXCallTarget* Attach(wchar_t const* szName, unsigned char bActive) {
    auto* const pTarget = new QXCallTarget(m_Log, szName, bActive);
    m_Graphics.AttachRenderTarget(pTarget);
    return pTarget;
  }

  QXTestLog m_Log;
  QXAttachGraphics3D m_Graphics;
};

TEST_F(QXGraphics3DCallOrder, AttachingAsksTheTargetForItsName) {
  QXCallTarget* const pTarget = Attach(L"window", 0);
  EXPECT_EQ(m_Graphics.GetRenderTarget(L"window"), pTarget);
  EXPECT_EQ(m_Graphics.GetRenderTarget(L""), nullptr);
}

TEST_F(QXGraphics3DCallOrder, LoopAsksTheTargetWhetherItIsActive) {
  QXCallTarget* const pWindow = Attach(L"a", 1);
  Attach(L"b", 0)->m_bActive = 1;
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_Log.m_arrLines, (Lines{"a update, refresh 0"}));
  EXPECT_EQ(m_Graphics.GetActiveRenderTarget(), pWindow);
}

TEST_F(QXGraphics3DCallOrder, AlwaysActiveTargetDrawsBetweenItsOwnAttachmentsAndTheFormerOnes) {
  QXCallTarget mirror(m_Log, L"mirror", 0);
  QXCallTarget picker(m_Log, L"picker", 0);
  QXCallTarget corners(m_Log, L"corners", 0);
  QXCallTarget otherMirror(m_Log, L"other mirror", 0);
  QXCallTarget otherPicker(m_Log, L"other picker", 0);
  QXCallTarget otherCorners(m_Log, L"other corners", 0);
  QXCallTarget* const pWindow = Attach(L"a", 1);
  QXCallTarget* const pOverview = Attach(L"b", 0);
  pWindow->m_bAutoUpdated = 0;
  pWindow->SetReflectRenderTarget(&otherMirror);
  pWindow->SetSelectionRenderTarget(&otherPicker);
  pWindow->SetVertexSelectionRenderTarget(&otherCorners);
  pOverview->SetAlwaysActive(1);
  pOverview->SetReflectRenderTarget(&mirror);
  pOverview->SetSelectionRenderTarget(&picker);
  pOverview->SetVertexSelectionRenderTarget(&corners);
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(
      m_Log.m_arrLines, (Lines{"b active 1", "reflect mirror for b", "selection picker for b", "vertices corners for b",
                            "b update, refresh 0", "b active 0", "reflect other mirror for a",
                            "selection other picker for a", "vertices other corners for a"}));
}

TEST_F(QXGraphics3DCallOrder, RefreshFlagStandsDuringTheUpdateAndWhatIsAskedForMeanwhileGoesWithIt) {
  QXCallTarget* const pTarget = Attach(L"a", 0);
  pTarget->SetCurTargetRefresh(1);
  pTarget->m_bAskAgain = true;
  m_Graphics.UpdateAllRenderTargets();
  EXPECT_EQ(m_Log.m_arrLines, (Lines{"a active 1", "a update, refresh 1", "a active 0"}));
  EXPECT_EQ(pTarget->IsCurTargetRefresh(), 0);
}

TEST_F(QXGraphics3DCallOrder, DeletedTargetIsOutOfTheRegistryBeforeItDies) {
  QXCallTarget* const pTarget = Attach(L"a", 0);
  pTarget->m_pRenderer = &m_Graphics;
  pTarget->m_strSought = L"a";
  m_Graphics.DeleteRenderTarget(pTarget);
  EXPECT_EQ(m_Log.m_arrLines, (Lines{"a dies, finds none"}));
}

TEST_F(QXGraphics3DCallOrder, ShutDownLeavesNoDeadTargetInTheRegistryWhileItDeletesTheNext) {
  Attach(L"a", 0);
  QXCallTarget* const pLast = Attach(L"b", 0);
  pLast->m_pRenderer = &m_Graphics;
  pLast->m_strSought = L"a";
  m_Graphics.ShutDown();
  EXPECT_EQ(m_Log.m_arrLines, (Lines{"b dies, finds none"}));
}

// --- The end of the renderer ---

/// Looks at the renderer when its resources are released.
class QXLookingHolder : public QXResourceHolder {
public:
  unsigned int GetResourceCount() const override { return 0; }
  void ReleaseResources() override {
    ++m_nCalls;
    m_pViewportSeen = m_pRenderer->m_pViewport;
    m_bModelsSeen = m_pRenderer->m_pModelManager != nullptr || QXModelManager::GetSingletonPtr() != nullptr;
  }
  QXGraphics3D* m_pRenderer = nullptr;
  int m_nCalls = 0;
  QXViewport* m_pViewportSeen = nullptr;
  bool m_bModelsSeen = true;
};

TEST(QXGraphics3D, ModelsAreGoneWhenThePluginsResourcesAreReleased) {
  QXLookingHolder holder;
  QXTestGraphics3D graphics;
  holder.m_pRenderer = &graphics;
  graphics.m_pResourceHolder = &holder;
  graphics.ClearResource();
  EXPECT_EQ(holder.m_nCalls, 1);
  EXPECT_FALSE(holder.m_bModelsSeen);
  graphics.m_pResourceHolder = nullptr;
}

TEST(QXGraphics3D, DestructorForgetsTheViewportBeforeResourcesAreReleased) {
  QXLookingHolder holder;
  QXViewport viewport;
  holder.m_pViewportSeen = &viewport;
  {
    QXTestGraphics3D graphics;
    holder.m_pRenderer = &graphics;
    graphics.m_pResourceHolder = &holder;
    graphics.m_pViewport = &viewport;
  }
  EXPECT_EQ(holder.m_nCalls, 1);
  EXPECT_EQ(holder.m_pViewportSeen, nullptr);
}

class QXEmptyTextureManager : public QXTextureManager {
public:
  QXTexture* GetTexture(QdcUnicodeString const&, unsigned char) override { return nullptr; }
  unsigned char ManagerOperation2(QdcUnicodeString const&) const override { return 0; }
  void Release() override {}
};

/// Takes a singleton's object away, so that the next use is seen by the new one that it makes.
template <class T>
class QXSingletonWatch {
public:
  QXSingletonWatch() : m_pKept(QXSingleton<T>::ms_pSingleton) { QXSingleton<T>::ms_pSingleton = nullptr; }
  QXSingletonWatch(QXSingletonWatch const&) = delete;
  QXSingletonWatch& operator=(QXSingletonWatch const&) = delete;
  ~QXSingletonWatch() {
    delete QXSingleton<T>::ms_pSingleton;
    QXSingleton<T>::ms_pSingleton = m_pKept;
  }
  bool WasUsed() const { return QXSingleton<T>::ms_pSingleton != nullptr; }

private:
  T* m_pKept;
};

TEST(QXGraphics3D, FontsAreClearedAlwaysButImagesOnlyWithATextureManager) {
  QXSingletonWatch<QXTextureFontManager> const fonts;
  QXSingletonWatch<QXTextureImageManagerEx> const images;
  QXEmptyTextureManager textures;
  QXTestGraphics3D graphics;
  EXPECT_FALSE(fonts.WasUsed());
  graphics.ClearResource();
  EXPECT_TRUE(fonts.WasUsed());
  EXPECT_FALSE(images.WasUsed());
  graphics.m_pTextureManager = &textures;
  graphics.ClearResource();
  EXPECT_TRUE(images.WasUsed());
  graphics.m_pTextureManager = nullptr;
}

}  // namespace
}  // namespace QXC
