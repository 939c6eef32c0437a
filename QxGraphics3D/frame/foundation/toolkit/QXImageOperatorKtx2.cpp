#include <QxGraphics3D/frame/foundation/toolkit/QXImageOperator.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/stream/detail/QXFileBytes.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2Decoder.h>

#include <climits>
#include <memory>
#include <new>

namespace QXC {

namespace {

constexpr int g_nBytesPerPixel = 4;
constexpr int g_nKindBc7 = 6;
constexpr int g_nKindBytes = 13;
constexpr int g_nFormatBc7 = 12;
constexpr int g_nFormatBytes = 13;

struct QXKtx2Result {
  std::unique_ptr<unsigned char[]> m_pBlock;
  std::uint64_t m_nLength = 0;
  detail::QXKtx2File m_File;
};

bool Decode(QdcUnicodeString const& path, QXKtx2Result& result) {
  detail::QXKtx2Limits limits;
  limits.m_nMaxEdge = QXFileParseToolkit::GetImageMaxEdge();
  limits.m_nMaxBytes = QXFileParseToolkit::GetImageMaxBytes();
  // The length is handed out as an int.
  if (limits.m_nMaxBytes > INT_MAX) limits.m_nMaxBytes = INT_MAX;

  QXUInt64 nSize = 0;
  std::unique_ptr<unsigned char[]> const pBytes(detail::ReadWholeFile(path, nSize));
  if (pBytes == nullptr || !result.m_File.Open(pBytes.get(), nSize, limits)) return false;
  unsigned int const nLevels = result.m_File.GetLevelCount();
  result.m_pBlock = detail::DecodeKtx2Levels(result.m_File, nLevels, limits);
  result.m_nLength = result.m_File.GetDecodedSize(nLevels);
  return result.m_pBlock != nullptr;
}

bool DecodeWithoutRaising(QdcUnicodeString const& path, QXKtx2Result& result) {
  try {
    return Decode(path, result);
  } catch (std::bad_alloc const&) {
    return false;
  }
}

}  // namespace

int QXImageOperator::DecodeKTX2(QdcUnicodeString const& path, int nOption, unsigned char** pData, int& nWidth,
    int& nHeight, int& nIgnored, int& nMipCount, int& nKind, int& nFormat) {
  if (pData == nullptr) return 0;
  *pData = nullptr;
  QXKtx2Result result;
  if (nOption != g_nBytesPerPixel || !DecodeWithoutRaising(path, result)) return 0;
  bool const bBc7 = result.m_File.GetEncoding() == detail::QXKtx2Encoding::Bc7;
  nWidth = static_cast<int>(result.m_File.GetWidth());
  nHeight = static_cast<int>(result.m_File.GetHeight());
  nIgnored = 0;
  nMipCount = static_cast<int>(result.m_File.GetLevelCount());
  nKind = bBc7 ? g_nKindBc7 : g_nKindBytes;
  nFormat = bBc7 ? g_nFormatBc7 : g_nFormatBytes;
  *pData = result.m_pBlock.release();
  return static_cast<int>(result.m_nLength);
}

}  // namespace QXC
