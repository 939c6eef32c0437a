// Glyphs that are known already, as each label of each frame asks for them, and the frame's upload with nothing to send.
//
// "known" asks for random glyphs of 300, 3,000 and 30,000 keys beside a bare lock and unlock of such a mutex, the key
// being made on the spot; "kept" takes keys that lie in memory, each with a name of its own allocation, and "faces" keys
// of as many different names. Records are checked against those that the first request
// gave. "placed" is a new glyph whose picture is there, with its release, on full pages. Times are those of the thread,
// in nanoseconds, the quickest of several passes, since other programs only ever add to one; what is compared takes
// turns.

#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/text/QXCharBitmapData.h>
#include <QxGraphics3D/text/QXMemoryTextureFontManager.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>
#include <QxGraphics3D/text/QXTrueType.h>
#include <QxGraphics3D/texture/QXTextureCacheEntry.h>
#include <QxGraphics3D/texture/QXTextureManager.h>

#include "../../tests/QXBareTexture.h"

#include <benchmark/benchmark.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <time.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace QXC;

constexpr unsigned int kSeed = 20261121;
constexpr int kPasses = 15;
constexpr int kAsked = 100000;
char const* const kFile = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Quickest of several passes, in nanoseconds a call.
class Quickest {
public:
  template <class Work>
  void Take(int nCalls, Work work) {
    double const dStart = ThreadSeconds();
    work();
    m_dNanoseconds = std::min(m_dNanoseconds, 1e9 * (ThreadSeconds() - dStart) / nCalls);
  }
  double m_dNanoseconds = std::numeric_limits<double>::infinity();
};

class Texture : public QXBareTexture {
public:
  using QXBareTexture::QXBareTexture;
  void LoadTexture(unsigned char, unsigned char) override { m_nBindID = 1; }
};

class TextureManager : public QXTextureManager {
public:
  QXTexture* GetTexture(QdcUnicodeString const& strName, unsigned char bCreate) override {
    if (QXTextureCacheEntry* const pEntry = FindCacheEntry(strName)) return pEntry->GetTexture();
    if (!bCreate) return nullptr;
    AddToCache(strName, new QXTextureCacheEntry(new Texture(strName)));
    return FindCacheEntry(strName)->GetTexture();
  }
  unsigned char ManagerOperation2(QdcUnicodeString const& strName) const override {
    return FindCacheEntry(strName) != nullptr;
  }
};

class Fonts {
public:
  Fonts() : m_pBefore(std::exchange(QXTrueType::ms_pSingleton, &m_Engine)) {
    FT_Face face = nullptr;
    m_bOpen = FT_New_Face(m_Engine.m_pLibrary, kFile, 0, &face) == 0;
    if (!m_bOpen) return;
    m_Engine.m_dictFaces[L"DejaVu Sans"].SetSize(4);
    m_Engine.m_dictFaces[L"DejaVu Sans"][0] = face;
    m_Style.SetFaceName(L"DejaVu Sans");
    m_Style.SetSize(6);
  }
  ~Fonts() { QXTrueType::ms_pSingleton = m_pBefore; }

  QXTrueType m_Engine;
  QXTrueType* m_pBefore;
  QXTextStyle m_Style;
  bool m_bOpen = false;
};

/// Keys as a layout makes them: characters of the alphabet in many sizes and styles, in the lower bits.
QXFontKey MakeKey(int nNumber, bool bOwnFace) {
  QXFontKey key(
      static_cast<std::uint32_t>('!' + nNumber % 90) << 16 | static_cast<std::uint32_t>(nNumber / 90), L"DejaVu Sans");
  if (bOwnFace) key.m_strFaceName = std::to_wstring(nNumber).c_str();
  return key;
}

enum class Keys { Made, Kept, Faces };

template <class Manager>
void Prepare(Manager&, QXTextureManager&) {}
void Prepare(QXTextureFontManager& manager, QXTextureManager& textures) {
  manager.SetTextureManager(&textures);
}

