#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageBlock.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>  // jpeglib.h names FILE
#include <limits>

#include <jerror.h>
#include <jpeglib.h>

namespace QXC::detail {
namespace {

// Progressive files of cameras and tools have about ten; each costs a walk over the whole picture, even an empty one.
constexpr int MAX_SCANS = 100;
// The same in blocks of 8 x 8: about 16 scans of the largest picture, and a few seconds.
constexpr QXUInt64 MAX_BLOCK_WALKS = 1ULL << 28;
// Tables and rows, beside what grows with the picture.
constexpr QXUInt64 WORKING_BYTES = 64u << 20;
constexpr unsigned int BLOCK_EDGE = 8;

// The codec knows its own four members; the object stands around them, outside the functions that it jumps out of.
struct JpegDecoder {
  JpegDecoder(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits)
      : m_Source(pBytes, nSize), m_Limits(limits) {}
  ~JpegDecoder() { jpeg_destroy_decompress(&m_Info); }

  QXByteSource m_Source;
  QXImageLimits const& m_Limits;
  jpeg_decompress_struct m_Info{};
  jpeg_error_mgr m_Errors{};
  jpeg_source_mgr m_Input{};
  jpeg_progress_mgr m_Progress{};
  std::jmp_buf m_Jump;
  QXImageBlock m_Block;
};

JpegDecoder& DecoderOf(j_common_ptr pInfo) {
  return *static_cast<JpegDecoder*>(pInfo->client_data);
}

[[noreturn]] void OnError(j_common_ptr pInfo) {
  std::longjmp(DecoderOf(pInfo).m_Jump, 1);
}

// Warnings about coded data mean pixels that the codec made up.
bool IsHarmless(int nCode) {
  return nCode == JWRN_EXTRANEOUS_DATA || nCode == JWRN_JFIF_MAJOR || nCode == JWRN_ADOBE_XFORM ||
         nCode == JWRN_BOGUS_PROGRESSION;
}

void OnMessage(j_common_ptr pInfo, int nLevel) {
  if (nLevel < 0 && !IsHarmless(pInfo->err->msg_code)) OnError(pInfo);
}

void OnOutput(j_common_ptr /*pInfo*/) {}

void OnProgress(j_common_ptr pInfo) {
  jpeg_decompress_struct const& info = DecoderOf(pInfo).m_Info;
  QXUInt64 const nBlocks = QXUInt64{info.image_width} * info.image_height / (BLOCK_EDGE * BLOCK_EDGE);
  auto const nScans = static_cast<QXUInt64>(std::max(info.input_scan_number, 0));
  if (nScans > MAX_SCANS || (nScans > 1 && nScans * nBlocks > MAX_BLOCK_WALKS)) OnError(pInfo);
}

void OnBeginInput(j_decompress_ptr /*pInfo*/) {}

// All bytes are there from the start.
boolean OnMoreInput(j_decompress_ptr pInfo) {
  OnError(reinterpret_cast<j_common_ptr>(pInfo));
}

void OnSkipInput(j_decompress_ptr pInfo, long nCount) {
  if (nCount <= 0) return;
  jpeg_source_mgr* pInput = pInfo->src;
  if (static_cast<unsigned long>(nCount) > pInput->bytes_in_buffer) OnError(reinterpret_cast<j_common_ptr>(pInfo));
  pInput->next_input_byte += nCount;
  pInput->bytes_in_buffer -= static_cast<std::size_t>(nCount);
}

void Connect(JpegDecoder& decoder) {
  jpeg_decompress_struct& info = decoder.m_Info;
  info.err = jpeg_std_error(&decoder.m_Errors);
  decoder.m_Errors.error_exit = OnError;
  decoder.m_Errors.emit_message = OnMessage;
  decoder.m_Errors.output_message = OnOutput;
  info.client_data = &decoder;
}

void Configure(JpegDecoder& decoder) {
  jpeg_decompress_struct& info = decoder.m_Info;
  jpeg_create_decompress(&info);
  // A picture of several scans is held in coefficients of two bytes, to which the codec has no limit of its own.
  QXUInt64 const nMaxBytes = std::min<QXUInt64>(decoder.m_Limits.m_nMaxBytes, 1ULL << 60) * 2 + WORKING_BYTES;
  info.mem->max_memory_to_use = static_cast<long>(std::min<QXUInt64>(nMaxBytes, std::numeric_limits<long>::max()));
  jpeg_source_mgr& input = decoder.m_Input;
  input.init_source = OnBeginInput;
  input.fill_input_buffer = OnMoreInput;
  input.skip_input_data = OnSkipInput;
  input.resync_to_restart = jpeg_resync_to_restart;
  input.term_source = OnBeginInput;
  input.next_input_byte = decoder.m_Source.GetNext();
  input.bytes_in_buffer = static_cast<std::size_t>(decoder.m_Source.GetSize());
  info.src = &input;
  info.progress = &decoder.m_Progress;
  decoder.m_Progress.progress_monitor = OnProgress;
}

// Bytes a pixel of the picture; 0 for colours that are none of grey, YCbCr, RGB, CMYK and YCCK.
unsigned int ChooseFormat(jpeg_decompress_struct& info) {
  switch (info.jpeg_color_space) {
  case JCS_GRAYSCALE: info.out_color_space = JCS_GRAYSCALE; return 1;
  case JCS_YCbCr:
  case JCS_RGB: info.out_color_space = JCS_EXT_BGR; return 3;
  case JCS_CMYK:
  case JCS_YCCK: info.out_color_space = JCS_CMYK; return 3;
  default: return 0;
  }
}

// Each block of 8 x 8 costs at least one bit of the first scan in which its component takes part, unless the coding is
// arithmetic. One component is enough for the codec to give a picture.
bool CanFill(jpeg_decompress_struct const& info, QXUInt64 nSize) {
  if (info.arith_code) return true;
  QXUInt64 nFewest = std::numeric_limits<QXUInt64>::max();
  for (int i = 0; i < info.num_components; ++i) {
    jpeg_component_info const& component = info.comp_info[i];
    nFewest = std::min(nFewest, QXUInt64{component.width_in_blocks} * component.height_in_blocks);
  }
  return nFewest / BLOCK_EDGE <= nSize;
}

// Programs that write the Adobe marker store inks inverted; light is then simply the product.
void ConvertInks(unsigned char const* pInks, unsigned char* pRow, std::size_t nCount, bool bInverted) {
  unsigned int const nFlip = bInverted ? 0 : 255;
  for (std::size_t i = 0; i < nCount; ++i, pInks += 4, pRow += 3) {
    unsigned int const nBlack = pInks[3] ^ nFlip;
    for (int c = 0; c < 3; ++c) pRow[2 - c] = static_cast<unsigned char>(((pInks[c] ^ nFlip) * nBlack + 127) / 255);
  }
}

void ReadRows(JpegDecoder& decoder) {
  jpeg_decompress_struct& info = decoder.m_Info;
  while (info.output_scanline < info.output_height) {
    // As many rows as the codec makes at once, so that it need not keep some back.
    JSAMPROW arrRows[4];
    JDIMENSION const nRows = std::min<JDIMENSION>(4, info.output_height - info.output_scanline);
    for (JDIMENSION i = 0; i < nRows; ++i) arrRows[i] = decoder.m_Block.GetRow(info.output_scanline + i);
    jpeg_read_scanlines(&info, arrRows, nRows);
  }
}

void ReadInkRows(JpegDecoder& decoder) {
  jpeg_decompress_struct& info = decoder.m_Info;
  // Freed with the codec's object.
  JSAMPARRAY arrInks =
      info.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&info), JPOOL_IMAGE, info.output_width * 4, 1);
  while (info.output_scanline < info.output_height) {
    unsigned char* pRow = decoder.m_Block.GetRow(info.output_scanline);
    jpeg_read_scanlines(&info, arrInks, 1);
    ConvertInks(arrInks[0], pRow, info.output_width, info.saw_Adobe_marker != 0);
  }
}

