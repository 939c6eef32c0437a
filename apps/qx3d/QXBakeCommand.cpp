#include <apps/qx3d/QXBakeCommand.h>

#include <apps/qx3d/QXBakedFile.h>
#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXProgress.h>
#include <apps/qx3d/QXSceneData.h>
#include <apps/qx3d/QXSceneInput.h>
#include <apps/qx3d/QXSceneModels.h>
#include <apps/qx3d/QXScenePlaces.h>
#include <apps/qx3d/QXStaticFile.h>
#include <apps/qx3d/QXViewOptions.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace QXApp {

namespace {

/// Version of the files that are written; QXStaticGeometry writes the newest form whatever it calls it.
constexpr double NewestVersion = 1.3;

/// Distance from the base frame up to which floats have steps of 4 mm.
constexpr double FineReach = 65536.0;

/// "1 label", "2 labels".
std::string Count(std::size_t nCount, std::string const& strOne) {
  return std::to_string(nCount) + " " + strOne + (nCount == 1 ? "" : "s");
}

/// The work of one call; every step answers with whether to go on, and tells what is wrong itself.
class BakeRun {
public:
  explicit BakeRun(QXBakeOptions const& options) : m_Options(options), m_File(options.m_strOut) {}

  bool Run() {
    if (!Tell(m_File.Check())) return false;
    bool const bUpgrade = m_Options.m_vecInputs.size() == 1 && IsStaticName(m_Options.m_vecInputs[0]);
    bool const bDone = bUpgrade ? Upgrade(m_Options.m_vecInputs[0]) : Merge();
    m_Progress.Clear();
    return bDone;
  }

private:
  /// @return  whether there was nothing to tell
  bool Tell(std::string const& strProblem) {
    m_Progress.Clear();
    if (!strProblem.empty()) PrintFailure(strProblem);
    return strProblem.empty();
  }

  bool Tell(std::vector<std::string> const& vecProblems) {
    for (std::string const& strProblem : vecProblems) Tell(strProblem);
    return vecProblems.empty();
  }

  bool Merge() {
    for (std::string const& strInput : m_Options.m_vecInputs)
      if (!Load(strInput)) return false;
    m_Progress.Show("merging " + std::to_string(m_Models.GetTriangleCount()) + " triangles");
    QXC::QXBoundingBox nothing;
    nothing.SetNULL();
    QXMergeOptions options;
    options.m_eMerging = QXMerging::OneGeometry;
    options.m_nameTexture = [this](QXSceneTexture const& texture) {
      return m_File.NameTexture(texture.m_Key, m_Models.GetPictures()[static_cast<std::size_t>(texture.m_nModel)]);
    };
    QXScene scene = m_Models.Build(nothing, options);
    if (scene.m_vecGeometries.empty())
      return Tell("there are no models and no buildings in the input, so there is nothing to bake; name a model");
    TellPrecision(scene);
    for (QXSceneTexture const& texture : scene.m_vecTextures) {
      m_Progress.Show("writing " + texture.m_strName);
      if (!Tell(m_File.WriteTexture(texture.m_Key, m_Models.GetPictures()[static_cast<std::size_t>(texture.m_nModel)])))
        return false;
    }
    return Write(*scene.m_vecGeometries[0]);
  }

  bool Load(std::string const& strInput) {
    if (IsStaticName(strInput))
      return Tell(strInput + ": a file of static geometry is baked alone, which upgrades it; place several in a scene");
    std::vector<std::string> vecProblems;
    QXSceneFile file = ReadAsScene(strInput, vecProblems);
    if (!Tell(vecProblems)) return false;
    if (!file.m_vecStatics.empty())
      return Tell(strInput + ": it places static geometry, which is baked already; take the sections [static] away");
    auto const progress = [this](std::string const& strStep) { m_Progress.Show(strStep); };
    QXSceneProblems problems(strInput);
    std::vector<std::string> vecWarnings;
    LoadScenePlaces(file, progress, vecProblems, vecWarnings);
    Tell(vecWarnings);
    if (!Tell(vecProblems)) return false;
    vecWarnings.clear();
    m_Models.Load(file, m_Options.m_eUp, progress, problems, vecWarnings);
    m_Models.LoadInstances(file, m_Options.m_eUp, progress, problems, vecWarnings);
    Tell(vecWarnings);
    if (!Tell(problems.GetLines())) return false;
    vecWarnings.clear();
    LoadSceneData(file, &m_Models, progress, vecProblems, vecWarnings);
    Tell(vecWarnings);
    if (!file.m_vecLabels.empty() || !file.m_vecIcons.empty())
      Tell(strInput + ": " + Count(file.m_vecLabels.size(), "label") + " and " + Count(file.m_vecIcons.size(), "icon") +
           " are no geometry and not in the file; place it beside them in a scene");
    auto const isColored = [](QXSceneInstances const& instances) {
      return std::any_of(instances.m_nColor, instances.m_nColor + 3, [](unsigned char n) { return n != 255; });
    };
    if (std::ranges::any_of(file.m_vecInstances, isColored))
      Tell(strInput + ": the colours of instances are not in the file, only those of their models");
    return Tell(vecProblems);
  }

