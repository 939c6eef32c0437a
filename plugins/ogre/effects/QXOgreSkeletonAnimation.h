/// @file
/// Bones and key frames.
#pragma once

#include <vector>

#include <QxGraphics3D/renderop/QXBoneKey.h>
#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>

namespace QXC {

class QXOgreDrawable;

/// The skeleton that hosts hold. It computes one matrix a bone; the drawables move their vertices by those on the CPU.
/// It needs no device, so it works before and after one. A drawable whose skeleton dies first stands at rest.
///
/// Refused beside what the interface says: a bone whose place at rest has no inverse, or numbers that are none; keys of
///         another kind than QXBoneKey, out of order, without a rotation, or with numbers that are none.
/// Cost:   a new time is linear in the bones and logarithmic in the keys of each.
class QXOgreSkeletonAnimation final : public QXSkeletonAnimation {
public:
  explicit QXOgreSkeletonAnimation(QdcUnicodeString const& strName);
  ~QXOgreSkeletonAnimation() override;
  QXOgreSkeletonAnimation(QXOgreSkeletonAnimation const&) = delete;
  QXOgreSkeletonAnimation& operator=(QXOgreSkeletonAnimation const&) = delete;

  QdcUnicodeString const& GetName() const override { return m_strName; }
  int AddBone(QdcUnicodeString const& strName, int nParent, QXMatrix4d const& matRest) override;
  int GetBoneCount() const override { return static_cast<int>(m_arrBones.size()); }
  unsigned char SetKeys(int nBone, QdcArray<QXAnimationKey*> const& arrKeys) override;
  double GetLength() const override { return m_dFirst < m_dLast ? m_dLast - m_dFirst : 0.0; }
  void SetLoop(unsigned char bLoop) override { m_bLoop = bLoop; }
  void SetPlaying(unsigned char bPlaying) override { m_bPlaying = bPlaying; }
  void SetTime(double dSeconds) override;
  double GetTime() const override { return m_dTime; }
  void Advance(double dSeconds) override;

  /// What moves a vertex at rest to where each bone takes it now, in model coordinates.
  std::vector<QXMatrix4d> const& GetMoves();
  /// Called by the drawables themselves; they are told of each new time.
  void Add(QXOgreDrawable* pDrawable) { m_arrDrawables.push_back(pDrawable); }
  void Remove(QXOgreDrawable* pDrawable) { std::erase(m_arrDrawables, pDrawable); }

private:
  struct Bone {
    int m_nParent;
    QXMatrix4d m_matRest;
    /// From model coordinates to the bone's while nothing moves.
    QXMatrix4d m_matToBone;
    std::vector<QXBoneKey> m_arrKeys;
  };

  /// From the bone to its parent at the present time.
  QXMatrix4d FindMatrix(Bone const& bone) const;
  void FindLength();
  void GrowLength(Bone const& bone);
  void Change();

  QdcUnicodeString m_strName;
  std::vector<Bone> m_arrBones;
  /// From each bone to model coordinates; kept between frames, so that none allocates.
  std::vector<QXMatrix4d> m_arrPlaces;
  std::vector<QXMatrix4d> m_arrMoves;
  std::vector<QXOgreDrawable*> m_arrDrawables;
  /// Times of the first key and of the last one; the first is the later one while there are none.
  double m_dFirst;
  double m_dLast;
  /// Since the first key.
  double m_dTime;
  unsigned char m_bLoop;
  unsigned char m_bPlaying;
  bool m_bMovesValid;
};

}  // namespace QXC
