/// @file
/// The program's window and what a person does in it.
#pragma once

#include <QxGraphics3D/Platform.h>

#include <string>

struct SDL_Window;

namespace QXApp {

/// What happened since the last look.
struct QXInput {
  bool m_bQuit = false;
  bool m_bHome = false;
  bool m_bResized = false;
  /// Pixels of drags, right and down.
  double m_dOrbitX = 0.0;
  double m_dOrbitY = 0.0;
  double m_dPanX = 0.0;
  double m_dPanY = 0.0;
  /// Notches of the wheel, away from the person.
  double m_dZoom = 0.0;
  /// The left button went down and up again on the spot, here.
  bool m_bClick = false;
  int m_nClickX = 0;
  int m_nClickY = 0;
  /// Where the mouse is, pixels from the upper left corner: the view that drags and wheel mean.
  int m_nMouseX = 0;
  int m_nMouseY = 0;
};

/// A window whose native handle a renderer draws into. Only one at a time.
class QXWindow {
public:
  QXWindow() = default;
  QXWindow(QXWindow const&) = delete;
  QXWindow& operator=(QXWindow const&) = delete;
  ~QXWindow();

  /// @return  empty, or the reason
  std::string Open(std::string const& strTitle, int nWidth, int nHeight);
  /// The window system's own handle, as renderers take it.
  HWND GetNativeHandle() const { return m_hWindow; }
  void GetSize(int& nWidth, int& nHeight) const;
  /// Waits up to a time for something to happen, and gathers all of it.
  QXInput ReadInput(int nMilliseconds);

private:
  void FollowButton(int nX, int nY, bool bDown, QXInput& input);

  SDL_Window* m_pWindow = nullptr;
  HWND m_hWindow = nullptr;
  /// Where the left button went down, and whether it still is.
  int m_nDownX = 0;
  int m_nDownY = 0;
  bool m_bDown = false;
  bool m_bStarted = false;
};

}  // namespace QXApp
