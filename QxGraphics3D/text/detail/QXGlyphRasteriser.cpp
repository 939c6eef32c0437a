#include <QxGraphics3D/text/detail/QXGlyphRasteriser.h>

#include <memory>

namespace QXC::detail {

namespace {

constexpr FT_Pos Pixel = 64;           // 26.6
constexpr FT_Pos LargestEdge = 16384;  // in pixels; one page of an atlas is 1024 wide
constexpr FT_Pos AdvanceLimit = 0x8000 * Pixel;
constexpr int BytesPerPixel = 2;
// How often a border is compared with FreeType's: the first glyphs, and one of many then.
constexpr unsigned int FirstChecked = 64;
constexpr unsigned int CheckedEach = 512;

/// Where the spans of an outline go.
struct Canvas {
  unsigned char* m_pData;
  std::size_t m_nWidth;
  std::size_t m_nHeight;
};

/// Called by the rasteriser for each row that the outline touches, rows counted from the bottom.
void DrawSpans(int nRow, int nCount, FT_Span const* pSpans, void* pUser) {
  Canvas const& canvas = *static_cast<Canvas const*>(pUser);
  std::size_t const row = canvas.m_nHeight - 1 - static_cast<std::size_t>(nRow);
  unsigned char* const start = canvas.m_pData + row * canvas.m_nWidth * BytesPerPixel;
  for (int i = 0; i < nCount; ++i) {
    unsigned char* coverage = start + pSpans[i].x * BytesPerPixel + 1;
    for (int n = pSpans[i].len; n > 0; --n, coverage += BytesPerPixel) *coverage = pSpans[i].coverage;
  }
}

void RenderInto(FT_Library pLibrary, FT_Outline* pOutline, Canvas canvas) {
  FT_Raster_Params params{};
  params.source = pOutline;
  // Spans instead of a bitmap: the coverage goes straight to its place between the luminances. The clip box is what the
  // edges of a bitmap would be.
  params.flags = FT_RASTER_FLAG_AA | FT_RASTER_FLAG_DIRECT | FT_RASTER_FLAG_CLIP;
  params.gray_spans = DrawSpans;
  params.user = &canvas;
  params.clip_box = {0, 0, static_cast<FT_Pos>(canvas.m_nWidth), static_cast<FT_Pos>(canvas.m_nHeight)};
  FT_Outline_Render(pLibrary, pOutline, &params);
}

/// The box of a glyph's outline in whole pixels, still in 26.6.
FT_BBox GetPixelBox(FT_Outline& outline) {
  FT_BBox box;
  FT_Outline_Get_CBox(&outline, &box);
  box.xMin &= ~(Pixel - 1);
  box.yMin &= ~(Pixel - 1);
  box.xMax = (box.xMax + Pixel - 1) & ~(Pixel - 1);
  box.yMax = (box.yMax + Pixel - 1) & ~(Pixel - 1);
  return box;
}

/// Whether FreeType would make a glyph object of what is in the slot: bitmaps and drawings have no outline, and an
/// advance has to fit 16.16.
bool IsOutlineGlyph(FT_GlyphSlot pSlot) {
  auto const fits = [](FT_Pos nAdvance) { return nAdvance < AdvanceLimit && nAdvance > -AdvanceLimit; };
  return pSlot->format == FT_GLYPH_FORMAT_OUTLINE && fits(pSlot->advance.x) && fits(pSlot->advance.y);
}

/// Faces that a host turns or varies draw otherwise the next time; nothing of them is kept.
bool IsAsInFile(FT_Face pFace) {
  if (FT_HAS_MULTIPLE_MASTERS(pFace)) return false;
  FT_Matrix matrix;
  FT_Vector delta;
  FT_Get_Transform(pFace, &matrix, &delta);
  return matrix.xx == 0x10000 && matrix.yy == 0x10000 && matrix.xy == 0 && matrix.yx == 0 && delta.x == 0 &&
         delta.y == 0;
}

int ToPixels(FT_Pos nDistance) {
  return static_cast<int>(nDistance >> 6);
}

}  // namespace

QXCharBitmapData* QXGlyphRasteriser::Draw(FT_Face pFace, FT_UInt nGlyph, int nSize, bool bBold, bool bHalo) {
  QXGlyphOutline* const outline = GetOutline({pFace, nGlyph, nSize, bBold});
  if (outline == nullptr || outline->m_nWidth > LargestEdge || outline->m_nHeight > LargestEdge) return nullptr;
  auto picture = std::make_unique<QXCharBitmapData>();
  Canvas canvas{nullptr, static_cast<std::size_t>(outline->m_nWidth), static_cast<std::size_t>(outline->m_nHeight)};
  std::size_t const pixels = canvas.m_nWidth * canvas.m_nHeight;
  canvas.m_pData = picture->m_pData = new unsigned char[pixels * BytesPerPixel];
  for (std::size_t i = 0; i < pixels; ++i) {
    canvas.m_pData[BytesPerPixel * i] = 255;
    canvas.m_pData[BytesPerPixel * i + 1] = 0;
  }
  picture->m_nWidth = static_cast<int>(outline->m_nWidth);
  picture->m_nHeight = static_cast<int>(outline->m_nHeight);
  picture->m_nBearingX = ToPixels(outline->m_Metrics.horiBearingX);
  picture->m_nBearingY = ToPixels(outline->m_Metrics.horiBearingY);
  picture->m_nAdvance = ToPixels(outline->m_nAdvance);
  RenderInto(m_pLibrary, (bHalo ? outline->m_Stroked : outline->m_Plain).Get(), canvas);
  return picture.release();
}

QXGlyphOutline* QXGlyphRasteriser::GetOutline(QXGlyphKey const& key) {
  FT_F26Dot6 const size = FT_F26Dot6{key.m_nSize} * Pixel;
  FT_Error const error = QXGlyphSizes::SetSize(key.m_pFace, size);
  bool const kept = error == 0 && IsAsInFile(key.m_pFace);
  if (kept) {
    if (QXGlyphOutline* const outline = m_Outlines.Find(key)) return outline;
  }
  FT_Error const loaded = kept ? m_Sizes.Load(key.m_pFace, size, key.m_nGlyph)
                               : FT_Load_Glyph(key.m_pFace, key.m_nGlyph, FT_LOAD_NO_BITMAP);
  if (loaded != 0) return nullptr;
  QXGlyphOutline& outline = m_Outlines.Add();
  if (!MakeOutline(outline, *key.m_pFace->glyph, key.m_bBold)) return nullptr;
  if (kept) outline.m_Key = key;
  return &outline;
}

bool QXGlyphRasteriser::MakeOutline(QXGlyphOutline& outline, FT_GlyphSlotRec_& slot, bool bBold) {
  if (bBold) FT_Outline_Embolden(&slot.outline, Pixel);
  if (!IsOutlineGlyph(&slot) || !Stroke(slot.outline, outline.m_Stroked)) return false;
  FT_BBox const box = GetPixelBox(*outline.m_Stroked.Get());
  outline.m_nWidth = (box.xMax - box.xMin) >> 6;
  outline.m_nHeight = (box.yMax - box.yMin) >> 6;
  outline.m_Metrics = slot.metrics;
  outline.m_nAdvance = slot.advance.x;
  FT_Outline_Translate(outline.m_Stroked.Get(), -box.xMin, -box.yMin);
  FT_Outline_Translate(outline.m_Plain.Copy(slot.outline), -box.xMin, -box.yMin);
  return true;
}

bool QXGlyphRasteriser::Stroke(FT_Outline& outline, QXOutlineBlock& stroked) {
  bool const check = m_nStrokes < FirstChecked || m_nStrokes % CheckedEach == 0;
  ++m_nStrokes;
  if (m_bOwnStroker && !check) return StrokeFast(outline, stroked);
  bool const done = StrokePlain(outline, stroked);
  if (m_bOwnStroker) {
    bool const same = StrokeFast(outline, m_Check) == done && (!done || m_Check == stroked);
    m_bOwnStroker = same;
  }
  return done;
}

bool QXGlyphRasteriser::StrokeFast(FT_Outline& outline, QXOutlineBlock& stroked) {
  if (!m_Border.Stroke(outline, FT_Outline_GetOutsideBorder(&outline))) return false;
  return stroked.Assign(m_Border.GetPoints(), m_Border.GetTags(), m_Border.GetEnds());
}

bool QXGlyphRasteriser::StrokePlain(FT_Outline& outline, QXOutlineBlock& stroked) {
  if (!HasStroker()) return false;
  FT_StrokerBorder const border = FT_Outline_GetOutsideBorder(&outline);
  if (FT_Stroker_ParseOutline(m_pStroker, &outline, 0) != 0) return false;
  FT_UInt points = 0;
  FT_UInt contours = 0;
  FT_Stroker_GetBorderCounts(m_pStroker, border, &points, &contours);
  if (points > QXOutlineBlock::MostPoints) return false;
  FT_Stroker_ExportBorder(m_pStroker, border, stroked.Make(points, contours));
  return true;
}

bool QXGlyphRasteriser::HasStroker() {
  if (m_pStroker != nullptr) return true;
  if (FT_Stroker_New(m_pLibrary, &m_pStroker) != 0) return false;
  FT_Stroker_Set(m_pStroker, Pixel, FT_STROKER_LINECAP_ROUND, FT_STROKER_LINEJOIN_ROUND, 0);
  return true;
}

}  // namespace QXC::detail
