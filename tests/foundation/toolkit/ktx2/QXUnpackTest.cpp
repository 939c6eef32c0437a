#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUnpack.h>

#include "QXKtx2Files.h"

namespace {

using namespace qxtest;
using QXC::detail::QXKtx2Scheme;

struct Scheme {
  QXKtx2Scheme m_eScheme;
  Bytes (*m_pfnPack)(Bytes const&);
};
Scheme const g_arrSchemes[] = {{QXKtx2Scheme::Zstandard, &PackZstandard}, {QXKtx2Scheme::Zlib, &PackZlib}};

/// Into a block of exactly nSize bytes; empty if it failed.
Bytes UnpackTo(QXKtx2Scheme eScheme, Bytes const& arrPacked, std::size_t nSize, bool bWhole) {
  std::unique_ptr<unsigned char[]> const pTarget(new unsigned char[nSize]);
  if (!Unpack(eScheme, {arrPacked.data(), arrPacked.size()}, pTarget.get(), nSize, bWhole)) return {};
  return Bytes(pTarget.get(), pTarget.get() + nSize);
}

TEST(QXUnpack, GivesBackWhatWasPacked) {
  for (Scheme const& scheme : g_arrSchemes) {
    for (std::size_t const nSize : {1u, 4u, 1000u, 300000u}) {
      Bytes const arrBytes = CountedBytes(nSize);
      EXPECT_EQ(UnpackTo(scheme.m_eScheme, scheme.m_pfnPack(arrBytes), nSize, true), arrBytes);
      EXPECT_EQ(UnpackTo(scheme.m_eScheme, scheme.m_pfnPack(arrBytes), nSize, false), arrBytes);
    }
  }
}

TEST(QXUnpack, TheStartIsEnoughOnlyWhereItIsAskedFor) {
  for (Scheme const& scheme : g_arrSchemes) {
    Bytes const arrPacked = scheme.m_pfnPack(CountedBytes(300000));
    for (std::size_t const nSize : {1u, 1000u, 299999u}) {
      EXPECT_EQ(UnpackTo(scheme.m_eScheme, arrPacked, nSize, false), CountedBytes(nSize)) << nSize;
      EXPECT_TRUE(UnpackTo(scheme.m_eScheme, arrPacked, nSize, true).empty()) << nSize;
    }
  }
}

TEST(QXUnpack, FramesOfZstandardFollowEachOther) {
  // One that readers skip, one of nothing, and the bytes in two.
  Bytes arrPacked = {0x50, 0x2A, 0x4D, 0x18, 3, 0, 0, 0, 7, 7, 7};
  Bytes const arrBytes = CountedBytes(1000);
  for (std::ptrdiff_t const nEnd : {0, 400, 1000}) {
    std::ptrdiff_t const nStart = nEnd == 1000 ? 400 : 0;
    Bytes const arrFrame = PackZstandard(Bytes(arrBytes.begin() + nStart, arrBytes.begin() + nEnd));
    arrPacked.insert(arrPacked.end(), arrFrame.begin(), arrFrame.end());
  }
  EXPECT_EQ(UnpackTo(QXKtx2Scheme::Zstandard, arrPacked, 1000, true), arrBytes);
  EXPECT_EQ(UnpackTo(QXKtx2Scheme::Zstandard, arrPacked, 1000, false), arrBytes);
  EXPECT_EQ(UnpackTo(QXKtx2Scheme::Zstandard, arrPacked, 401, false), CountedBytes(401));
}

TEST(QXUnpack, MoreThanIsPackedIsRefused) {
  for (Scheme const& scheme : g_arrSchemes) {
    for (bool const bWhole : {true, false})
      EXPECT_TRUE(UnpackTo(scheme.m_eScheme, scheme.m_pfnPack(CountedBytes(1000)), 1001, bWhole).empty());
  }
}

TEST(QXUnpack, WhatStandsBehindTheWholeIsRefused) {
  for (Scheme const& scheme : g_arrSchemes) {
    Bytes arrPacked = scheme.m_pfnPack(CountedBytes(1000));
    arrPacked.push_back(0);
    EXPECT_TRUE(UnpackTo(scheme.m_eScheme, arrPacked, 1000, true).empty());
    EXPECT_EQ(UnpackTo(scheme.m_eScheme, arrPacked, 1000, false), CountedBytes(1000));
  }
}

TEST(QXUnpack, CutAnywhereIsRefused) {
  for (Scheme const& scheme : g_arrSchemes) {
    Bytes const arrPacked = scheme.m_pfnPack(CountedBytes(3000));
    for (std::size_t nCut = 0; nCut < arrPacked.size(); ++nCut) {
      Bytes const arrCut(arrPacked.begin(), arrPacked.begin() + static_cast<std::ptrdiff_t>(nCut));
      EXPECT_TRUE(UnpackTo(scheme.m_eScheme, arrCut, 3000, true).empty()) << nCut;
    }
  }
}

TEST(QXUnpack, DamageIsRefusedOrStaysInsideTheTarget) {
  for (Scheme const& scheme : g_arrSchemes) {
    Bytes const arrPacked = scheme.m_pfnPack(CountedBytes(3000));
    for (std::size_t nBit = 0; nBit < arrPacked.size() * 8; ++nBit) {
      Bytes arrBroken = arrPacked;
      arrBroken[nBit / 8] = static_cast<unsigned char>(arrBroken[nBit / 8] ^ 1u << nBit % 8);
      Bytes const arrWhole = UnpackTo(scheme.m_eScheme, arrBroken, 3000, true);
      // zlib carries a checksum; a Zstandard frame need not, and then damage may show in the bytes alone.
      if (scheme.m_eScheme == QXKtx2Scheme::Zlib) {
        EXPECT_TRUE(arrWhole.empty() || arrWhole == CountedBytes(3000)) << nBit;
      }
      UnpackTo(scheme.m_eScheme, arrBroken, 100, false);
    }
  }
}

TEST(QXUnpack, OtherSchemesAreRefused) {
  Bytes const arrBytes = CountedBytes(100);
  for (QXKtx2Scheme const eScheme : {QXKtx2Scheme::None, QXKtx2Scheme::BasisLz, static_cast<QXKtx2Scheme>(4)}) {
    EXPECT_TRUE(UnpackTo(eScheme, arrBytes, 100, true).empty());
    EXPECT_TRUE(UnpackTo(eScheme, arrBytes, 100, false).empty());
  }
}

TEST(QXUnpack, BombsAreRefusedByTheirLengthAlone) {
  // 65,536 x 4,096 pixels of four bytes from a handful: nothing packs as tightly.
  for (std::uint32_t const nScheme : {2u, 3u}) {
    Ktx2Maker maker;
    maker.m_nWidth = 65536;
    maker.m_nHeight = 4096;
    maker.m_nScheme = nScheme;
    maker.m_arrLevels = {Bytes(1000)};
    Bytes arrFile = maker.Make();
    Store64(arrFile, 96, std::uint64_t{65536} * 4096 * 4);
    QXC::detail::QXKtx2File file;
    EXPECT_FALSE(file.Open(arrFile.data(), arrFile.size(), {})) << nScheme;
  }
}

TEST(QXUnpack, TightestPackingThereIsIsNoBomb) {
  for (std::uint32_t const nScheme : {2u, 3u}) {
    Ktx2Maker maker;
    maker.m_nWidth = maker.m_nHeight = 1024;
    maker.m_nScheme = nScheme;
    maker.m_arrLevels = {Bytes(4 << 20)};
    EXPECT_EQ(DecodeBytes(maker.Make()), maker.m_arrLevels[0]) << nScheme;
  }
}

}  // namespace
