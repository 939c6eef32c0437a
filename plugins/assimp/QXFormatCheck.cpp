#include <plugins/assimp/QXFormatCheck.h>

#include <plugins/assimp/QXPlyCheck.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace QXAssimp {

namespace {

using Bytes = std::vector<unsigned char>;

/// Little-endian number of nWidth bytes at nOffset, which the caller has checked to lie inside.
std::uint64_t ReadNumber(Bytes const& vecBytes, std::size_t nOffset, std::size_t nWidth) {
  std::uint64_t nValue = 0;
  for (std::size_t i = 0; i < nWidth; ++i) nValue |= static_cast<std::uint64_t>(vecBytes[nOffset + i]) << (8 * i);
  return nValue;
}

bool StartsWith(Bytes const& vecBytes, std::string_view strStart) {
  return vecBytes.size() >= strStart.size() && std::memcmp(vecBytes.data(), strStart.data(), strStart.size()) == 0;
}

bool FailTruncated(std::uint64_t nClaimed, std::size_t nPresent, std::string& strError) {
  strError =
      "the file is cut off: it should have " + std::to_string(nClaimed) + " bytes and has " + std::to_string(nPresent);
  return false;
}

/// Chunks of a 3DS file that hold other chunks, behind nothing or behind a name.
enum ChunkId : std::uint64_t {
  CHUNK_MAIN = 0x4D4D,
  CHUNK_EDITOR = 0x3D3D,
  CHUNK_OBJECT = 0x4000,
  CHUNK_MESH = 0x4100,
  CHUNK_VERTICES = 0x4110,
  CHUNK_FACES = 0x4120
};

/// Checks the chunks between nBegin and nEnd. Recursion ends with the four kinds of containers, each inside the one
/// before it.
bool CheckChunks(
    Bytes const& vecBytes, std::size_t nBegin, std::size_t nEnd, std::uint64_t nParent, std::string& strError) {
  while (nEnd - nBegin >= 6) {
    std::uint64_t const nId = ReadNumber(vecBytes, nBegin, 2);
    std::uint64_t const nLength = ReadNumber(vecBytes, nBegin + 2, 4);
    if (nLength < 6 || nLength > nEnd - nBegin) {
      strError =
          "the file is broken: a chunk at byte " + std::to_string(nBegin) + " does not fit into the one around it";
      return false;
    }
    std::size_t nInside = nBegin + 6;
    std::size_t const nNext = nBegin + static_cast<std::size_t>(nLength);
    bool bContainer = false;
    if (nParent == CHUNK_MAIN && nId == CHUNK_EDITOR) bContainer = true;
    if (nParent == CHUNK_OBJECT && nId == CHUNK_MESH) bContainer = true;
    if (nParent == CHUNK_EDITOR && nId == CHUNK_OBJECT) {
      bContainer = true;
      while (nInside < nNext && vecBytes[nInside] != 0) ++nInside;
      nInside = std::min(nInside + 1, nNext);
    }
    if (bContainer && !CheckChunks(vecBytes, nInside, nNext, nId, strError)) return false;
    if (nParent == CHUNK_MESH && (nId == CHUNK_VERTICES || nId == CHUNK_FACES)) {
      std::uint64_t const nItem = nId == CHUNK_VERTICES ? 12 : 8;
      if (nLength < 8 || nLength - 8 < nItem * ReadNumber(vecBytes, nInside, 2)) {
        strError = "the file is broken: a list at byte " + std::to_string(nBegin) + " claims more than its chunk holds";
        return false;
      }
    }
    nBegin = nNext;
  }
  return true;
}

bool Check3ds(Bytes const& vecBytes, std::string& strError) {
  if (vecBytes.size() < 6 || ReadNumber(vecBytes, 0, 2) != CHUNK_MAIN) {
    strError = "this is no 3DS file";
    return false;
  }
  std::uint64_t const nLength = ReadNumber(vecBytes, 2, 4);
  if (nLength > vecBytes.size()) return FailTruncated(nLength, vecBytes.size(), strError);
  return CheckChunks(vecBytes, 6, std::max<std::size_t>(6, static_cast<std::size_t>(nLength)), CHUNK_MAIN, strError);
}

bool CheckGlb(Bytes const& vecBytes, std::string& strError) {
  if (vecBytes.size() < 12 || !StartsWith(vecBytes, "glTF")) {
    strError = "this is no binary glTF file";
    return false;
  }
  if (ReadNumber(vecBytes, 4, 4) != 2) {
    strError = "this is glTF of another version than 2";
    return false;
  }
  std::uint64_t const nLength = ReadNumber(vecBytes, 8, 4);
  if (nLength > vecBytes.size()) return FailTruncated(nLength, vecBytes.size(), strError);
  std::size_t nOffset = 12;
  while (nOffset + 8 <= nLength) {
    std::uint64_t const nChunk = ReadNumber(vecBytes, nOffset, 4);
    if (nChunk > nLength - nOffset - 8) {
      strError = "the file is broken: a chunk at byte " + std::to_string(nOffset) + " reaches behind the end";
      return false;
    }
    nOffset += 8 + static_cast<std::size_t>(nChunk);
  }
  return true;
}

bool CheckStl(Bytes const& vecBytes, std::string& strError) {
  // Asked first, because binary files exist whose header begins with "solid".
  if (HasBinaryStlSize(vecBytes)) return true;
  std::string_view const strText(reinterpret_cast<char const*>(vecBytes.data()), vecBytes.size());
  std::size_t const nStart = strText.find_first_not_of(" \t\r\n");
  if (nStart != std::string_view::npos && strText.substr(nStart, 5) == "solid") {
    // Behind the last facet nothing but the end mark may stand, with or without the name of the solid.
    std::size_t const nEndMark = strText.rfind("endsolid");
    std::size_t const nLastFacet = strText.rfind("facet");
    if (nEndMark != std::string_view::npos && (nLastFacet == std::string_view::npos || nLastFacet < nEndMark))
      return true;
    strError = "the file is cut off: its last line should be 'endsolid'";
    return false;
  }
  if (vecBytes.size() < 84) {
    strError = "this is no STL file";
    return false;
  }
  std::uint64_t const nClaimed = 84 + 50 * ReadNumber(vecBytes, 80, 4);
  if (nClaimed > vecBytes.size()) return FailTruncated(nClaimed, vecBytes.size(), strError);
  return true;  // bytes behind the last triangle are of no harm
}

/// Binary FBX: a chain of top-level records, each with the offset of the next, ended by a record of zeros.
bool CheckFbx(Bytes const& vecBytes, std::string& strError) {
  static constexpr std::string_view Magic("Kaydara FBX Binary  \0", 21);
  if (!StartsWith(vecBytes, Magic)) return true;  // text form
  if (vecBytes.size() < 27) return FailTruncated(27, vecBytes.size(), strError);
  std::size_t const nWidth = ReadNumber(vecBytes, 23, 4) >= 7500 ? 8 : 4;
  std::size_t nOffset = 27;
  for (;;) {
    if (vecBytes.size() - nOffset < nWidth) {
      strError = "the file is cut off: its last record is missing";
      return false;
    }
    std::uint64_t const nNext = ReadNumber(vecBytes, nOffset, nWidth);
    if (nNext == 0) return true;
    if (nNext > vecBytes.size()) return FailTruncated(nNext, vecBytes.size(), strError);
    if (nNext <= nOffset) {
      strError = "the file is broken: the record at byte " + std::to_string(nOffset) + " ends before it begins";
      return false;
    }
    nOffset = static_cast<std::size_t>(nNext);
  }
}

/// Whether an element of that name begins at the start of a text.
bool IsElement(std::string_view strText, std::string_view strName) {
  return strText.substr(0, strName.size()) == strName && strText.size() > strName.size() &&
         std::string_view(" \t\r\n>/").find(strText[strName.size()]) != std::string_view::npos;
}

/// COLLADA keeps lists of whole numbers as text. At anything else in such a list the importer stands still and collects
/// the same number until the memory is gone.
bool CheckCollada(Bytes const& vecBytes, std::string& strError) {
  std::string_view const strText(reinterpret_cast<char const*>(vecBytes.data()), vecBytes.size());
  for (std::size_t nTag = strText.find('<'); nTag != std::string_view::npos; nTag = strText.find('<', nTag + 1)) {
    std::string_view const strElement = strText.substr(nTag + 1);
    bool bList = false;
    for (std::string_view strName : {"p", "h", "v", "vcount"}) bList = bList || IsElement(strElement, strName);
    if (!bList) continue;
    std::size_t const nContent = strText.find('>', nTag);
    if (nContent == std::string_view::npos) break;
    std::size_t const nEnd = std::min(strText.find('<', nContent), strText.size());
    std::string_view const strList = strText.substr(nContent + 1, nEnd - nContent - 1);
    if (strList.find_first_not_of("0123456789- \t\r\n") == std::string_view::npos) continue;
    strError = "the file is broken: the list of numbers at byte " + std::to_string(nContent) + " holds something else";
    return false;
  }
  return true;
}

}  // namespace

bool HasBinaryStlSize(std::vector<unsigned char> const& vecBytes) {
  return vecBytes.size() >= 84 && 84 + 50 * ReadNumber(vecBytes, 80, 4) == vecBytes.size();
}

bool CheckFormat(int nType, std::vector<unsigned char> const& vecBytes, std::string& strError) {
  switch (nType) {
  case QXC::QXFileType::EM_MODEL_3DS: return Check3ds(vecBytes, strError);
  case QXC::QXFileType::EM_MODEL_GLB: return CheckGlb(vecBytes, strError);
  case QXC::QXFileType::EM_MODEL_STL: return CheckStl(vecBytes, strError);
  case QXC::QXFileType::EM_MODEL_PLY: return CheckPly(vecBytes, strError);
  case QXC::QXFileType::EM_MODEL_COLLADA: return CheckCollada(vecBytes, strError);
  case QXC::QXFileType::EM_MODEL_FBX: return CheckFbx(vecBytes, strError);
  default: return true;
  }
}

}  // namespace QXAssimp
