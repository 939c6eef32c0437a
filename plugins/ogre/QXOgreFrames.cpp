#include <plugins/ogre/QXOgreFrames.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>

#include <plugins/ogre/QXOgreConvert.h>

namespace QXC {

namespace {

constexpr unsigned int DEFAULT_TIME = 100;
constexpr std::size_t PIXEL = 4;

/// Pictures that are deleted on every way out.
struct Pictures {
  Pictures() = default;
  ~Pictures() {
    for (std::size_t i = 0; i < m_arrPictures.GetSize(); ++i) delete m_arrPictures[i];
  }
  Pictures(Pictures const&) = delete;
  Pictures& operator=(Pictures const&) = delete;
  QdcArray<QXGeoPicture*> m_arrPictures;
};

std::size_t BytesOf(QXImageData const& image) {
  return image.m_nBitDepth == 32 ? 4 : image.m_nBitDepth == 24 ? 3 : 1;
}

/// Blue, green, red, alpha of a pixel.
void Widen(unsigned char const* pSource, std::size_t nBytes, unsigned char* pTarget) {
  for (std::size_t i = 0; i < 3; ++i) pTarget[i] = pSource[nBytes == 1 ? 0 : i];
  pTarget[3] = nBytes == 4 ? pSource[3] : 0xFF;
}

int Truncated(double dValue) {
  return std::isfinite(dValue) ? static_cast<int>(std::clamp(dValue, -1.0e9, 1.0e9)) : 0;
}

/// The canvas on which the frames of a file follow each other.
class Canvas {
public:
  explicit Canvas(QXImageData const& first)
      : m_nWidth(first.m_nWidth), m_nHeight(first.m_nHeight),
        m_arrPixels(std::size_t{first.m_nWidth} * first.m_nHeight * PIXEL) {}

  /// A picture as large as the canvas replaces it; of a smaller one only what is opaque covers what was there.
  void Add(QXGeoPicture const& picture) {
    QXImageData const& image = *picture.GetImage();
    QdcPoint2D const center = picture.GetCenterPoint();
    bool const bWhole = image.m_nWidth == m_nWidth && image.m_nHeight == m_nHeight;
    int const nLeft = Truncated(center.x - image.m_nWidth / 2.0);
    int const nTop = Truncated(center.y - image.m_nHeight / 2.0);
    for (unsigned int y = 0; y < image.m_nHeight; ++y) {
      std::int64_t const nRow = std::int64_t{nTop} + y;
      if (nRow >= 0 && nRow < m_nHeight) AddRow(image, y, nLeft, static_cast<std::size_t>(nRow), bWhole);
    }
  }
  QXOgrePixels Describe() const {
    QXOgrePixels pixels;
    pixels.m_eFormat = Ogre::PF_BYTE_BGRA;
    pixels.m_arrLevels.push_back({m_nWidth, m_nHeight, m_arrPixels.data()});
    for (std::size_t i = 3; i < m_arrPixels.size() && !pixels.m_bTransparent; i += PIXEL)
      pixels.m_bTransparent = m_arrPixels[i] != 0xFF;
    return pixels;
  }

private:
  void AddRow(QXImageData const& image, unsigned int nSourceRow, int nLeft, std::size_t nRow, bool bWhole) {
    std::size_t const nBytes = BytesOf(image);
    unsigned char const* const pSource =
        static_cast<unsigned char const*>(image.m_pPixels) + std::size_t{nSourceRow} * image.m_nPitch;
    for (unsigned int x = 0; x < image.m_nWidth; ++x) {
      std::int64_t const nColumn = std::int64_t{nLeft} + x;
      if (nColumn < 0 || nColumn >= m_nWidth) continue;
      unsigned char arrPixel[PIXEL];
      Widen(pSource + x * nBytes, nBytes, arrPixel);
      if (!bWhole && arrPixel[3] != 0xFF) continue;
      std::memcpy(m_arrPixels.data() + (nRow * m_nWidth + static_cast<std::size_t>(nColumn)) * PIXEL, arrPixel, PIXEL);
    }
  }

  unsigned int m_nWidth;
  unsigned int m_nHeight;
  std::vector<unsigned char> m_arrPixels;
};

bool IsUsable(QXGeoPicture const* pPicture) {
  QXImageData const* const pImage = pPicture ? pPicture->GetImage() : nullptr;
  return pImage && pImage->m_pPixels && pImage->m_nWidth > 0 && pImage->m_nHeight > 0 &&
         pImage->m_nPitch >= pImage->m_nWidth * BytesOf(*pImage);
}

/// Hundredths of a second as milliseconds; none is a tenth of a second, as animated files are made to expect.
unsigned int TimeOf(QXGeoPicture const& picture) {
  unsigned int const nTime = static_cast<unsigned int>(std::abs(Truncated(picture.GetDelayTime() * 10.0)));
  return nTime == 0 ? DEFAULT_TIME : std::min(nTime, 655350U);
}

}  // namespace

QXOgreFrames::QXOgreFrames(QXOgreDevice& device, unsigned char const* pBytes, std::size_t nSize, bool bGenerateLevels)
    : m_nTotal(0), m_nPlayed(0), m_nLastUpdate(QdcTime::GetMillisecond()), m_nCurrent(0) {
  Pictures pictures;
  if (!QXFileParseToolkit::GetDynamicIMGDataFromMemory(pBytes, nSize, pictures.m_arrPictures, 0))
    throw std::runtime_error("an animated texture: " + ToUtf8(QXFileParseToolkit::GetErrorText()));
  std::unique_ptr<Canvas> pCanvas;
  for (std::size_t i = 0; i < pictures.m_arrPictures.GetSize(); ++i) {
    if (!IsUsable(pictures.m_arrPictures[i])) continue;
    QXGeoPicture const& picture = *pictures.m_arrPictures[i];
    if (!pCanvas) pCanvas = std::make_unique<Canvas>(*picture.GetImage());
    pCanvas->Add(picture);
    m_arrImages.push_back(std::make_unique<QXOgreImage>(device, pCanvas->Describe(), bGenerateLevels));
    m_arrTimes.push_back(TimeOf(picture));
    m_nTotal += m_arrTimes.back();
  }
  if (m_arrImages.empty()) throw std::runtime_error("an animated texture has no frames");
}

void QXOgreFrames::Advance() {
  unsigned int const nNow = QdcTime::GetMillisecond();
  // A program that slept long comes back anywhere in the loop.
  m_nPlayed = (m_nPlayed + (nNow - m_nLastUpdate)) % m_nTotal;
  m_nLastUpdate = nNow;
  std::uint64_t nEnd = 0;
  for (std::size_t i = 0; i < m_arrTimes.size(); ++i) {
    nEnd += m_arrTimes[i];
    if (m_nPlayed > nEnd) continue;
    // The very end of a frame still shows it, as in the library's own animated textures.
    m_nCurrent = i;
    return;
  }
}

}  // namespace QXC
