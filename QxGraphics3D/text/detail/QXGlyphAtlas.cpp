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

std::uint32_t QXGlyphAtlas::GetHash(Key const& key) {
  std::uint32_t nHash = key.m_pFace->second.m_nHash ^ key.m_nCode * 0x9e3779b1U;
  nHash = (nHash ^ nHash >> 15) * 0x85ebca6bU;
  return nHash ^ nHash >> 13;
}

QXGlyphAtlas::FaceMap::value_type* QXGlyphAtlas::FindFace(QdcUnicodeString const& strName) {
  if (m_pLastFace && m_pLastFace->first == strName) return m_pLastFace;
  auto const face = m_mapFaces.find(strName);
  if (face == m_mapFaces.end()) return nullptr;
  return m_pLastFace = &*face;
}

QXGlyphAtlas::Node* QXGlyphAtlas::Find(QXFontKey const& key) {
  FaceMap::value_type* const pFace = FindFace(key.m_strFaceName);
  if (!pFace) return nullptr;
  Key const wanted{pFace, key.m_nCode};
  return m_Table.Find(GetHash(wanted),
      [&](Node const& node) { return node.first.m_nCode == wanted.m_nCode && node.first.m_pFace == wanted.m_pFace; });
}

QXGlyphAtlas::Node* QXGlyphAtlas::Insert(QXFontKey const& key) {
  m_Table.ReserveOne();
  auto const [face, bNew] = m_mapFaces.try_emplace(key.m_strFaceName);
  if (bNew) face->second.m_nHash = HashText(key.m_strFaceName.Cstr());
  Node* const pNode = &*m_mapGlyphs.try_emplace(Key{&*face, key.m_nCode}).first;
  m_Table.Insert(GetHash(pNode->first), pNode);
  ++face->second.m_nUsers;
  return pNode;
}

void QXGlyphAtlas::Erase(Node* pNode) {
  FaceMap::value_type* const pFace = pNode->first.m_pFace;
  m_Table.Erase(GetHash(pNode->first), pNode);
  m_mapGlyphs.erase(m_mapGlyphs.find(pNode->first));
  if (--pFace->second.m_nUsers != 0) return;
  if (m_pLastFace == pFace) m_pLastFace = nullptr;
  m_mapFaces.erase(m_mapFaces.find(pFace->first));
}

// --- Pictures ---

QXCharBitmapData* QXGlyphAtlas::GetBitmap(QXFontKey const& key, QXTextStyle const& style) {
  Node* pNode = Find(key);
  if (pNode && pNode->second.m_pBitmap) return pNode->second.m_pBitmap.get();
  QXTrueType& fonts = QXTrueType::GetSingleton();
  fonts.SetTextStyle(style);
  std::unique_ptr<QXCharBitmapData> pBitmap(fonts.GetBitmapData(key.GetCharacter(), key.IsHalo()));
  if (!pBitmap) return nullptr;
  if (!pNode) pNode = Insert(key);
  pNode->second.m_pBitmap = std::move(pBitmap);
  QXCharBitmapData& bitmap = *pNode->second.m_pBitmap;
  m_nBitmapBytes += static_cast<std::uint32_t>(bitmap.m_nWidth) * static_cast<std::uint32_t>(bitmap.m_nHeight) *
                    QXGlyphPage::kPixelSize;
  return &bitmap;
}

void QXGlyphAtlas::PurgeBitmaps() {
  if (m_nBitmapBytes <= kBitmapLimit) return;
  for (auto glyph = m_mapGlyphs.begin(); glyph != m_mapGlyphs.end();) {
    Node* const pNode = &*glyph++;
    pNode->second.m_pBitmap.reset();
    if (!pNode->second.m_bPlaced) Erase(pNode);
  }
  m_nBitmapBytes = 0;
}

// --- Places ---

QXTextureFont* QXGlyphAtlas::FindFont(QXFontKey const& key) {
  Node* const pNode = Find(key);
  return pNode && pNode->second.m_bPlaced ? &pNode->second.m_Font : nullptr;
}

QXTextureFont* QXGlyphAtlas::MakeFont(QXFontKey const& key, QXTextStyle const& style, MakePage const& makePage) {
  QXCharBitmapData const* const pBitmap = GetBitmap(key, style);
  if (!pBitmap) return nullptr;
  // One pixel more, or glyphs side by side would bleed into each other where the texture is filtered.
  int const nWanted = std::max(pBitmap->m_nWidth, pBitmap->m_nHeight) + 1;
  QXQuadtreePlace place;
  if (!Place(nWanted, makePage, place)) return nullptr;
  Node* const pNode = Find(key);
  Glyph& glyph = pNode->second;
  glyph.m_Font = QXTextureFont();
  glyph.m_Font.m_Key.m_nKey = PackQuadtreePlace(place);
  glyph.m_Font.m_TexCoords = GetTexCoords(glyph.m_Font.m_Key, pBitmap->m_nWidth, pBitmap->m_nHeight);
  m_setPending.insert(pNode);
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
  Node* const pNode = Find(key);
  if (!pNode || !pNode->second.m_bPlaced) return -1;
  Glyph& glyph = pNode->second;
  if (--glyph.m_Font.m_nRefCount != 0) return -1;
  QXQuadtreePlace const place = UnpackQuadtreePlace(glyph.m_Font.m_Key.m_nKey);
  m_setPending.erase(pNode);
  glyph.m_bPlaced = false;
  if (!glyph.m_pBitmap) Erase(pNode);
  m_Pages.Release(place);
  auto const count = m_mapUseCounts.find(place.m_nIndex);
  if (--count->second != 0) return -1;
  m_mapUseCounts.erase(count);
  m_Pages.DropPage(place.m_nIndex);
  return place.m_nIndex;
}

void QXGlyphAtlas::Clear() {
  m_setPending.clear();
  m_Table.Clear();
  m_mapGlyphs.clear();
  m_Pool.release();
  m_pLastFace = nullptr;
  m_mapFaces.clear();
  m_Pages.Clear();
  m_mapUseCounts.clear();
}

}  // namespace QXC::detail
