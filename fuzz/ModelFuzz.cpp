/// @file
/// What the model reader does by itself with a hostile file: the encoding of text, the checks of a format, the moving
/// of map coordinates, the options of MTL files, and the model that comes back from the importer's process. The first
/// byte chooses.
#include <plugins/assimp/QXFormatCheck.h>
#include <plugins/assimp/QXModelStream.h>
#include <plugins/assimp/QXMtlMaps.h>
#include <plugins/assimp/QXTextEncoding.h>
#include <plugins/assimp/QXTextOffset.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

void Require(bool bHolds) {
  if (!bHolds) std::abort();
}

void FuzzFile(int nType, std::vector<unsigned char> vecBytes) {
  std::string strError;
  bool const bWhole =
      QXAssimp::PrepareText(nType, vecBytes, strError) && QXAssimp::CheckFormat(nType, vecBytes, strError);
  Require(bWhole == strError.empty());
  Require(strError.find('\n') == std::string::npos);
  double dOffset[3];
  std::vector<unsigned char> const vecBefore = vecBytes;
  QXAssimp::SubtractOffset(nType, vecBytes, dOffset);
  bool const bMoved = dOffset[0] != 0.0 || dOffset[1] != 0.0 || dOffset[2] != 0.0;
  Require(bMoved || vecBytes == vecBefore);
}

void FuzzModel(std::vector<unsigned char> const& vecBytes) {
  std::unique_ptr<QXC::ModelDataInfo> const pModel = QXAssimp::ReadModel(vecBytes);
  if (pModel == nullptr) return;
  for (int i = 0; i < pModel->GetMeshCount(); ++i) {
    QXC::QXModelMesh const& mesh = *pModel->GetMesh(i);
    Require(mesh.m_Texture.m_nImage < pModel->GetImageCount());
    Require(mesh.m_Texture.m_nImage < 0 || mesh.m_pVertexPackage->m_pTexCoords[0] != nullptr);
    for (QXC::QXIndexPackage const* pRange : mesh.m_arrIndexPackages)
      for (int k = 0; k < pRange->m_nIndexNum; ++k)
        Require((pRange->m_nIndexType == 1 ? pRange->GetIndices32()[k] : pRange->GetIndices16()[k]) <
                mesh.m_pVertexPackage->m_nVertexNum);
  }
  pModel->GetBoundingBox();
  // What came in goes out again and comes in the same.
  std::vector<unsigned char> vecAgain;
  QXAssimp::WriteModel(*pModel, vecAgain);
  Require(QXAssimp::ReadModel(vecAgain) != nullptr);
  // Every range has one pass, which the model has.
  pModel->MakePasses();
  for (int i = 0; i < pModel->GetMeshCount(); ++i)
    for (QXC::QXIndexPackage const* pRange : pModel->GetMesh(i)->m_arrIndexPackages)
      Require(pRange->m_arrPassNames.GetSize() == 1 && pModel->GetPasses().contains(pRange->m_arrPassNames[0]));
}

void FuzzMtl(std::vector<unsigned char> vecBytes) {
  QXAssimp::QXMtlMaps maps;
  maps.TakeOptions(vecBytes);
  // What was rewritten once has nothing left to rewrite.
  std::vector<unsigned char> const vecOnce = vecBytes;
  maps.TakeOptions(vecBytes);
  Require(vecBytes == vecOnce);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  if (nSize == 0) return 0;
  std::vector<unsigned char> vecBytes(pData + 1, pData + nSize);
  constexpr int Types = QXC::QXFileType::EM_MODEL_FBX - QXC::QXFileType::EM_MODEL_3DS + 1;
  int const nChoice = pData[0] % (Types + 2);
  if (nChoice == Types + 1)
    FuzzMtl(std::move(vecBytes));
  else if (nChoice < Types)
    FuzzFile(QXC::QXFileType::EM_MODEL_3DS + nChoice, std::move(vecBytes));
  else
    FuzzModel(vecBytes);
  return 0;
}
