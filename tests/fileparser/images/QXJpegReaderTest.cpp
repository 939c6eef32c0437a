#include "QXJpegMaker.h"
#include "QXTestImages.h"

namespace {

using namespace qxtest;

// The codec's own decode. Only whole files come here, so that its errors, which end the process, never occur.
struct Decoded {
  int m_nWidth = 0;
  int m_nHeight = 0;
  int m_nChannels = 0;
  Bytes m_arrPixels;

  int At(int x, int y, int c) const {
    int const nPlace = (y * m_nWidth + x) * m_nChannels + c;
    return m_arrPixels[static_cast<std::size_t>(nPlace)];
  }
};

Decoded DecodePlainly(Bytes const& arrBytes, J_COLOR_SPACE eSpace) {
  jpeg_decompress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, arrBytes.data(), arrBytes.size());
  jpeg_read_header(&info, TRUE);
  info.out_color_space = eSpace;
  jpeg_start_decompress(&info);
  Decoded decoded{
      static_cast<int>(info.output_width), static_cast<int>(info.output_height), info.output_components, {}};
  std::size_t const nRow = std::size_t{info.output_width} * static_cast<std::size_t>(info.output_components);
  decoded.m_arrPixels.resize(nRow * info.output_height);
  while (info.output_scanline < info.output_height) {
    JSAMPROW pRow = decoded.m_arrPixels.data() + nRow * info.output_scanline;
    jpeg_read_scanlines(&info, &pRow, 1);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
  return decoded;
}

// A file of 24 x 16 pixels, each channel a slope of its own.
Bytes Encode(J_COLOR_SPACE eSpace, int nChannels, std::function<void(jpeg_compress_struct&)> const& setup) {
  Bytes arrRow;
  return MakeJpeg({24, 16, nChannels, eSpace, 95, setup}, [&](unsigned int nRow) {
    arrRow.clear();
    int const y = static_cast<int>(nRow);
    for (int x = 0; x < 24; ++x) {
      for (int c = 0; c < nChannels; ++c) arrRow.push_back(static_cast<unsigned char>(20 + x * (c + 2) + y * (5 - c)));
    }
    return arrRow.data();
  });
}

Image Read(Bytes const& arrBytes) {
  return ReadBytes(TypeOf("a.jpg"), arrBytes);
}

void ExpectAsTheCodec(Bytes const& arrBytes) {
  Decoded const decoded = DecodePlainly(arrBytes, JCS_RGB);
  ExpectPicture(Read(arrBytes).get(), decoded.m_nWidth, decoded.m_nHeight, 24, [&](int x, int y) {
    return Bgra{decoded.At(x, y, 2), decoded.At(x, y, 1), decoded.At(x, y, 0), 255};
  });
}

void ExpectInks(Bytes const& arrBytes, bool bInverted) {
  Decoded const decoded = DecodePlainly(arrBytes, JCS_CMYK);
  ExpectPicture(Read(arrBytes).get(), decoded.m_nWidth, decoded.m_nHeight, 24, [&](int x, int y) {
    auto const Light = [&](int c) {
      double const dInk = decoded.At(x, y, c) / 255.0, dBlack = decoded.At(x, y, 3) / 255.0;
      double const dLight = bInverted ? dInk * dBlack : (1 - dInk) * (1 - dBlack);
      return static_cast<int>(std::lround(dLight * 255));
    };
    return Bgra{Light(2), Light(1), Light(0), 255};
  });
}

TEST(QXJpegReader, ColourIsWhatTheCodecGivesInTheOrderOfTheLibrary) {
  for (char const* szName : {"ycbcr444.jpg", "ycbcr420.jpg", "progressive.jpg"}) {
    SCOPED_TRACE(szName);
    ExpectAsTheCodec(FileBytes(szName));
  }
}

TEST(QXJpegReader, GreyStaysEightBits) {
  Bytes const arrBytes = FileBytes("grey.jpg");
  Decoded const decoded = DecodePlainly(arrBytes, JCS_GRAYSCALE);
  ExpectPicture(Read(arrBytes).get(), 37, 29, 8, [&](int x, int y) {
    int const nGrey = decoded.At(x, y, 0);
    return Bgra{nGrey, nGrey, nGrey, 255};
  });
}

TEST(QXJpegReader, ColoursStoredAsRgbAreNotTransformed) {
  ExpectAsTheCodec(Encode(JCS_RGB, 3, [](auto& info) { jpeg_set_colorspace(&info, JCS_RGB); }));
}

TEST(QXJpegReader, RestartsAndArithmeticCodingAreRead) {
  ExpectAsTheCodec(Encode(JCS_RGB, 3, [](auto& info) { info.restart_interval = 1; }));
  ExpectAsTheCodec(Encode(JCS_RGB, 3, [](auto& info) { info.arith_code = TRUE; }));
}

TEST(QXJpegReader, InksBecomeLight) {
  ExpectInks(FileBytes("cmyk.jpg"), true);
  ExpectInks(Encode(JCS_CMYK, 4, [](auto& info) { jpeg_set_colorspace(&info, JCS_YCCK); }), true);
  ExpectInks(Encode(JCS_CMYK, 4, [](auto& info) { info.write_Adobe_marker = FALSE; }), false);
}

TEST(QXJpegReader, TwoChannelsAreNoColour) {
  EXPECT_EQ(Read(Encode(JCS_UNKNOWN, 2, [](auto&) {})), nullptr);
}

TEST(QXJpegReader, AnOrientationToldByExifIsNotApplied) {
  // Orientation 6, a quarter turn, as the only entry.
  std::string const strExif("\xFF\xE1\0\x22"
                            "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0",
      36);
  Bytes arrBytes = FileBytes("ycbcr444.jpg");
  arrBytes.insert(arrBytes.begin() + 2, strExif.begin(), strExif.end());
  ExpectAsTheCodec(arrBytes);
}

// Scans of one coefficient each, twice for the lower bit: 127 of a progressive file that is otherwise whole.
TEST(QXJpegReader, MoreScansThanAnyCameraWritesAreRefused) {
  std::vector<jpeg_scan_info> arrScans = {{1, {0}, 0, 0, 0, 0}};
  for (int k = 1; k < 64; ++k) arrScans.push_back({1, {0}, k, k, 0, 1});
  auto const Scripted = [&](std::size_t nScans) {
    return Encode(JCS_GRAYSCALE, 1, [&](auto& info) {
      info.scan_info = arrScans.data();
      info.num_scans = static_cast<int>(nScans);
    });
  };
  EXPECT_NE(Read(Scripted(arrScans.size())), nullptr);
  for (int k = 1; k < 64; ++k) arrScans.push_back({1, {0}, k, k, 1, 0});
  EXPECT_NE(Read(Scripted(100)), nullptr);
  EXPECT_EQ(Read(Scripted(101)), nullptr);
}

TEST(QXJpegReader, PixelsThatTheCodecWouldInventFail) {
  Bytes const arrWhole = FileBytes("ycbcr444.jpg");
  Bytes arrCut(arrWhole.begin(), arrWhole.end() - 200);
  EXPECT_EQ(Read(arrCut), nullptr);
  arrCut.insert(arrCut.end(), {0xFF, 0xD9});
  EXPECT_EQ(Read(arrCut), nullptr);
}

TEST(QXJpegReader, BytesAfterTheEndAreLeftAlone) {
  Bytes arrBytes = FileBytes("ycbcr444.jpg");
  arrBytes.insert(arrBytes.end(), 1000, 0xFF);
  EXPECT_NE(Read(arrBytes), nullptr);
}

}  // namespace
