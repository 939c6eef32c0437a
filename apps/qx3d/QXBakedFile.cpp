#include <apps/qx3d/QXBakedFile.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXNewFile.h>
#include <apps/qx3d/QXPngWriter.h>
#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXStaticFile.h>
#include <apps/qx3d/QXWholeFile.h>

#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace QXApp {

namespace {

namespace fs = std::filesystem;

/// How a place begins that may be written anew.
constexpr char const* FirstLine = "# Written by qx3d bake, and anew with each bake: make changes in a copy.\n";

std::string FolderName(std::string const& strPath) {
  return fs::path(strPath).filename().string() + ".textures";
}

/// As many digits as bring the number back.
std::string Print(double dValue) {
  std::array<char, 32> szText;
  char* const pEnd = std::to_chars(szText.data(), szText.data() + szText.size(), dValue).ptr;
  return std::string(szText.data(), pEnd);
}

std::string DescribeFailure(std::string const& strReason) {
  return "the file cannot be written: " + strReason + "; make room or give another place";
}

}  // namespace

std::string QXBakedFile::MakeSceneText(QXC::QXVector3d const& vecPlace) const {
  return FirstLine + ("[static]\nfile = " + fs::path(m_strPath).filename().string()) +
         "\nposition = " + Print(vecPlace.x) + ", " + Print(vecPlace.y) + ", " + Print(vecPlace.z) + "\n";
}

std::string QXBakedFile::Check() const {
  if (!IsUtf8(m_strPath)) return m_strPath + ": the name is no UTF-8 text; give another one";
  if (!IsStaticName(m_strPath))
    return m_strPath + ": this is no static geometry by its name; give one that ends in .qsg";
  std::string const strScene = GetStaticSceneName(m_strPath);
  for (std::string const& strPath : {m_strPath, strScene}) {
    std::string strReason = QXPngWriter::Check(strPath);
    if (!strReason.empty()) return strReason.insert(0, ": ").insert(0, strPath);
  }
  // Names have fewer limits than values of a scene.
  QXC::QXVector3d const vecLongest(-123456789012345.6789, -123456789012345.6789, -123456789012345.6789);
  QXSceneProblems problems(strScene);
  QXSceneFile const scene = ParseScene(MakeSceneText(vecLongest), strScene, problems);
  if (!problems.IsEmpty() || scene.m_vecStatics.empty() ||
      fs::path(scene.m_vecStatics[0].m_strFile).filename() != fs::path(m_strPath).filename())
    return m_strPath + ": this name cannot stand in a scene; give a shorter one without special characters";
  std::string strThere;
  std::error_code error;
  if (fs::exists(strScene, error) && ReadWholeFile(strScene, 128, "scene", strThere).empty() &&
      !strThere.starts_with(FirstLine))
    return strScene + ": this scene was not written by qx3d bake, which would replace it; move it away";
  return std::string();
}

std::string QXBakedFile::NameTexture(QXTextureKey const& key, QXModelPictures const& pictures) {
  auto const [it, bNew] = m_mapNames.insert({pictures.GetTextureName(key), std::string()});
  std::string& strName = it->second;
  while (strName.empty() || (bNew && m_setKept.contains(strName)))
    strName = FolderName(m_strPath) + "/" + std::to_string(m_nNextName++) + pictures.GetWrittenExtension(key);
  return strName;
}

std::string QXBakedFile::KeepTexture(std::string const& strPath) {
  fs::path const path(strPath);
  std::error_code error;
  if (!fs::equivalent(path.parent_path(), fs::path(m_strPath).parent_path() / FolderName(m_strPath), error))
    return std::string();
  std::string strName = FolderName(m_strPath) + "/" + path.filename().string();
  m_setKept.insert(strName);
  return strName;
}

std::string QXBakedFile::WriteTexture(QXTextureKey const& key, QXModelPictures const& pictures) {
  fs::path const path = fs::path(m_strPath).parent_path() / NameTexture(key, pictures);
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  if (error)
    return path.parent_path().string() + ": the folder cannot be made: " + error.message() + "; give another name";
  std::string const strReason = pictures.Write(key, path.string());
  return strReason.empty() ? strReason : path.string() + ": " + strReason;
}

std::string QXBakedFile::Write(QXC::QXStaticGeometry& geometry) const {
  QXC::QXMatrix4d const& mat = geometry.GetLocalViewMatrix();
  std::string const strScene = GetStaticSceneName(m_strPath);
  {
    QXNewFile file(FollowLinks(m_strPath));
    if (file.Get() == nullptr) return m_strPath + ": " + DescribeFailure(std::strerror(errno));
    QXC::QXFileStream stream;
    if (stream.OpenForWriting(QXC::QdcUnicodeString::FromUTF8(file.GetPath().c_str())) != 0)
      geometry.SaveVecData(stream, 0.0F);
    if (stream.Close() == 0) return m_strPath + ": " + DescribeFailure(Narrow(stream.GetErrorText()));
    std::error_code error;
    fs::remove(strScene, error);
    if (!file.Commit()) return m_strPath + ": " + DescribeFailure(std::strerror(errno));
  }
  std::string const strText = MakeSceneText(QXC::QXVector3d(mat[3][0], mat[3][1], mat[3][2]));
  std::string const strReason = WriteNewFile(strScene, strText.data(), strText.size());
  return strReason.empty() ? strReason : strScene + ": " + strReason;
}

}  // namespace QXApp
