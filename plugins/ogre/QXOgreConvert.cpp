#include <plugins/ogre/QXOgreConvert.h>

#include <cmath>
#include <cstddef>

namespace QXC {

Ogre::Matrix4 ToOgre(QXMatrix4d const& mat) {
  Ogre::Matrix4 result;
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) result[static_cast<std::size_t>(j)][i] = static_cast<Ogre::Real>(mat[i][j]);
  return result;
}

Ogre::Vector3 ToOgre(QXVector3d const& vec) {
  return {static_cast<Ogre::Real>(vec.x), static_cast<Ogre::Real>(vec.y), static_cast<Ogre::Real>(vec.z)};
}

Ogre::ColourValue ToOgre(QXColorValue3D const& color) {
  return Ogre::ColourValue(static_cast<float>(color.r), static_cast<float>(color.g), static_cast<float>(color.b),
      static_cast<float>(color.a));
}

bool IsFinite(Ogre::Matrix4 const& mat) {
  for (std::size_t i = 0; i < 4; ++i)
    for (std::size_t j = 0; j < 4; ++j)
      if (!std::isfinite(mat[i][j])) return false;
  return true;
}

bool IsFinite(Ogre::Vector3 const& vec) {
  return std::isfinite(vec.x) && std::isfinite(vec.y) && std::isfinite(vec.z);
}

bool IsFinite(QXBoundingBox const& box) {
  return IsFinite(ToOgre(box.GetMin())) && IsFinite(ToOgre(box.GetMax()));
}

std::string ToUtf8(QdcUnicodeString const& strText) {
  return strText.ToMBString().Cstr();
}

QdcUnicodeString FromUtf8(std::string const& strText) {
  return QdcUnicodeString::FromUTF8(strText.c_str());
}

std::string OneLine(std::string_view strText) {
  std::string strResult;
  for (char const c : strText) {
    bool const bBlank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
    if (!bBlank) {
      strResult += c;
    } else if (!strResult.empty() && strResult.back() != ' ') {
      strResult += ' ';
    }
  }
  if (!strResult.empty() && strResult.back() == ' ') strResult.pop_back();
  return strResult;
}

}  // namespace QXC
