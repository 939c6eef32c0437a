#include <apps/qx3d/QXSceneText.h>

#include <apps/qx3d/QXMessage.h>

#include <ini.h>

#include <algorithm>
#include <cstring>

namespace QXApp {

namespace {

constexpr char const* Blanks = " \t\r\v\f";

std::string_view Trim(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
  std::size_t const nLast = text.find_last_not_of(Blanks);
  return text.substr(0, nLast == std::string_view::npos ? 0 : nLast + 1);
}

/// What the parser is given line by line, and what it hands back.
class LineFeed {
public:
  LineFeed(std::string_view bytes, QXSceneTextHandler& handler, QXSceneProblems& problems)
      : m_Rest(bytes), m_Handler(handler), m_Problems(problems) {
    if (m_Rest.substr(0, 3) == "\xEF\xBB\xBF") m_Rest.remove_prefix(3);
  }

  static char* NextLine(char* pBuffer, int nSize, void* pFeed) {
    return static_cast<LineFeed*>(pFeed)->Next(pBuffer, static_cast<std::size_t>(nSize));
  }
  static int TakeEntry(void* pFeed, char const*, char const* szKey, char const* szValue) {
    return static_cast<LineFeed*>(pFeed)->Take(szKey, szValue);
  }

private:
  char* Next(char* pBuffer, std::size_t nSize) {
    // The parser says nothing of a line that it cannot use before its end, and then of the first alone.
    if (m_bExpectsEntry) Refuse("expected [section], key = value or a comment; correct the line");
    m_bExpectsEntry = false;
    if (m_Rest.empty()) return nullptr;
    std::string_view line = m_Rest.substr(0, m_Rest.find('\n'));
    m_Rest.remove_prefix(line.size() < m_Rest.size() ? line.size() + 1 : line.size());
    ++m_nLine;
    // Leading blanks would make the line a continuation of the value before it.
    line = Trim(line);
    if (!Accept(line, nSize)) line = line.substr(0, 0);
    std::memcpy(pBuffer, line.data(), line.size());
    pBuffer[line.size()] = '\0';
    return pBuffer;
  }

  /// Whether the line is to be parsed; sections are heard here, where those without keys are seen as well.
  bool Accept(std::string_view line, std::size_t nSize) {
    if (line.empty() || line[0] == '#' || line[0] == ';') return false;
    if (std::string const strFault = FindLineFault(line, std::min(MaxSceneLine, nSize - 2)); !strFault.empty()) {
      Refuse(strFault);
      return false;
    }
    m_bExpectsEntry = line[0] != '[';
    if (!m_bExpectsEntry) BeginSection(line);
    return m_bExpectsEntry;
  }

  void BeginSection(std::string_view line) {
    std::size_t const nEnd = std::min(line.find(']'), line.size() - 1);
    std::string_view name = Trim(line.substr(1, nEnd > 0 ? nEnd - 1 : 0));
    std::string_view const rest = Trim(line.substr(nEnd + 1));
    bool const bClosed = line[nEnd] == ']' && (rest.empty() || rest[0] == ';' || rest[0] == '#');
    if (!bClosed || name.empty() || name.size() > MaxSceneSection) {
      Report("expected [name] of a section and nothing behind it; correct the line");
      name = std::string_view();
    }
    m_Handler.BeginSection(std::string(name), m_nLine);
  }

  int Take(char const* szKey, char const* szValue) {
    m_bExpectsEntry = false;
    if (*szKey == '\0')
      Refuse("there is no key before the =; write key = value");
    else if (*szValue == '\0')
      Refuse(std::string("'") + szKey + "' has no value; give one, or leave the line out");
    else
      m_Handler.TakeValue(szKey, szValue, m_nLine);
    return 1;
  }

  void Report(std::string const& strText) { m_Problems.Add(m_nLine, strText); }
  void Refuse(std::string const& strText) {
    Report(strText);
    m_Handler.MissValue();
  }

  std::string_view m_Rest;
  QXSceneTextHandler& m_Handler;
  QXSceneProblems& m_Problems;
  bool m_bExpectsEntry = false;
  int m_nLine = 0;
};

}  // namespace

void QXSceneProblems::Add(int nLine, std::string const& strText) {
  ++m_nCount;
  if (m_vecKept.size() < ms_nMaxKept) m_vecKept.push_back({nLine, strText});
}

std::vector<std::string> QXSceneProblems::GetLines() const {
  std::vector<Problem> vecSorted = m_vecKept;
  std::stable_sort(vecSorted.begin(), vecSorted.end(),
      [](Problem const& left, Problem const& right) { return left.m_nLine < right.m_nLine; });
  std::vector<std::string> vecLines;
  for (Problem const& problem : vecSorted) {
    std::string const strPlace = problem.m_nLine > 0 ? m_strPath + ":" + std::to_string(problem.m_nLine) : m_strPath;
    vecLines.push_back(strPlace + ": " + problem.m_strText);
  }
  if (m_nCount > m_vecKept.size())
    vecLines.push_back(m_strPath + ": " + std::to_string(m_nCount - m_vecKept.size()) + " more; mend these first");
  return vecLines;
}

std::string FindLineFault(std::string_view line, std::size_t nMaxBytes) {
  if (line.find('\0') != std::string_view::npos) return "the line holds a zero byte; save the file as UTF-8 text";
  if (line.size() > nMaxBytes)
    return "the line is longer than " + std::to_string(MaxSceneLine) +
           " bytes; shorten it, of a file name by moving the file nearer to the scene";
  if (!IsUtf8(std::string(line))) return "the line is no UTF-8 text; save the file as UTF-8";
  return std::string();
}

void ReadSceneText(std::string_view bytes, QXSceneTextHandler& handler, QXSceneProblems& problems) {
  LineFeed feed(bytes, handler, problems);
  // Its answer, the first line that it did not like, was told by the feed already.
  ini_parse_stream(&LineFeed::NextLine, &feed, &LineFeed::TakeEntry, &feed);
}

}  // namespace QXApp
