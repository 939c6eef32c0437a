/// @file
/// The frames of an animated image.
#pragma once

#include <vector>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>

namespace QXC {

/// Frames by value with the time that each is shown. Told from a still image with a dynamic cast. The pixel block of
/// the base stays empty. One thread at a time.
class QXGRAPHICS3D_API QXTextureDataAnimation : public QXTextureData {
public:
  /// Takes the frames: copies of a vector that stays with the caller, the blocks themselves of one that is moved here.
  /// @param arrDelays  milliseconds for the frame of the same index; missing ones are 0, surplus ones are dropped
  QXTextureDataAnimation(std::vector<QXTextureData> arrFrames, std::vector<unsigned int> arrDelays);
  QXTextureDataAnimation(QXTextureDataAnimation const& other);
  QXTextureDataAnimation& operator=(QXTextureDataAnimation const& other);

  QXTextureDataAnimation* Clone() const override;
  ~QXTextureDataAnimation() override;

  int GetNumFrame() const;
  /// Failure: std::out_of_range for an index that is none of 0 to GetNumFrame() - 1, as from every checked subscript.
  QXTextureData& GetFrameDataByIndex(int nIndex);
  QXTextureData const& GetFrameDataByIndex(int nIndex) const;
  /// Milliseconds. Failure: as GetFrameDataByIndex.
  unsigned int GetFrameTimeByIndex(int nIndex) const;

private:
  std::vector<QXTextureData> m_arrFrames;
  std::vector<unsigned int> m_arrDelays;
};

}  // namespace QXC
