// A random life of the render atlas beside a record of what its patches ought to do, placed by the plain recursion.
#include <QxGraphics3D/atlas/QXRenderTextureManager.h>
#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>

#include "QXPlainQuadtree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <map>
#include <random>

namespace QXC {
namespace {

/// Gives no target now and then.
class QXMoodyGraphics3D : public QXNullGraphics3D {
public:
  QXRenderTarget* CreateRenderTexture(QdcUnicodeString const& strName, QX3DPixelFormat eFormat, unsigned int nWidth,
      unsigned int nHeight, int nMipmaps, unsigned int nColourDepth, QdcUnicodeString const& strSceneName) override {
    if (m_bRefuses) return nullptr;
    return QXNullGraphics3D::CreateRenderTexture(
        strName, eFormat, nWidth, nHeight, nMipmaps, nColourDepth, strSceneName);
  }

  bool m_bRefuses = false;
};

class QXRenderTextureLife : public testing::Test {
protected:
  struct Patch {
    QXRenderTexturePatch* m_pPatch = nullptr;
    int m_nRefCount = 0;
    unsigned int m_nSize = 0;
    bool m_bPlaced = false;
    QXPlainTile m_Tile;
  };

  QXRenderTextureLife() {
    m_Graphics.Initialize(QdcUnicodeString());
    m_Manager.SetGraphics3D(&m_Graphics);
  }
  ~QXRenderTextureLife() override { m_Manager.Clear(); }

  unsigned int Below(unsigned int nCount) { return static_cast<unsigned int>(m_Random() % nCount); }
  /// Mostly such as share pages; sizes that are no node, and such as fit no page.
  unsigned int ChooseSize() {
    unsigned int const nChoice = Below(50);
    if (nChoice == 0) return 2049 + Below(5000);
    if (nChoice == 1) return Below(3);
    return 33 + Below(16U << Below(8));
  }
  static QdcUnicodeString NameOf(int nPatch) {
    QdcUnicodeString strName;
    strName.Format(L"patch %d", nPatch);
    return strName;
  }

  void Place(Patch& patch) {
    if (patch.m_nSize > 2048) return;
    std::size_t const nPages = m_Plain.m_mapPages.size();
    QXPlainTile tile;
    m_Plain.Place(patch.m_nSize, 0, 0, 0, tile);
    // Pages that stand have their targets; only for a new one the renderer is asked.
    if (m_Graphics.m_bRefuses && m_Plain.m_mapPages.size() != nPages) {
      m_Plain.m_mapPages.erase(tile.m_nIndex);
      return;
    }
    patch.m_Tile = tile;
    patch.m_bPlaced = true;
  }
  void TakeOff(Patch& patch, bool bDrops) {
    if (!patch.m_bPlaced) return;
    m_Plain.Release(patch.m_Tile);
    bool const bLast = m_Plain.m_mapPages.at(patch.m_Tile.m_nIndex).m_nUsedCount == 0;
    if (bDrops && bLast) m_Plain.m_mapPages.erase(patch.m_Tile.m_nIndex);
    patch.m_bPlaced = false;
  }

  void Get(int nPatch) {
    unsigned int const nHeight = ChooseSize();
    unsigned int const nWidth = 1 + Below(200);
    Patch& patch = m_mapPatches[nPatch];
    patch.m_pPatch = m_Manager.GetRenderTexturePatch(NameOf(nPatch), nHeight, nWidth);
    ++patch.m_nRefCount;
    patch.m_nSize = std::bit_ceil(std::max(nHeight, nWidth));
    Place(patch);
  }
  void Resize(Patch& patch) {
    unsigned int const nWidth = ChooseSize();
    patch.m_nSize = std::bit_ceil(std::max(nWidth, 50U));
    patch.m_pPatch->Resize(nWidth, 50);
    TakeOff(patch, false);
    Place(patch);
  }
  void Remove(int nPatch) {
    m_Manager.RemoveRenderTexturePatch(NameOf(nPatch));
    Patch& patch = m_mapPatches.at(nPatch);
    if (--patch.m_nRefCount != 0) return;
    TakeOff(patch, true);
    m_mapPatches.erase(nPatch);
  }
  void Clear() {
    m_Manager.Clear();
    m_Manager.SetGraphics3D(&m_Graphics);
    m_mapPatches.clear();
    m_Plain.m_mapPages.clear();
  }

  void Compare() const {
    for (auto const& [nPatch, patch] : m_mapPatches) {
      QXRenderTexturePatch const& ours = *patch.m_pPatch;
      ASSERT_EQ(ours.GetRef(), patch.m_nRefCount);
      ASSERT_EQ(ours.IsPlaced(), patch.m_bPlaced ? 1 : 0);
      if (!patch.m_bPlaced) continue;
      ASSERT_EQ(ours.GetRow(), patch.m_Tile.m_nRow);
      ASSERT_EQ(ours.GetCol(), patch.m_Tile.m_nCol);
      ASSERT_EQ(ours.GetLod(), patch.m_Tile.m_nLod);
      ASSERT_EQ(ours.GetTextureIndex(), patch.m_Tile.m_nIndex);
    }
  }

  static constexpr unsigned int ms_nSeed = 616;

  QXMoodyGraphics3D m_Graphics;
  QXRenderTextureManager m_Manager;
  QXPlainQuadtree m_Plain{QXPlainKind::Render, 2048};
  std::map<int, Patch> m_mapPatches;
  std::mt19937 m_Random{ms_nSeed};
};

TEST_F(QXRenderTextureLife, AgreesWithTheRecursion) {
  std::printf("seed %u\n", ms_nSeed);
  for (int i = 0; i < 3000 && !HasFatalFailure(); ++i) {
    SCOPED_TRACE(testing::Message() << "step " << i);
    m_Graphics.m_bRefuses = Below(20) == 0;
    int const nPatch = static_cast<int>(Below(40));
    unsigned int const nChoice = Below(100);
    // Places that a second request leaves behind stay taken, so that there must be an end of it at times.
    if (m_Plain.m_mapPages.size() > 8)
      Clear();
    else if (m_mapPatches.count(nPatch) == 0 || nChoice < 15)
      Get(nPatch);
    else if (nChoice < 45)
      Resize(m_mapPatches.at(nPatch));
    else
      Remove(nPatch);
    Compare();
  }
}

}  // namespace
}  // namespace QXC
