#include <QxGraphics3D/text/detail/QXGlyphAtlas.h>

#include <QxGraphics3D/text/QXTrueType.h>

#include <algorithm>

namespace QXC::detail {

namespace {

/// All pictures go when their bytes pass this.
constexpr std::uint32_t kBitmapLimit = 10485760;

std::uint32_t HashText(wchar_t const* szText) {
  std::uint32_t nHash = 2166136261U;
  for (; *szText != L'\0'; ++szText) nHash = (nHash ^ static_cast<std::uint32_t>(*szText)) * 16777619U;
  return nHash;
}

// The quotients are rounded to float one by one and the sums are float: what a renderer gets for the same glyph must
// not depend on where the compiler keeps more digits.
QXTextureFont::TexCoords GetTexCoords(QXFontTextureKey key, int nWidth, int nHeight) {
  constexpr double kEdge = QXGlyphPage::kEdge;
  QXTextureFont::TexCoords coords;
  coords.m_fLeft = static_cast<float>(key.GetLeft() / kEdge);
  coords.m_fRight = coords.m_fLeft + static_cast<float>(nWidth / kEdge);
  coords.m_fBottom = static_cast<float>(key.GetTop() / kEdge);
  coords.m_fTop = coords.m_fBottom + static_cast<float>(nHeight / kEdge);
  return coords;
}

}  // namespace

QdcUnicodeString GetFontTextureName(int nIndex) {
  QdcUnicodeString strName;
  strName.Format(L"Font_BigTexture_%d", nIndex);
  return strName;
}

// --- Look-up ---

std::uint32_t QXGlyphAtlas::GetHash(std::uint32_t nCode, Face const& face) {
  std::uint32_t nHash = face.m_nHash ^ nCode * 0x9e3779b1U;
  nHash = (nHash ^ nHash >> 15) * 0x85ebca6bU;
  return nHash ^ nHash >> 13;
}

QXGlyphAtlas::FaceMap::value_type* QXGlyphAtlas::FindFace(QdcUnicodeString const& strName) {
  if (m_pLastFace && m_pLastFace->first == strName) return m_pLastFace;
  FaceMap::value_type* const pFace =
      m_Faces.Find(HashText(strName.Cstr()), [&](auto const& face) { return face.first == strName; });
  if (pFace) m_pLastFace = pFace;
  return pFace;
}

QXGlyphAtlas::FaceMap::value_type* QXGlyphAtlas::AddFace(QdcUnicodeString const& strName) {
  if (FaceMap::value_type* const pFace = FindFace(strName)) return pFace;
  m_Faces.ReserveOne();
  FaceMap::value_type* const pFace = &*m_mapFaces.try_emplace(strName).first;
  pFace->second.m_nHash = HashText(strName.Cstr());
  m_Faces.Insert(pFace->second.m_nHash, pFace);
  return pFace;
}

QXGlyphAtlas::Glyph* QXGlyphAtlas::Find(QXFontKey const& key) {
  FaceMap::value_type* const pFace = FindFace(key.m_strFaceName);
  if (!pFace) return nullptr;
  return m_Glyphs.Find(GetHash(key.m_nCode, pFace->second),
      [&](Glyph const& glyph) { return glyph.m_nCode == key.m_nCode && glyph.m_pFace == pFace; });
}

QXGlyphAtlas::Glyph* QXGlyphAtlas::Insert(QXFontKey const& key) {
  FaceMap::value_type* const pFace = AddFace(key.m_strFaceName);
  m_Glyphs.ReserveOne();
  Glyph* const pGlyph = std::pmr::polymorphic_allocator<>(&m_Pool).new_object<Glyph>();
  pGlyph->m_nCode = key.m_nCode;
  pGlyph->m_pFace = pFace;
  m_Glyphs.Insert(GetHash(key.m_nCode, pFace->second), pGlyph);
  ++pFace->second.m_nUsers;
  return pGlyph;
}

void QXGlyphAtlas::Erase(Glyph* pGlyph) {
  FaceMap::value_type* const pFace = pGlyph->m_pFace;
  m_Glyphs.Erase(GetHash(pGlyph->m_nCode, pFace->second), pGlyph);
  std::pmr::polymorphic_allocator<>(&m_Pool).delete_object(pGlyph);
  if (--pFace->second.m_nUsers != 0) return;
  if (m_pLastFace == pFace) m_pLastFace = nullptr;
  m_Faces.Erase(pFace->second.m_nHash, pFace);
  m_mapFaces.erase(m_mapFaces.find(pFace->first));
}

void QXGlyphAtlas::AddPending(Glyph* pGlyph) {
  m_arrPending.push_back(pGlyph);
  pGlyph->m_nPending = m_arrPending.size() - 1;
}

void QXGlyphAtlas::RemovePending(Glyph* pGlyph) {
  std::size_t const nPlace = std::exchange(pGlyph->m_nPending, kNotPending);
  if (nPlace == kNotPending) return;
  Glyph* const pLast = m_arrPending.back();
  m_arrPending.pop_back();
  if (pLast == pGlyph) return;
  m_arrPending[nPlace] = pLast;
  pLast->m_nPending = nPlace;
}

// --- Pictures ---

QXCharBitmapData* QXGlyphAtlas::GetBitmap(QXFontKey const& key, QXTextStyle const& style) {
  Glyph* pGlyph = Find(key);
  if (pGlyph && pGlyph->m_pBitmap) return pGlyph->m_pBitmap.get();
  QXTrueType& fonts = QXTrueType::GetSingleton();
  fonts.SetTextStyle(style);
  std::unique_ptr<QXCharBitmapData> pBitmap(fonts.GetBitmapData(key.GetCharacter(), key.IsHalo()));
  if (!pBitmap) return nullptr;
  if (!pGlyph) pGlyph = Insert(key);
  pGlyph->m_pBitmap = std::move(pBitmap);
  QXCharBitmapData& bitmap = *pGlyph->m_pBitmap;
  m_nBitmapBytes += static_cast<std::uint32_t>(bitmap.m_nWidth) * static_cast<std::uint32_t>(bitmap.m_nHeight) *
                    QXGlyphPage::kPixelSize;
  return &bitmap;
}

void QXGlyphAtlas::PurgeBitmaps() {
  if (m_nBitmapBytes <= kBitmapLimit) return;
  for (Glyph* const pGlyph : m_Glyphs.GetAll()) {
    pGlyph->m_pBitmap.reset();
    if (!pGlyph->m_bPlaced) Erase(pGlyph);
  }
  m_nBitmapBytes = 0;
}

// --- Places ---

QXTextureFont* QXGlyphAtlas::FindFont(QXFontKey const& key) {
  Glyph* const pGlyph = Find(key);
  return pGlyph && pGlyph->m_bPlaced ? &pGlyph->m_Font : nullptr;
}

QXTextureFont* QXGlyphAtlas::MakeFont(QXFontKey const& key, QXTextStyle const& style, MakePage const& makePage) {
  QXCharBitmapData const* const pBitmap = GetBitmap(key, style);
  if (!pBitmap) return nullptr;
  // One pixel more, or glyphs side by side would bleed into each other where the texture is filtered.
  int const nWanted = std::max(pBitmap->m_nWidth, pBitmap->m_nHeight) + 1;
  QXQuadtreePlace place;
  if (!Place(nWanted, makePage, place)) return nullptr;
  Glyph& glyph = *Find(key);
  glyph.m_Font = QXTextureFont();
  glyph.m_Font.m_Key.m_nKey = PackQuadtreePlace(place);
  glyph.m_Font.m_TexCoords = GetTexCoords(glyph.m_Font.m_Key, pBitmap->m_nWidth, pBitmap->m_nHeight);
  AddPending(&glyph);
  glyph.m_bPlaced = true;
  m_nCurrentPage = place.m_nIndex;
  ++m_mapUseCounts[place.m_nIndex];
  return &glyph.m_Font;
}

bool QXGlyphAtlas::Place(int nWanted, MakePage const& makePage, QXQuadtreePlace& place) {
  QXQuadtreeRequest request;
  request.m_nSize = static_cast<unsigned int>(nWanted);
  request.m_nCurrent = m_nCurrentPage;
  return m_Pages.Place(request, place) || PlaceOnNewPage(request.m_nSize, makePage, place);
}

bool QXGlyphAtlas::PlaceOnNewPage(unsigned int nWanted, MakePage const& makePage, QXQuadtreePlace& place) {
  int const nIndex = m_Pages.GetNextIndex();
  // A glyph that would fit, but on a page that nothing may stand on: one page more for each request would eat up the
  // memory in no time. Blanks and glyphs that are too large open their pages in vain whatever the index.
  bool const bFits = nWanted > 2 && nWanted <= QXGlyphPage::kEdge;
  if (bFits && nIndex > g_GlyphAtlasRules.m_nLastIndex) return false;
  if (!makePage(nIndex)) return false;
  m_Pages.AddPage();
  m_mapUseCounts[nIndex] = 0;
  return m_Pages.PlaceIn(nIndex, nWanted, place);
}

int QXGlyphAtlas::DelFont(QXFontKey const& key) {
  Glyph* const pGlyph = Find(key);
  if (!pGlyph || !pGlyph->m_bPlaced) return -1;
  if (--pGlyph->m_Font.m_nRefCount != 0) return -1;
  QXQuadtreePlace const place = UnpackQuadtreePlace(pGlyph->m_Font.m_Key.m_nKey);
  RemovePending(pGlyph);
  pGlyph->m_bPlaced = false;
  if (!pGlyph->m_pBitmap) Erase(pGlyph);
  m_Pages.Release(place);
  auto const count = m_mapUseCounts.find(place.m_nIndex);
  if (--count->second != 0) return -1;
  m_mapUseCounts.erase(count);
  m_Pages.DropPage(place.m_nIndex);
  return place.m_nIndex;
}

void QXGlyphAtlas::Clear() {
  m_arrPending.clear();
  std::pmr::polymorphic_allocator<> allocator(&m_Pool);
  for (Glyph* const pGlyph : m_Glyphs.GetAll()) allocator.delete_object(pGlyph);
  m_Glyphs.Clear();
  m_Pool.release();
  m_pLastFace = nullptr;
  m_Faces.Clear();
  m_mapFaces.clear();
  m_Pages.Clear();
  m_mapUseCounts.clear();
}

}  // namespace QXC::detail
