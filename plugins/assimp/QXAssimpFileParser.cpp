#include <plugins/assimp/QXAssimpFileParser.h>

#include <plugins/assimp/QXFormatCheck.h>
#include <plugins/assimp/QXImportProcess.h>
#include <plugins/assimp/QXModelBytes.h>
#include <plugins/assimp/QXModelFolder.h>
#include <plugins/assimp/QXModelStream.h>
#include <plugins/assimp/QXMtlMaps.h>
#include <plugins/assimp/QXPictureFinder.h>
#include <plugins/assimp/QXSceneConverter.h>
#include <plugins/assimp/QXTextEncoding.h>
#include <plugins/assimp/QXTextOffset.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <cxxabi.h>

#include <exception>
#include <memory>
#include <new>

namespace QXAssimp {

namespace {

/// An importer's message as one line of reasonable length.
std::string MakeLine(std::string const& strText) {
  // It names a file that nobody knows: the model goes to the importers under a name of ours.
  if (strText.find("No suitable reader") != std::string::npos)
    return "the file is broken, or of another kind than its extension says";
  if (strText.find("no faces") != std::string::npos || strText.find("mNumMeshes is 0") != std::string::npos)
    return "the model holds no triangles; points and lines alone are not drawn";
  std::string strLine;
  for (char c : strText) {
    if (strLine.size() == 200) break;
    strLine += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  }
  return strLine.empty() ? "the importer gives no reason" : strLine;
}

/// The rest is the converter's.
aiScene const* Import(Assimp::Importer& importer, std::string const& strFileName) {
  // Bones, lights, cameras and animations have no place in the model: not read, not an attack surface either.
  importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_READ_CAMERAS, false);
  importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_READ_LIGHTS, false);
  importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_READ_ANIMATIONS, false);
  importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_READ_WEIGHTS, false);
  // A scene without meshes would get one of its nodes.
  importer.SetPropertyBool(AI_CONFIG_IMPORT_NO_SKELETON_MESHES, true);
  return importer.ReadFile(
      strFileName, aiProcess_ValidateDataStructure | aiProcess_Triangulate | aiProcess_SortByPType);
}

/// What broken bytes leave a person to do; a reason that says so itself stays as it is.
std::string AddAdvice(std::string const& strReason) {
  return strReason.find(';') != std::string::npos ? strReason : strReason + "; export it again or get another copy";
}

/// Folder of a path; the current one for a bare name.
std::string FolderOf(std::string const& strPath) {
  std::size_t const nSlash = strPath.rfind('/');
  if (nSlash == std::string::npos) return ".";
  return nSlash == 0 ? "/" : strPath.substr(0, nSlash);
}

std::string DescribeUnknownType() {
  QXC::QdcArray<QXC::QdcUnicodeString> arrExtNames;
  QXC::QXFileType::GetModelExtNames(arrExtNames);
  std::string strText = "unknown kind of model; readable are";
  for (QXC::QdcUnicodeString const& strExt : arrExtNames) strText += std::string(" ") + strExt.ToMBString().Cstr();
  return strText;
}

/// Imports a model and appends it to bytes. @return  empty, or the reason
std::string ImportModel(int nType, std::string const& strFolder, std::vector<unsigned char> const& vecBytes,
    double const (&dOffset)[3], std::vector<unsigned char>& vecResult) {
  try {
    std::string strError;
    // Not the file's own name: that one may be any bytes, and companions are found from the folder alone.
    std::string const strFileName =
        std::string("model") + QXC::QXFileType::FileTypeToExtName(nType).ToMBString().Cstr();
    QXMtlMaps maps;
    Assimp::Importer importer;
    importer.SetIOHandler(new QXModelFolder(strFolder, strFileName, vecBytes, maps));  // the importer deletes it
    aiScene const* pScene = Import(importer, strFileName);
    if (pScene == nullptr) return MakeLine(importer.GetErrorString());
    std::unique_ptr<QXC::ModelDataInfo> const pModel = ConvertScene(*pScene, nType, dOffset, maps, strError);
    if (pModel != nullptr) WriteModel(*pModel, vecResult);
    return strError;
  } catch (abi::__forced_unwind&) {
    throw;  // a thread that is being cancelled; swallowing it ends the process
  } catch (std::bad_alloc const&) {
    return "there is not enough memory for this model; split it or end other programs";
  } catch (std::exception const& exception) {
    return MakeLine(exception.what());
  } catch (...) {
    return "the importer failed without a reason";
  }
}

}  // namespace

unsigned char QXAssimpFileParser::Open(QXC::QXImportParams* pParams) {
  m_strError = L"";
  SetModelDataInfo(nullptr);
  std::string strError;
  std::vector<unsigned char> vecBytes;
  if (pParams == nullptr || pParams->GetFilePathName().IsEmpty()) {
    strError = "no file was named";
  } else {
    std::string const strPath = pParams->GetFilePathName().ToMBString().Cstr();
    int nType = pParams->GetFileType();
    if (nType < 0) nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(pParams->GetFilePathName());
    try {
      if (QXC::QXFileType::IsModelType(nType) == 0)
        strError = DescribeUnknownType();
      else if (ReadModelBytes(strPath, vecBytes, strError))
        strError = OpenBytes(nType, FolderOf(strPath), std::move(vecBytes));
      if (strError.empty()) NameModel(pParams->GetFilePathName());
    } catch (std::bad_alloc const&) {
      strError = "there is not enough memory for this model; split it or end other programs";
    }
  }
  if (!strError.empty()) {
    m_strError = QXC::QdcUnicodeString::FromUTF8(strError.c_str());
    return 0;
  }
  return 1;
}

void QXAssimpFileParser::NameModel(QXC::QdcUnicodeString const& strPath) {
  std::unique_ptr<QXC::ModelDataInfo> pModel(GetModelDataInfo());
  pModel->SetName(strPath);
  pModel->MakePasses();
  SetModelDataInfo(pModel.release());
}

std::string QXAssimpFileParser::OpenBytes(
    int nType, std::string const& strFolder, std::vector<unsigned char>&& vecBytes) {
  SetModelDataInfo(nullptr);
  std::string strError;
  if (!PrepareText(nType, vecBytes, strError) || !CheckFormat(nType, vecBytes, strError)) return AddAdvice(strError);
  double dOffset[3];
  SubtractOffset(nType, vecBytes, dOffset);
  QXProcessResult result;
  strError = RunInProcess(
      vecBytes.size(),
      [&](std::vector<unsigned char>& vecResult) {
        return ImportModel(nType, strFolder, vecBytes, dOffset, vecResult);
      },
      result);
  if (!strError.empty()) return AddAdvice(strError);
  std::unique_ptr<QXC::ModelDataInfo> pModel = ReadModel(result.GetBytes());
  if (pModel == nullptr) return AddAdvice("the importer cannot cope with this file, it is broken");
  FindPictures(strFolder, *pModel);
  SetModelDataInfo(pModel.release());
  return std::string();
}

}  // namespace QXAssimp
