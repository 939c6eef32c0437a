#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureDataAnimation.h>
#include <QxGraphics3D/frame/foundation/base3d/detail/QXImageHolder.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/geometry/QXGeoPicture.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXImgToolkit.h>
#include <QxGraphics3D/texture/detail/QXFrameCompose.h>
#include <QxGraphics3D/texture/detail/QXLoadGuard.h>
#include <QxGraphics3D/texture/detail/QXLoadSource.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace QXC {

namespace {

constexpr unsigned char OpaqueAlpha = 255;
constexpr unsigned int DefaultDelay = 100;

/// The pictures that the parser hands out, deleted at the end.
struct PictureList {
  PictureList() = default;
  PictureList(PictureList const&) = delete;
  PictureList& operator=(PictureList const&) = delete;
  ~PictureList() {
    for (QXGeoPicture* pPicture : m_arrPictures) delete pPicture;
  }

  QdcArray<QXGeoPicture*> m_arrPictures;
};

/// Milliseconds of a picture.
unsigned int DelayOf(QXGeoPicture const& picture) {
  double const dDelay = picture.GetDelayTime();
  if (dDelay > -1e-10 && dDelay < 1e-10) return DefaultDelay;
  return static_cast<unsigned int>(std::max(ToInt(dDelay * 10.0), 0));
}

bool IsWide(QXImageData const& image) {
  return image.m_pPixels != nullptr && image.m_nBitDepth == 32;
}

/// Widens the picture's image and lays it onto the canvas. A first byte above zero covers; else an alpha of 128 clears;
/// else the picture below stays.
void LayOnto(QXImageData& canvas, QXGeoPicture const& picture) {
  QXImageData* const pImage = picture.GetImage();
  if (pImage == nullptr) return;
  QXImgToolkit::ImageGIFToRGBA(*pImage, OpaqueAlpha);
  if (!IsWide(canvas) || !IsWide(*pImage)) return;
  QdcPoint2D const center = picture.GetCenterPoint();
  detail::ComposeFrame(canvas, *pImage, detail::FrameStart(center.x, pImage->m_nWidth),
      detail::FrameStart(center.y, pImage->m_nHeight), [](unsigned char* pCanvas, unsigned char const* pFrame) {
        if (pFrame[0] != 0) {
          std::memcpy(pCanvas, pFrame, 4);
        } else if (pFrame[3] == 128) {
          std::memset(pCanvas, 0, 4);
        }
      });
}

/// The canvas as it is now, as a frame.
QXTextureData MakeFrame(QXImageData const& canvas) {
  detail::QXImageHolder const pClone(canvas.Clone());
  QXTextureData frame;
  frame.m_pPixels = static_cast<unsigned char*>(std::exchange(pClone->m_pPixels, nullptr));
  frame.m_nWidth = canvas.m_nWidth;
  frame.m_nHeight = canvas.m_nHeight;
  frame.m_eFormat = canvas.m_nBitDepth == 32 ? PF_A8R8G8B8 : PF_R8G8B8;
  frame.SetBlockLength(QXUInt64{canvas.m_nPitch} * canvas.m_nHeight);
  return frame;
}

QXTextureDataAnimation* ReadFrames(QdcUnicodeString const& strPath) {
  PictureList list;
  QdcArray<QXGeoPicture*>& arrPictures = list.m_arrPictures;
  if (QXFileParseToolkit::GetDynamicIMGData(strPath, arrPictures, 0) == 0 || arrPictures.GetSize() == 0) return nullptr;
  if (arrPictures[0] == nullptr || arrPictures[0]->GetImage() == nullptr) return nullptr;
  detail::QXImageHolder const pCanvas(arrPictures[0]->GetImage()->Clone());
  if (QXImgToolkit::ImageGIFToRGBA(*pCanvas, OpaqueAlpha) == 0) return nullptr;
  std::vector<QXTextureData> vecFrames;
  std::vector<unsigned int> vecDelays;
  for (QXGeoPicture const* pPicture : arrPictures) {
    if (pPicture == nullptr) continue;
    LayOnto(*pCanvas, *pPicture);
    vecFrames.push_back(MakeFrame(*pCanvas));
    vecDelays.push_back(DelayOf(*pPicture));
  }
  auto pAnimation = std::make_unique<QXTextureDataAnimation>(vecFrames, vecDelays);
  pAnimation->m_nCompression = detail::RawFileCode;
  return pAnimation.release();
}

}  // namespace

QXTextureDataAnimation* QXTexture::GetTextureDataAnimation(QdcUnicodeString const& strPath) {
  return detail::GuardLoad([&] { return ReadFrames(strPath); }, static_cast<QXTextureDataAnimation*>(nullptr));
}

}  // namespace QXC
