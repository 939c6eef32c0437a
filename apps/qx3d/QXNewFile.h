/// @file
/// A file that appears under its name only once it is complete.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace QXApp {

/// A new file in the folder of its target. It dies with this object, or with a program that is interrupted, unless it
/// was put into the target's place. One at a time.
class QXNewFile {
public:
  explicit QXNewFile(std::string const& strTarget);
  QXNewFile(QXNewFile const&) = delete;
  QXNewFile& operator=(QXNewFile const&) = delete;
  ~QXNewFile();

  /// Where it stands until then, for a writer that opens it by name.
  std::string const& GetPath() const { return m_strPath; }

  /// The open file, or null with errno set.
  std::FILE* Get() const { return m_pFile; }

  /// Closes, and puts the file into the target's place. False with errno set; a full disk shows here.
  bool Commit();

private:
  void Create();

  std::string m_strTarget;
  std::string m_strPath;
  std::FILE* m_pFile = nullptr;
  bool m_bExists = false;
};

/// The file that a path means behind links, so that a link stays a link when its target is replaced or made.
std::string FollowLinks(std::string const& strPath);

/// Writes a file, whole or not at all.
/// @return  empty, or the reason; the path then holds what it held before
std::string WriteNewFile(std::string const& strPath, void const* pBytes, std::size_t nSize);

}  // namespace QXApp
