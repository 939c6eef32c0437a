/// @file
/// Imports in a process of their own.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace QXAssimp {

/// Bytes that a process left behind, as they lie in memory that it shared.
class QXProcessResult {
public:
  QXProcessResult() = default;
  QXProcessResult(QXProcessResult const&) = delete;
  QXProcessResult& operator=(QXProcessResult const&) = delete;
  ~QXProcessResult();

  /// Valid until the object is destroyed or filled again.
  std::span<unsigned char const> GetBytes() const { return {m_pBytes, m_nSize}; }

private:
  friend std::string RunInProcess(
      std::size_t, std::function<std::string(std::vector<unsigned char>&)> const&, QXProcessResult&);
  unsigned char MapFile(int nFile);
  void Unmap();

  unsigned char* m_pBytes = nullptr;
  std::size_t m_nSize = 0;
};

/// Runs work on a hostile file in a child process and gives back the bytes that it makes. The importers behind this
/// reader write outside their memory, stand still or allocate without end on some broken files; then the child ends,
/// and the caller hears a reason.
/// @param nInput     bytes that the work reads; the limits on its memory and time follow from them
/// @param work       appends its result to the bytes and answers with an empty string, or with the reason why there is
///                   none. It runs on a copy of this process with the calling thread alone.
/// @param result     gets the bytes
/// @return  empty, or the reason
/// Cost: a process, and a copy of the result.
std::string RunInProcess(
    std::size_t nInput, std::function<std::string(std::vector<unsigned char>&)> const& work, QXProcessResult& result);

}  // namespace QXAssimp
