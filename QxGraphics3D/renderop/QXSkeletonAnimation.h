/// @file
/// Bones and key frames that move the vertices of drawables.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXAnimationKey.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>

namespace QXC {

/// A skeleton with one sequence of key frames a bone. Made by QXRenderOperationManager::CreateSkeletonAnimation,
/// deleted by the host after the drawables that use it. Time is moved by Advance only.
/// Vertices:  a drawable's model coordinates are those of the roots' parent. Two sets of its texture coordinates, with
///            four numbers each, say what moves a vertex: set BONE_SET has up to four bones by number, set WEIGHT_SET
///            how much each counts. Weights need not have the sum 1; what is not above 0, or has a number that no bone
///            has, does not count, and a vertex for which nothing counts stays at rest, as do all of a drawable without
///            the two sets.
/// Threads: the render thread, outside a frame.
class QXGRAPHICS3D_API QXSkeletonAnimation {
public:
  static constexpr unsigned int BONE_SET = 6;
  static constexpr unsigned int WEIGHT_SET = 7;

  QXSkeletonAnimation();
  QXSkeletonAnimation(QXSkeletonAnimation const& other);
  QXSkeletonAnimation& operator=(QXSkeletonAnimation const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXSkeletonAnimation();

  virtual QdcUnicodeString const& GetName() const = 0;
  /// Adds a bone.
  /// @param nParent  number of an earlier bone, -1 for a root
  /// @param matRest  from the bone to its parent while nothing moves
  /// @return  number of the bone, from 0; -1 with no effect for another parent
  virtual int AddBone(QdcUnicodeString const& strName, int nParent, QXMatrix4d const& matRest) = 0;
  virtual int GetBoneCount() const = 0;
  /// Key frames of one bone in the order of their times, copied; 0 with no effect if the bone does not exist. Renderers
  /// take keys of the kind QXBoneKey; between two of them the bone moves evenly and turns the shorter way, before the
  /// first and after the last it stands still. None: it has its matrix at rest.
  virtual unsigned char SetKeys(int nBone, QdcArray<QXAnimationKey*> const& arrKeys) = 0;
  /// Seconds from the first key to the last.
  virtual double GetLength() const = 0;
  /// 1: begins again at its end, 0: stops there (the default).
  virtual void SetLoop(unsigned char bLoop) = 0;
  /// 1: Advance moves it, 0: it stands still (the default).
  virtual void SetPlaying(unsigned char bPlaying) = 0;
  /// Moves to a time in seconds, cut to the length.
  virtual void SetTime(double dSeconds) = 0;
  virtual double GetTime() const = 0;
  /// Lets the time pass, in seconds. Once a frame, before the targets are updated.
  virtual void Advance(double dSeconds) = 0;
};

}  // namespace QXC
