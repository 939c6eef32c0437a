// PNG and JPEG files through QXTexture::LoadImageData, beside the codec's own decode of the same bytes.
//
// The pictures are made here, like photographs in what they cost: broad slopes, edges and noise. Each case times two
// passes in turn on the same thread's clock and reports the quickest of each: loading the file, with reading it, the
// power-of-two resampling and the release of the texture before; and decoding the bytes from memory as the codec gives
// them by itself, into a block that is made for it, as any program must. "ratio" is what a load costs in decodes. A
// picture whose edges are powers of two is compared byte by byte before anything is timed, the others by their mean.

#include <QxGraphics3D/texture/QXTexture.h>

#include <bench/QXBenchClock.h>
#include <tests/QXBareTexture.h>
#include <tests/fileparser/images/QXJpegMaker.h>

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <jpeglib.h>
#include <png.h>

using namespace QXC;

namespace {

using QXBench::Quickest;

using Bytes = std::vector<unsigned char>;
using Block = std::unique_ptr<unsigned char[]>;

struct Size {
  explicit Size(benchmark::State const& state)
      : m_nWidth(static_cast<unsigned int>(state.range(0))), m_nHeight(static_cast<unsigned int>(state.range(1))) {}
  std::size_t GetRowBytes() const { return std::size_t{m_nWidth} * 3; }
  std::size_t GetBytes() const { return GetRowBytes() * m_nHeight; }
  bool IsPowerOfTwo() const { return ((m_nWidth & (m_nWidth - 1)) | (m_nHeight & (m_nHeight - 1))) == 0; }
  unsigned int m_nWidth;
  unsigned int m_nHeight;
};

// Grain of a camera: JPEG of quality 90 then takes about two bits a pixel, as photographs do.
constexpr double GRAIN = 16.0;

// Red, green, blue.
Bytes MakePhoto(Size const& size) {
  Bytes arrPixels;
  arrPixels.reserve(size.GetBytes());
  std::uint32_t nRandom = 20261121;
  for (unsigned int y = 0; y < size.m_nHeight; ++y) {
    for (unsigned int x = 0; x < size.m_nWidth; ++x) {
      double const dSlope = 100 + 60 * std::sin(x * 0.0031) * std::cos(y * 0.0047);
      double const dDetail = 20 * std::sin(x * 0.11 + y * 0.05) + ((x / 97 + y / 61) % 2 != 0 ? 25 : 0);
      nRandom = nRandom * 1664525 + 1013904223;
      double const dNoise = (nRandom >> 24) / GRAIN;
      for (double const dTint : {1.0, 0.85, 0.6}) {
        arrPixels.push_back(static_cast<unsigned char>(std::clamp(dTint * (dSlope + dDetail) + dNoise, 0.0, 255.0)));
      }
    }
  }
  return arrPixels;
}

// Nothing here is broken: the codecs' errors end the process.
Bytes WritePng(Bytes const& arrPixels, Size const& size) {
  Bytes arrFile;
  png_structp pPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop pInfo = png_create_info_struct(pPng);
  auto const Append = [](png_structp pWriter, png_bytep pBytes, png_size_t nCount) {
    auto& arrTarget = *static_cast<Bytes*>(png_get_io_ptr(pWriter));
    arrTarget.insert(arrTarget.end(), pBytes, pBytes + nCount);
  };
  png_set_write_fn(pPng, &arrFile, Append, [](png_structp) {});
  png_set_IHDR(pPng, pInfo, size.m_nWidth, size.m_nHeight, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
      PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(pPng, pInfo);
  for (unsigned int y = 0; y < size.m_nHeight; ++y) png_write_row(pPng, arrPixels.data() + y * size.GetRowBytes());
  png_write_end(pPng, pInfo);
  png_destroy_write_struct(&pPng, &pInfo);
  return arrFile;
}

Bytes WriteJpeg(Bytes const& arrPixels, Size const& size) {
  return qxtest::MakeJpeg({size.m_nWidth, size.m_nHeight, 3, JCS_RGB, 90},
      [&](unsigned int y) { return arrPixels.data() + y * size.GetRowBytes(); });
}

Block DecodePng(Bytes const& arrFile, Size const& size) {
  struct Input {
    unsigned char const* m_pNext;
  } input{arrFile.data()};
  Block pPixels(new unsigned char[size.GetBytes()]);
  png_structp pPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop pInfo = png_create_info_struct(pPng);
  png_set_read_fn(pPng, &input, [](png_structp pReader, png_bytep pTarget, png_size_t nCount) {
    auto& source = *static_cast<Input*>(png_get_io_ptr(pReader));
    std::memcpy(pTarget, source.m_pNext, nCount);
    source.m_pNext += nCount;
  });
  png_read_info(pPng, pInfo);
  for (unsigned int y = 0; y < size.m_nHeight; ++y) png_read_row(pPng, &pPixels[y * size.GetRowBytes()], nullptr);
  png_read_end(pPng, nullptr);
  png_destroy_read_struct(&pPng, &pInfo, nullptr);
  return pPixels;
}

Block DecodeJpeg(Bytes const& arrFile, Size const& size) {
  Block pPixels(new unsigned char[size.GetBytes()]);
  jpeg_decompress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, arrFile.data(), arrFile.size());
  jpeg_read_header(&info, TRUE);
  jpeg_start_decompress(&info);
  while (info.output_scanline < info.output_height) {
    JSAMPROW pRow = &pPixels[info.output_scanline * size.GetRowBytes()];
    jpeg_read_scanlines(&info, &pRow, 1);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
  return pPixels;
}

// A file that is gone with the case.
class TempFile {
public:
  TempFile(Bytes const& arrBytes, char const* szExtension)
      : m_Path(std::filesystem::temp_directory_path() / ("qx-image-load-" + std::to_string(getpid()) + szExtension)) {
    std::ofstream(m_Path, std::ios::binary)
        .write(reinterpret_cast<char const*>(arrBytes.data()), static_cast<std::streamsize>(arrBytes.size()));
  }
  ~TempFile() {
    std::error_code ignored;
    std::filesystem::remove(m_Path, ignored);
  }
  QdcUnicodeString GetPath() const { return m_Path.wstring().c_str(); }

private:
  std::filesystem::path m_Path;
};

double MeanOf(unsigned char const* pPixels, std::size_t nPixels, unsigned int nChannel) {
  std::uint64_t nSum = 0;
  for (std::size_t i = 0; i < nPixels; ++i) nSum += pPixels[i * 3 + nChannel];
  return static_cast<double>(nSum) / static_cast<double>(nPixels);
}

// The decode has red first, the texture blue.
bool IsSamePicture(QXTextureData const& data, unsigned char const* pDecoded, Size const& size) {
  std::size_t const nPixels = std::size_t{size.m_nWidth} * size.m_nHeight;
  std::size_t const nWide = std::size_t{data.m_nWidth} * data.m_nHeight;
  if (data.m_pPixels == nullptr || data.m_eFormat != PF_R8G8B8) return false;
  for (unsigned int c = 0; c < 3; ++c) {
    if (std::abs(MeanOf(data.m_pPixels, nWide, c) - MeanOf(pDecoded, nPixels, 2 - c)) > 0.5) return false;
  }
  if (!size.IsPowerOfTwo()) return nWide > nPixels;
  for (std::size_t i = 0; i < nPixels; ++i) {
    for (std::size_t c = 0; c < 3; ++c) {
      if (data.m_pPixels[i * 3 + c] != pDecoded[i * 3 + 2 - c]) return false;
    }
  }
  return nWide == nPixels;
}

using Writer = Bytes (*)(Bytes const&, Size const&);
using Decoder = Block (*)(Bytes const&, Size const&);

void Load(benchmark::State& state, Writer pfnWrite, Decoder pfnDecode, char const* szExtension) {
  Size const size(state);
  Bytes const arrFile = pfnWrite(MakePhoto(size), size);
  TempFile const file(arrFile, szExtension);
  QdcUnicodeString const strPath = file.GetPath();
  QXBareTexture texture;
  texture.LoadImageData(strPath, 0, 1, 0);
  if (!IsSamePicture(texture.m_TextureData, pfnDecode(arrFile, size).get(), size)) {
    return state.SkipWithError("the texture is not the picture");
  }
  Quickest load, decode;
  for (auto _ : state) {
    decode.Time([&] { benchmark::DoNotOptimize(pfnDecode(arrFile, size)); });
    load.Time([&] { texture.LoadImageData(strPath, 0, 1, 0); });
  }
  state.counters["bits_per_pixel"] = 8.0 * static_cast<double>(arrFile.size()) / size.m_nWidth / size.m_nHeight;
  state.counters["load_ms"] = 1e3 * load.m_dSeconds;
  state.counters["decode_ms"] = 1e3 * decode.m_dSeconds;
  state.counters["ratio"] = load.m_dSeconds / decode.m_dSeconds;
}

void Sizes(benchmark::internal::Benchmark* pCase) {
  pCase->Args({3077, 2055})->Args({4096, 4096})->Iterations(7)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(Load, png, WritePng, DecodePng, ".png")->Name("QXTexture/LoadImageData/png")->Apply(Sizes);
BENCHMARK_CAPTURE(Load, jpeg, WriteJpeg, DecodeJpeg, ".jpg")->Name("QXTexture/LoadImageData/jpeg")->Apply(Sizes);

}  // namespace
