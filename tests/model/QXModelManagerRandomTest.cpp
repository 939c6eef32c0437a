// Random sequences of everything that can be done with caches, models and their holders, against the plain reference.

#include <tests/model/QXModelCacheGame.h>

#include <gtest/gtest.h>

#include <random>

namespace QXC {
namespace {

TEST(QXModelManagerRandom, AgreesWithThePlainReference) {
  for (unsigned int nSeed = 8201; nSeed < 8241; ++nSeed) {
    std::mt19937 random(nSeed);
    QXModelCacheGame game;
    for (int nStep = 0; nStep < 500; ++nStep) {
      auto const nBits = static_cast<unsigned int>(random());
      // The ends of managers are rare, or nothing would grow between them.
      unsigned int const nAny = nBits % QXModelCacheGame::MoveNum;
      unsigned int const nMove = !QXModelCacheGame::IsEnd(nAny) || nStep % 5 == 0 ? nAny : 0;
      game.Move(static_cast<unsigned char>(nMove), static_cast<unsigned char>(nBits >> 8),
          static_cast<unsigned char>(nBits >> 16), static_cast<unsigned char>(nBits >> 24));
      ASSERT_EQ(game.Compare(), "") << "seed " << nSeed << ", step " << nStep << ", move " << nMove;
    }
  }
  EXPECT_EQ(QXToyModels::ms_nParsers, 0);
}

}  // namespace
}  // namespace QXC
