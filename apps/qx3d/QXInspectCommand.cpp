#include <apps/qx3d/QXInspectCommand.h>

#include <apps/qx3d/QXHostTexture.h>
#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXStaticReport.h>

#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;
using QXC::QXFileType;

/// Extension of a type, the way in which people know it.
std::string NameType(int nType) {
  std::string const strName = Narrow(QXFileType::FileTypeToExtName(nType));
  return strName.empty() ? "unknown" : strName;
}

/// Name, number, bytes a pixel and their order.
std::string DescribeFormat(QXC::QX3DPixelFormat eFormat) {
  switch (eFormat) {
  case QXC::PF_L8: return "PF_L8 (1), 1 byte a pixel: grey";
  case QXC::PF_R8G8B8: return "PF_R8G8B8 (10), 3 bytes a pixel: blue, green, red";
  case QXC::PF_A8R8G8B8: return "PF_A8R8G8B8 (12), 4 bytes a pixel: blue, green, red, alpha";
  case QXC::PF_A8B8G8R8: return "PF_A8B8G8R8 (13), 4 bytes a pixel: red, green, blue, alpha";
  default: return "format " + std::to_string(static_cast<int>(eFormat));
  }
}

/// An image record with its block.
class Image {
public:
  explicit Image(QXC::QXImageData* pImage) : m_pImage(pImage) {}
  Image(Image const&) = delete;
  Image& operator=(Image const&) = delete;
  ~Image() {
    if (m_pImage != nullptr) delete[] static_cast<unsigned char*>(m_pImage->m_pPixels);
    delete m_pImage;
  }
  QXC::QXImageData const* Get() const { return m_pImage; }

private:
  QXC::QXImageData* m_pImage;
};

struct Frames {
  Frames() = default;
  Frames(Frames const&) = delete;
  Frames& operator=(Frames const&) = delete;
  ~Frames() {
    for (QXC::QXGeoPicture* pPicture : m_arrPictures) delete pPicture;
  }
  QXC::QdcArray<QXC::QXGeoPicture*> m_arrPictures;
};

void PrintLine(char const* szWhat, std::string const& strText) {
  std::printf("%-18s %s\n", szWhat, MakeOneLine(strText).c_str());
}

std::string DescribeSize(unsigned int nWidth, unsigned int nHeight) {
  return std::to_string(nWidth) + " x " + std::to_string(nHeight);
}

/// Pixels of 4 bytes that let something through.
std::size_t CountTransparent(unsigned char const* pPixels, std::size_t nPixels) {
  std::size_t nCount = 0;
  for (std::size_t i = 0; i < nPixels; ++i) nCount += pPixels[4 * i + 3] != 255 ? 1 : 0;
  return nCount;
}

std::string DescribeTransparency(std::size_t nCount, std::size_t nPixels) {
  if (nCount == 0) return "none, every pixel is opaque";
  return std::to_string(nCount) + " of " + std::to_string(nPixels) + " pixels";
}

std::size_t CountLevels(QXC::QXTextureData const& data) {
  QXC::QdcArray<unsigned int> arrOffsets;
  QXC::QXTexture::BuildMipmapOffset(
      static_cast<int>(data.m_nWidth), static_cast<int>(data.m_nHeight), data.m_eFormat, 0, arrOffsets);
  return arrOffsets.GetSize();
}

/// The work of one call; every step answers with an empty string or the reason to leave with.
class InspectRun {
public:
  explicit InspectRun(std::string const& strPath)
      : m_strPath(strPath), m_strWide(QdcUnicodeString::FromUTF8(strPath.c_str())) {}

