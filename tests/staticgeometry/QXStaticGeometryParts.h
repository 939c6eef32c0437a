/// @file
/// Meshes, passes and sub-objects for the tests of static geometry, and the host that owns them.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace QXC {

using TextList = std::vector<std::wstring>;

inline QdcUnicodeString Text(std::wstring const& strText) {
  return strText.c_str();
}

/// Row-vector matrix that moves by x, y and z.
inline QXMatrix4d Moved(double dX, double dY = 0.0, double dZ = 0.0) {
  QXMatrix4d matrix;
  matrix.SetTrans(QXVector3d(dX, dY, dZ));
  return matrix;
}

/// A pass named strName with a unit for each texture.
inline std::unique_ptr<QXPass> MakePass(std::wstring const& strName, TextList const& textures) {
  auto pass = std::make_unique<QXPass>();
  pass->SetName(Text(strName));
  for (std::wstring const& strTexture : textures) pass->CreateTextureUnitState()->SetTextureName(Text(strTexture));
  return pass;
}

inline QXSubObjectInfo* MakeSubObject(double dX, double dRadius) {
  auto* pSubObject = new QXSubObjectInfo;
  pSubObject->m_BoundingSphere.SetCenter(QXVector3d(dX, 0.0, 0.0));
  pSubObject->m_BoundingSphere.SetRadius(dRadius);
  return pSubObject;
}

/// Owns what a host owns until the merge is done: meshes, index packages and passes.
class QXBatchingHost {
public:
  std::map<QdcUnicodeString, QXPass*> m_mapPasses;

  QXPass& AddPass(std::wstring const& strName, TextList const& textures) {
    return AddPassAs(strName, MakePass(strName, textures));
  }

  /// The pass under a key that need not be its name.
  QXPass& AddPassAs(std::wstring const& strKey, std::unique_ptr<QXPass> pass) {
    m_vecPasses.push_back(std::move(pass));
    m_mapPasses[Text(strKey)] = m_vecPasses.back().get();
    return *m_vecPasses.back();
  }

  /// A mesh that only says that it has vertices: adding reads nothing else.
  QXVertexDataPackage& MakeCounted(unsigned int nVertexNum) {
    m_vecMeshes.push_back(std::make_unique<QXVertexDataPackage>());
    m_vecMeshes.back()->m_nVertexNum = nVertexNum;
    return *m_vecMeshes.back();
  }

  QXIndexPackage& MakeIndices(TextList const& passNames, int eType = QX_OPERATION_TRIANGLE_LIST) {
    m_vecIndices.push_back(std::make_unique<QXIndexPackage>());
    for (std::wstring const& strName : passNames) m_vecIndices.back()->m_arrPassNames.Add(Text(strName));
    m_vecIndices.back()->m_eOperationType = eType;
    return *m_vecIndices.back();
  }

  /// Adds the mesh with one index package for each list of pass names.
  void Add(QXStaticGeometry& geometry, QXVertexDataPackage& mesh, std::vector<QXIndexPackage*> const& packages,
      QXSubObjectInfo* pSubObject = nullptr, int nType = 0, QXMatrix4d matModel = QXMatrix4d()) {
    QdcArray<QXIndexPackage*> arrPackages;
    for (QXIndexPackage* pPackage : packages) arrPackages.Add(pPackage);
    geometry.AddVertexDataAndIndexPackage(&mesh, arrPackages, m_mapPasses, matModel, pSubObject, nType);
  }

  /// Adds nVertexNum vertices drawn by the named passes.
  void AddNamed(QXStaticGeometry& geometry, unsigned int nVertexNum, TextList const& passNames,
      QXSubObjectInfo* pSubObject = nullptr, int nType = 0) {
    Add(geometry, MakeCounted(nVertexNum), {&MakeIndices(passNames)}, pSubObject, nType);
  }

private:
  std::vector<std::unique_ptr<QXPass>> m_vecPasses;
  std::vector<std::unique_ptr<QXVertexDataPackage>> m_vecMeshes;
  std::vector<std::unique_ptr<QXIndexPackage>> m_vecIndices;
};

}  // namespace QXC
