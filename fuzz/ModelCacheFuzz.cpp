/// @file
/// Any order of loading, making, holding, dropping, removing, releasing and ending of models and their caches: whatever
/// calls back in the middle of something else, the caches agree with a plain reference after each step.
///
/// An input is a sequence of moves of four bytes: the move, the cache, the holder, the name or other holder.
#include <tests/model/QXModelCacheGame.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::size_t MoveBytes = 4;
// What a sequence can bring about shows long before; each step asks for everything.
constexpr std::size_t MostMoves = 300;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pBytes, std::size_t nSize) {
  QXC::QXModelCacheGame game;
  std::size_t const nMoves = std::min(nSize / MoveBytes, MostMoves);
  for (std::size_t i = 0; i < nMoves; ++i) {
    std::uint8_t const* const pMove = pBytes + i * MoveBytes;
    game.Move(pMove[0], pMove[1], pMove[2], pMove[3]);
    std::string const strError = game.Compare();
    if (strError.empty()) continue;
    std::fprintf(stderr, "move %zu: %s\n", i, strError.c_str());
    std::abort();
  }
  if (QXC::QXToyModels::ms_nParsers != 0) std::abort();
  return 0;
}
