#include <QxGraphics3D/frame/foundation/fileparser/detail/QXByteSource.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXImageCodecs.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXStbImage.h>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace QXC::detail {
namespace {

// A run of two bytes fills 127 values, and a pixel has four.
constexpr QXUInt64 PIXELS_PER_BYTE = 16;
// Longer lines, and longer headers, are none of a picture.
constexpr std::size_t MAX_HEADER_BYTES = 64 * 1024;

bool TakeNumber(std::string_view& strText, std::string_view strAxis, QXUInt64& nValue) {
  if (strText.substr(0, strAxis.size()) != strAxis) return false;
  strText.remove_prefix(strAxis.size());
  auto const result = std::from_chars(strText.data(), strText.data() + strText.size(), nValue);
  if (result.ec != std::errc{}) return false;
  strText.remove_prefix(static_cast<std::size_t>(result.ptr - strText.data()));
  return true;
}

// The header ends with an empty line, and the line after it tells the size. Looked for here because the codec would
// search for the empty line past the end of the bytes, without end.
bool ReadSize(std::string_view strHeader, QXUInt64& nWidth, QXUInt64& nHeight) {
  std::size_t const nEnd = strHeader.find("\n\n");
  if (nEnd == std::string_view::npos) return false;
  std::string_view strLine = strHeader.substr(nEnd + 2);
  std::size_t const nLine = strLine.find('\n');
  if (nLine == std::string_view::npos) return false;
  strLine = strLine.substr(0, nLine);
  return TakeNumber(strLine, "-Y ", nHeight) && TakeNumber(strLine, " +X ", nWidth) && strLine.empty();
}

}  // namespace

QXImageData* ReadHdr(unsigned char const* pBytes, QXUInt64 nSize, QXImageLimits const& limits) {
  QXByteSource const source(pBytes, nSize);
  if (!source.Has(0, "#?RADIANCE\n") && !source.Has(0, "#?RGBE\n")) return nullptr;
  std::string_view const strHeader(
      reinterpret_cast<char const*>(pBytes), static_cast<std::size_t>(std::min<QXUInt64>(nSize, MAX_HEADER_BYTES)));
  QXUInt64 nWidth = 0, nHeight = 0;
  if (!ReadSize(strHeader, nWidth, nHeight) || !limits.Allow(nWidth, nHeight, 3)) return nullptr;
  if (nWidth * nHeight / PIXELS_PER_BYTE > nSize) return nullptr;
  return DecodeByStb(pBytes, nSize, nWidth, nHeight, limits);
}

}  // namespace QXC::detail
