#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>

#include <tests/QXBareTexture.h>
#include <tests/foundation/toolkit/QXTestFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace QXC {
namespace {

std::vector<std::filesystem::path> FindPictures() {
  std::vector<std::filesystem::path> vecPaths;
  for (char const* szFolder : {"/tests/data/images", "/tests/data/ktx2"}) {
    for (auto const& entry : std::filesystem::directory_iterator(std::string(QX_SOURCE_DIR) + szFolder))
      if (QXFileParseToolkit::GetFileTypeByExtName(Wide(entry.path())) >= 0) vecPaths.push_back(entry.path());
  }
  std::sort(vecPaths.begin(), vecPaths.end());
  return vecPaths;
}

std::size_t Sum(void const* pBytes, std::size_t nLength) {
  return pBytes == nullptr ? 0 : std::hash<std::string_view>()({static_cast<char const*>(pBytes), nLength});
}

std::size_t Sum(QXTextureData const& data) {
  return Sum(data.m_pPixels, data.GetBlockLength()) + data.m_nWidth + data.m_nHeight;
}

std::size_t SumAndDelete(QXImageData* pImage) {
  if (pImage == nullptr) return 1;
  std::size_t const nRows = pImage->m_nBitDepth == IMAGE_BIT_DEPTH_RAW ? 1 : pImage->m_nHeight;
  std::size_t const nSum = Sum(pImage->m_pPixels, pImage->m_nPitch * nRows) + pImage->m_nBitDepth;
  delete[] static_cast<unsigned char*>(pImage->m_pPixels);
  delete pImage;
  return nSum;
}

/// What each road makes of a file; equal for equal results. Everything is freed again.
std::vector<std::size_t> ReadOnEveryRoad(QdcUnicodeString const& strPath) {
  std::vector<std::size_t> vecSums;
  QXBareTexture texture;
  vecSums.push_back(texture.LoadImageData(strPath, 0, 0, 1));
  vecSums.push_back(Sum(texture.m_TextureData));
  QXImageData* pImage = nullptr;
  vecSums.push_back(QXTexture::LoadImageData(strPath, 0, pImage, 0));
  vecSums.push_back(SumAndDelete(pImage));
  vecSums.push_back(SumAndDelete(QXTexture::LoadImageDataEx(strPath, nullptr)));
  std::unique_ptr<QXTextureData> const pData(QXTexture::GetTextureData(strPath));
  vecSums.push_back(pData == nullptr ? 1 : Sum(*pData));
  std::unique_ptr<QXTextureDataAnimation> const pFrames(QXTexture::GetTextureDataAnimation(strPath));
  for (int i = 0; pFrames != nullptr && i < pFrames->GetNumFrame(); ++i) {
    vecSums.push_back(Sum(pFrames->GetFrameDataByIndex(i)));
    vecSums.push_back(pFrames->GetFrameTimeByIndex(i));
  }
  return vecSums;
}

// Codecs with state of the whole process would show here, under the thread sanitizer at the latest. The files are those
// of the readers' tests, broken ones among them.
TEST(QXTextureLoadThreads, GiveTheSameAsOneThreadAlone) {
  constexpr std::size_t Threads = 4;
  std::vector<std::filesystem::path> const vecPaths = FindPictures();
  ASSERT_GT(vecPaths.size(), 100u);
  std::vector<std::vector<std::size_t>> vecExpected;
  for (std::filesystem::path const& path : vecPaths) vecExpected.push_back(ReadOnEveryRoad(Wide(path)));
  std::vector<std::vector<std::size_t>> arrFound[Threads];
  std::vector<std::thread> vecThreads;
  for (std::size_t nThread = 0; nThread < Threads; ++nThread) {
    vecThreads.emplace_back([&, nThread] {
      arrFound[nThread].resize(vecPaths.size());
      for (std::size_t i = 0; i < vecPaths.size(); ++i) {
        // Pairs of threads meet in the same file, the others stand elsewhere.
        std::size_t const n = (i + nThread / 2 * 7) % vecPaths.size();
        arrFound[nThread][n] = ReadOnEveryRoad(Wide(vecPaths[n]));
      }
    });
  }
  for (std::thread& thread : vecThreads) thread.join();
  for (std::size_t i = 0; i < vecPaths.size(); ++i)
    for (auto const& vecFound : arrFound) EXPECT_EQ(vecFound[i], vecExpected[i]) << vecPaths[i];
}

}  // namespace
}  // namespace QXC
