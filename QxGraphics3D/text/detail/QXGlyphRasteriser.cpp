#include <QxGraphics3D/text/detail/QXGlyphRasteriser.h>

#include <memory>

namespace QXC::detail {

namespace {

constexpr FT_Pos Pixel = 64;           // 26.6
constexpr FT_Pos LargestEdge = 16384;  // in pixels; one page of an atlas is 1024 wide
constexpr FT_Pos AdvanceLimit = 0x8000 * Pixel;
constexpr int BytesPerPixel = 2;

// Of the buffer that glyphs are drawn in: four times a page of an atlas. A single huge glyph is not to hold its memory.
constexpr std::size_t MostKept = std::size_t{4} * 1024 * 1024;

/// Luminance and coverage of pixels from their coverage.
void Widen(unsigned char* pPixels, unsigned char const* pCoverage, std::size_t nPixels) {
  for (std::size_t i = 0; i < nPixels; ++i) {
    pPixels[BytesPerPixel * i] = 255;
    pPixels[BytesPerPixel * i + 1] = pCoverage[i];
  }
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
  picture->m_nWidth = static_cast<int>(outline->m_nWidth);
  picture->m_nHeight = static_cast<int>(outline->m_nHeight);
  picture->m_nBearingX = ToPixels(outline->m_Metrics.horiBearingX);
  picture->m_nBearingY = ToPixels(outline->m_Metrics.horiBearingY);
  picture->m_nAdvance = ToPixels(outline->m_nAdvance);
  Render((bHalo ? outline->m_Stroked : outline->m_Plain).Get(), *picture);
  return picture.release();
}

void QXGlyphRasteriser::Render(FT_Outline* pOutline, QXCharBitmapData& picture) {
  std::size_t const pixels = static_cast<std::size_t>(picture.m_nWidth) * static_cast<std::size_t>(picture.m_nHeight);
  picture.m_pData = new unsigned char[pixels * BytesPerPixel];
  m_arrCoverage.assign(pixels, 0);
  FT_Bitmap bitmap{};
  bitmap.rows = static_cast<unsigned int>(picture.m_nHeight);
  bitmap.width = static_cast<unsigned int>(picture.m_nWidth);
  bitmap.pitch = picture.m_nWidth;  // positive: the top row comes first
  bitmap.buffer = m_arrCoverage.data();
  bitmap.num_grays = 256;
  bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
  FT_Raster_Params params{};
  params.target = &bitmap;
  params.source = pOutline;
  params.flags = FT_RASTER_FLAG_AA;
  // What FreeType cannot draw is a picture all the same, with what had been drawn by then.
  FT_Outline_Render(m_pLibrary, pOutline, &params);
  Widen(picture.m_pData, m_arrCoverage.data(), pixels);
  if (pixels > MostKept) std::vector<unsigned char>().swap(m_arrCoverage);
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
