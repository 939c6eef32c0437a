#include <cstdlib>

#include <tests/ogre/QXOgreScenery.h>

// Behind the library's own headers: X11's defines plain words as macros.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace QXC {

namespace {

/// A virtual display starts anew, and refuses connections for that while, when its last one is closed: as it is
/// whenever a test ends its renderer. So one stays open.
class QXOpenDisplay final : public testing::Environment {
public:
  void SetUp() override { m_pDisplay = XOpenDisplay(nullptr); }
  void TearDown() override {
    if (m_pDisplay) XCloseDisplay(m_pDisplay);
  }

private:
  Display* m_pDisplay = nullptr;
};
testing::Environment* const s_pOpenDisplay = testing::AddGlobalTestEnvironment(new QXOpenDisplay);

/// X11 numbers its windows; hosts hand the number over as the handle.
HWND ToHandle(Window nWindow) {
  return reinterpret_cast<HWND>(nWindow);  // NOLINT(performance-no-int-to-ptr)
}

/// A window as a host's toolkit would make it, with a connection of its own.
class QXHostWindow {
public:
  QXHostWindow(unsigned int nWidth, unsigned int nHeight) : m_pDisplay(XOpenDisplay(nullptr)) {
    m_nWindow = XCreateSimpleWindow(m_pDisplay, DefaultRootWindow(m_pDisplay), 0, 0, nWidth, nHeight, 0, 0, 0);
    XMapWindow(m_pDisplay, m_nWindow);
    XSync(m_pDisplay, 0);
  }
  ~QXHostWindow() {
    XDestroyWindow(m_pDisplay, m_nWindow);
    XCloseDisplay(m_pDisplay);
  }
  QXHostWindow(QXHostWindow const&) = delete;
  QXHostWindow& operator=(QXHostWindow const&) = delete;
  HWND GetHandle() const { return ToHandle(m_nWindow); }
  /// Colour of a pixel as the window shows it.
  QXPixel Shown(int x, int y) {
    XSync(m_pDisplay, 0);
    XImage* const pImage = XGetImage(m_pDisplay, m_nWindow, x, y, 1, 1, AllPlanes, ZPixmap);
    if (!pImage) return {-1, -1, -1, -1};
    unsigned long const nPixel = XGetPixel(pImage, 0, 0);
    XDestroyImage(pImage);
    return {static_cast<int>(nPixel >> 16 & 0xFF), static_cast<int>(nPixel >> 8 & 0xFF),
        static_cast<int>(nPixel & 0xFF), 255};
  }

private:
  Display* m_pDisplay;
  Window m_nWindow;
};

}  // namespace

class QXOgreRenderWindow : public QXOgreScenery {
protected:
  QXRenderTarget* MakeWindow(wchar_t const* szName, HWND hWindow, unsigned int nWidth, unsigned int nHeight) {
    QXRenderTarget* const pWindow = m_pGraphics3D->CreateRenderWindow(szName, hWindow, nWidth, nHeight, 0);
    EXPECT_NE(pWindow, nullptr) << Text(m_pGraphics3D->GetErrorText());
    if (!pWindow) return nullptr;
    m_pGraphics3D->AttachRenderTarget(pWindow);
    pWindow->SetActive(1);
    pWindow->SetSunLightEnable(0);
    AddViewport(*pWindow, *m_pCamera, 0, 0.0, 0.0, 1.0, 1.0);
    return pWindow;
  }
};

TEST_F(QXOgreRenderWindow, AWindowOfItsOwnIsReadUntilItIsShown) {
  QXRenderTarget* const pWindow = MakeWindow(L"window", nullptr, 64, 64);
  ASSERT_NE(pWindow, nullptr);
  EXPECT_EQ(pWindow->IsTextureTarget(), 0);
  EXPECT_EQ(pWindow->GetWidth(), 64U);
  DrawSquare(0.0F, 0.0F, 1.0F, 1.0F, 0.0F, RED);
  QXPicture const before = Frame(pWindow);
  EXPECT_EQ(before.At(48, 16), RED_PIXEL);
  EXPECT_EQ(before.At(16, 48), BACKGROUND_PIXEL);
  pWindow->SwapBuffers(0);
  std::vector<unsigned char> arrBytes(64 * 64 * 4, 0xAB);
  EXPECT_EQ(pWindow->CopyToMemory(arrBytes.data(), 64 * 64 * 4), 0);
  EXPECT_EQ(arrBytes, std::vector<unsigned char>(64 * 64 * 4, 0xAB));
  EXPECT_NE(Text(m_pGraphics3D->GetErrorText()).find("before SwapBuffers"), std::string::npos);
  EXPECT_EQ(Frame(pWindow).At(48, 16), RED_PIXEL);
}

TEST_F(QXOgreRenderWindow, AWindowOfTheHostShowsThePicture) {
  QXHostWindow host(80, 60);
  QXRenderTarget* const pWindow = MakeWindow(L"window", host.GetHandle(), 80, 60);
  ASSERT_NE(pWindow, nullptr);
  EXPECT_EQ(pWindow->GetWindow(), host.GetHandle());
  DrawSquare(0.0F, 0.0F, 1.0F, 1.0F, 0.0F, RED);
  EXPECT_EQ(Frame(pWindow).At(60, 15), RED_PIXEL);
  m_pGraphics3D->SwapAllRenderTargetBuffers(0);
  EXPECT_EQ(host.Shown(60, 15), RED_PIXEL);
  EXPECT_EQ(host.Shown(20, 45), BACKGROUND_PIXEL);
  m_pGraphics3D->DeleteRenderTarget(pWindow);
  // The host's window is still the host's.
  EXPECT_NE(host.Shown(60, 15).r, -1);
}

