#include "QXTestImages.h"

namespace {

using namespace qxtest;
using QXC::QXFileType;

// Small, so that a lie about the size is cheap to believe.
constexpr QXC::detail::QXImageLimits LIMITS{65536, 8u << 20};

int const TYPES[] = {QXFileType::EM_IMAGE_BMP, QXFileType::EM_IMAGE_JPG, QXFileType::EM_IMAGE_PNG,
    QXFileType::EM_IMAGE_GIF, QXFileType::EM_IMAGE_TIFF, QXFileType::EM_IMAGE_WEBP, QXFileType::EM_IMAGE_TGA,
    QXFileType::EM_IMAGE_HDR, QXFileType::EM_IMAGE_PSD};

// What the codecs would print goes where the process's errors go.
class QXBrokenImage : public testing::Test {
protected:
  void SetUp() override {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
  }
  void TearDown() override {
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  }
};

TEST_F(QXBrokenImage, NothingAndUnknownTypesGiveNothing) {
  Bytes const arrBytes = FileBytes("rgb8.png");
  for (int nType : TYPES) {
    EXPECT_EQ(QXC::detail::ReadImage(nType, nullptr, 0, LIMITS), nullptr);
    EXPECT_EQ(QXC::detail::ReadImage(nType, nullptr, 10, LIMITS), nullptr);
    EXPECT_EQ(QXC::detail::ReadImage(nType, arrBytes.data(), 0, LIMITS), nullptr);
  }
  for (int nType : {-1, 0, 120, 131, 200, 1000}) {
    EXPECT_EQ(ReadBytes(nType, arrBytes), nullptr) << nType;
  }
}

TEST_F(QXBrokenImage, BytesOfAnotherTypeAreRefused) {
  for (std::string const& strName : ImageNames()) {
    Bytes const arrBytes = FileBytes(strName);
    for (int nType : TYPES) {
      if (nType == TypeOf(strName)) continue;
      EXPECT_EQ(ReadBytes(nType, arrBytes, LIMITS), nullptr) << strName << " as " << nType;
    }
  }
}

// Of a GIF and a TIFF there may be more than the picture: what follows it may be missing, and then it is the same.
TEST_F(QXBrokenImage, ACutAtAnyByteGivesNothingOrTheWholePicture) {
  for (std::string const& strName : ImageNames()) {
    int const nType = TypeOf(strName);
    bool const bMayFollow = nType == QXFileType::EM_IMAGE_GIF || nType == QXFileType::EM_IMAGE_TIFF;
    Bytes const arrBytes = FileBytes(strName);
    Image const pWhole = ReadBytes(nType, arrBytes, LIMITS);
    for (std::size_t nSize = 0; nSize < arrBytes.size(); ++nSize) {
      Image const pImage = ReadBytes(nType, arrBytes.data(), nSize, LIMITS);
      if (!pImage) continue;
      ASSERT_TRUE(bMayFollow && pWhole) << strName << " cut to " << nSize;
      ASSERT_EQ(PixelsOf(*pImage), PixelsOf(*pWhole)) << strName << " cut to " << nSize;
    }
  }
}

void ExpectNothingOrWhole(int nType, Bytes const& arrBytes) {
  Image const pImage = ReadBytes(nType, arrBytes, LIMITS);
  if (!pImage) return;
  ExpectWholeRecord(*pImage);
  ASSERT_LE(PixelsOf(*pImage).size(), LIMITS.m_nMaxBytes);
}

// The directory of a TIFF stands at its end here, the headers of all others at the front.
TEST_F(QXBrokenImage, AnyBitOfAHeaderMayBeWrong) {
  for (std::string const& strName : ImageNames()) {
    SCOPED_TRACE(strName);
    int const nType = TypeOf(strName);
    Bytes arrBytes = FileBytes(strName);
    std::size_t const nTail = nType == QXFileType::EM_IMAGE_TIFF ? 180 : 0;
    for (std::size_t i = 0; i < arrBytes.size(); ++i) {
      if (i >= 48 && arrBytes.size() - i > nTail) continue;
      for (int nBit = 0; nBit < 8; ++nBit) {
        arrBytes[i] = static_cast<unsigned char>(arrBytes[i] ^ 1 << nBit);
        ExpectNothingOrWhole(nType, arrBytes);
        arrBytes[i] = static_cast<unsigned char>(arrBytes[i] ^ 1 << nBit);
      }
    }
  }
}

}  // namespace
