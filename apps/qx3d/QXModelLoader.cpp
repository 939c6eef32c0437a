#include <apps/qx3d/QXModelLoader.h>

#include <apps/qx3d/QXMessage.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace QXApp {

namespace {

using QXC::QdcUnicodeString;

std::string ListReadable() {
  QXC::QdcArray<QdcUnicodeString> arrExtNames;
  QXC::QXFileType::GetModelExtNames(arrExtNames);
  std::string strList;
  for (QdcUnicodeString const& strExt : arrExtNames) strList += " " + Narrow(strExt);
  return strList;
}

/// Why a file of no known kind is no model: the simpler mistakes first.
std::string DescribeUnknown(std::string const& strPath) {
  std::error_code error;
  std::filesystem::file_status const status = std::filesystem::status(strPath, error);
  if (!std::filesystem::exists(status)) return "no such file; correct the name";
  if (std::filesystem::is_directory(status)) return "this is a directory; give the model file inside it";
  return "unknown kind of model; readable are" + ListReadable();
}

struct ParserDeleter {
  void operator()(QXC::QXFileParser* pParser) const { QXC::QXFileParseManager::DestroyFileParser(pParser); }
};

/// x stays, y becomes z: a quarter turn about x.
QXC::QXMatrix4d MakeTurnToZUp() {
  QXC::QXMatrix4d mat;
  mat[1][1] = 0.0;
  mat[1][2] = 1.0;
  mat[2][1] = -1.0;
  mat[2][2] = 0.0;
  return mat;
}

/// Depths and lengths are computed from the squares of coordinates, and by devices in floats.
bool IsShowable(QXC::QXBoundingBox const& box) {
  constexpr double Max = 1e15;
  for (int i = 0; i < 3; ++i)
    if (!(box.m_dMin[i] >= -Max && box.m_dMax[i] <= Max)) return false;
  return true;
}

}  // namespace

bool IsYUp(QXC::ModelDataInfo const& model, int nType, UpAxis eUp) {
  if (model.GetUpAxis() == QXC::QX_UP_Z) return false;
  if (eUp != UpAxis::Auto) return eUp == UpAxis::Y;
  QXC::QXBoundingBox const box = model.GetBoundingBox();
  double const dX = box.m_dMax[0] - box.m_dMin[0];
  double const dY = box.m_dMax[1] - box.m_dMin[1];
  double const dZ = box.m_dMax[2] - box.m_dMin[2];
  constexpr double Flat = 0.25;
  if (dY < Flat * std::min(dX, dZ)) return true;
  if (dZ < Flat * std::min(dX, dY)) return false;
  return nType == QXC::QXFileType::EM_MODEL_OBJ;
}

std::unique_ptr<QXC::ModelDataInfo> LoadModel(std::string const& strPath, UpAxis eUp, std::string& strError) {
  QdcUnicodeString const strWidePath = QdcUnicodeString::FromUTF8(strPath.c_str());
  if (Narrow(strWidePath) != strPath) {
    // It would come back as another name, and be reported missing.
    strError = "the name is no UTF-8 text; rename the file";
    return nullptr;
  }
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(strWidePath);
  if (QXC::QXFileType::IsModelType(nType) == 0) {
    strError = DescribeUnknown(strPath);
    return nullptr;
  }
  std::unique_ptr<QXC::QXFileParser, ParserDeleter> const pParser(QXC::QXFileParseManager::CreateFileParser(nType, 0));
  if (pParser == nullptr) {
    strError = "no reader for models: " + Narrow(QXC::QXFileParseManager::GetErrorText());
    return nullptr;
  }
  std::unique_ptr<QXC::QXImportParams> const pParams(
      QXC::QXExchangeParamsManager::MakeImportParams(nType, QdcUnicodeString()));
  pParams->SetFilePathName(strWidePath);
  if (pParser->Open(pParams.get()) == 0) {
    strError = Narrow(pParser->GetErrorText());
    return nullptr;
  }
  // A model type gives a parser of models.
  std::unique_ptr<QXC::ModelDataInfo> pModel(static_cast<QXC::QXFileParseModel*>(pParser.get())->GetModelDataInfo());
  if (pModel == nullptr) {
    strError = "the reader gave no model; install a plug-in of the same release";
    return nullptr;
  }
  strError = PrepareModel(*pModel, strPath, eUp);
  return strError.empty() ? std::move(pModel) : nullptr;
}

std::string PrepareModel(QXC::ModelDataInfo& model, std::string const& strPath, UpAxis eUp) {
  if (!IsShowable(model.GetBoundingBox()))
    return "its coordinates go beyond 1e15, more than can be shown; export it in a larger unit";
  int const nType = QXC::QXFileParseToolkit::GetFileTypeByExtName(QdcUnicodeString::FromUTF8(strPath.c_str()));
  if (IsYUp(model, nType, eUp)) {
    model.Transform(MakeTurnToZUp());
    model.SetUpAxis(QXC::QX_UP_Z);
  }
  return std::string();
}

}  // namespace QXApp
