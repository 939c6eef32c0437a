/// @file
/// The frames of an animated image on the device.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <plugins/ogre/QXOgreImage.h>

namespace QXC {

class QXGeoPicture;

/// The bytes of an animated file as images that follow each other by the clock of QdcTime, in a loop. The first frame
/// begins when it is made. Rendering thread.
class QXOgreFrames final {
public:
  /// Decodes and uploads. Throws what OGRE throws, and std::runtime_error with the reason if there is no frame.
  QXOgreFrames(QXOgreDevice& device, unsigned char const* pBytes, std::size_t nSize, bool bGenerateLevels);

  /// Shows the frame of this moment.
  void Advance();
  QXOgreImage* GetImage() const { return m_arrImages[m_nCurrent].get(); }
  int GetCount() const { return static_cast<int>(m_arrImages.size()); }
  /// Milliseconds of each frame.
  std::vector<unsigned int> const& GetTimes() const { return m_arrTimes; }

private:
  std::vector<std::unique_ptr<QXOgreImage>> m_arrImages;
  std::vector<unsigned int> m_arrTimes;
  /// In 64 bits, as are all sums of times: a file may have more frames than 32 bits have milliseconds for, and a sum
  /// that wrapped around to 0 divides nothing.
  std::uint64_t m_nTotal;
  /// Milliseconds into the loop at m_nLastUpdate.
  std::uint64_t m_nPlayed;
  unsigned int m_nLastUpdate;
  std::size_t m_nCurrent;
};

}  // namespace QXC
