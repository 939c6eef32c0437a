#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXUnpack.h>

#include <algorithm>
#include <climits>
#include <memory>

#include <zlib.h>
#include <zstd.h>

namespace QXC::detail {

namespace {

/// The first bytes of a Zstandard level. It goes through the window of the frame, which one call for the whole would
/// spare.
bool UnpackZstandardStart(QXKtx2Range packed, unsigned char* pTarget, std::uint64_t nSize) {
  std::unique_ptr<ZSTD_DStream, decltype(&ZSTD_freeDStream)> const pStream(ZSTD_createDStream(), &ZSTD_freeDStream);
  if (pStream == nullptr || ZSTD_isError(ZSTD_initDStream(pStream.get()))) return false;
  ZSTD_inBuffer input = {packed.m_pBytes, packed.m_nSize, 0};
  ZSTD_outBuffer output = {pTarget, nSize, 0};
  while (output.pos < output.size) {
    std::size_t const nBefore = output.pos;
    std::size_t const nTaken = input.pos;
    if (ZSTD_isError(ZSTD_decompressStream(pStream.get(), &output, &input))) return false;
    if (output.pos == nBefore && input.pos == nTaken) return false;
  }
  return true;
}

bool UnpackZstandard(QXKtx2Range packed, unsigned char* pTarget, std::uint64_t nSize, bool bWhole) {
  if (!bWhole) return UnpackZstandardStart(packed, pTarget, nSize);
  return ZSTD_decompress(pTarget, nSize, packed.m_pBytes, packed.m_nSize) == nSize;
}

bool UnpackZlib(QXKtx2Range packed, unsigned char* pTarget, std::uint64_t nSize, bool bWhole) {
  // zlib counts in 32 bits. Neither limit is one in practice: files are read up to 4 GiB, and pictures up to 1 GiB.
  if (packed.m_nSize > UINT_MAX || nSize > UINT_MAX) return false;
  z_stream stream = {};
  if (inflateInit(&stream) != Z_OK) return false;
  stream.next_in = const_cast<unsigned char*>(packed.m_pBytes);
  stream.avail_in = static_cast<unsigned int>(packed.m_nSize);
  stream.next_out = pTarget;
  stream.avail_out = static_cast<unsigned int>(nSize);
  int const nResult = inflate(&stream, bWhole ? Z_FINISH : Z_SYNC_FLUSH);
  bool const bFull = stream.avail_out == 0;
  bool const bDone =
      bWhole ? nResult == Z_STREAM_END && stream.avail_in == 0 : nResult == Z_OK || nResult == Z_STREAM_END;
  inflateEnd(&stream);
  return bFull && bDone;
}

}  // namespace

bool Unpack(QXKtx2Scheme eScheme, QXKtx2Range packed, unsigned char* pTarget, std::uint64_t nSize, bool bWhole) {
  switch (eScheme) {
  case QXKtx2Scheme::Zstandard: return UnpackZstandard(packed, pTarget, nSize, bWhole);
  case QXKtx2Scheme::Zlib: return UnpackZlib(packed, pTarget, nSize, bWhole);
  default: return false;
  }
}

}  // namespace QXC::detail
