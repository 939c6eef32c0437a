#include <QxGraphics3D/frame/QXSceneOperation.h>

#include <cmath>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>

namespace QXC {
namespace {

TEST(QXSceneOperation, ConstructionLeavesTheDefaults) {
  QXSceneOperation operation;
  EXPECT_EQ(operation.GetRenderGroupID(), 50u);
  EXPECT_EQ(operation.GetRenderPriority(), 0);
  EXPECT_EQ(operation.GetMaxRenderPriority(), 0);
  EXPECT_EQ(operation.GetHashFunction(), 0u);
  EXPECT_TRUE(operation.GetParentNodeName().IsEmpty());
  EXPECT_EQ(operation.GetLayerIDUnit(), 8);
  EXPECT_EQ(operation.GetClampToObjectPassPriority(), 0);
}

TEST(QXSceneOperation, SettersGiveTheFormerValue) {
  QXSceneOperation operation;
  EXPECT_EQ(operation.SetRenderGroupID(60), 50u);
  EXPECT_EQ(operation.SetRenderGroupID(70), 60u);
  EXPECT_EQ(operation.GetRenderGroupID(), 70u);
  EXPECT_EQ(operation.SetRenderPriority(5), 0);
  EXPECT_EQ(operation.SetRenderPriority(6), 5);
  EXPECT_EQ(operation.GetRenderPriority(), 6);
  EXPECT_EQ(operation.SetMaxRenderPriority(7), 0);
  EXPECT_EQ(operation.SetMaxRenderPriority(8), 7);
  EXPECT_EQ(operation.GetMaxRenderPriority(), 8);
  EXPECT_EQ(operation.SetHashFunction(static_cast<HashFunction>(0x80000001u)), 0u);
  EXPECT_EQ(operation.SetHashFunction(HASH_DEFAULT), 0x80000001u);
  EXPECT_EQ(operation.GetHashFunction(), 0u);
  EXPECT_TRUE(operation.SetParentNodeName(L"city").IsEmpty());
  EXPECT_TRUE(operation.SetParentNodeName(L"roads") == L"city");
  EXPECT_TRUE(operation.GetParentNodeName() == L"roads");
}

TEST(QXSceneOperation, ParentNodeNameMayBeSetToItself) {
  QXSceneOperation operation;
  operation.SetParentNodeName(L"a name that is too long to be stored inside the object");
  QdcUnicodeString const strFormer = operation.SetParentNodeName(operation.GetParentNodeName());
  EXPECT_TRUE(strFormer == L"a name that is too long to be stored inside the object");
  EXPECT_TRUE(operation.GetParentNodeName() == strFormer);
}

TEST(QXSceneOperation, SetDefaultLeavesMaximumPriorityLayerBitsAndCounter) {
  QXSceneOperation operation;
  operation.SetRenderGroupID(1);
  operation.SetRenderPriority(2);
  operation.SetMaxRenderPriority(3);
  operation.SetHashFunction(HASH_BY_NAME);
  operation.SetParentNodeName(L"city");
  operation.SetLayerIDUnit(4);
  operation.GetClampToObjectPassPriority();
  operation.SetDefault();
  EXPECT_EQ(operation.GetRenderGroupID(), 50u);
  EXPECT_EQ(operation.GetRenderPriority(), 0);
  EXPECT_EQ(operation.GetHashFunction(), 0u);
  EXPECT_TRUE(operation.GetParentNodeName().IsEmpty());
  EXPECT_EQ(operation.GetMaxRenderPriority(), 3);
  EXPECT_EQ(operation.GetLayerIDUnit(), 4);
  EXPECT_EQ(operation.GetClampToObjectPassPriority(), 1);
}

TEST(QXSceneOperation, LayerBitsBelowTwoBecomeOne) {
  QXSceneOperation operation;
  for (int const nBits : {-5, 0, 1}) {
    operation.SetLayerIDUnit(nBits);
    EXPECT_EQ(operation.GetLayerIDUnit(), 1);
  }
  operation.SetLayerIDUnit(2);
  EXPECT_EQ(operation.GetLayerIDUnit(), 2);
  operation.SetLayerIDUnit(40);
  EXPECT_EQ(operation.GetLayerIDUnit(), 40);
}

TEST(QXSceneOperation, PassPriorityRisesWithEveryCall) {
  QXSceneOperation operation;
  EXPECT_EQ(operation.GetClampToObjectPassPriority(), 0);
  EXPECT_EQ(operation.GetClampToObjectPassPriority(), 1);
  EXPECT_EQ(operation.GetClampToObjectPassPriority(), 2);
}

TEST(QXSceneOperation, PackingPutsTheLayerIntoTheTopBits) {
  QXSceneOperation const operation;
  EXPECT_EQ(operation.GetID(3, 5), (3u << 24) + 5u);
  int nLayer = 0;
  int nID = 0;
  operation.GetID(operation.GetID(3, 5), nLayer, nID);
  EXPECT_EQ(nLayer, 3);
  EXPECT_EQ(nID, 5);
  EXPECT_EQ(operation.GetID(255, 0xFFFFFF), 0xFFFFFFFFu);
  EXPECT_EQ(operation.GetID(0, 0x1000005), 5u);  // what does not fit is cut
  EXPECT_EQ(operation.GetID(0, -1), 0xFFFFFFu);
}

TEST(QXSceneOperation, UnpackingMasksTheLayerWithTheObjectsMask) {
  QXSceneOperation operation;
  operation.SetLayerIDUnit(20);  // 12 object bits: a layer of more than 12 bits is cut
  int nLayer = 0;
  int nID = 0;
  operation.GetID(operation.GetID(0x12345, 7), nLayer, nID);
  EXPECT_EQ(nLayer, 0x345);
  EXPECT_EQ(nID, 7);
}

TEST(QXSceneOperation, OneLayerBitLeavesThirtyOneForTheObject) {
  QXSceneOperation operation;
  operation.SetLayerIDUnit(1);
  EXPECT_EQ(operation.GetID(1, 0x7FFFFFFF), 0xFFFFFFFFu);
  int nLayer = 0;
  int nID = 0;
  operation.GetID(0xFFFFFFFFu, nLayer, nID);
  EXPECT_EQ(nLayer, 1);
  EXPECT_EQ(nID, 0x7FFFFFFF);
}

TEST(QXSceneOperation, ThirtyTwoAndMoreLayerBitsLeaveNoneForTheObject) {
  QXSceneOperation operation;
  int nLayer = 1;
  int nID = 1;
  operation.SetLayerIDUnit(32);
  EXPECT_EQ(operation.GetID(0x1234, 99), 0x1234u);  // a shift by 32 is one by 0
  operation.GetID(0x1234u, nLayer, nID);
  EXPECT_EQ(nLayer, 0);
  EXPECT_EQ(nID, 0);
  operation.SetLayerIDUnit(40);
  EXPECT_EQ(operation.GetID(1, 99), 1u << 24);  // 32 - 40 modulo 32
}

TEST(QXSceneOperation, PixelGivesTheTopBitsInAlphaThenRedGreenBlue) {
  QXSceneOperation const operation;
  unsigned char arrPixel[4] = {0x11, 0x22, 0x33, 0xFE};
  int nLayer = 0;
  int nID = 0;
  operation.GetID(arrPixel, nLayer, nID);
  EXPECT_EQ(nLayer, 0xFE);
  EXPECT_EQ(nID, 0x112233);
}

TEST(QXSceneOperation, LayerBitsBeyondThePrecisionOfADoubleMaskNothing) {
  QXSceneOperation operation;
  operation.SetLayerIDUnit(85);
  EXPECT_EQ(operation.GetID(0, 99), 0u);
  for (int const nBits : {86, 1000, 2147483647}) {
    operation.SetLayerIDUnit(nBits);
    EXPECT_EQ(operation.GetID(0, 99), 99u) << nBits;
  }
}

/// The two formulas literally, with the power computed each time.
std::uint32_t ReferencePack(int nBits, int nLayer, int nID) {
  auto const nMask = static_cast<std::uint32_t>(static_cast<std::int64_t>(std::pow(2.0, 32 - nBits) - 1.0));
  return (static_cast<std::uint32_t>(nID) & nMask) |
         (static_cast<std::uint32_t>(nLayer) << (static_cast<unsigned int>(32 - nBits) % 32));
}

TEST(QXSceneOperation, PackingFollowsItsFormulaForEveryNumberOfLayerBits) {
  unsigned int const nSeed = 20261121;
  SCOPED_TRACE(nSeed);
  std::mt19937 random(nSeed);
  QXSceneOperation operation;
  for (int nBits = 1; nBits <= 32; ++nBits) {
    operation.SetLayerIDUnit(nBits);
    for (int nRound = 0; nRound < 200; ++nRound) {
      int const nLayer = static_cast<int>(random());
      int const nID = static_cast<int>(random());
      ASSERT_EQ(operation.GetID(nLayer, nID), ReferencePack(nBits, nLayer, nID)) << nBits;
      int nLayerOut = 0;
      int nIDOut = 0;
      operation.GetID(ReferencePack(nBits, nLayer, nID), nLayerOut, nIDOut);
      if (nBits <= 16) {  // up to here the object's mask holds every layer
        ASSERT_EQ(static_cast<std::uint32_t>(nLayerOut), static_cast<std::uint32_t>(nLayer) & ((1u << nBits) - 1u));
        ASSERT_EQ(static_cast<std::uint32_t>(nIDOut), static_cast<std::uint32_t>(nID) & (0xFFFFFFFFu >> nBits));
      }
    }
  }
}

TEST(QXSceneOperation, CopiesCarryEverything) {
  QXSceneOperation operation;
  operation.SetRenderGroupID(1);
  operation.SetRenderPriority(2);
  operation.SetMaxRenderPriority(3);
  operation.SetHashFunction(HASH_BY_NAME);
  operation.SetParentNodeName(L"city");
  operation.SetLayerIDUnit(4);
  operation.GetClampToObjectPassPriority();
  QXSceneOperation copy(operation);
  QXSceneOperation assigned;
  assigned = operation;
  for (QXSceneOperation* pOperation : {&copy, &assigned}) {
    EXPECT_EQ(pOperation->GetRenderGroupID(), 1u);
    EXPECT_EQ(pOperation->GetRenderPriority(), 2);
    EXPECT_EQ(pOperation->GetMaxRenderPriority(), 3);
    EXPECT_EQ(pOperation->GetHashFunction(), 1u);
    EXPECT_TRUE(pOperation->GetParentNodeName() == L"city");
    EXPECT_EQ(pOperation->GetLayerIDUnit(), 4);
    EXPECT_EQ(pOperation->GetClampToObjectPassPriority(), 1);
  }
}

TEST(QXSceneOperation, ReleaseHasNoEffect) {
  QXSceneOperation operation;
  operation.SetRenderGroupID(7);
  operation.Release();
  EXPECT_EQ(operation.GetRenderGroupID(), 7u);
}

}  // namespace
}  // namespace QXC
