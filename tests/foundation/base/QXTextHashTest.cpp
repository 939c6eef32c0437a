#include <QxGraphics3D/frame/foundation/base/detail/QXTextHash.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <memory>
#include <string>
#include <unordered_set>

namespace QXC::detail {
namespace {

using Hash = std::uint64_t (*)(wchar_t const*, std::size_t);

class QXTextHashTest : public testing::TestWithParam<Hash> {
protected:
  std::uint64_t Of(std::wstring const& strText) {
    // No room behind the text: reading past it is an error that the address sanitizer sees.
    auto const pExact = std::make_unique<wchar_t[]>(strText.size());
    strText.copy(pExact.get(), strText.size());
    return GetParam()(pExact.get(), strText.size());
  }
};

std::wstring PathOf(unsigned int nNumber) {
  wchar_t szPath[128];
  std::swprintf(szPath, 128, L"/srv/gis/stores/somewhere/textures/facades/level17/row%06u/tile_%014u_a.png",
      nNumber / 100, nNumber);
  return szPath;
}

TEST_P(QXTextHashTest, EqualTextsHashEqualWhereverTheyStand) {
  for (std::size_t nLength = 0; nLength <= 100; ++nLength) {
    std::wstring const strText(nLength, L'x');
    std::wstring const strLonger = L"abc" + strText + L"tail";
    EXPECT_EQ(Of(strText), GetParam()(strLonger.data() + 3, nLength));
  }
}

TEST_P(QXTextHashTest, EveryCharacterCounts) {
  for (std::size_t nLength = 1; nLength <= 100; ++nLength) {
    std::wstring strText = PathOf(12345) + PathOf(54321);
    strText.resize(nLength);
    std::unordered_set<std::uint64_t> setHashes{Of(strText)};
    for (std::size_t i = 0; i < nLength; ++i) {
      std::wstring strOther = strText;
      strOther[i] = L'\u4e2d';
      EXPECT_TRUE(setHashes.insert(Of(strOther)).second) << "character " << i << " of " << nLength;
      strOther[i] = static_cast<wchar_t>(strText[i] ^ 1);
      EXPECT_TRUE(setHashes.insert(Of(strOther)).second) << "last bit of character " << i << " of " << nLength;
    }
  }
}

TEST_P(QXTextHashTest, LengthCounts) {
  std::unordered_set<std::uint64_t> setHashes;
  for (std::size_t nLength = 0; nLength <= 200; ++nLength) {
    EXPECT_TRUE(setHashes.insert(Of(std::wstring(nLength, L'\0'))).second) << nLength << " zeros";
    EXPECT_TRUE(setHashes.insert(Of(std::wstring(nLength + 1, L'a'))).second) << nLength + 1 << " letters";
  }
}

TEST_P(QXTextHashTest, PiecesCannotChangePlaces) {
  for (std::size_t nPiece : {1u, 2u, 4u, 8u, 16u}) {
    std::wstring strText = PathOf(1).substr(0, 80);
    std::wstring strTurned = strText;
    std::swap_ranges(
        strTurned.begin(), strTurned.begin() + static_cast<std::ptrdiff_t>(nPiece), strTurned.begin() + 32);
    ASSERT_NE(strText, strTurned);
    EXPECT_NE(Of(strText), Of(strTurned)) << nPiece;
  }
}

TEST_P(QXTextHashTest, PathsOfOneStoreSpreadOverTheLowBits) {
  constexpr unsigned int kCount = 20000;
  std::unordered_set<std::uint64_t> setHashes;
  std::unordered_set<std::uint64_t> setHomes;
  for (unsigned int i = 0; i < kCount; ++i) {
    std::uint64_t const nHash = Of(PathOf(i * 7));
    setHashes.insert(nHash);
    setHomes.insert(nHash & 0x7FFF);
  }
  EXPECT_EQ(setHashes.size(), kCount);
  // 20,000 balls thrown at 32,768 places hit 32768 (1 - e^(-20000/32768)) = 14,968 of them.
  EXPECT_NEAR(static_cast<double>(setHomes.size()), 14968.0, 300.0);
}

INSTANTIATE_TEST_SUITE_P(Chosen, QXTextHashTest, testing::Values(&HashText));
INSTANTIATE_TEST_SUITE_P(Plain, QXTextHashTest, testing::Values(&HashTextPlain));

}  // namespace
}  // namespace QXC::detail
