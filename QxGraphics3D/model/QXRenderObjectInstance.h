/// @file
/// A mesh that many objects draw.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

class QXGraphics3D;
class QXRenderOperation3D;
class QXRenderOperationMultiIndex;
class QXTexture;

/// One mesh: geometry in memory at first, a drawable of the renderer from its first use on. Shared through
/// QXROInstancePtr.
///
/// Ownership: owns geometry and drawable. The textures are the renderer's; the host takes a reference for this object
///            on each texture of the geometry, and the destructor gives it back, one for each place of the list. A
///            texture that has left the renderer's texture manager meanwhile is left alone.
/// Copying:   shallow, pointers as pointers. Both copies free what they hold, so null the pointers of one and empty its
///            list before it goes; sharing is for QXROInstancePtr.
/// Threads:   the render thread. Failure: without a renderer there is no drawable.
class QXGRAPHICS3D_API QXRenderObjectInstance {
public:
  QXRenderObjectInstance();
  /// @param pROMultiIndex  taken over; its owned packages go with it. Its m_Bounds become those of the drawable, which
  ///                       cameras do not see with a null box
  /// @param pGraphics3D    the renderer that draws it, which must outlive this object
  QXRenderObjectInstance(QXRenderOperationMultiIndex* pROMultiIndex, QXGraphics3D* pGraphics3D);
  QXRenderObjectInstance(QXRenderObjectInstance const& other);
  QXRenderObjectInstance& operator=(QXRenderObjectInstance const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXRenderObjectInstance();

  /// The drawable, made now if there is none. Null without geometry or renderer. Stays this object's.
  QXRenderOperation3D* GetRenderOperation3D();
  /// Turns the geometry into a drawable in the renderer's 3D scene and deletes it; its textures are loaded where they
  /// are not on the device yet. In a package whose m_bFlag is 0 that is the first texture alone. Does nothing without
  /// geometry or renderer, so that a second call changes nothing.
  void Initialize();

  /// Owned; null until Initialize.
  QXRenderOperation3D* m_pRenderOperation3D = nullptr;
  /// Owned; null from Initialize on. A host that sets it anew calls Initialize itself, which replaces the drawable.
  QXRenderOperationMultiIndex* m_pROMultiIndex = nullptr;
  /// Textures of which the destructor gives a reference back; null places are passed over.
  QdcArray<QXTexture*> m_arrTextures;
  /// Not owned.
  QXGraphics3D* m_pGraphics3D = nullptr;

private:
  friend class QXROInstancePtr;

  void LoadTextures();
  void ReleaseTextures();

  /// The textures' names when they were loaded: who shares a texture may have it deleted before this object goes.
  QdcDict<QXTexture*, QdcUnicodeString> m_dictTextureNames;
  /// Counter of the pointers that hold the object, for one bound to its plain address. Null before the first.
  unsigned int* m_pUseCount = nullptr;
};

}  // namespace QXC