bool Decode(JpegDecoder& decoder) {
  jpeg_decompress_struct& info = decoder.m_Info;
  Configure(decoder);
  jpeg_read_header(&info, TRUE);
  unsigned int const nBytesPerPixel = ChooseFormat(info);
  if (nBytesPerPixel == 0 || !CanFill(info, decoder.m_Source.GetSize())) return false;
  if (!decoder.m_Block.Make(info.image_width, info.image_height, nBytesPerPixel, decoder.m_Limits)) return false;
  jpeg_start_decompress(&info);
  if (info.out_color_space == JCS_CMYK) {
    ReadInkRows(decoder);
  } else {
    ReadRows(decoder);
  }
  // The pixels are there, but a file without its end has been cut.
  jpeg_finish_decompress(&info);
  return true;
}

// The codec leaves by longjmp on errors: past the frames of Decode and its like, which hold nothing to destroy.
bool Run(JpegDecoder& decoder) {
  if (setjmp(decoder.m_Jump) != 0) return false;
  return Decode(decoder);
}

}  // namespace

QXImageData* ReadJpeg(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  JpegDecoder decoder(pBytes, nSize, limits);
  if (!decoder.m_Source.Has(0, "\xFF\xD8\xFF")) return nullptr;
  Connect(decoder);
  if (!Run(decoder)) return nullptr;
  return decoder.m_Block.HandOver();
}

}  // namespace QXC::detail
