#include <tests/ogre/QXOgreScenery.h>

namespace QXC {

TEST(QXOgreNoDisplay, InitializeFailsWithOneLineAndMoreThanOnce) {
  for (int i = 0; i < 2; ++i) {
    QXOgrePtr const pGraphics3D = MakeRenderer();
    EXPECT_EQ(pGraphics3D->Initialize(L""), 0);
    EXPECT_EQ(pGraphics3D->IsInitialized(), 0);
    std::string const strError = Text(pGraphics3D->GetErrorText());
    EXPECT_NE(strError.find("isplay"), std::string::npos) << strError;
    EXPECT_EQ(strError.find('\n'), std::string::npos) << strError;
  }
}

}  // namespace QXC
