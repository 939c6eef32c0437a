#include <QxGraphics3D/text/detail/QXGlyphSizes.h>

#include FT_FONT_FORMATS_H
#include FT_SIZES_H

#include <algorithm>
#include <cstring>

namespace QXC::detail {

namespace {

constexpr FT_Int32 LoadFlags = FT_LOAD_NO_BITMAP;
constexpr FT_UInt Dpi = 96;

/// Draws with another size object while it lives.
class ScopedSize {
public:
  ScopedSize(FT_Face pFace, FT_Size pSize) : m_pOwn(pFace->size) { FT_Activate_Size(pSize); }
  ScopedSize(ScopedSize const&) = delete;
  ScopedSize& operator=(ScopedSize const&) = delete;
  ~ScopedSize() { FT_Activate_Size(m_pOwn); }

private:
  FT_Size m_pOwn;
};

/// Other formats have no program to run, and in a CFF collection of many parts a size object is a large thing.
bool HasSizeProgram(FT_Face pFace) {
  char const* const format = FT_Get_Font_Format(pFace);
  return format != nullptr && std::strcmp(format, "TrueType") == 0;
}

}  // namespace

QXGlyphSizes::~QXGlyphSizes() {
  for (Record& record : m_arrRecords) Free(record);
}

void QXGlyphSizes::Free(Record& record) {
  if (record.m_pSize != nullptr) FT_Done_Size(record.m_pSize);
  record = Record();
}

FT_Error QXGlyphSizes::SetSize(FT_Face pFace, FT_F26Dot6 nSize) {
  return FT_Set_Char_Size(pFace, nSize, nSize, Dpi, Dpi);
}

FT_Error QXGlyphSizes::Load(FT_Face pFace, FT_F26Dot6 nSize, FT_UInt nGlyph) {
  FT_Size const kept = Find(pFace, nSize);
  if (kept == nullptr) return FT_Load_Glyph(pFace, nGlyph, LoadFlags);
  ScopedSize const active(pFace, kept);
  return FT_Load_Glyph(pFace, nGlyph, LoadFlags);
}

FT_Size QXGlyphSizes::Find(FT_Face pFace, FT_F26Dot6 nSize) {
  ++m_nUses;
  for (Record& record : m_arrRecords) {
    if (record.m_pFace != pFace || record.m_nSize != nSize) continue;
    record.m_nLastUse = m_nUses;
    return record.m_pSize;
  }
  return HasSizeProgram(pFace) ? Make(pFace, nSize) : nullptr;
}

FT_Size QXGlyphSizes::Make(FT_Face pFace, FT_F26Dot6 nSize) {
  // Free records were never used and come first.
  Record& record = *std::min_element(m_arrRecords.begin(), m_arrRecords.end(),
      [](Record const& a, Record const& b) { return a.m_nLastUse < b.m_nLastUse; });
  if (!Renew(record, pFace, nSize)) {
    Free(record);
    return nullptr;
  }
  record.m_nSize = nSize;
  record.m_nLastUse = m_nUses;
  return record.m_pSize;
}

bool QXGlyphSizes::Renew(Record& record, FT_Face pFace, FT_F26Dot6 nSize) {
  if (record.m_pFace == pFace) {
    ScopedSize const active(pFace, record.m_pSize);
    return SetSize(pFace, nSize) == 0;
  }
  Free(record);
  if (FT_New_Size(pFace, &record.m_pSize) != 0) return false;
  record.m_pFace = pFace;
  // A face takes its size objects with it when it is closed.
  record.m_pSize->generic.data = &record;
  record.m_pSize->generic.finalizer = [](void* pSize) {
    *static_cast<Record*>(static_cast<FT_Size>(pSize)->generic.data) = Record();
  };
  ScopedSize const active(pFace, record.m_pSize);
  if (SetSize(pFace, nSize) != 0) return false;
  // At its first glyph a size object runs the font's program twice, the second time over what the first left behind. A
  // size that was set twice, as that of any face in use, has run it once on clean memory: only that is drawn with.
  FT_Load_Glyph(pFace, 0, LoadFlags);
  return SetSize(pFace, nSize) == 0;
}

}  // namespace QXC::detail
