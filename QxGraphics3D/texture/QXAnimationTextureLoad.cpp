#include <QxGraphics3D/texture/QXAnimationTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXImageHolder.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImgToolkit.h>
#include <QxGraphics3D/texture/detail/QXFrameCompose.h>
#include <QxGraphics3D/texture/detail/QXLoadGuard.h>

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

namespace QXC {

namespace {

constexpr unsigned char OpaqueAlpha = 255;
constexpr unsigned int DefaultDelay = 100;

/// Milliseconds of a picture. Files hold a delay in two bytes, which are taken with their sign.
unsigned int DelayOf(QXGeoPicture const& picture) {
  int const nHundredths = static_cast<short>(ToInt(picture.GetDelayTime()));
  return nHundredths == 0 ? DefaultDelay : static_cast<unsigned int>(std::abs(nHundredths)) * 10;
}

/// Makes the frames of an animation out of its pictures, in their order.
class FrameMaker {
public:
  /// @param image  of the first picture
  FrameMaker(QXImageData const& image, unsigned char bFlip)
      : m_pCanvas(image.Clone()), m_nHeight(image.m_nHeight), m_bFlip(bFlip) {
    QXImgToolkit::ImageGIFToRGBA(*m_pCanvas, OpaqueAlpha);
  }

  bool HasCanvas() const { return detail::IsWideImage(*m_pCanvas); }

  /// The canvas with the picture on it. The picture's image is gone then: all of them at once, frames and images, would
  /// need twice the memory.
  QXTextureData Make(QXGeoPicture& picture) {
    LayOnto(picture);
    picture.SetImage(nullptr);
    detail::QXImageHolder const pClone(m_pCanvas->Clone());
    int nWidth = 0, nHeight = 0;
    if (QXImgToolkit::ImageDataToPowerOfTwo(*pClone, nWidth, nHeight, OpaqueAlpha) == 0) throw std::bad_alloc();
    m_vecScale = QXVector3d(
        static_cast<double>(nWidth) / pClone->m_nWidth, static_cast<double>(nHeight) / pClone->m_nHeight, 1.0);
    return detail::TakeFrame(*pClone);
  }

  QXVector3d const& GetScale() const { return m_vecScale; }

private:
  void LayOnto(QXGeoPicture const& picture) {
    QXImageData* const pImage = picture.GetImage();
    if (pImage == nullptr) return;
    QXImgToolkit::ImageGIFToRGBA(*pImage, OpaqueAlpha);
    if (!detail::IsWideImage(*pImage)) return;
    QdcPoint2D const center = picture.GetCenterPoint();
    int const nColumn = detail::FrameStart(center.x, pImage->m_nWidth);
    int const nRow = detail::FrameStart(m_bFlip ? m_nHeight - center.y : center.y, pImage->m_nHeight);
    if (pImage->m_nWidth == m_pCanvas->m_nWidth && pImage->m_nHeight == m_pCanvas->m_nHeight) {
      detail::ComposeFrame(*m_pCanvas, *pImage, nColumn, nRow,
          [](unsigned char* pCanvas, unsigned char const* pFrame) { std::memcpy(pCanvas, pFrame, 4); });
    } else {
      detail::ComposeFrame(*m_pCanvas, *pImage, nColumn, nRow, [](unsigned char* pCanvas, unsigned char const* pFrame) {
        if (pFrame[3] > 254) std::memcpy(pCanvas, pFrame, 4);
      });
    }
  }

  detail::QXImageHolder const m_pCanvas;
  unsigned int const m_nHeight;
  unsigned char const m_bFlip;
  QXVector3d m_vecScale{1.0, 1.0, 1.0};
};

}  // namespace

unsigned char QXAnimationTexture::LoadAnimationImageData(
    QdcUnicodeString const& strPath, unsigned char /*bUnused*/, unsigned char bFlip) {
  if (strPath.IsEmpty() != 0) return 0;
  for (QXTexture* const pTexture : m_arrFrameTextures) delete pTexture;
  m_arrFrameTextures.RemoveAll();
  if (QXFileType::ExtNameToFileType(QXFile::GetExt(strPath)) != QXFileType::EM_IMAGE_GIF) return 0;
  m_nTotalTime = 0;
  return detail::GuardLoad([&] { return ReadFrames(strPath, bFlip); }, static_cast<unsigned char>(0));
}

unsigned char QXAnimationTexture::ReadFrames(QdcUnicodeString const& strPath, unsigned char bFlip) {
  detail::QXPictureList list;
  QXFileParseToolkit::GetDynamicIMGData(strPath, list.m_arrPictures, bFlip);
  QXImageData const* const pFirst = list.GetFirstImage();
  if (pFirst == nullptr) return 1;
  FrameMaker maker(*pFirst, bFlip);
  if (!maker.HasCanvas()) return 1;

  // Nothing is stored before all frames stand: memory may run out at any of them.
  std::vector<QXTextureData> vecFrames;
  std::vector<unsigned int> vecDelays;
  for (QXGeoPicture* const pPicture : list.m_arrPictures) {
    if (pPicture == nullptr) continue;
    vecDelays.push_back(DelayOf(*pPicture));
    vecFrames.push_back(maker.Make(*pPicture));
  }
  // Times of frames that are gone would be searched behind the new ones, and end in frames that there are not.
  if (m_arrFrames.empty()) m_mapFrameEndTimes.clear();
  AppendFrames(std::move(vecFrames), vecDelays);
  // A single frame is shown without a look at the clock, which would bring the index back.
  if (m_nCurrentFrame >= m_arrFrames.size()) m_nCurrentFrame = 0;
  m_vecScale = maker.GetScale();
  m_strTexFilePath = strPath;
  return 1;
}

void QXAnimationTexture::AppendFrames(
    std::vector<QXTextureData>&& vecFrames, std::vector<unsigned int> const& vecDelays) {
  m_arrFrames.insert(
      m_arrFrames.end(), std::make_move_iterator(vecFrames.begin()), std::make_move_iterator(vecFrames.end()));
  for (std::size_t i = 0; i < vecDelays.size(); ++i) {
    m_nTotalTime += vecDelays[i];
    m_mapFrameEndTimes[static_cast<unsigned int>(i)] = m_nTotalTime;
  }
  m_bLoadedImage = 1;
  m_bNeedLoadTexture = 1;
}

}  // namespace QXC
