/// @file
/// What both glyph atlases have in common.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <memory_resource>
#include <utility>
#include <vector>

#include <QxGraphics3D/atlas/detail/QXQuadtreeAtlas.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXTextStyle.h>
#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXFontKey.h>
#include <QxGraphics3D/text/QXTextureFont.h>
#include <QxGraphics3D/text/detail/QXPointerTable.h>

namespace QXC::detail {

/// "Font_BigTexture_" and the number of a page.
QdcUnicodeString GetFontTextureName(int nIndex);

/// A page: square, two bytes a pixel (PF_BYTE_LA).
struct QXGlyphPage {
  static constexpr int kEdge = 1024;
  static constexpr int kPixelSize = 2;
  static constexpr unsigned int kBytes = kEdge * kEdge * kPixelSize;
};

/// Glyphs by key, their pictures, their places on pages, and which of them wait for their upload. Where the pixels of a
/// page are is the manager's business.
///
/// A frame asks for thousands of glyphs that are known. So a glyph is one line of the cache, found through a hash table;
/// the order of the keys, which is that of uploads, is made when there is something to upload. Face names are kept once
/// each, for glyphs of one face to share the text that keys are compared with.
///
/// Threads: none of its own; the manager's mutex is held in every operation.
class QXGlyphAtlas {
public:
  /// Makes the pixels of the page that gets this index; false if there are none to be had.
  using MakePage = std::function<bool(int nIndex)>;

  QXGlyphAtlas() = default;
  QXGlyphAtlas(QXGlyphAtlas const&) = delete;
  QXGlyphAtlas& operator=(QXGlyphAtlas const&) = delete;
  ~QXGlyphAtlas() { Clear(); }

  /// The glyph of that key if it has a place, or null.
  QXTextureFont* FindFont(QXFontKey const& key);
  /// Draws a glyph that has no place and gives it one. Null if there is no picture or no place.
  QXTextureFont* MakeFont(QXFontKey const& key, QXTextStyle const& style, MakePage const& makePage);
  /// The kept picture of a glyph, drawn if there is none. Null if it cannot be drawn.
  QXCharBitmapData* GetBitmap(QXFontKey const& key, QXTextStyle const& style);

  /// One user less.
  /// @return  the page that has no glyphs left and is gone, or -1
  int DelFont(QXFontKey const& key);

  /// Calls upload(QXTextureFont const&, QXCharBitmapData const&) for each glyph that is new since the last time, in the
  /// order of the keys. It may not change what is kept here.
  template <class Upload>
  void UploadPending(Upload upload) {
    std::sort(m_arrPending.begin(), m_arrPending.end(),
        [](Glyph const* pFirst, Glyph const* pSecond) { return *pFirst < *pSecond; });
    for (std::size_t i = 0; i < m_arrPending.size(); ++i) m_arrPending[i]->m_nPending = i;
    // An exception out of it, such as that of exhausted memory, leaves them all waiting, each at its place.
    for (Glyph const* const pGlyph : m_arrPending) upload(pGlyph->m_Font, std::as_const(*pGlyph->m_pBitmap));
    for (Glyph* const pGlyph : m_arrPending) pGlyph->m_nPending = kNotPending;
    m_arrPending.clear();
  }
  /// Deletes all pictures if they passed the limit. No glyph waits for its upload: one that did would have lost its
  /// pixels.
  void PurgeBitmaps();
  /// Forgets everything but the bytes of the pictures and the page of the last glyph: the next purge comes as early as
  /// it would have.
  void Clear();

private:
  static constexpr std::size_t kNotPending = static_cast<std::size_t>(-1);

  struct Face {
    std::uint32_t m_nHash = 0;
    int m_nUsers = 0;  ///< glyphs of this face
  };
  using FaceMap = std::map<QdcUnicodeString, Face>;

  /// One that is neither placed nor has a picture is not kept.
  struct alignas(64) Glyph {
    QXTextureFont m_Font;  ///< what callers hold
    std::uint32_t m_nCode = 0;
    bool m_bPlaced = false;  ///< m_Font is handed out
    FaceMap::value_type* m_pFace = nullptr;
    std::unique_ptr<QXCharBitmapData> m_pBitmap;
    std::size_t m_nPending = kNotPending;  ///< place among those that wait for their upload

    bool operator<(Glyph const& other) const {
      if (m_nCode != other.m_nCode) return m_nCode < other.m_nCode;
      return m_pFace != other.m_pFace && m_pFace->first < other.m_pFace->first;
    }
  };

  static std::uint32_t GetHash(std::uint32_t nCode, Face const& face);
  /// The face of that name, or null.
  FaceMap::value_type* FindFace(QdcUnicodeString const& strName);
  FaceMap::value_type* AddFace(QdcUnicodeString const& strName);
  Glyph* Find(QXFontKey const& key);
  Glyph* Insert(QXFontKey const& key);
  void Erase(Glyph* pGlyph);
  void AddPending(Glyph* pGlyph);
  void RemovePending(Glyph* pGlyph);
  bool Place(int nWanted, MakePage const& makePage, QXQuadtreePlace& place);
  bool PlaceOnNewPage(unsigned int nWanted, MakePage const& makePage, QXQuadtreePlace& place);

  FaceMap m_mapFaces;
  QXPointerTable<FaceMap::value_type> m_Faces;
  /// The face of the last look-up: glyphs of one face mostly come in a row.
  FaceMap::value_type* m_pLastFace = nullptr;
  /// Glyphs side by side, not strewn among the pictures: a look-up then seldom waits for the address translation.
  std::pmr::unsynchronized_pool_resource m_Pool;
  QXPointerTable<Glyph> m_Glyphs;
  /// In no order before an upload: what waits is sorted once, not with each glyph that joins or leaves.
  std::vector<Glyph*> m_arrPending;

  QXQuadtreeAtlas m_Pages{g_GlyphAtlasRules};
  std::map<int, int> m_mapUseCounts;  ///< placed glyphs by page
  int m_nCurrentPage = 0;
  std::uint32_t m_nBitmapBytes = 0;
};

}  // namespace QXC::detail
