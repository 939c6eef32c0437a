// Files of one, two and three colours, whose blocks always decode to four.
#include "QXKtx2Files.h"

#include <functional>

namespace {

using namespace qxtest;

/// Each pixel through change(pixel).
Bytes Changed(Bytes arrPixels, std::function<void(unsigned char*)> const& change) {
  for (std::size_t i = 0; i < arrPixels.size(); i += 4) change(&arrPixels[i]);
  return arrPixels;
}

/// The sample with these channel numbers in its descriptor.
Bytes WithChannels(std::string const& strName, std::vector<unsigned char> const& arrChannels) {
  Bytes arrFile = SampleBytes(strName);
  std::size_t const nAt = Fetch32(arrFile, 48);
  for (std::size_t i = 0; i < arrChannels.size(); ++i) {
    unsigned char& nChannel = arrFile.at(nAt + 28 + 16 * i + 3);
    nChannel = static_cast<unsigned char>((nChannel & 0xF0) | arrChannels[i]);
  }
  return arrFile;
}

/// The sample with the first sample only in its descriptor, which stays as long.
Bytes WithOneSample(std::string const& strName) {
  Bytes arrFile = SampleBytes(strName);
  Store32(arrFile, Fetch32(arrFile, 48) + 8, 2 | 40u << 16);
  return arrFile;
}

TEST(QXKtx2Colors, UastcOfRedHasNoGreenAndBlue) {
  Bytes const arrPixels = DecodeBytes(SampleBytes("uastc_grey_64_linear"));
  EXPECT_EQ(DecodeBytes(WithChannels("uastc_grey_64_linear", {4})), Changed(arrPixels, [](unsigned char* pPixel) {
    pPixel[1] = pPixel[2] = 0;
    pPixel[3] = 255;
  }));
}

TEST(QXKtx2Colors, UastcOfTwoHasGreenInAlphaOrInItsPlace) {
  std::string const strName = "uastc_rgba_64_srgb_zstd";
  Bytes const arrPixels = DecodeBytes(SampleBytes(strName));
  EXPECT_EQ(DecodeBytes(WithChannels(strName, {5})), Changed(arrPixels, [](unsigned char* pPixel) {
    pPixel[1] = pPixel[3];
    pPixel[2] = 0;
    pPixel[3] = 255;
  }));
  EXPECT_EQ(DecodeBytes(WithChannels(strName, {6})), Changed(arrPixels, [](unsigned char* pPixel) {
    pPixel[2] = 0;
    pPixel[3] = 255;
  }));
  EXPECT_EQ(DecodeBytes(WithChannels(strName, {0})), arrPixels);
}

TEST(QXKtx2Colors, Etc1sOfRedHasNoGreenAndBlue) {
  std::string const strName = "etc1s_rgb_64_srgb_mip";
  Bytes const arrPixels = DecodeBytes(SampleBytes(strName));
  EXPECT_EQ(DecodeBytes(WithChannels(strName, {3})),
      Changed(arrPixels, [](unsigned char* pPixel) { pPixel[1] = pPixel[2] = 0; }));
}

TEST(QXKtx2Colors, Etc1sOfTwoHasGreenInTheSecondSlice) {
  std::string const strName = "etc1s_rgba_37x21_linear_mip";
  Bytes const arrPixels = DecodeBytes(SampleBytes(strName));
  EXPECT_EQ(DecodeBytes(WithChannels(strName, {3, 4})), Changed(arrPixels, [](unsigned char* pPixel) {
    pPixel[1] = pPixel[3];
    pPixel[2] = 0;
    pPixel[3] = 255;
  }));
}

TEST(QXKtx2Colors, SecondSliceThatIsNotDescribedIsNoAlpha) {
  Bytes const arrPixels = DecodeBytes(SampleBytes("etc1s_rgba_64_srgb"));
  EXPECT_EQ(DecodeBytes(WithOneSample("etc1s_rgba_64_srgb")),
      Changed(arrPixels, [](unsigned char* pPixel) { pPixel[3] = 255; }));
}

TEST(QXKtx2Colors, SecondSliceThatIsDescribedMustBeThere) {
  // The descriptor's length is not that of the file's any more, so this one is written anew, behind the file.
  for (std::vector<unsigned char> const& arrChannels : {std::vector<unsigned char>{0, 15}, {3, 4}}) {
    Bytes arrFile = SampleBytes("etc1s_rgb_64_srgb");
    Bytes arrDescriptor(arrFile.begin() + Fetch32(arrFile, 48), arrFile.begin() + Fetch32(arrFile, 48) + 44);
    arrDescriptor.resize(60);
    Store32(arrDescriptor, 0, 60);
    Store32(arrDescriptor, 8, 2 | 56u << 16);
    arrDescriptor[31] = arrChannels[0];
    arrDescriptor[47] = arrChannels[1];
    Store32(arrFile, 48, static_cast<std::uint32_t>(arrFile.size()));
    Store32(arrFile, 52, 60);
    arrFile.insert(arrFile.end(), arrDescriptor.begin(), arrDescriptor.end());
    EXPECT_TRUE(DecodeBytes(arrFile).empty());
  }
}

TEST(QXKtx2Colors, SlicesOfETC1SHaveNoOtherMeanings) {
  for (unsigned char const nChannel : std::vector<unsigned char>{1, 2, 4, 5, 14, 15})
    EXPECT_TRUE(DecodeBytes(WithChannels("etc1s_rgb_64_srgb", {nChannel})).empty()) << int{nChannel};
  for (std::vector<unsigned char> const& arrChannels :
      {std::vector<unsigned char>{0, 4}, {3, 15}, {15, 0}, {0, 0}, {4, 3}})
    EXPECT_TRUE(DecodeBytes(WithChannels("etc1s_rgba_64_srgb", arrChannels)).empty());
}

}  // namespace
