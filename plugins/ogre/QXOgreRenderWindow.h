/// @file
/// A window to draw into.
#pragma once

#include <plugins/ogre/QXOgreRenderTarget.h>

namespace QXC {

/// A window of the plug-in's own, or the inside of one of the host's. Its picture can be read until it is shown.
class QXOgreRenderWindow final : public QXOgreRenderTarget {
public:
  /// Throws what OGRE throws.
  /// @param hWindow  the host's X11 window as a number in a pointer; null: a window of its own
  QXOgreRenderWindow(QXOgreGraphics3D& graphics3D, QdcUnicodeString const& strName, HWND hWindow, unsigned int nWidth,
      unsigned int nHeight, unsigned char bFullScreen);
  ~QXOgreRenderWindow() override;

  unsigned char IsTextureTarget() const override { return 0; }
  /// "WINDOW": the X11 window's number, an unsigned long.
  void GetCustomAttribute(QdcUnicodeString const& strName, void* pData) override;

protected:
  void ReleaseDevice() override;
  void ResizeDevice(unsigned int nWidth, unsigned int nHeight) override;
  void MakeDevice(unsigned int nWidth, unsigned int nHeight, int nSamples) override;
  void FinishPicture() override;
  void ShowPicture(unsigned char bWaitForVerticalBlank) override;
  void ReadPicture(unsigned int nLeft, unsigned int nTop, unsigned int nWidth, unsigned int nHeight,
      unsigned char* pPixels) override;

private:
  Ogre::RenderWindow* m_pOgreWindow;
  bool m_bFullScreen;
  /// There is no finished picture in the back buffer: none was drawn, or it was swapped to the front.
  bool m_bShown;
};

}  // namespace QXC
