#include <apps/qx3d/QXWindow.h>

#include <SDL.h>
#include <SDL_syswm.h>

#include <cstdlib>

namespace QXApp {

namespace {

void ReadMotion(SDL_MouseMotionEvent const& motion, QXInput& input) {
  bool const bShift = (SDL_GetModState() & KMOD_SHIFT) != 0;
  bool const bLeft = (motion.state & SDL_BUTTON_LMASK) != 0;
  bool const bOther = (motion.state & (SDL_BUTTON_RMASK | SDL_BUTTON_MMASK)) != 0;
  if (bOther || (bLeft && bShift)) {
    input.m_dPanX += motion.xrel;
    input.m_dPanY += motion.yrel;
  } else if (bLeft) {
    input.m_dOrbitX += motion.xrel;
    input.m_dOrbitY += motion.yrel;
  }
}

void ReadKey(SDL_Keycode nKey, QXInput& input) {
  if (nKey == SDLK_ESCAPE || nKey == SDLK_q) input.m_bQuit = true;
  if (nKey == SDLK_HOME) input.m_bHome = true;
  if (nKey == SDLK_PLUS || nKey == SDLK_KP_PLUS || nKey == SDLK_EQUALS) input.m_dZoom += 1.0;
  if (nKey == SDLK_MINUS || nKey == SDLK_KP_MINUS) input.m_dZoom -= 1.0;
}

void ReadEvent(SDL_Event const& event, QXInput& input) {
  switch (event.type) {
  case SDL_QUIT: input.m_bQuit = true; break;
  case SDL_KEYDOWN: ReadKey(event.key.keysym.sym, input); break;
  case SDL_MOUSEMOTION: ReadMotion(event.motion, input); break;
  case SDL_MOUSEWHEEL: input.m_dZoom += event.wheel.y; break;
  case SDL_WINDOWEVENT:
    if (event.window.event == SDL_WINDOWEVENT_SIZE_CHANGED) input.m_bResized = true;
    break;
  default: break;
  }
}

}  // namespace

QXWindow::~QXWindow() {
  if (m_pWindow != nullptr) SDL_DestroyWindow(m_pWindow);
  if (m_bStarted) SDL_Quit();
}

std::string QXWindow::Open(std::string const& strTitle, int nWidth, int nHeight) {
  // Renderers take the handle of an X window; on other desktops the X server beside them gives one.
  SDL_SetHint(SDL_HINT_VIDEODRIVER, "x11");
  // Ctrl-C stays what it is: the end of the program.
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) return "there is no display to open a window on; write a picture with --out FILE";
  m_bStarted = true;
  m_pWindow = SDL_CreateWindow(strTitle.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, nWidth, nHeight,
      SDL_WINDOW_RESIZABLE | SDL_WINDOW_SHOWN);
  if (m_pWindow == nullptr) return std::string("no window can be opened: ") + SDL_GetError();
  SDL_SysWMinfo info;
  SDL_VERSION(&info.version);
  if (SDL_GetWindowWMInfo(m_pWindow, &info) != SDL_TRUE || info.subsystem != SDL_SYSWM_X11)
    return "the window has no handle that a renderer takes; write a picture with --out FILE";
  m_hWindow = reinterpret_cast<HWND>(info.info.x11.window);
  return std::string();
}

void QXWindow::GetSize(int& nWidth, int& nHeight) const {
  SDL_GetWindowSize(m_pWindow, &nWidth, &nHeight);
}

void QXWindow::FollowButton(int nX, int nY, bool bDown, QXInput& input) {
  // A hand is not quite still.
  constexpr int Slack = 3;
  if (bDown) {
    m_nDownX = nX;
    m_nDownY = nY;
  } else if (m_bDown && std::abs(nX - m_nDownX) <= Slack && std::abs(nY - m_nDownY) <= Slack) {
    input.m_bClick = true;
    input.m_nClickX = m_nDownX;
    input.m_nClickY = m_nDownY;
  }
  m_bDown = bDown;
}

QXInput QXWindow::ReadInput(int nMilliseconds) {
  QXInput input;
  SDL_Event event;
  if (SDL_WaitEventTimeout(&event, nMilliseconds) != 0) {
    do {
      ReadEvent(event, input);
      bool const bButton = event.type == SDL_MOUSEBUTTONDOWN || event.type == SDL_MOUSEBUTTONUP;
      if (bButton && event.button.button == SDL_BUTTON_LEFT)
        FollowButton(event.button.x, event.button.y, event.type == SDL_MOUSEBUTTONDOWN, input);
    } while (SDL_PollEvent(&event) != 0);
  }
  SDL_GetMouseState(&input.m_nMouseX, &input.m_nMouseY);
  return input;
}

}  // namespace QXApp
