/// @file
/// Sections and keys of a scene file, and what is wrong with it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace QXApp {

/// What is wrong with one file. The first are kept, all are counted: a file of another kind has a problem on every
/// line.
class QXSceneProblems {
public:
  static constexpr std::size_t ms_nMaxKept = 20;

  explicit QXSceneProblems(std::string strPath) : m_strPath(std::move(strPath)) {}

  /// @param nLine    from 1; 0: about the whole file
  /// @param strText  what was expected and, behind a semicolon, what to do
  void Add(int nLine, std::string const& strText);

  bool IsEmpty() const { return m_nCount == 0; }
  /// Further ones are counted alone, so that nobody needs to find words for them.
  bool IsFull() const { return m_nCount >= ms_nMaxKept; }
  /// "path:line: text" each, by their lines; the last one tells how many more there are.
  std::vector<std::string> GetLines() const;

private:
  struct Problem {
    int m_nLine;
    std::string m_strText;
  };
  std::string m_strPath;
  std::vector<Problem> m_vecKept;
  std::size_t m_nCount = 0;
};

/// Hears what a file of sections says, in its order.
class QXSceneTextHandler {
public:
  virtual ~QXSceneTextHandler() = default;
  /// @param strName  empty for a line that begins a section badly, which was told: what follows belongs to none
  virtual void BeginSection(std::string const& strName, int nLine) = 0;
  /// A `key = value` line of the section begun last; none was begun before the first. Both stand without blanks around
  /// them, and neither is empty.
  virtual void TakeValue(std::string const& strKey, std::string const& strValue, int nLine) = 0;
  /// A line of the section begun last was told and left out; nobody knows which key it would have been.
  virtual void MissValue() = 0;
};

/// Longest line and section name in bytes: those of the parser underneath, which would cut longer ones silently.
constexpr std::size_t MaxSceneLine = 190;
constexpr std::size_t MaxSceneSection = 49;

/// Why a line is not looked at: zero bytes, too many bytes, other text than UTF-8; empty for a good one.
std::string FindLineFault(std::string_view line, std::size_t nMaxBytes = MaxSceneLine);

/// Reads UTF-8 text: `[section]`, `key = value`, lines that begin with # or ; for comments, and " ;" for one behind a
/// value. A faulty line is told and left out, those behind it are read all the same.
void ReadSceneText(std::string_view bytes, QXSceneTextHandler& handler, QXSceneProblems& problems);

}  // namespace QXApp
