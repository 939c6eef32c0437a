/// @file
/// KTX2 files of strangers: container, unpacking and all block formats, under limits that keep a run short.
#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXKtx2Decoder.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using namespace QXC::detail;

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

bool IsInside(QXKtx2Range range, std::uint8_t const* pData, std::size_t nSize) {
  if (range.m_nSize == 0) return true;
  std::uint64_t const nOffset = static_cast<std::uint64_t>(range.m_pBytes - pData);
  return nOffset <= nSize && range.m_nSize <= nSize - nOffset;
}

void CheckFile(QXKtx2File const& file, QXKtx2Limits const& limits, std::uint8_t const* pData, std::size_t nSize) {
  Require(file.GetLevelCount() >= 1 && file.GetLevelCount() <= 32);
  Require(file.GetWidth() >= 1 && file.GetWidth() <= limits.m_nMaxEdge);
  Require(file.GetHeight() >= 1 && file.GetHeight() <= limits.m_nMaxEdge);
  Require(file.GetImagesPerLevel() >= 1);
  Require(IsInside(file.GetGlobalData(), pData, nSize));
  for (unsigned int i = 0; i < file.GetLevelCount(); ++i) Require(IsInside(file.GetLevel(i), pData, nSize));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  QXKtx2Limits limits;
  limits.m_nMaxEdge = 4096;
  limits.m_nMaxBytes = 1 << 17;
  QXKtx2File file;
  if (!file.Open(pData, nSize, limits)) return 0;
  CheckFile(file, limits, pData, nSize);
  auto const pChain = DecodeKtx2Levels(file, file.GetLevelCount(), limits);
  if (pChain == nullptr) return 0;
  // Levels do not depend on how many are asked for.
  auto const pFirst = DecodeKtx2Levels(file, 1, limits);
  Require(pFirst != nullptr && std::memcmp(pFirst.get(), pChain.get(), file.GetDecodedSize(1)) == 0);
  return 0;
}
