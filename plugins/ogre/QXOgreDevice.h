/// @file
/// OGRE's root with its render system, without configuration files.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_set>
#include <utility>
#include <vector>

#include <OgrePixelFormat.h>
#include <OgrePrerequisites.h>

#include <plugins/ogre/QXOgreLog.h>

namespace QXC {

class QXOgreDrawable;
class QXOgreImage;
class QXOgreMaterials;
class QXOgreScene;
class QXOgreSceneFactory;
class QXOgreTextureUnits;

/// One running OGRE: log, root, render system, and a hidden window whose context all targets share. OGRE keeps its root
/// in a process-wide singleton, so there is one device at a time; a new one may start after the old one has gone.
/// At its end it takes everything off the GPU that drawables still hold there, then releases materials, root and log, in
/// the only order that OGRE survives. Render targets and images must be gone before.
class QXOgreDevice final {
public:
  /// Starts the device.
  /// @param strMediaFolder  looked into first for the render system module; may be empty
  /// @param strError        why null came back, one line: no display, no render system module, a device in use
  static std::unique_ptr<QXOgreDevice> Start(std::string const& strMediaFolder, std::string& strError);
  ~QXOgreDevice();
  QXOgreDevice(QXOgreDevice const&) = delete;
  QXOgreDevice& operator=(QXOgreDevice const&) = delete;

  Ogre::Root& GetRoot() { return *m_pRoot; }
  Ogre::RenderSystem& GetRenderSystem() { return *m_pRenderSystem; }
  QXOgreMaterials& GetMaterials() { return *m_pMaterials; }
  QXOgreTextureUnits& GetTextureUnits() { return *m_pTextureUnits; }
  QXOgreLog& GetLog() { return m_Log; }
  /// Edge length of the largest target that the device makes, pixels.
  unsigned int GetMaxTargetSize() const { return m_nMaxTargetSize; }

  /// Which frame is being drawn, counted from 1.
  unsigned long long GetFrame() const { return m_nFrame; }
  /// Called before a target draws.
  void BeginFrame();
  /// Tells the drawables that the texture units read other coordinates.
  void UpdateCoordSets();

  /// What is shown in place of a texture that is not there: it leaves every colour as it is.
  QXOgreImage const& GetWhiteImage() const { return *m_pWhiteImage; }
  /// Whether textures of such blocks can be made.
  bool TakesBlocks(Ogre::PixelFormat eFormat) const;
  /// Deletes an image's texture, which has nByteCount bytes; for another thread than the device's with the next frame,
  /// since OpenGL listens to its own thread alone.
  void Discard(Ogre::TexturePtr const& pTexture, std::size_t nByteCount);
  /// Counts bytes of textures in QXTextureMemory.
  static void CountMemory(std::size_t nByteCount);

  /// Makes an empty scene; it belongs to the device until DestroyScene.
  QXOgreScene* CreateScene();
  /// The drawables in it stay, in no scene.
  void DestroyScene(QXOgreScene* pScene);

  /// Called by the drawables themselves.
  void AddDrawable(QXOgreDrawable* pDrawable) { m_setDrawables.insert(pDrawable); }
  void RemoveDrawable(QXOgreDrawable* pDrawable) { m_setDrawables.erase(pDrawable); }

  /// A name that no object of the process has had: OGRE throws at the second use of one.
  static std::string MakeName(std::string_view strKind);

private:
  QXOgreDevice();
  void Open(std::string const& strMediaFolder);
  void LoadRenderSystem(std::string const& strMediaFolder);
  void OpenHiddenWindow();
  void MakeWhiteImage();
  void DeleteDiscarded();

  // Declared in the order of creation; destroyed in the reverse one.
  QXOgreLog m_Log;
  std::unique_ptr<Ogre::LogManager> m_pLogManager;
  std::unique_ptr<Ogre::Root> m_pRoot;
  std::unique_ptr<QXOgreSceneFactory> m_pSceneFactory;
  std::unique_ptr<QXOgreMaterials> m_pMaterials;
  std::unique_ptr<QXOgreTextureUnits> m_pTextureUnits;
  std::unique_ptr<QXOgreImage> m_pWhiteImage;
  std::unordered_set<QXOgreDrawable*> m_setDrawables;
  Ogre::RenderSystem* m_pRenderSystem;
  unsigned int m_nMaxTargetSize;
  unsigned long long m_nFrame;
  std::thread::id m_ThreadID;
  std::mutex m_DiscardedMutex;
  std::vector<std::pair<Ogre::TexturePtr, std::size_t>> m_arrDiscarded;
};

}  // namespace QXC
