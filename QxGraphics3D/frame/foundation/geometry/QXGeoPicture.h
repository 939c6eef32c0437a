/// @file
/// A picture with its place and its time.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcPoint.h>

namespace QXC {

struct QXImageData;

/// One picture of a series: a frame of an animated image. Owns its image.
/// Threads: as a plain value.
class QXGRAPHICS3D_API QXGeoPicture {
public:
  QXGeoPicture() = default;
  QXGeoPicture(QXGeoPicture const&) = delete;
  QXGeoPicture& operator=(QXGeoPicture const&) = delete;
  /// Deletes the image record and its pixels.
  ~QXGeoPicture();

  /// The image, null if there is none. It stays this object's; a caller may change its pixels, and one that keeps
  /// the block clears the record's pixels.
  QXImageData* GetImage() const { return m_pImage; }
  /// Takes a record from new whose pixels are a block from new unsigned char[]; the earlier image is deleted, unless it
  /// is the same one. Null: no image.
  void SetImage(QXImageData* pImage);

  /// Centre of the image on the canvas of the series, in pixels from the canvas's top left corner, y downwards.
  QdcPoint2D GetCenterPoint() const { return m_CenterPoint; }
  void SetCenterPoint(QdcPoint2D const& point) { m_CenterPoint = point; }

  /// How long the picture is shown, in hundredths of a second; 0: as long as the player likes.
  double GetDelayTime() const { return m_dDelayTime; }
  void SetDelayTime(double dDelayTime) { m_dDelayTime = dDelayTime; }

private:
  QXImageData* m_pImage = nullptr;
  QdcPoint2D m_CenterPoint;
  double m_dDelayTime = 0.0;
};

}  // namespace QXC
