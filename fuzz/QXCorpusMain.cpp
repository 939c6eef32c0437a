/// @file
/// The plain main of a fuzz target: runs every file of the folders named on the command line through
/// LLVMFuzzerTestOneInput once. It makes a corpus an ordinary test of every build and every compiler, so
/// that an input that once broke something stays a regression test where libFuzzer is not at hand.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize);

namespace {

using FileList = std::vector<std::filesystem::path>;

FileList ListFiles(int nArgumentCount, char** arrArguments) {
  FileList arrFiles;
  for (int nIndex = 1; nIndex < nArgumentCount; ++nIndex) {
    for (auto const& entry : std::filesystem::recursive_directory_iterator(arrArguments[nIndex])) {
      if (entry.is_regular_file()) arrFiles.push_back(entry.path());
    }
  }
  std::sort(arrFiles.begin(), arrFiles.end());
  return arrFiles;
}

void RunFile(std::filesystem::path const& path) {
  // Told before the run: after a crash the last line names the file.
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);
  std::ifstream stream(path, std::ios::binary);
  std::vector<char> const arrBytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  // A block of exactly this size, so that the address sanitizer sees the true end.
  std::vector<std::uint8_t> const arrInput(arrBytes.begin(), arrBytes.end());
  LLVMFuzzerTestOneInput(arrInput.data(), arrInput.size());
}

}  // namespace

int main(int nArgumentCount, char** arrArguments) {
  FileList const arrFiles = ListFiles(nArgumentCount, arrArguments);
  if (arrFiles.empty()) {
    std::fprintf(stderr, "no corpus file found: name at least one folder that holds some\n");
    return 1;
  }
  for (auto const& path : arrFiles) RunFile(path);
  std::printf("%zu inputs, none broke anything\n", arrFiles.size());
  return 0;
}
