/// @file
/// Names of fonts: any bytes decode as an obvious reader decodes them, and a name leads to the entry that an obvious
/// search finds. The first byte is the number of names, two bytes before each name its style and its length.
#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXToolkit.h>
#include <QxGraphics3D/text/QXTrueType.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace QXC;

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

/// Units first, characters then; nothing of the library's way.
std::wstring ObviousText(std::string_view bytes) {
  std::vector<unsigned int> units;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    units.push_back(static_cast<unsigned char>(bytes[i]) * 256u + static_cast<unsigned char>(bytes[i + 1]));
  }
  std::wstring text;
  for (std::size_t i = 0; i < units.size(); ++i) {
    bool const isPair = i + 1 < units.size() && units[i] >= 0xD800 && units[i] <= 0xDBFF && units[i + 1] >= 0xDC00 &&
                        units[i + 1] <= 0xDFFF;
    text += static_cast<wchar_t>(isPair ? 0x10000 + (units[i] - 0xD800) * 0x400 + (units[i + 1] - 0xDC00) : units[i]);
    i += isPair;
  }
  return std::wstring(text.c_str());  // up to the first zero, as names are compared
}

struct Name {
  int m_nStyle = 0;
  unsigned char m_bDecoded = 0;
  QdcUnicodeString m_strName;
};

Name Decoded(QXTrueType& fonts, std::string_view bytes, int nStyle) {
  Name name{nStyle, 0, QdcUnicodeString()};
  std::vector<unsigned char> exact(bytes.begin(), bytes.end());  // so that the sanitizer sees where it ends
  name.m_bDecoded = fonts.GetFontName(name.m_strName, exact.data(), static_cast<unsigned int>(exact.size()));
  Require(name.m_bDecoded == (!bytes.empty() && bytes.size() % 2 == 0));
  Require(name.m_strName.Cstr() == (name.m_bDecoded ? ObviousText(bytes) : std::wstring()));
  Require(name.m_strName.GetLength() == static_cast<int>(3 * bytes.size()));
  return name;
}

std::vector<Name> TakeNames(QXTrueType& fonts, std::string_view bytes) {
  std::vector<Name> names;
  while (bytes.size() >= 2) {
    int const style = static_cast<unsigned char>(bytes[0]) % 5;
    std::size_t const length = std::min<std::size_t>(static_cast<unsigned char>(bytes[1]), bytes.size() - 2);
    names.push_back(Decoded(fonts, bytes.substr(2, length), style));
    bytes.remove_prefix(2 + length);
  }
  return names;
}

void RequireFound(QXTrueType& fonts, Name const& name) {
  std::wstring const wanted = name.m_strName.Cstr();
  int expected = -1;
  for (QXTrueType::QXFontInfo const& info : fonts.m_arrFontsInfo) {
    bool const fits = std::wstring(info.m_strFontName.Cstr()).starts_with(wanted) ||
                      std::wstring(info.m_strFontNameEn.Cstr()).starts_with(wanted);
    if (expected < 0 && fits && info.m_nFaceStyle == name.m_nStyle) expected = info.m_nFaceIndex;
  }
  QdcUnicodeString path;
  int index = -1;
  Require(fonts.GetFontPathByName(name.m_strName, name.m_nStyle, path, index) == (expected >= 0));
  Require(index == expected);
}

// No file of the catalogue exists, so a name ends as the default font, null here, and is listed if nothing fits it.
void RequireResolved(QXTrueType& fonts, Name const& name) {
  std::uint64_t const missing = fonts.m_arrMissingFonts.GetSize();
  for (int i = 0; i < 2; ++i) {
    Require(fonts.GetFace(name.m_strName, static_cast<QXTrueType::FaceStyle>(name.m_nStyle)) == nullptr);
  }
  Require(fonts.m_arrMissingFonts.GetSize() <= missing + 1);
  Require(fonts.m_dictFaces.GetCount() == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  QXToolkit::SetFontsPath(L"/nowhere/");
  if (nSize == 0) return 0;
  QXTrueType fonts;
  std::string_view const bytes(reinterpret_cast<char const*>(pData) + 1, nSize - 1);
  std::vector<Name> const names = TakeNames(fonts, bytes);
  std::size_t const catalogued = std::min<std::size_t>(pData[0], names.size());
  for (std::size_t i = 0; i < catalogued; ++i) {
    QXTrueType::QXFontInfo info;
    (i % 2 ? info.m_strFontName : info.m_strFontNameEn) = names[i].m_strName;
    info.m_nFaceStyle = static_cast<QXTrueType::FaceStyle>(names[i].m_nStyle % 4);
    info.m_strFilePath = L"/nowhere/font.ttf";
    info.m_nFaceIndex = static_cast<int>(i);
    fonts.m_arrFontsInfo.Add(info);
  }
  for (Name const& name : names) {
    RequireFound(fonts, name);
    RequireResolved(fonts, name);
  }
  return 0;
}
