#include <QxGraphics3D/frame/foundation/base/detail/QXTextHash.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXInstructionSets.h>

#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#  define QX_TEXT_HASH_AVX2 1
#  include <immintrin.h>
#endif

// A sum of products over pieces of the text. Each product has the key of its place in it, so that pieces cannot change
// places unseen; and no product waits for another, which is what a chain of them would spend most of its time on.
// The last piece reaches back over the one before it instead of being filled up.

namespace QXC::detail {
namespace {

constexpr std::uint64_t kFirst = 0x9E3779B97F4A7C15u;
constexpr std::uint64_t kSecond = 0xD1B54A32D192ED03u;
constexpr std::uint64_t kThird = 0xABC98388FB8FAC03u;
constexpr std::uint64_t kFourth = 0x8CB92BA72F3D8DD7u;

std::uint64_t LoadWord(unsigned char const* pBytes) {
  std::uint64_t nWord;
  std::memcpy(&nWord, pBytes, sizeof nWord);
  return nWord;
}

/// Both halves of the product over each other.
std::uint64_t FoldProduct(std::uint64_t nFirst, std::uint64_t nSecond) {
  __extension__ using Wide = unsigned __int128;
  Wide const nProduct = static_cast<Wide>(nFirst) * nSecond;
  return static_cast<std::uint64_t>(nProduct) ^ static_cast<std::uint64_t>(nProduct >> 64);
}

/// Two words in one: a character rarely needs more than half of its bits.
std::uint64_t Weave(unsigned char const* pBytes) {
  std::uint64_t const nSecond = LoadWord(pBytes + 8);
  return LoadWord(pBytes) ^ (nSecond << 16 | nSecond >> 48);
}

/// The text itself, or a copy filled up with zeros where it is shorter than a piece.
template <std::size_t PieceSize>
struct Pieces {
  Pieces(wchar_t const* pText, std::size_t nBytes) : m_pFirst(reinterpret_cast<unsigned char const*>(pText)) {
    if (nBytes >= PieceSize) {
      m_pLast = m_pFirst + (nBytes - PieceSize);
      return;
    }
    std::memset(m_arrShort, 0, PieceSize);
    std::memcpy(m_arrShort, pText, nBytes);
    m_pFirst = m_pLast = m_arrShort;
  }
  Pieces(Pieces const&) = delete;
  Pieces& operator=(Pieces const&) = delete;

  unsigned char const* m_pFirst;
  unsigned char const* m_pLast;
  unsigned char m_arrShort[PieceSize];
};

}  // namespace

std::uint64_t HashTextPlain(wchar_t const* pText, std::size_t nLength) {
  std::size_t const nBytes = nLength * sizeof(wchar_t);
  Pieces<32> const pieces(pText, nBytes);
  std::uint64_t nKey = kFirst;
  std::uint64_t nSum = nBytes * kThird;
  for (unsigned char const* p = pieces.m_pFirst; p < pieces.m_pLast; p += 32, nKey += kSecond) {
    nSum += FoldProduct(Weave(p) ^ nKey, Weave(p + 16) + nKey);
  }
  nSum += FoldProduct(Weave(pieces.m_pLast) ^ nKey, Weave(pieces.m_pLast + 16) + nKey);
  return FoldProduct(nSum ^ kSecond, kFourth);
}

#if defined(QX_TEXT_HASH_AVX2)

namespace {

struct Sum {
  __m256i m_nKey;
  __m256i m_nSum;
};

/// 16 characters of 32 bits. Above 65,535 all characters are one here.
__attribute__((target("avx2"), always_inline)) inline void AddPiece(Sum& sum, unsigned char const* pPiece) {
  __m256i const nFirst = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(pPiece));
  __m256i const nSecond = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(pPiece + 32));
  __m256i const nText = _mm256_packus_epi32(nFirst, nSecond);
  __m256i const nKeyed = _mm256_xor_si256(nText, sum.m_nKey);
  __m256i const nProducts = _mm256_mul_epu32(nKeyed, _mm256_srli_epi64(nKeyed, 32));
  // The text once more beside its product: a factor of 0 would hide the other one.
  sum.m_nSum = _mm256_add_epi64(sum.m_nSum, _mm256_add_epi64(nProducts, _mm256_shuffle_epi32(nText, 0x4E)));
  sum.m_nKey = _mm256_add_epi64(sum.m_nKey, _mm256_set1_epi64x(static_cast<long long>(kThird)));
}

__attribute__((target("avx2"))) std::uint64_t HashTextAvx2(wchar_t const* pText, std::size_t nLength) {
  std::size_t const nBytes = nLength * sizeof(wchar_t);
  Pieces<64> const pieces(pText, nBytes);
  Sum sum{_mm256_set_epi64x(static_cast<long long>(kFirst), static_cast<long long>(kSecond),
              static_cast<long long>(kFourth), static_cast<long long>(kThird)),
      _mm256_setzero_si256()};
  for (unsigned char const* p = pieces.m_pFirst; p < pieces.m_pLast; p += 64) AddPiece(sum, p);
  AddPiece(sum, pieces.m_pLast);
  __m128i const nHigh = _mm_shuffle_epi32(_mm256_extracti128_si256(sum.m_nSum, 1), 0x1B);
  __m128i const nBoth = _mm_xor_si128(_mm256_castsi256_si128(sum.m_nSum), nHigh);
  auto const nFirst = static_cast<std::uint64_t>(_mm_cvtsi128_si64(nBoth));
  auto const nSecond = static_cast<std::uint64_t>(_mm_extract_epi64(nBoth, 1));
  return FoldProduct(nFirst ^ nBytes ^ kSecond, nSecond ^ kFourth);
}

}  // namespace

std::uint64_t HashText(wchar_t const* pText, std::size_t nLength) {
  // Asked once: a hash must stay what it was while anything is found by it.
  static unsigned char const bAvx2 = sizeof(wchar_t) == 4 && HasAvx2() ? 1 : 0;
  return bAvx2 ? HashTextAvx2(pText, nLength) : HashTextPlain(pText, nLength);
}

#else

std::uint64_t HashText(wchar_t const* pText, std::size_t nLength) {
  return HashTextPlain(pText, nLength);
}

#endif

}  // namespace QXC::detail
