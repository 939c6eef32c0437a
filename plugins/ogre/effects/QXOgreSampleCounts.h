/// @file
/// Counters of visible samples.
#pragma once

#include <memory>
#include <vector>

#include <OgrePrerequisites.h>

namespace QXC {

/// How many samples the drawing of one viewport left visible, divided by those of a pixel and rounded up.
class QXOgreSampleCount final {
public:
  /// Whether GetPixels answers without waiting.
  bool IsReady();
  /// Waits for the device if it must.
  unsigned int GetPixels();

private:
  friend class QXOgreSampleCounts;
  void Read();

  Ogre::RenderSystem* m_pRenderSystem = nullptr;
  Ogre::RenderTarget* m_pTarget = nullptr;
  /// OpenGL's number; 0 once the target has gone.
  unsigned int m_nQuery = 0;
  unsigned int m_nSamples = 1;
  unsigned int m_nPixels = 0;
  bool m_bRead = false;
};

/// The counters of one target. Each window has a context of its own, and OpenGL keeps its counters in the context that
/// made them: they can neither be asked nor be deleted in another one. OGRE's own queries only tell whether anything is
/// visible at all.
class QXOgreSampleCounts final {
public:
  /// Both must outlive this object.
  QXOgreSampleCounts(Ogre::RenderSystem& renderSystem, Ogre::RenderTarget& target);
  /// Reads what somebody still waits for.
  ~QXOgreSampleCounts();
  QXOgreSampleCounts(QXOgreSampleCounts const&) = delete;
  QXOgreSampleCounts& operator=(QXOgreSampleCounts const&) = delete;

  /// Counts what is drawn into the target's viewport until End; nothing else may be counted meanwhile. Throws as
  /// QXOgreOpenGL::Get does. Allocates only while more counters are held than ever before. Cost: linear in those that were ever held.
  std::shared_ptr<QXOgreSampleCount> Begin(Ogre::Viewport& viewport);
  static void End();

private:
  std::shared_ptr<QXOgreSampleCount> const& FindFree();

  Ogre::RenderSystem& m_RenderSystem;
  Ogre::RenderTarget& m_Target;
  /// Those that nobody else holds are free.
  std::vector<std::shared_ptr<QXOgreSampleCount>> m_arrCounts;
};

}  // namespace QXC
