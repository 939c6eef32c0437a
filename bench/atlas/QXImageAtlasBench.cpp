// What the image atlas costs a frame: with many images and nothing to do, and with images that come and go.

#include <QxGraphics3D/atlas/QXTextureImageManager.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>
#include <QxGraphics3D/texture/QXTexture.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include <benchmark/benchmark.h>

#include <map>
#include <utility>

namespace QXC {
namespace {

class QXBenchTexture : public QXTexture {
public:
  using QXTexture::QXTexture;
  void RendererOperation1(int, int, int) override {}
  void RendererOperation2() override {}
  void LoadTexture(unsigned char, unsigned char) override { m_nBindID = 1; }
  void LoadSubTexture(int, int, int, int, int, int, void const*, unsigned int) override { ++m_nParts; }

  long m_nParts = 0;
};

class QXBenchTextureManager : public QXTextureManager {
public:
  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char) override {
    if (QXTextureCacheEntry* const pEntry = FindCacheEntry(strName)) return pEntry->GetTexture();
    auto* const pTexture = new QXBenchTexture(strName);
    AddToCache(strName, new QXTextureCacheEntry(pTexture));
    return pTexture;
  }
  unsigned char ManagerOperation2(QdcUnicodeString const&) const override { return 0; }
};

QdcUnicodeString GetName(int nImage) {
  QdcUnicodeString strName;
  strName.Format(L"icons/traffic/%06d.png", nImage);
  return strName;
}

QXTextureImage* Place(QXTextureImageManager& manager, int nImage) {
  QXTextureImage* const pImage = manager.GetTextureImage(GetName(nImage));
  pImage->m_nSize = 4;
  auto* const pData = new QXTextureData;
  pData->m_nWidth = pData->m_nHeight = 4;
  pData->m_eFormat = PF_A8R8G8B8;
  pData->m_nDataSize = 64;
  pData->m_pPixels = new unsigned char[64]();
  pImage->m_pTextureData = pData;
  manager.FindSpaceInBigTextures(pImage);
  return pImage;
}

/// A manager whose first nCount images are uploaded.
class QXFilledAtlas {
public:
  explicit QXFilledAtlas(int nCount) {
    m_Manager.SetTextureManager(&m_Textures);
    for (int i = 0; i < nCount; ++i) m_mapImages.emplace(GetName(i), Place(m_Manager, i));
    m_Manager.LoadTexture();
  }
  ~QXFilledAtlas() { m_Manager.Clear(); }

  QXBenchTextureManager m_Textures;
  QXTextureImageManager m_Manager;
  std::map<QdcUnicodeString, QXTextureImage*> m_mapImages;
};

void FrameWithNothingNew(benchmark::State& state) {
  QXFilledAtlas atlas(static_cast<int>(state.range(0)));
  for (auto const& [strName, pImage] : atlas.m_mapImages) {
    if (!pImage->m_bLoaded) state.SkipWithError("an image was not sent");
  }
  for (auto _ : state) atlas.m_Manager.LoadTexture();
}
BENCHMARK(FrameWithNothingNew)->Name("QXTextureImageManager/LoadTexture/nothing-new")->Arg(100)->Arg(100'000);

// What it would cost to look at every record in the order of the names instead.
void WalkOverAllRecords(benchmark::State& state) {
  QXFilledAtlas const atlas(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    int nWaiting = 0;
    for (auto const& [strName, pImage] : atlas.m_mapImages) nWaiting += pImage->m_bLoaded == 0;
    benchmark::DoNotOptimize(nWaiting);
  }
}
BENCHMARK(WalkOverAllRecords)->Name("QXTextureImageManager/reference/walk-over-all")->Arg(100)->Arg(100'000);

void ImagesComeAndGo(benchmark::State& state) {
  QXFilledAtlas atlas(static_cast<int>(state.range(0)));
  int nNext = static_cast<int>(state.range(0));
  for (auto _ : state) {
    QXTextureImage const* const pImage = Place(atlas.m_Manager, nNext);
    atlas.m_Manager.LoadTexture();
    if (!pImage->m_bLoaded) state.SkipWithError("an image was not sent");
    atlas.m_Manager.RemoveTextureImage(GetName(nNext++));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ImagesComeAndGo)->Name("QXTextureImageManager/come-and-go")->Arg(100)->Arg(100'000);

}  // namespace
}  // namespace QXC
