#include <QxGraphics3D/atlas/QXRenderTexturePatch.h>

#include <QxGraphics3D/atlas/QXRenderTextureManager.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>

#include <gtest/gtest.h>

#include <new>
#include <type_traits>
#include <utility>

namespace QXC {
namespace {

using Position = std::pair<unsigned int, unsigned int>;

Position PositionOf(QXRenderTexturePatch const& patch) {
  Position position(7, 7);
  patch.GetPos(position.first, position.second);
  return position;
}

class QXRenderTexturePatchTest : public testing::Test {
protected:
  QXRenderTexturePatchTest() {
    m_Graphics.Initialize(QdcUnicodeString());
    m_Manager.SetGraphics3D(&m_Graphics);
  }
  ~QXRenderTexturePatchTest() override { m_Manager.Clear(); }

  QXRenderTexturePatch& Get(wchar_t const* szName, unsigned int nHeight, unsigned int nWidth) {
    return *m_Manager.GetRenderTexturePatch(szName, nHeight, nWidth);
  }

  QXNullGraphics3D m_Graphics;
  QXRenderTextureManager m_Manager;
};

TEST(QXRenderTexturePatch, IsOnlyMadeByItsManager) {
  EXPECT_FALSE((std::is_constructible_v<QXRenderTexturePatch, QXRenderTextureManager*>));
  EXPECT_FALSE(std::is_default_constructible_v<QXRenderTexturePatch>);
  EXPECT_TRUE(std::is_copy_constructible_v<QXRenderTexturePatch>);
  EXPECT_TRUE(std::is_copy_assignable_v<QXRenderTexturePatch>);
}

TEST_F(QXRenderTexturePatchTest, FirstNumberAskedForIsTheHeight) {
  QXRenderTexturePatch const& patch = Get(L"a", 100, 30);
  EXPECT_EQ(patch.GetHeight(), 100U);
  EXPECT_EQ(patch.GetWidth(), 30U);
  EXPECT_EQ(patch.GetName(), L"a");
  EXPECT_EQ(patch.GetRef(), 1);
  EXPECT_EQ(patch.GetRow(), 64);
  EXPECT_EQ(patch.GetCol(), 64);
  EXPECT_EQ(patch.GetLod(), 4);
  EXPECT_EQ(patch.GetTextureIndex(), 0);
  EXPECT_EQ(patch.IsPlaced(), 1);
  EXPECT_EQ(PositionOf(patch), Position(0, 0));
  EXPECT_EQ(patch.GetTextureName(), L"RenderTexture_BigTexture_0");
}

TEST_F(QXRenderTexturePatchTest, FirstNumberOfAResizeIsTheWidth) {
  QXRenderTexturePatch& patch = Get(L"a", 100, 30);
  patch.Resize(100, 30);
  EXPECT_EQ(patch.GetWidth(), 100U);
  EXPECT_EQ(patch.GetHeight(), 30U);
  EXPECT_EQ(patch.GetRef(), 1);
  patch.SetSize(100, 30);
  EXPECT_EQ(patch.GetWidth(), 30U);
  EXPECT_EQ(patch.GetHeight(), 100U);
}

TEST_F(QXRenderTexturePatchTest, SquareIsTheSmallestPowerOfTwoThatHoldsBoth) {
  struct {
    unsigned int m_nHeight;
    unsigned int m_nWidth;
    int m_nLod;
  } const arrCases[] = {{0, 0, 11}, {1, 1, 11}, {1, 2, 10}, {3, 1, 9}, {4, 4, 9}, {4, 5, 8}, {64, 64, 5}, {65, 1, 4},
      {1, 1024, 1}, {1025, 3, 0}, {2048, 2048, 0}};
  for (auto const& [nHeight, nWidth, nLod] : arrCases) {
    QXRenderTexturePatch const& patch = Get(L"a", nHeight, nWidth);
    EXPECT_EQ(patch.GetLod(), nLod) << nHeight << " x " << nWidth;
    EXPECT_EQ(patch.IsPlaced(), 1);
  }
}

TEST_F(QXRenderTexturePatchTest, PositionIsTheUpperLeftCorner) {
  Get(L"a", 256, 256);
  EXPECT_EQ(PositionOf(Get(L"b", 256, 256)), Position(256, 0));
  EXPECT_EQ(PositionOf(Get(L"c", 256, 256)), Position(0, 256));
  EXPECT_EQ(PositionOf(Get(L"d", 1024, 5)), Position(1024, 0));
  EXPECT_EQ(PositionOf(Get(L"e", 2048, 5)), Position(0, 0));
  EXPECT_EQ(Get(L"e", 2048, 5).GetTextureName(), L"RenderTexture_BigTexture_2");
  EXPECT_EQ(PositionOf(Get(L"f", 1, 1)), Position(0, 0));
  EXPECT_EQ(PositionOf(Get(L"g", 2, 2)), Position(0, 0));
}

TEST_F(QXRenderTexturePatchTest, PositionFollowsTheFieldsWhateverTheySay) {
  QXRenderTexturePatch patch = Get(L"a", 64, 64);
  patch.SetRow(100);
  patch.SetCol(300);
  patch.SetLod(5);
  EXPECT_EQ(PositionOf(patch), Position(268, 68));
  patch.SetLod(11);
  EXPECT_EQ(PositionOf(patch), Position(300, 100));
  for (int const nLod : {12, 31, 32, 100, -1, -2147483647 - 1}) {
    patch.SetLod(nLod);
    EXPECT_EQ(PositionOf(patch), Position(300, 100)) << nLod;
  }
}

TEST_F(QXRenderTexturePatchTest, FieldsAreKept) {
  QXRenderTexturePatch patch = Get(L"a", 64, 64);
  patch.SetRow(1);
  patch.SetCol(2);
  patch.SetLod(3);
  patch.SetTextureIndex(4);
  patch.SetName(L"other");
  patch.AddRef();
  patch.AddRef();
  patch.DecRef();
  EXPECT_EQ(patch.GetRow(), 1);
  EXPECT_EQ(patch.GetCol(), 2);
  EXPECT_EQ(patch.GetLod(), 3);
  EXPECT_EQ(patch.GetTextureIndex(), 4);
  EXPECT_EQ(patch.GetTextureName(), L"RenderTexture_BigTexture_4");
  EXPECT_EQ(patch.GetName(), L"other");
  EXPECT_EQ(patch.GetRef(), 2);
}

TEST_F(QXRenderTexturePatchTest, CopiesHaveEverythingAndTheSameManager) {
  Get(L"other", 64, 64);
  QXRenderTexturePatch& patch = Get(L"a", 100, 30);
  patch.AddRef();
  QXRenderTexturePatch const copy(patch);
  QXRenderTexturePatch assigned = Get(L"b", 4, 4);
  assigned = patch;
  for (QXRenderTexturePatch const* pCopy : {&copy, static_cast<QXRenderTexturePatch const*>(&assigned)}) {
    EXPECT_EQ(pCopy->GetRow(), patch.GetRow());
    EXPECT_EQ(pCopy->GetCol(), patch.GetCol());
    EXPECT_EQ(pCopy->GetLod(), 4);
    EXPECT_EQ(pCopy->GetTextureIndex(), patch.GetTextureIndex());
    EXPECT_EQ(pCopy->GetName(), L"a");
    EXPECT_EQ(pCopy->GetRef(), 2);
    EXPECT_EQ(pCopy->GetHeight(), 100U);
    EXPECT_EQ(pCopy->GetWidth(), 30U);
    EXPECT_EQ(pCopy->IsPlaced(), 1);
  }
  // The copy asks the manager to move the patch of its name, which is the manager's own.
  assigned.Resize(300, 300);
  EXPECT_EQ(assigned.GetWidth(), 300U);
  EXPECT_EQ(assigned.GetLod(), 4);
  EXPECT_EQ(patch.GetWidth(), 30U);
  EXPECT_EQ(patch.GetLod(), 4);
}

TEST_F(QXRenderTexturePatchTest, SizesThatNoBigTextureHoldsLeaveItWithoutAPlace) {
  for (unsigned int const nSize : {2049U, 8192U, 1U << 31, (1U << 31) + 1, 0xFFFFFFFFU}) {
    QXRenderTexturePatch const& patch = Get(L"huge", nSize, 1);
    EXPECT_EQ(patch.IsPlaced(), 0) << nSize;
    EXPECT_EQ(patch.GetHeight(), nSize);
    EXPECT_EQ(PositionOf(patch), Position(0xFFFFFC00U, 0xFFFFFC00U));
    m_Manager.RemoveRenderTexturePatch(L"huge");
  }
}

TEST_F(QXRenderTexturePatchTest, UselessPatchesLeaveTheManagerOfTheProcess) {
  QXRenderTextureManager& singleton = QXRenderTextureManager::GetSingleton();
  singleton.SetGraphics3D(&m_Graphics);
  QXRenderTexturePatch* const pNamesake = singleton.GetRenderTexturePatch(L"a", 4, 4);
  pNamesake->AddRef();
  QXRenderTexturePatch& patch = Get(L"a", 4, 4);
  QdcArray<QXRenderTexturePatch*> arrUseless;
  arrUseless.Add(&patch);
  m_Manager.AddUselessTexture(arrUseless);
  m_Manager.ClearUselessTexture();
  EXPECT_EQ(patch.GetRef(), 1);
  EXPECT_EQ(pNamesake->GetRef(), 1);
  singleton.Clear();
}

/// Has no memory left for a target.
class QXExhaustedGraphics3D : public QXNullGraphics3D {
public:
  QXRenderTarget* CreateRenderTexture(QdcUnicodeString const&, QX3DPixelFormat, unsigned int, unsigned int, int,
      unsigned int, QdcUnicodeString const&) override {
    throw std::bad_alloc();
  }
};

TEST_F(QXRenderTexturePatchTest, PlaceIsGivenBackWhereTheRendererRaises) {
  Get(L"full", 2048, 2048);
  QXExhaustedGraphics3D exhausted;
  m_Manager.SetGraphics3D(&exhausted);
  EXPECT_THROW(Get(L"a", 64, 64), std::bad_alloc);
  m_Manager.SetGraphics3D(&m_Graphics);
  m_Manager.RemoveRenderTexturePatch(L"full");
  // Nothing is left of the texture 1 that could not be made: it would take the next patch.
  QXRenderTexturePatch const& patch = Get(L"b", 64, 64);
  EXPECT_EQ(patch.GetTextureIndex(), 0);
  EXPECT_EQ(PositionOf(patch), Position(0, 0));
}

}  // namespace
}  // namespace QXC
