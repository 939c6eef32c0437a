/// @file
/// A skeleton of the null renderer.
#pragma once

#include <vector>

#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

/// Keeps bones, and time within its length. Keys carry their times in a form that only their own kinds know, so
/// nothing here moves: each key counts as one second.
class QXNullSkeletonAnimation final : public QXSkeletonAnimation, public QXNullObject {
public:
  QXNullSkeletonAnimation(std::shared_ptr<QXCallLog> pLog, std::string strLabel, QdcUnicodeString const& strName);
  ~QXNullSkeletonAnimation() override;

  QdcUnicodeString const& GetName() const override { return m_strName; }
  /// -1 for a parent that is neither -1 nor an earlier bone.
  int AddBone(QdcUnicodeString const& strName, int nParent, QXMatrix4d const& matRest) override;
  int GetBoneCount() const override { return static_cast<int>(m_arrKeyCounts.size()); }
  unsigned char SetKeys(int nBone, QdcArray<QXAnimationKey*> const& arrKeys) override;
  double GetLength() const override;
  void SetLoop(unsigned char bLoop) override;
  void SetPlaying(unsigned char bPlaying) override;
  void SetTime(double dSeconds) override;
  double GetTime() const override { return m_dTime; }
  void Advance(double dSeconds) override;

private:
  QdcUnicodeString m_strName;
  std::vector<std::size_t> m_arrKeyCounts;
  unsigned char m_bLoop = 0;
  unsigned char m_bPlaying = 0;
  double m_dTime = 0.0;
};

}  // namespace QXC