  std::string Run() {
    std::string strReason = CheckFile();
    if (strReason.empty()) strReason = CheckType();
    if (!strReason.empty()) return strReason;
    if (m_nType == QXFileType::EM_IMAGE_KTX2) return RunKtx2();
    return m_nType == QXFileType::EM_IMAGE_GIF ? RunAnimation() : RunStill();
  }

private:
  std::string CheckFile() const {
    if (Narrow(m_strWide) != m_strPath) return "the name is no UTF-8 text; rename the file";
    std::error_code error;
    std::filesystem::file_status const status = std::filesystem::status(m_strPath, error);
    if (!std::filesystem::exists(status)) return "no such file; correct the name";
    if (std::filesystem::is_directory(status)) return "this is a directory; give an image file inside it";
    if (!std::filesystem::is_regular_file(status)) return "this is no regular file; give an image file";
    if (std::filesystem::file_size(m_strPath, error) == 0) return "the file is empty; get another copy";
    return std::string();
  }

  /// The name decides who reads a file, so that one whose bytes are of another type is not read.
  std::string CheckType() {
    std::ifstream file(m_strPath, std::ios::binary);
    std::vector<char> vecStart(65536);
    file.read(vecStart.data(), static_cast<std::streamsize>(vecStart.size()));
    if (file.gcount() <= 0) return "the file cannot be read; change its permissions";
    m_nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(m_strWide);
    m_nContent = QXC::QXFileParseToolkit::GetFileTypeByContent(
        reinterpret_cast<unsigned char const*>(vecStart.data()), static_cast<QXUInt64>(file.gcount()));
    if (QXFileType::IsModelType(m_nType) != 0) return "this is a model; show it with 'qx3d view'";
    if (QXFileType::IsImageType(m_nType) == 0)
      return m_nContent < 0 ? "unknown kind of image; readable are" + ListImageKinds()
                            : "unknown extension, and the bytes of a " + NameType(m_nContent) + " file; rename it";
    if (m_nContent >= 0 && m_nContent != m_nType)
      return "the name says " + NameType(m_nType) + ", but the bytes are those of a " + NameType(m_nContent) +
             " file; rename it";
    return std::string();
  }

  static std::string TakeReason() {
    std::string strReason = Narrow(QXC::QXFileParseToolkit::GetErrorText());
    if (strReason.empty()) strReason = "the file is broken or larger than the library reads";
    return strReason.find(';') != std::string::npos ? strReason : strReason + "; get another copy";
  }

  void PrintFile() const {
    PrintLine("file", m_strPath);
    PrintLine("type by name", NameType(m_nType));
    PrintLine("type by content", NameType(m_nContent));
  }

  std::string RunStill() {
    Image const image(QXC::QXTexture::LoadImageDataEx(m_strWide, nullptr));
    if (image.Get() == nullptr || image.Get()->m_pPixels == nullptr) return TakeReason();
    QXHostTexture texture;
    if (texture.LoadImageData(m_strWide, 0, 0, 0) == 0 || texture.m_TextureData.m_pPixels == nullptr)
      return TakeReason();
    QXC::QXImageData const& record = *image.Get();
    std::size_t const nPixels = std::size_t{record.m_nWidth} * record.m_nHeight;
    auto const* pPixels = static_cast<unsigned char const*>(record.m_pPixels);
    PrintFile();
    PrintLine("size", DescribeSize(record.m_nWidth, record.m_nHeight));
    PrintLine("depth", std::to_string(record.m_nBitDepth) + " bits a pixel");
    PrintTexture(texture.m_TextureData);
    PrintLine("mip levels", std::to_string(CountLevels(texture.m_TextureData)));
    PrintLine("transparency",
        DescribeTransparency(record.m_nBitDepth == 32 ? CountTransparent(pPixels, nPixels) : 0, nPixels));
    PrintLine("frames", "1");
    return std::string();
  }

  static void PrintTexture(QXC::QXTextureData const& data) {
    PrintLine("loaded as", DescribeFormat(data.m_eFormat));
    PrintLine("loaded size", DescribeSize(data.m_nWidth, data.m_nHeight));
    PrintLine("compression", std::to_string(data.m_nCompression) + (data.m_nCompression == 0 ? ", none" : ""));
  }

