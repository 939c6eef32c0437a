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

/// Milliseconds of a picture.
unsigned int DelayOf(QXGeoPicture const& picture) {
  double const dDelay = picture.GetDelayTime();
  if (dDelay > -1e-10 && dDelay < 1e-10) return DefaultDelay;
  return static_cast<unsigned int>(std::max(ToInt(dDelay * 10.0), 0));
}

/// Widens the picture's image and lays it onto the canvas. A first byte above zero covers; else an alpha of 128 clears;
/// else the picture below stays.
void LayOnto(QXImageData& canvas, QXGeoPicture const& picture) {
  QXImageData* const pImage = picture.GetImage();
  if (pImage == nullptr) return;
  QXImgToolkit::ImageGIFToRGBA(*pImage, OpaqueAlpha);
  if (!detail::IsWideImage(canvas) || !detail::IsWideImage(*pImage)) return;
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

QXTextureDataAnimation* ReadFrames(QdcUnicodeString const& strPath) {
  detail::QXPictureList list;
  QdcArray<QXGeoPicture*>& arrPictures = list.m_arrPictures;
  if (QXFileParseToolkit::GetDynamicIMGData(strPath, arrPictures, 0) == 0) return nullptr;
  if (list.GetFirstImage() == nullptr) return nullptr;
  detail::QXImageHolder const pCanvas(list.GetFirstImage()->Clone());
  if (QXImgToolkit::ImageGIFToRGBA(*pCanvas, OpaqueAlpha) == 0) return nullptr;
  std::vector<QXTextureData> vecFrames;
  std::vector<unsigned int> vecDelays;
  for (QXGeoPicture* const pPicture : arrPictures) {
    if (pPicture == nullptr) continue;
    LayOnto(*pCanvas, *pPicture);
    // All of them at once, frames and images, would need twice the memory.
    pPicture->SetImage(nullptr);
    vecFrames.push_back(detail::TakeFrame(*detail::QXImageHolder(pCanvas->Clone())));
    vecDelays.push_back(DelayOf(*pPicture));
  }
  auto pAnimation = std::make_unique<QXTextureDataAnimation>(std::move(vecFrames), std::move(vecDelays));
  pAnimation->m_nCompression = detail::RawFileCode;
  return pAnimation.release();
}

}  // namespace

QXTextureDataAnimation* QXTexture::GetTextureDataAnimation(QdcUnicodeString const& strPath) {
  return detail::GuardLoad([&] { return ReadFrames(strPath); }, static_cast<QXTextureDataAnimation*>(nullptr));
}

}  // namespace QXC