TEST_F(QXOgreRenderWindow, AWindowFollowsItsNewSize) {
  QXHostWindow host(200, 200);
  QXRenderTarget* const pWindow = MakeWindow(L"window", host.GetHandle(), 80, 60);
  ASSERT_NE(pWindow, nullptr);
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  Frame(pWindow);
  pWindow->ReSize(120, 100);
  EXPECT_EQ(pWindow->GetViewport(0)->GetActualWidth(), 120);
  QXPicture const picture = Frame(pWindow);
  EXPECT_EQ(picture.At(0, 0), RED_PIXEL);
  EXPECT_EQ(picture.At(119, 99), RED_PIXEL);
}

TEST_F(QXOgreRenderWindow, AWindowTakesSeveralSamplesAndStillDraws) {
  QXHostWindow host(64, 64);
  for (HWND hWindow : {HWND{}, host.GetHandle()}) {
    QXRenderTarget* const pWindow = MakeWindow(hWindow ? L"child" : L"own", hWindow, 64, 64);
    ASSERT_NE(pWindow, nullptr);
    QXRenderOperation3D* const pOperation = DrawSquare(0.0F, 0.0F, 1.0F, 1.0F, 0.0F, RED);
    EXPECT_EQ(pWindow->GetSceneAntialias(), 0);
    pWindow->SetSceneAntialias(1);
    EXPECT_EQ(pWindow->GetSceneAntialiasValue(), 4);
    EXPECT_EQ(Frame(pWindow).At(48, 16), RED_PIXEL);
    pWindow->SwapBuffers(0);
    pWindow->SetSceneAntialias(0);
    EXPECT_EQ(Frame(pWindow).At(16, 48), BACKGROUND_PIXEL);
    pOperation->SetVisible(0);
  }
}

TEST_F(QXOgreRenderWindow, AHandleThatIsNoWindowIsRefused) {
  QXRenderTarget* const pWindow = m_pGraphics3D->CreateRenderWindow(L"window", ToHandle(12345), 64, 64, 0);
  EXPECT_EQ(pWindow, nullptr);
  std::string const strError = Text(m_pGraphics3D->GetErrorText());
  EXPECT_FALSE(strError.empty());
  EXPECT_EQ(strError.find('\n'), std::string::npos);
  // And the renderer still runs.
  DrawSquare(-1.0F, -1.0F, 1.0F, 1.0F, 0.0F, RED);
  EXPECT_EQ(Frame().At(32, 32), RED_PIXEL);
}

TEST_F(QXOgreRenderWindow, ImpossibleSizesAreRefused) {
  EXPECT_EQ(m_pGraphics3D->CreateRenderWindow(L"window", nullptr, 0, 64, 0), nullptr);
  EXPECT_EQ(m_pGraphics3D->CreateRenderWindow(L"window", nullptr, 64, 70000, 0), nullptr);
}

TEST_F(QXOgreRenderWindow, WindowsAndTexturesShareTheSceneAndCloseInAnyOrder) {
  DrawSquare(0.0F, 0.0F, 1.0F, 1.0F, 0.0F, RED);
  QXRenderTarget* const pFirst = MakeWindow(L"first", nullptr, 64, 64);
  QXRenderTarget* const pSecond = MakeWindow(L"second", nullptr, 32, 32);
  ASSERT_TRUE(pFirst && pSecond);
  Frame();
  EXPECT_EQ(QXPicture(*pFirst).At(48, 16), RED_PIXEL);
  EXPECT_EQ(QXPicture(*pSecond).At(24, 8), RED_PIXEL);
  EXPECT_EQ(QXPicture(*m_pTarget).At(48, 16), RED_PIXEL);
  m_pGraphics3D->DeleteRenderTarget(pFirst);
  Frame();
  EXPECT_EQ(QXPicture(*pSecond).At(24, 8), RED_PIXEL);
  // What was made while only the hidden window was there is seen in new ones too.
  QXRenderTarget* const pThird = MakeWindow(L"third", nullptr, 64, 64);
  m_pGraphics3D->DeleteRenderTarget(pSecond);
  EXPECT_EQ(Frame(pThird).At(48, 16), RED_PIXEL);
  EXPECT_EQ(QXPicture(*m_pTarget).At(16, 48), BACKGROUND_PIXEL);
}

TEST_F(QXOgreRenderWindow, TheNativeWindowIsAnAttribute) {
  QXRenderTarget* const pWindow = MakeWindow(L"window", nullptr, 64, 64);
  ASSERT_NE(pWindow, nullptr);
  unsigned long nWindow = 0;
  pWindow->GetCustomAttribute(L"WINDOW", &nWindow);
  EXPECT_NE(nWindow, 0UL);
  unsigned long nOther = 7;
  pWindow->GetCustomAttribute(L"no such thing", &nOther);
  pWindow->GetCustomAttribute(L"WINDOW", nullptr);
  EXPECT_EQ(nOther, 7UL);
}

}  // namespace QXC