  /// Nothing is cut into cells here: a file has one base frame.
  void TellPrecision(QXScene const& scene) {
    double dReach = 0.0;
    for (int i = 0; i < 3; ++i) dReach = std::max(dReach, 0.5 * (scene.m_Bounds.m_dMax[i] - scene.m_Bounds.m_dMin[i]));
    if (dReach <= FineReach) return;
    // A float has 24 bits.
    double const dStep = std::exp2(std::floor(std::log2(dReach)) - 23.0);
    char szText[160];
    std::snprintf(szText, sizeof szText,
        "it reaches %.0f units from its middle, where positions have steps of %.3g; bake its parts into files of their "
        "own",
        dReach, dStep);
    Tell(m_File.GetPath() + ": " + szText);
  }

  bool Upgrade(std::string const& strInput) {
    m_Progress.Show("reading " + strInput);
    std::string strReason;
    std::unique_ptr<QXC::QXStaticGeometry> const pGeometry = LoadStaticFile(strInput, strReason);
    if (pGeometry == nullptr) return Tell(strInput + ": " + strReason);
    QXC::QXMatrix4d matPlace;
    std::vector<std::string> vecProblems;
    matPlace.SetTrans(ReadStaticPlace(strInput, vecProblems));
    if (!Tell(vecProblems)) return false;
    pGeometry->SetLocalViewMatrix(matPlace);
    return CopyTextures(strInput, *pGeometry) && Write(*pGeometry);
  }

  /// Gives the passes pictures beside the new file. What cannot be read keeps its name.
  bool CopyTextures(std::string const& strInput, QXC::QXStaticGeometry& geometry) {
    std::map<QXC::QdcUnicodeString, QXC::QdcUnicodeString> mapNames;
    ForEachUnit(geometry, [&mapNames](QXC::QXTextureUnitState& unit) {
      mapNames.insert({unit.GetTextureName(), unit.GetTextureName()});
    });
    std::filesystem::path const folder = std::filesystem::path(strInput).parent_path();
    // Those that stand there already stay as they are: a new file under such a name would replace one not yet read.
    for (auto& [strName, strNew] : mapNames) {
      std::string const strKept = m_File.KeepTexture((folder / Narrow(strName)).string());
      if (!strKept.empty()) strNew = QXC::QdcUnicodeString::FromUTF8(strKept.c_str());
    }
    QXModelPictures pictures;
    std::vector<std::string> vecProblems;
    for (auto& [strName, strNew] : mapNames)
      if (!Tell(CopyTexture((folder / Narrow(strName)).string(), pictures, strNew, vecProblems))) return false;
    Tell(vecProblems);
    ForEachUnit(
        geometry, [&mapNames](QXC::QXTextureUnitState& unit) { unit.SetTextureName(mapNames[unit.GetTextureName()]); });
    RenameSpheres(mapNames, geometry);
    return true;
  }

  /// Calls a function with each unit that names a texture.
  template <class Function>
  static void ForEachUnit(QXC::QXStaticGeometry const& geometry, Function const& function) {
    for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(geometry))
      for (auto const& [strKey, pPass] : pBucket->m_mapPasses)
        for (unsigned int i = 0; i < pPass->GetTextureUnitStatesSize(); ++i)
          if (pPass->GetTextureUnitState(i)->IsBlank() == 0) function(*pPass->GetTextureUnitState(i));
  }

  std::string CopyTexture(std::string const& strPath, QXModelPictures& pictures, QXC::QdcUnicodeString& strName,
      std::vector<std::string>& vecProblems) {
    QXTextureKey key;
    key.m_nImage = pictures.AddFile(strPath, vecProblems);
    if (key.m_nImage < 0 || !m_File.KeepTexture(strPath).empty()) return std::string();
    strName = QXC::QdcUnicodeString::FromUTF8(m_File.NameTexture(key, pictures).c_str());
    return m_File.WriteTexture(key, pictures);
  }

  static void RenameSpheres(
      std::map<QXC::QdcUnicodeString, QXC::QdcUnicodeString> const& mapNames, QXC::QXStaticGeometry& geometry) {
    std::map<QXC::QdcUnicodeString, QXC::QdcArray<QXC::QXBoundingSphere>> mapSpheres;
    for (auto const& [strName, arrSpheres] : geometry.m_mapTextureSpheres) {
      auto const it = mapNames.find(strName);
      mapSpheres[it == mapNames.end() ? strName : it->second] = arrSpheres;
    }
    geometry.m_mapTextureSpheres.swap(mapSpheres);
  }

  bool Write(QXC::QXStaticGeometry& geometry) {
    m_Progress.Show("writing " + m_File.GetPath());
    geometry.SetVersion(NewestVersion);
    if (!Tell(m_File.Write(geometry))) return false;
    std::error_code error;
    std::uintmax_t const nSize = std::filesystem::file_size(m_File.GetPath(), error);
    QXC::QXMatrix4d const& mat = geometry.GetLocalViewMatrix();
    std::string const strContents = Count(CountObjects(geometry), "object") + ", " +
                                    Count(CountTriangles(geometry), "triangle") + " in " +
                                    Count(GetBuckets(geometry).size(), "bucket") + ", " + Count(nSize, "byte");
    std::printf("%s: %s, placed at %.15g, %.15g, %.15g\n", MakeOneLine(m_File.GetPath()).c_str(), strContents.c_str(),
        mat[3][0], mat[3][1], mat[3][2]);
    return true;
  }

  QXBakeOptions const& m_Options;
  QXBakedFile m_File;
  QXProgress m_Progress;
  QXSceneModels m_Models;
};

}  // namespace

int RunBake(QXBakeOptions const& options) {
  return BakeRun(options).Run() ? 0 : 1;
}

}  // namespace QXApp
