/// @file
/// Glyphs of hostile fonts: any bytes as the font, any character, size and style give a picture as its fields say, or
/// none; plain and halo have the same box and metrics, and the same request gives the same picture again.
///
/// An input is one byte for the number of requests, then for each a character of two bytes, a size of two and a style of
/// one; the rest is the font.
#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

using namespace QXC;

using Picture = std::unique_ptr<QXCharBitmapData>;

constexpr std::size_t RequestBytes = 5;
constexpr std::size_t MostRequests = 6;
// Larger pictures take no other road and much longer.
constexpr int LargestSize = 60;
constexpr std::int64_t MostPixels = 1 << 20;

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

std::size_t CountPixels(QXCharBitmapData const& picture) {
  return static_cast<std::size_t>(picture.m_nWidth) * static_cast<std::size_t>(picture.m_nHeight);
}

void RequireSound(Picture const& pPicture) {
  if (!pPicture) return;
  Require(pPicture->m_pData != nullptr && pPicture->m_nReserved == 0);
  Require(pPicture->m_nWidth >= 0 && pPicture->m_nWidth <= 16384);
  Require(pPicture->m_nHeight >= 0 && pPicture->m_nHeight <= 16384);
  for (std::size_t i = 0; i < CountPixels(*pPicture); ++i) Require(pPicture->m_pData[2 * i] == 255);
}

void RequireSameFrame(Picture const& pFirst, Picture const& pSecond) {
  Require((pFirst == nullptr) == (pSecond == nullptr));
  if (!pFirst) return;
  Require(pFirst->m_nWidth == pSecond->m_nWidth && pFirst->m_nHeight == pSecond->m_nHeight);
  Require(pFirst->m_nBearingX == pSecond->m_nBearingX && pFirst->m_nBearingY == pSecond->m_nBearingY);
  Require(pFirst->m_nAdvance == pSecond->m_nAdvance);
}

void Draw(QXTrueType& fonts, std::uint8_t const* pRequest) {
  int const nCharacter = pRequest[0] << 8 | pRequest[1];
  int const nSize = pRequest[2] << 8 | pRequest[3];
  QXTextStyle style;
  style.SetFaceName(L"f");
  style.SetSize(nSize % (LargestSize + 10) - 9);
  style.SetBold((pRequest[4] & 1) != 0);
  style.SetItalic((pRequest[4] & 2) != 0);
  fonts.SetTextStyle(style);
  unsigned char const bHalo = pRequest[4] >> 2 & 1;
  Picture const first(fonts.GetBitmapData(nCharacter, bHalo));
  RequireSound(first);
  if (first && static_cast<std::int64_t>(CountPixels(*first)) > MostPixels) return;
  Picture const second(fonts.GetBitmapData(nCharacter, !bHalo));
  RequireSound(second);
  RequireSameFrame(first, second);
  Picture const again(fonts.GetBitmapData(nCharacter, bHalo));
  RequireSameFrame(first, again);
  if (first) Require(std::equal(first->m_pData, first->m_pData + 2 * CountPixels(*first), again->m_pData));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pBytes, std::size_t nSize) {
  if (nSize == 0) return 0;
  std::size_t const requests = 1 + pBytes[0] % MostRequests;
  std::size_t const start = 1 + requests * RequestBytes;
  if (nSize <= start) return 0;
  QXTrueType fonts;
  FT_Face face = nullptr;
  if (FT_New_Memory_Face(fonts.m_pLibrary, pBytes + start, static_cast<FT_Long>(nSize - start), 0, &face) != 0)
    return 0;
  QdcArray<FT_Face>& faces = fonts.m_dictFaces[L"f"];
  faces.SetSize(4);
  faces[0] = face;
  for (std::size_t i = 0; i < requests; ++i) Draw(fonts, pBytes + 1 + i * RequestBytes);
  return 0;
}
