#include <QxGraphics3D/frame/foundation/toolkit/detail/QXIniFile.h>

#include <QxGraphics3D/frame/foundation/base/detail/QXUtf8.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXFileHandle.h>

#include <ini.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

namespace QXC::detail {

namespace {

// Null, or why the file could not be read.
wchar_t const* ReadWhole(char const* szPath, std::string& bytes) {
  QXFileHandle const file(szPath);
  if (file.Get() < 0) return L"cannot be opened";
  struct stat status {};
  if (::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return L"is not a regular file";
  if (status.st_size < 0 || static_cast<std::size_t>(status.st_size) > QXIniFile::ms_nMaxFileSize) {
    return L"is too large for a configuration file";
  }
  bytes.resize(static_cast<std::size_t>(status.st_size));
  for (std::size_t done = 0; done < bytes.size();) {
    ssize_t const count = ::read(file.Get(), bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return L"cannot be read to its end";
    done += static_cast<std::size_t>(count);
  }
  return nullptr;
}

/// What the parser is given line by line, and what it hands back.
class LineFeed {
public:
  explicit LineFeed(std::string_view bytes) : m_Rest(bytes) {
    if (m_Rest.substr(0, 3) == "\xEF\xBB\xBF") m_Rest.remove_prefix(3);
  }

  int GetLine() const { return m_nLine; }
  wchar_t const* GetFault() const { return m_szFault; }
  std::vector<QXIniEntry>& GetEntries() { return m_arrEntries; }

  static char* NextLine(char* pBuffer, int nSize, void* pFeed) {
    return static_cast<LineFeed*>(pFeed)->Next(pBuffer, static_cast<std::size_t>(nSize));
  }
  static int TakeEntry(void* pFeed, char const* szSection, char const* szKey, char const* szValue) {
    return static_cast<LineFeed*>(pFeed)->Take(szSection, szKey, szValue);
  }

private:
  char* Next(char* pBuffer, std::size_t nSize) {
    if (m_Rest.empty() || m_szFault) return nullptr;
    std::string_view line = m_Rest.substr(0, m_Rest.find('\n'));
    m_Rest.remove_prefix(line.size() < m_Rest.size() ? line.size() + 1 : line.size());
    ++m_nLine;
    // Leading blanks go: the parser would take the line for a continuation of the value before it.
    line.remove_prefix(std::min(line.find_first_not_of(" \t\r\v\f"), line.size()));
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    m_szFault = FaultOf(line, nSize);
    if (m_szFault) return nullptr;
    std::memcpy(pBuffer, line.data(), line.size());
    pBuffer[line.size()] = '\0';
    return pBuffer;
  }

  static wchar_t const* FaultOf(std::string_view line, std::size_t nSize) {
    if (line.find('\0') != std::string_view::npos) return L"holds a zero byte";
    if (line.size() > QXIniFile::ms_nMaxLine || line.size() + 2 > nSize) return L"the line is longer than 190 bytes";
    if (!IsUtf8(line)) return L"is not UTF-8 text";
    if (!line.empty() && line[0] == '[' && line.find(']') > QXIniFile::ms_nMaxSection + 1) {
      return L"a section is [name] of at most 49 bytes";
    }
    return nullptr;
  }

  int Take(char const* szSection, char const* szKey, char const* szValue) {
    if (*szKey == '\0') return 0;
    m_arrEntries.push_back({QdcUnicodeString::FromUTF8(szSection), QdcUnicodeString::FromUTF8(szKey),
        QdcUnicodeString::FromUTF8(szValue), m_nLine});
    return 1;
  }

  std::string_view m_Rest;
  std::vector<QXIniEntry> m_arrEntries;
  wchar_t const* m_szFault = nullptr;
  int m_nLine = 0;
};

}  // namespace

unsigned char QXIniFile::Load(QdcUnicodeString const& strPath) {
  std::string bytes;
  if (wchar_t const* const szReason = ReadWhole(strPath.ToMBString().Cstr(), bytes)) {
    return Fail(strPath, 0, szReason);
  }
  return Parse(bytes, strPath);
}

unsigned char QXIniFile::Parse(std::string_view bytes, QdcUnicodeString const& strName) {
  if (bytes.size() > ms_nMaxFileSize) return Fail(strName, 0, L"is too large for a configuration file");
  LineFeed feed(bytes);
  int const badLine = ::ini_parse_stream(&LineFeed::NextLine, &feed, &LineFeed::TakeEntry, &feed);
  // A line that the parser refused stands before the one where reading stopped.
  if (badLine != 0) return Fail(strName, badLine, L"expected [section], key = value or a comment");
  if (feed.GetFault()) return Fail(strName, feed.GetLine(), feed.GetFault());
  m_arrEntries.swap(feed.GetEntries());
  m_strErrorText = L"";
  return 1;
}

unsigned char QXIniFile::Fail(QdcUnicodeString const& strName, int nLine, wchar_t const* szReason) {
  if (nLine > 0) {
    m_strErrorText.Format(L"%s:%d: %s", strName.Cstr(), nLine, szReason);
  } else {
    m_strErrorText.Format(L"%s: %s", strName.Cstr(), szReason);
  }
  return 0;
}

}  // namespace QXC::detail
