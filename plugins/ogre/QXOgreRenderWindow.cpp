#include <plugins/ogre/QXOgreRenderWindow.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include <OgreRenderSystem.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreGraphics3D.h>

namespace QXC {

QXOgreRenderWindow::QXOgreRenderWindow(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName, HWND hWindow,
    unsigned int nWidth, unsigned int nHeight, unsigned char bFullScreen)
    : QXOgreRenderTarget(graphics3D, strName, QdcUnicodeString(), nWidth, nHeight), m_pOgreWindow(nullptr),
      m_bFullScreen(bFullScreen != 0 && !hWindow), m_bShown(true) {
  m_hWindow = hWindow;
  MakeDevice(nWidth, nHeight, 1);
}

void QXOgreRenderWindow::MakeDevice(unsigned int nWidth, unsigned int nHeight, int nSamples) {
  Ogre::NameValuePairList options;
  options["title"] = ToUtf8(m_strName);
  options["vsync"] = "false";
  options["FSAA"] = std::to_string(nSamples > 1 ? nSamples : 0);
  // A child window of OGRE's own inside the host's: the host's need not have a visual that OGRE can draw with, and
  // keeps its events, since those that a child does not ask for travel up to it.
  if (m_hWindow) options["parentWindowHandle"] = std::to_string(reinterpret_cast<std::uintptr_t>(m_hWindow));
  Ogre::RenderWindow* const pWindow = GetRenderer()->GetDevice()->GetRoot().createRenderWindow(
      QXOgreDevice::MakeName("window"), nWidth, nHeight, m_bFullScreen, &options);
  ReleaseDevice();
  m_pOgreWindow = pWindow;
  m_bShown = true;
  SetOgreTarget(m_pOgreWindow);
}

QXOgreRenderWindow::~QXOgreRenderWindow() {
  ReleaseDevice();
}

void QXOgreRenderWindow::GetCustomAttribute(QdcUnicodeString const& strName, void* pData) {
  if (!m_pOgreWindow || !pData) return;
  GetRenderer()->Try([&] { m_pOgreWindow->getCustomAttribute(ToUtf8(strName), pData); });
}

void QXOgreRenderWindow::ReleaseDevice() {
  if (!m_pOgreWindow) return;
  SetOgreTarget(nullptr);
  GetRenderer()->GetDevice()->GetRenderSystem().destroyRenderWindow(m_pOgreWindow->getName());
  m_pOgreWindow = nullptr;
}

void QXOgreRenderWindow::ResizeDevice(unsigned int nWidth, unsigned int nHeight) {
  if (!m_pOgreWindow) return;
  m_pOgreWindow->resize(nWidth, nHeight);
  // The buffer that is drawn into takes its new size only with the next swap.
  m_pOgreWindow->swapBuffers();
  m_bShown = true;
}

void QXOgreRenderWindow::FinishPicture() {
  m_bShown = false;
}

void QXOgreRenderWindow::ShowPicture(unsigned char bWaitForVerticalBlank) {
  if (m_pOgreWindow->isVSyncEnabled() != (bWaitForVerticalBlank != 0))
    m_pOgreWindow->setVSyncEnabled(bWaitForVerticalBlank != 0);
  m_pOgreWindow->swapBuffers();
  m_bShown = true;
}

void QXOgreRenderWindow::ReadPicture(
    unsigned int nLeft, unsigned int nTop, unsigned int nWidth, unsigned int nHeight, unsigned char* pPixels) {
  // What is in front cannot be read everywhere: software rasterisers keep no copy of it.
  if (m_bShown)
    throw std::runtime_error("the picture of a window is gone once it is shown: read it before SwapBuffers");
  Ogre::PixelBox const pixels(nWidth, nHeight, 1, Ogre::PF_A8R8G8B8, pPixels);
  m_pOgreWindow->copyContentsToMemory(
      Ogre::Box(nLeft, nTop, nLeft + nWidth, nTop + nHeight), pixels, Ogre::RenderTarget::FB_BACK);
}

}  // namespace QXC
