#include <plugins/assimp/QXModelFolder.h>

#include <plugins/assimp/QXModelBytes.h>
#include <plugins/assimp/QXMtlMaps.h>
#include <plugins/assimp/QXTextEncoding.h>

#include <assimp/IOStream.hpp>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

namespace QXAssimp {

namespace {

/// Stream over bytes: borrowed for the model, its own for a companion.
class MemoryStream : public Assimp::IOStream {
public:
  explicit MemoryStream(std::vector<unsigned char> const* pBytes) : m_pBytes(pBytes) {}
  explicit MemoryStream(std::vector<unsigned char>&& vecOwned)
      : m_vecOwned(std::move(vecOwned)), m_pBytes(&m_vecOwned) {}

  std::size_t Read(void* pBuffer, std::size_t nSize, std::size_t nCount) override {
    if (nSize == 0 || nCount == 0) return 0;
    std::size_t const nWhole = std::min(nCount, (m_pBytes->size() - m_nPosition) / nSize);
    std::memcpy(pBuffer, m_pBytes->data() + m_nPosition, nWhole * nSize);
    m_nPosition += nWhole * nSize;
    return nWhole;
  }
  std::size_t Write(void const*, std::size_t, std::size_t) override { return 0; }
  aiReturn Seek(std::size_t nOffset, aiOrigin eOrigin) override {
    std::size_t const nSize = m_pBytes->size();
    // The offset from the end is subtracted, as the importers pass it.
    std::size_t nTarget = nOffset;
    if (eOrigin == aiOrigin_CUR) nTarget = m_nPosition + nOffset;
    if (eOrigin == aiOrigin_END) nTarget = nSize - nOffset;
    if (nTarget > nSize) return aiReturn_FAILURE;
    m_nPosition = nTarget;
    return aiReturn_SUCCESS;
  }
  std::size_t Tell() const override { return m_nPosition; }
  std::size_t FileSize() const override { return m_pBytes->size(); }
  void Flush() override {}

private:
  std::vector<unsigned char> m_vecOwned;
  std::vector<unsigned char> const* m_pBytes;
  std::size_t m_nPosition = 0;
};

}  // namespace

QXModelFolder::QXModelFolder(
    std::string strFolder, std::string strFileName, std::vector<unsigned char> const& vecModel, QXMtlMaps& maps)
    : m_strFolder(std::move(strFolder)), m_strFileName(std::move(strFileName)), m_vecModel(vecModel), m_Maps(maps),
      m_nRemaining(MaxFileSize) {}

bool QXModelFolder::Exists(char const* szFile) const {
  return szFile != nullptr && (m_strFileName == szFile || !Resolve(szFile).empty());
}

char QXModelFolder::getOsSeparator() const {
  return '/';
}

Assimp::IOStream* QXModelFolder::Open(char const* szFile, char const* szMode) {
  if (szFile == nullptr || szMode == nullptr || std::strpbrk(szMode, "wa+") != nullptr) return nullptr;
  if (m_strFileName == szFile) return new MemoryStream(&m_vecModel);
  std::string const strPath = Resolve(szFile);
  if (strPath.empty()) return nullptr;
  std::vector<unsigned char> vecBytes;
  std::string strError;
  if (!ReadModelBytes(strPath, vecBytes, strError) || vecBytes.size() > m_nRemaining) return nullptr;
  m_nRemaining -= vecBytes.size();
  std::string const strEnding = std::filesystem::path(strPath).extension().string();
  if (strEnding == ".mtl" || strEnding == ".MTL") {
    TrimByteOrderMark(vecBytes);
    m_Maps.TakeOptions(vecBytes);
  }
  return new MemoryStream(std::move(vecBytes));
}

void QXModelFolder::Close(Assimp::IOStream* pFile) {
  delete pFile;
}

std::string QXModelFolder::Resolve(std::string const& strFile) const {
  if (m_strFolder.empty()) return std::string();
  namespace fs = std::filesystem;
  std::error_code error;
  fs::path const folder = fs::canonical(m_strFolder, error);
  if (error) return std::string();
  fs::path const file = fs::canonical(folder / strFile, error);
  if (error || !fs::is_regular_file(file, error)) return std::string();
  auto const [itFolder, itFile] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
  return itFolder == folder.end() ? file.string() : std::string();
}

}  // namespace QXAssimp
