/// @file
/// Key of an animation.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>

namespace QXC {

class QXStream;

/// What all kinds of animation keys share: they can be stored. A kind derives from it and adds its time and values;
/// QXSkeletonAnimation::SetKeys takes them by pointer.
/// Copies are member by member.
class QXGRAPHICS3D_API QXAnimationKey {
public:
  QXAnimationKey();
  QXAnimationKey(QXAnimationKey const& other);
  QXAnimationKey& operator=(QXAnimationKey const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXAnimationKey();
  /// Reads what Save of the same kind wrote, from where the stream stands. This class has no fields: it reads nothing.
  /// @return  0 if the stream ended early or held no key; 1 here
  virtual unsigned char Load(QXStream& stream);
  /// Writes the fields at the end of the stream; this class writes nothing.
  virtual void Save(QXStream& stream);
};

}  // namespace QXC

// The two arrays are handed across the library's edge by plug-ins, which share these instantiations.
extern template class QXGRAPHICS3D_API QDC::QdcArray<QXC::QXAnimationKey>;
extern template class QXGRAPHICS3D_API QDC::QdcArray<QXC::QXAnimationKey*>;
