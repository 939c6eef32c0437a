#include <QxGraphics3D/testing/QXNullSkeletonAnimation.h>

#include <algorithm>
#include <cmath>

namespace QXC {

QXNullSkeletonAnimation::QXNullSkeletonAnimation(
    std::shared_ptr<QXCallLog> pLog, std::string strLabel, QdcUnicodeString const& strName)
    : QXNullObject(std::move(pLog), std::move(strLabel)), m_strName(strName) {}

QXNullSkeletonAnimation::~QXNullSkeletonAnimation() {
  Record("destroyed");
}

int QXNullSkeletonAnimation::AddBone(QdcUnicodeString const& strName, int nParent, QXMatrix4d const& matRest) {
  Record("AddBone", strName, nParent, matRest);
  if (nParent < -1 || nParent >= GetBoneCount()) {
    return -1;
  }
  m_arrKeyCounts.push_back(0);
  return GetBoneCount() - 1;
}

unsigned char QXNullSkeletonAnimation::SetKeys(int nBone, QdcArray<QXAnimationKey*> const& arrKeys) {
  Record("SetKeys", nBone, arrKeys.GetSize());
  if (nBone < 0 || nBone >= GetBoneCount()) {
    return 0;
  }
  m_arrKeyCounts[static_cast<std::size_t>(nBone)] = arrKeys.GetSize();
  return 1;
}

double QXNullSkeletonAnimation::GetLength() const {
  std::size_t nLongest = 1;
  for (std::size_t const nKeys : m_arrKeyCounts) {
    nLongest = std::max(nLongest, nKeys);
  }
  return static_cast<double>(nLongest - 1);
}

void QXNullSkeletonAnimation::SetLoop(unsigned char bLoop) {
  Record("SetLoop", bLoop);
  m_bLoop = bLoop;
}

void QXNullSkeletonAnimation::SetPlaying(unsigned char bPlaying) {
  Record("SetPlaying", bPlaying);
  m_bPlaying = bPlaying;
}

void QXNullSkeletonAnimation::SetTime(double dSeconds) {
  Record("SetTime", dSeconds);
  m_dTime = std::clamp(dSeconds, 0.0, GetLength());
}

void QXNullSkeletonAnimation::Advance(double dSeconds) {
  Record("Advance", dSeconds);
  if (!m_bPlaying) {
    return;
  }
  double const dLength = GetLength();
  double const dTime = m_dTime + dSeconds;
  m_dTime = m_bLoop && dLength > 0.0 ? std::fmod(dTime, dLength) : std::clamp(dTime, 0.0, dLength);
}

}  // namespace QXC
