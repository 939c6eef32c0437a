#include <plugins/assimp/QXTextEncoding.h>

#include <plugins/assimp/QXFormatCheck.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace QXAssimp {

namespace {

using Bytes = std::vector<unsigned char>;

bool StartsWith(Bytes const& vecBytes, std::string_view strStart) {
  return vecBytes.size() >= strStart.size() &&
         std::equal(strStart.begin(), strStart.end(), vecBytes.begin(),
             [](char c, unsigned char nByte) { return static_cast<unsigned char>(c) == nByte; });
}

/// Whether a file of that type may be text. The header of a binary STL file may hold any bytes.
bool MayBeText(int nType, Bytes const& vecBytes) {
  using QXC::QXFileType;
  if (nType == QXFileType::EM_MODEL_STL) return !HasBinaryStlSize(vecBytes);
  return nType != QXFileType::EM_MODEL_3DS && nType != QXFileType::EM_MODEL_GLB;
}

/// By the mark, or by the zeros that plain letters have there.
bool IsWideText(Bytes const& vecBytes) {
  using namespace std::string_view_literals;
  for (std::string_view const strMark : {"\xFF\xFE"sv, "\xFE\xFF"sv, "\0\0\xFE\xFF"sv})
    if (StartsWith(vecBytes, strMark)) return true;
  if (vecBytes.size() < 4) return false;
  bool const bFirst = vecBytes[0] == 0 && vecBytes[2] == 0;
  bool const bSecond = vecBytes[1] == 0 && vecBytes[3] == 0;
  return bFirst != bSecond;
}

}  // namespace

void TrimByteOrderMark(Bytes& vecBytes) {
  if (StartsWith(vecBytes, "\xEF\xBB\xBF")) vecBytes.erase(vecBytes.begin(), vecBytes.begin() + 3);
}

bool PrepareText(int nType, Bytes& vecBytes, std::string& strError) {
  if (!MayBeText(nType, vecBytes)) return true;
  if (IsWideText(vecBytes)) {
    strError = "this is text in UTF-16 or UTF-32; save it as UTF-8";
    return false;
  }
  TrimByteOrderMark(vecBytes);
  return true;
}

}  // namespace QXAssimp