  std::string RunKtx2() {
    QXHostTexture texture;
    if (texture.LoadKTX2(m_strWide) == 0) return TakeReason();
    QXC::QXTextureData const& data = texture.m_TextureData;
    PrintFile();
    PrintLine("size", DescribeSize(data.m_nWidth, data.m_nHeight));
    bool const bBlocks = texture.m_bKtx2Flag != 0;
    PrintLine("depth", bBlocks ? "8 bits a pixel" : "32 bits a pixel");
    PrintLine(
        "loaded as", bBlocks ? "BC7 blocks under PF_A8R8G8B8 (12), for the renderer" : DescribeFormat(data.m_eFormat));
    PrintLine("loaded size", DescribeSize(data.m_nWidth, data.m_nHeight));
    PrintLine("compression", std::to_string(data.m_nCompression) + (bBlocks ? ", BC7" : ", none"));
    PrintLine("mip levels", std::to_string(texture.m_arrMipmapOffset.GetSize()));
    std::size_t const nPixels = std::size_t{data.m_nWidth} * data.m_nHeight;
    PrintLine("transparency", bBlocks ? "not known before the renderer has it"
                                      : DescribeTransparency(CountTransparent(data.m_pPixels, nPixels), nPixels));
    PrintLine("frames", "1");
    return std::string();
  }

  /// Milliseconds as an animated texture shows them: a frame without a delay stays for a tenth of a second.
  static int GetDelay(QXC::QXGeoPicture const& picture) {
    int const nHundredths = static_cast<int>(std::lround(picture.GetDelayTime()));
    return nHundredths == 0 ? 100 : 10 * std::abs(nHundredths);
  }

  std::string RunAnimation() {
    Frames frames;
    if (QXC::QXFileParseToolkit::GetDynamicIMGData(m_strWide, frames.m_arrPictures, 0) == 0 ||
        frames.m_arrPictures.GetSize() == 0)
      return TakeReason();
    QXC::QXImageData const* pFirst = frames.m_arrPictures[0]->GetImage();
    if (pFirst == nullptr) return TakeReason();
    // The delays of a long animation have no place in 32 bits.
    QXInt64 nTotal = 0;
    std::string strDelays;
    std::size_t nTransparent = 0;
    for (QXC::QXGeoPicture const* pPicture : frames.m_arrPictures) {
      QXC::QXImageData const* pImage = pPicture->GetImage();
      nTotal += GetDelay(*pPicture);
      strDelays += " " + std::to_string(GetDelay(*pPicture));
      if (pImage != nullptr && pImage->m_nBitDepth == 32)
        nTransparent += CountTransparent(
            static_cast<unsigned char const*>(pImage->m_pPixels), std::size_t{pImage->m_nWidth} * pImage->m_nHeight);
    }
    std::size_t const nFrames = frames.m_arrPictures.GetSize();
    PrintFile();
    PrintLine("size", DescribeSize(pFirst->m_nWidth, pFirst->m_nHeight));
    PrintLine("depth", std::to_string(pFirst->m_nBitDepth) + " bits a pixel in each frame");
    PrintLine("loaded as", "the whole file, for the renderer");
    PrintLine("compression", std::to_string(QXC::TEXTURE_COMPRESSION_RAW) + ", the file's own");
    PrintLine("transparency",
        DescribeTransparency(nTransparent, nFrames * std::size_t{pFirst->m_nWidth} * pFirst->m_nHeight));
    PrintLine("frames", std::to_string(nFrames) + ", " + std::to_string(nTotal) + " ms in all");
    PrintLine("delays in ms", strDelays.substr(1));
    return std::string();
  }

  std::string m_strPath;
  QdcUnicodeString m_strWide;
  int m_nType = -1;
  int m_nContent = -1;
};

}  // namespace

int RunInspect(std::string const& strPath) {
  std::string const strReason = IsStaticName(strPath) ? PrintStatic(strPath) : InspectRun(strPath).Run();
  if (strReason.empty()) return 0;
  PrintFailure(strPath + ": " + strReason);
  return 1;
}

}  // namespace QXApp