template <class Manager>
void Known(benchmark::State& state, Keys eKeys) {
  Fonts fonts;
  if (!fonts.m_bOpen) return state.SkipWithError("the font is missing");
  TextureManager textures;
  Manager manager;
  Prepare(manager, textures);
  int const nKeys = static_cast<int>(state.range(0));
  std::vector<QXFontKey> arrKeys;
  std::vector<QXTextureFont*> arrFonts;
  for (int i = 0; i < nKeys; ++i) arrKeys.push_back(MakeKey(i, eKeys == Keys::Faces));
  for (QXFontKey const& key : arrKeys) {
    arrFonts.push_back(manager.GetTextureFont(key, fonts.m_Style));
    if (!arrFonts.back()) return state.SkipWithError("a glyph is missing");
  }
  manager.AddCharBitmapToTexture();
  std::mt19937 random(kSeed);
  std::vector<std::size_t> arrAsked(kAsked);
  for (std::size_t& nAsked : arrAsked) nAsked = random() % static_cast<std::size_t>(nKeys);

  Quickest known;
  Quickest lock;
  Quickest idle;
  QXMutex mutex{1};
  QXFontKey key = arrKeys[0];
  for (auto _ : state) {
    for (int nPass = 0; nPass < kPasses; ++nPass) {
      lock.Take(kAsked, [&] {
        for (int i = 0; i < kAsked; ++i) {
          mutex.lock();
          mutex.unlock();
        }
      });
      known.Take(kAsked, [&] {
        for (std::size_t const nAsked : arrAsked) {
          if (eKeys != Keys::Made) {
            benchmark::DoNotOptimize(manager.GetTextureFont(arrKeys[nAsked], fonts.m_Style));
          } else {
            key.m_nCode = static_cast<std::uint32_t>('!' + nAsked % 90) << 16 | static_cast<std::uint32_t>(nAsked / 90);
            benchmark::DoNotOptimize(manager.GetTextureFont(key, fonts.m_Style));
          }
        }
      });
      idle.Take(kAsked, [&] {
        for (int i = 0; i < kAsked; ++i) manager.AddCharBitmapToTexture();
      });
    }
  }
  for (std::size_t i = 0; i < arrKeys.size(); ++i) {
    auto const nTimes = std::count(arrAsked.begin(), arrAsked.end(), i) * (nKeys <= 300 ? 1 : 0);
    if (manager.GetTextureFont(arrKeys[i], fonts.m_Style) != arrFonts[i])
      return state.SkipWithError("another record than the first time");
    if (nTimes != 0 && arrFonts[i]->m_nRefCount != 2 + kPasses * nTimes)
      return state.SkipWithError("users were not counted");
  }
  state.counters["ns"] = known.m_dNanoseconds;
  state.counters["lock_ns"] = lock.m_dNanoseconds;
  state.counters["times_lock"] = known.m_dNanoseconds / lock.m_dNanoseconds;
  state.counters["idle_upload_ns"] = idle.m_dNanoseconds;
}

/// A glyph of that number whose picture has that edge, drawn as a blank.
void ShapePicture(QXTextureFontManager& manager, QXFontKey const& key, QXTextStyle const& style, int nEdge) {
  QXCharBitmapData* const pBitmap = manager.GetCharBitmapData(key, style);
  delete[] pBitmap->m_pData;
  pBitmap->m_pData = new unsigned char[static_cast<std::size_t>(nEdge) * 2]();
  pBitmap->m_nWidth = nEdge;
  pBitmap->m_nHeight = 1;
}

// Pictures of 8 to 40 pixels, twice as many as stand on the pages at a time.
void Placed(benchmark::State& state) {
  Fonts fonts;
  if (!fonts.m_bOpen) return state.SkipWithError("the font is missing");
  TextureManager textures;
  QXTextureFontManager manager;
  manager.SetTextureManager(&textures);
  constexpr std::size_t kGlyphs = 60000;
  std::mt19937 random(kSeed);
  std::vector<QXFontKey> arrKeys;
  for (std::size_t i = 0; i < kGlyphs; ++i) {
    // Halos of a blank are blanks: the lower 14 bits and the name's number make the key.
    QXFontKey key(static_cast<std::uint32_t>(L' ') << 16 | static_cast<std::uint32_t>(i & 16383), L"");
    key.m_strFaceName = i < 16384 ? L"a" : i < 32768 ? L"b" : i < 49152 ? L"c" : L"d";
    ShapePicture(manager, key, fonts.m_Style, 8 + static_cast<int>(random() % 33));
    arrKeys.push_back(key);
  }
  Quickest pair;
  for (auto _ : state) {
    for (int nPass = 0; nPass < kPasses; ++nPass) {
      std::shuffle(arrKeys.begin(), arrKeys.end(), random);
      std::size_t const nHalf = kGlyphs / 2;
      for (std::size_t i = 0; i < nHalf; ++i) manager.GetTextureFont(arrKeys[i], fonts.m_Style);
      bool bAll = true;
      pair.Take(static_cast<int>(nHalf), [&] {
        for (std::size_t i = 0; i < nHalf; ++i) {
          manager.DelTextureFont(arrKeys[i]);
          bAll = manager.GetTextureFont(arrKeys[i + nHalf], fonts.m_Style) && bAll;
        }
      });
      if (!bAll) return state.SkipWithError("a glyph found no place");
      for (std::size_t i = 0; i < nHalf; ++i) manager.DelTextureFont(arrKeys[i + nHalf]);
    }
  }
  state.counters["pair_ns"] = pair.m_dNanoseconds;
}

void KnownTextures(benchmark::State& state) {
  Known<QXTextureFontManager>(state, Keys::Made);
}
void KnownInMemory(benchmark::State& state) {
  Known<QXMemoryTextureFontManager>(state, Keys::Made);
}
void KnownKept(benchmark::State& state) {
  Known<QXTextureFontManager>(state, Keys::Kept);
}
void KnownFaces(benchmark::State& state) {
  Known<QXTextureFontManager>(state, Keys::Faces);
}

BENCHMARK(KnownTextures)->Name("QXFontAtlas/known")->Arg(300)->Arg(3000)->Arg(30000)->Iterations(1);
BENCHMARK(KnownInMemory)->Name("QXFontAtlas/memory")->Arg(300)->Arg(30000)->Iterations(1);
BENCHMARK(KnownKept)->Name("QXFontAtlas/kept")->Arg(300)->Arg(30000)->Iterations(1);
BENCHMARK(KnownFaces)->Name("QXFontAtlas/faces")->Arg(300)->Arg(30000)->Iterations(1);
BENCHMARK(Placed)->Name("QXFontAtlas/placed")->Iterations(1);

}  // namespace
