#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXRedBlue.h>

#include <algorithm>
#include <csetjmp>
#include <memory>
#include <new>
#include <string_view>

#include <png.h>

namespace QXC::detail {
namespace {

constexpr std::string_view PNG_MAGIC("\x89PNG\r\n\x1a\n", 8);
// Far above the palettes and keys that are read, which are all that the codec must remember.
constexpr png_alloc_size_t MAX_CHUNK_BYTES = 1u << 20;
constexpr png_uint_32 MAX_CACHED_CHUNKS = 64;
// A byte of deflate becomes 1,032 bytes at most.
constexpr QXUInt64 MAX_DEFLATE_RATIO = 1032;

// Everything that must be freed belongs to this object, outside the functions that the codec jumps out of.
struct PngDecoder {
  PngDecoder(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits)
      : m_Source(pBytes, nSize), m_Limits(limits) {}
  ~PngDecoder() { png_destroy_read_struct(&m_pPng, &m_pInfo, nullptr); }

  QXByteSource m_Source;
  QXImageLimits const& m_Limits;
  png_structp m_pPng = nullptr;
  png_infop m_pInfo = nullptr;
  QXImageBlock m_Block;
  std::unique_ptr<unsigned char[]> m_pRow;
};

[[noreturn]] void OnError(png_structp pPng, png_const_charp /*szText*/) {
  png_longjmp(pPng, 1);
}

void OnWarning(png_structp /*pPng*/, png_const_charp /*szText*/) {}

void OnRead(png_structp pPng, png_bytep pTarget, png_size_t nCount) {
  auto* pSource = static_cast<QXByteSource*>(png_get_io_ptr(pPng));
  if (pSource->Read(pTarget, nCount) != nCount) png_error(pPng, "cut");
}

bool Open(PngDecoder& decoder) {
  decoder.m_pPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, OnError, OnWarning);
  if (!decoder.m_pPng) return false;
  decoder.m_pInfo = png_create_info_struct(decoder.m_pPng);
  return decoder.m_pInfo != nullptr;
}

void Configure(PngDecoder& decoder) {
  png_structp pPng = decoder.m_pPng;
  auto const nMaxEdge = static_cast<png_uint_32>(std::min<unsigned int>(decoder.m_Limits.m_nMaxEdge, PNG_UINT_31_MAX));
  png_set_user_limits(pPng, nMaxEdge, nMaxEdge);
  png_set_chunk_cache_max(pPng, MAX_CACHED_CHUNKS);
  png_set_chunk_malloc_max(pPng, MAX_CHUNK_BYTES);
  // -1: all that says nothing about the pixels. Profiles and texts would be unpacked for nothing.
  png_set_keep_unknown_chunks(pPng, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  // Says again over the pixels what the checksums of the chunks say over fewer bytes.
  png_set_option(pPng, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
  // Left to itself the codec drops a damaged chunk that a picture can do without: transparency, too.
  png_set_crc_action(pPng, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
  png_set_read_fn(pPng, &decoder.m_Source, OnRead);
}

// Whatever the file holds becomes 1, 3 or 4 bytes a pixel.
unsigned int ChooseFormat(PngDecoder& decoder) {
  png_structp pPng = decoder.m_pPng;
  unsigned int const nType = png_get_color_type(pPng, decoder.m_pInfo);
  bool const bKey = png_get_valid(pPng, decoder.m_pInfo, PNG_INFO_tRNS) != 0;
  bool const bAlpha = bKey || (nType & PNG_COLOR_MASK_ALPHA) != 0;
  png_set_expand(pPng);
  png_set_scale_16(pPng);
  if (bAlpha) png_set_gray_to_rgb(pPng);
  if (bAlpha) return 4;
  return (nType & PNG_COLOR_MASK_COLOR) != 0 ? 3 : 1;
}

// No more is made than the bytes could fill.
bool CanFill(PngDecoder const& decoder, png_uint_32 nHeight) {
  QXUInt64 const nPacked = png_get_rowbytes(decoder.m_pPng, decoder.m_pInfo);
  return nPacked * nHeight / MAX_DEFLATE_RATIO <= decoder.m_Source.GetSize();
}

// Row by row, red and blue exchanged on the way while the row is near: the codec's own exchange costs as much as a
// tenth of its decode.
bool ReadRows(PngDecoder& decoder) {
  QXImageBlock const& block = decoder.m_Block;
  decoder.m_pRow.reset(new (std::nothrow) unsigned char[block.GetRowBytes()]);
  if (!decoder.m_pRow) return false;
  auto const pCopy = block.GetBytesPerPixel() == 3 ? CopySwapped3 : CopySwapped4;
  for (unsigned int i = 0; i < block.GetHeight(); ++i) {
    png_read_row(decoder.m_pPng, decoder.m_pRow.get(), nullptr);
    pCopy(decoder.m_pRow.get(), block.GetRow(i), block.GetWidth());
  }
  return true;
}

// Each pass goes on with the rows that the one before has left. Grey has nothing to exchange.
bool ReadPasses(PngDecoder& decoder, int nPasses) {
  for (int nPass = 0; nPass < nPasses; ++nPass) {
    for (unsigned int i = 0; i < decoder.m_Block.GetHeight(); ++i) {
      png_read_row(decoder.m_pPng, decoder.m_Block.GetRow(i), nullptr);
    }
  }
  return true;
}

bool Decode(PngDecoder& decoder) {
  png_structp pPng = decoder.m_pPng;
  Configure(decoder);
  png_read_info(pPng, decoder.m_pInfo);
  png_uint_32 const nWidth = png_get_image_width(pPng, decoder.m_pInfo);
  png_uint_32 const nHeight = png_get_image_height(pPng, decoder.m_pInfo);
  if (!CanFill(decoder, nHeight)) return false;
  unsigned int const nBytesPerPixel = ChooseFormat(decoder);
  int const nPasses = png_set_interlace_handling(pPng);
  bool const bByRow = nPasses == 1 && nBytesPerPixel > 1;
  if (!bByRow) png_set_bgr(pPng);
  png_read_update_info(pPng, decoder.m_pInfo);
  if (!decoder.m_Block.Make(nWidth, nHeight, nBytesPerPixel, decoder.m_Limits)) return false;
  if (png_get_rowbytes(pPng, decoder.m_pInfo) != decoder.m_Block.GetRowBytes()) return false;
  if (!(bByRow ? ReadRows(decoder) : ReadPasses(decoder, nPasses))) return false;
  // The pixels are there, but a file without its end has been cut.
  png_read_end(pPng, nullptr);
  return true;
}

// The codec leaves by longjmp on errors: past the frames of Decode and its like, which hold nothing to destroy.
bool Run(PngDecoder& decoder) {
  if (setjmp(png_jmpbuf(decoder.m_pPng)) != 0) return false;
  return Decode(decoder);
}

}  // namespace

QXImageData* ReadPng(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  PngDecoder decoder(pBytes, nSize, limits);
  if (!decoder.m_Source.Has(0, PNG_MAGIC)) return nullptr;
  if (!Open(decoder) || !Run(decoder)) return nullptr;
  return decoder.m_Block.HandOver();
}

}  // namespace QXC::detail
