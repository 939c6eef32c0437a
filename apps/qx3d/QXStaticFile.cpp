#include <apps/qx3d/QXStaticFile.h>

#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXStaticWalk.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>

#include <filesystem>
#include <map>
#include <set>
#include <system_error>

namespace QXApp {

namespace {

namespace fs = std::filesystem;

constexpr unsigned int ClampBoth = QXC::UNIT_WORD_CLAMP_U | QXC::UNIT_WORD_CLAMP_V;

/// The textures of one geometry, each file read once.
class TextureReader {
public:
  TextureReader(
      std::string const& strPath, QXModelPictures& pictures, int nModel, std::vector<std::string>& vecProblems)
      : m_Folder(fs::path(strPath).parent_path()), m_Pictures(pictures), m_nModel(nModel), m_vecProblems(vecProblems) {}

  void Rename(QXC::QXPass& pass) {
    for (unsigned int i = 0; i < pass.GetTextureUnitStatesSize(); ++i) {
      QXC::QXTextureUnitState& unit = *pass.GetTextureUnitState(i);
      if (unit.IsBlank() != 0) continue;
      unsigned int const nWord = i < QXC::QXPass::MAX_UNIT_WORDS ? pass.m_nUnitWords[i] : 0U;
      unit.SetTextureName(QXC::QdcUnicodeString::FromUTF8(Take(Narrow(unit.GetTextureName()), nWord).c_str()));
    }
  }

  /// Each once, in the order of their first use.
  std::vector<QXSceneTexture> m_vecTextures;

private:
  /// @return  the name that the unit gets, empty where there is no such picture
  std::string Take(std::string const& strName, unsigned int nWord) {
    auto const [itImage, bNewImage] = m_mapImages.insert({strName, -1});
    if (bNewImage) itImage->second = m_Pictures.AddFile((m_Folder / strName).string(), m_vecProblems);
    if (itImage->second < 0) return std::string();
    QXSceneTexture texture;
    texture.m_nModel = m_nModel;
    texture.m_Key.m_nImage = itImage->second;
    texture.m_Key.m_bRepeat = (nWord & ClampBoth) != ClampBoth;
    texture.m_strName = m_Pictures.GetTextureName(texture.m_Key);
    if (m_setTaken.insert(texture).second) m_vecTextures.push_back(texture);
    return texture.m_strName;
  }

  fs::path m_Folder;
  QXModelPictures& m_Pictures;
  int m_nModel;
  std::vector<std::string>& m_vecProblems;
  std::map<std::string, int> m_mapImages;
  std::set<QXSceneTexture> m_setTaken;
};

}  // namespace

std::string CheckStaticFile(std::string const& strPath) {
  if (!IsUtf8(strPath)) return "the name is no UTF-8 text; rename the file";
  std::error_code error;
  fs::file_status const status = fs::status(strPath, error);
  if (!fs::exists(status)) return "no such file; correct the name";
  if (fs::is_directory(status)) return "this is a directory; give a file of static geometry inside it";
  if (!fs::is_regular_file(status)) return "this is no regular file; give a file of static geometry";
  if (fs::file_size(strPath, error) == 0) return "the file is empty; bake it again";
  return std::string();
}

std::unique_ptr<QXC::QXStaticGeometry> LoadStaticFile(std::string const& strPath, std::string& strError) {
  strError = CheckStaticFile(strPath);
  if (!strError.empty()) return nullptr;
  QXC::QdcUnicodeString const strWide = QXC::QdcUnicodeString::FromUTF8(strPath.c_str());
  QXC::QXFileStream stream;
  if (stream.OpenForReading(strWide) == 0) {
    strError = "the file cannot be read; change its permissions";
    return nullptr;
  }
  // Looked at first: what follows, here and in the renderers, may then believe every count.
  std::string const strFault = DescribeFault(WalkStatic(stream));
  auto pGeometry = std::make_unique<QXC::QXStaticGeometry>();
  if (strFault.empty() && stream.OpenForReading(strWide) != 0 && pGeometry->LoadVecData(stream, 0.0F) != 0)
    return pGeometry;
  // The library gives a file no more than a multiple of its bytes in memory.
  strError = strFault.empty()
                 ? "it is of more and smaller buckets than memory is spent on, or changed while it was read; "
                   "bake it again"
                 : strFault + "; bake it again";
  return nullptr;
}

std::string GetStaticSceneName(std::string const& strPath) {
  return strPath + ".qxscene";
}

QXC::QXVector3d ReadStaticPlace(std::string const& strPath, std::vector<std::string>& vecProblems) {
  std::error_code error;
  if (!fs::exists(GetStaticSceneName(strPath), error)) return QXC::QXVector3d();
  QXSceneFile const scene = ReadSceneFile(GetStaticSceneName(strPath), vecProblems);
  for (QXSceneStatic const& placed : scene.m_vecStatics)
    if (fs::equivalent(placed.m_strFile, strPath, error)) return placed.m_vecPosition;
  return QXC::QXVector3d();
}

void LoadStaticTextures(std::string const& strPath, QXC::QXStaticGeometry& geometry, QXModelPictures& pictures,
    int nModel, std::vector<QXSceneTexture>& vecTextures, std::vector<std::string>& vecProblems) {
  TextureReader reader(strPath, pictures, nModel, vecProblems);
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry))
    for (auto const& [strKey, pPass] : pBucket->m_mapPasses) reader.Rename(*pPass);
  vecTextures.insert(vecTextures.end(), reader.m_vecTextures.begin(), reader.m_vecTextures.end());
}

}  // namespace QXApp
