#include <plugins/ogre/QXOgreDevice.h>

#include <atomic>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include <dlfcn.h>

#include <OgreException.h>
#include <OgreLogManager.h>
#include <OgreRenderSystem.h>
#include <OgreRenderSystemCapabilities.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>
#include <OgreTextureManager.h>

#include <QxGraphics3D/texture/QXTextureMemory.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/QXOgreImage.h>
#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/QXOgreOpenGL.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/QXOgreTextureUnits.h>

namespace QXC {

namespace {

/// Folders that may hold OGRE's own plug-ins, best first. The one found when this module was built may be missing on
/// the machine that runs it, but they always stand in a folder OGRE beside the library itself.
std::vector<std::filesystem::path> PluginFolders(std::string const& strMediaFolder) {
  std::vector<std::filesystem::path> folders;
  if (!strMediaFolder.empty()) folders.emplace_back(strMediaFolder);
  Dl_info info{};
  // A symbol of OGRE's library, whose path dladdr then tells.
  if (dladdr(reinterpret_cast<void*>(&Ogre::Root::getSingletonPtr), &info) != 0 && info.dli_fname)
    folders.push_back(std::filesystem::path(info.dli_fname).parent_path() / "OGRE");
  folders.emplace_back(QX_OGRE_PLUGIN_DIR);
  return folders;
}

/// The render system module: under its plain name where development files are installed, else with its version.
std::string FindRenderSystem(std::string const& strMediaFolder) {
  std::string strLooked;
  for (auto const& folder : PluginFolders(strMediaFolder)) {
    for (char const* szName : {"RenderSystem_GL3Plus.so", "RenderSystem_GL3Plus.so." QX_OGRE_VERSION}) {
      std::error_code error;
      if (std::filesystem::is_regular_file(folder / szName, error)) return (folder / szName).string();
    }
    strLooked += (strLooked.empty() ? "" : ", ") + folder.string();
  }
  throw std::runtime_error("RenderSystem_GL3Plus.so was not found in " + strLooked + ": install libogre1.12.10");
}

}  // namespace

QXOgreDevice::QXOgreDevice()
    : m_pRenderSystem(nullptr), m_nMaxTargetSize(0), m_nFrame(0), m_ThreadID(std::this_thread::get_id()) {}

QXOgreDevice::~QXOgreDevice() {
  for (QXOgreDrawable* const pDrawable : m_setDrawables) pDrawable->LeaveDevice();
  m_pMaterials.reset();
  m_pTextureUnits.reset();
  m_pWhiteImage.reset();
  DeleteDiscarded();
  m_pRoot.reset();
  m_pSceneFactory.reset();
  m_pLogManager.reset();
}

std::unique_ptr<QXOgreDevice> QXOgreDevice::Start(std::string const& strMediaFolder, std::string& strError) {
  if (Ogre::Root::getSingletonPtr() != nullptr) {
    strError = "OGRE is already in use in this process: destroy the other renderer first";
    return nullptr;
  }
  std::unique_ptr<QXOgreDevice> pDevice(new QXOgreDevice);
  try {
    pDevice->Open(strMediaFolder);
    return pDevice;
  } catch (Ogre::Exception const& exception) {
    strError = "OGRE cannot start: " + OneLine(exception.getDescription());
  } catch (std::exception const& exception) {
    strError = std::string("OGRE cannot start: ") + exception.what();
  }
  return nullptr;
}

void QXOgreDevice::Open(std::string const& strMediaFolder) {
  m_pLogManager = std::make_unique<Ogre::LogManager>();
  // No file and no console: what matters of the log reaches the host as the text of a failed call.
  m_pLogManager->createLog("QxGraphics3D", true, false, true)->addListener(&m_Log);
  m_pRoot = std::make_unique<Ogre::Root>("", "", "");
  LoadRenderSystem(strMediaFolder);
  OpenHiddenWindow();
  m_nMaxTargetSize = static_cast<unsigned int>(QXOgreOpenGL::Get().GetMaxTargetSize());
  m_pSceneFactory = std::make_unique<QXOgreSceneFactory>(*this);
  m_pRoot->addSceneManagerFactory(m_pSceneFactory.get());
  m_pMaterials = std::make_unique<QXOgreMaterials>(m_Log);
  auto const& capabilities = *m_pRenderSystem->getCapabilities();
  bool const bAnisotropy = capabilities.hasCapability(Ogre::RSC_ANISOTROPY);
  m_pTextureUnits = std::make_unique<QXOgreTextureUnits>(
      bAnisotropy ? static_cast<unsigned int>(capabilities.getMaxSupportedAnisotropy()) : 1);
  MakeWhiteImage();
}

void QXOgreDevice::MakeWhiteImage() {
  static constexpr unsigned char WHITE[4] = {0xFF, 0xFF, 0xFF, 0xFF};
  QXOgrePixels pixels;
  pixels.m_eFormat = Ogre::PF_BYTE_BGRA;
  pixels.m_arrLevels.push_back({1, 1, WHITE});
  m_pWhiteImage = std::make_unique<QXOgreImage>(*this, pixels, false);
}

void QXOgreDevice::BeginFrame() {
  ++m_nFrame;
  DeleteDiscarded();
}

void QXOgreDevice::UpdateCoordSets() {
  for (QXOgreDrawable* const pDrawable : m_setDrawables) pDrawable->UpdateMaterials();
}

bool QXOgreDevice::TakesBlocks(Ogre::PixelFormat eFormat) const {
  Ogre::RenderSystemCapabilities const& capabilities = *m_pRenderSystem->getCapabilities();
  return capabilities.hasCapability(
      eFormat == Ogre::PF_BC7_UNORM ? Ogre::RSC_TEXTURE_COMPRESSION_BC6H_BC7 : Ogre::RSC_TEXTURE_COMPRESSION_DXT);
}

void QXOgreDevice::Discard(Ogre::TexturePtr const& pTexture, std::size_t nByteCount) {
  if (!pTexture) return;
  {
    std::scoped_lock const lock(m_DiscardedMutex);
    m_arrDiscarded.emplace_back(pTexture, nByteCount);
  }
  if (std::this_thread::get_id() == m_ThreadID) DeleteDiscarded();
}

void QXOgreDevice::DeleteDiscarded() {
  std::vector<std::pair<Ogre::TexturePtr, std::size_t>> arrDiscarded;
  {
    std::scoped_lock const lock(m_DiscardedMutex);
    arrDiscarded.swap(m_arrDiscarded);
  }
  for (auto const& [pTexture, nByteCount] : arrDiscarded) {
    Ogre::TextureManager::getSingleton().remove(pTexture);
    // A texture that the device takes has less than 2 GiB.
    QXTextureMemory::GetSingleton().DelMemory(static_cast<int>(nByteCount));
  }
}

void QXOgreDevice::CountMemory(std::size_t nByteCount) {
  QXTextureMemory::GetSingleton().AddMemory(static_cast<int>(nByteCount));
}

void QXOgreDevice::LoadRenderSystem(std::string const& strMediaFolder) {
  m_pRoot->loadPlugin(FindRenderSystem(strMediaFolder));
  auto const& renderers = m_pRoot->getAvailableRenderers();
  if (renderers.empty()) throw std::runtime_error("RenderSystem_GL3Plus.so offers no render system");
  m_pRenderSystem = renderers.front();
  m_pRoot->setRenderSystem(m_pRenderSystem);
  m_pRoot->initialise(false);
}

void QXOgreDevice::OpenHiddenWindow() {
  // The render system has no context before its first window, and that window must outlive every other target; so it is
  // one that nobody sees, and the host may open and close its own in any order.
  Ogre::NameValuePairList options;
  options["hidden"] = "true";
  options["FSAA"] = "0";
  options["vsync"] = "false";
  Ogre::RenderWindow* const pWindow = m_pRoot->createRenderWindow(MakeName("hidden"), 1, 1, false, &options);
  pWindow->setAutoUpdated(false);
}

QXOgreScene* QXOgreDevice::CreateScene() {
  return static_cast<QXOgreScene*>(m_pRoot->createSceneManager(QXOgreScene::TYPE_NAME, MakeName("scene")));
}

void QXOgreDevice::DestroyScene(QXOgreScene* pScene) {
  m_pRoot->destroySceneManager(pScene);
}

std::string QXOgreDevice::MakeName(std::string_view strKind) {
  static std::atomic<unsigned long long> s_nNext{0};
  return "Qx/" + std::string(strKind) + "/" + std::to_string(s_nNext++);
}

}  // namespace QXC
