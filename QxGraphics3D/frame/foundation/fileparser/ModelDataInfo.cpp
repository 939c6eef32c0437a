#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXModelPassMaker.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace QXC {

namespace {

/// Grows a box over the placed positions of one mesh. Kept as plain numbers: the box type costs eight corners a
/// point.
void GrowOverMesh(QXModelMesh const& mesh, QXMatrix4d const& mat, double (&dMin)[3], double (&dMax)[3]) {
  QXVertexDataPackage const* pPackage = mesh.m_pVertexPackage;
  if (pPackage == nullptr) return;
  float const* p = pPackage->m_pVertices;
  for (unsigned int i = 0; i < pPackage->m_nVertexNum; ++i, p += 3) {
    double const x = static_cast<double>(p[0]);
    double const y = static_cast<double>(p[1]);
    double const z = static_cast<double>(p[2]);
    for (int nAxis = 0; nAxis < 3; ++nAxis) {
      double const d = x * mat[0][nAxis] + y * mat[1][nAxis] + z * mat[2][nAxis] + mat[3][nAxis];
      dMin[nAxis] = std::min(dMin[nAxis], d);
      dMax[nAxis] = std::max(dMax[nAxis], d);
    }
  }
}

}  // namespace

ModelDataInfo::ModelDataInfo(ModelDataInfo const& other) {
  ModelDataInfo copy;
  copy.m_strName = other.m_strName;
  copy.m_eUpAxis = other.m_eUpAxis;
  for (int i = 0; i < other.GetMeshCount(); ++i) {
    auto pMesh = std::make_unique<QXModelMesh>(*other.GetMesh(i));
    copy.AddMesh(pMesh.get());
    pMesh.release();
  }
  for (int i = 0; i < other.GetImageCount(); ++i) {
    auto pImage = std::make_unique<QXModelImage>(*other.GetImage(i));
    copy.AddImage(pImage.get());
    pImage.release();
  }
  copy.m_arrNodes = other.m_arrNodes;
  // The place first: what stands in it then is freed whatever fails.
  for (auto const& [strName, pPass] : other.m_mapPasses)
    if (pPass != nullptr) copy.m_mapPasses.emplace(strName, nullptr).first->second = new QXPass(*pPass);
  Swap(copy);
}

ModelDataInfo& ModelDataInfo::operator=(ModelDataInfo const& other) {
  if (this != &other) {
    ModelDataInfo copy(other);
    Swap(copy);
  }
  return *this;
}

ModelDataInfo::~ModelDataInfo() {
  for (QXModelMesh* pMesh : m_arrMeshes) delete pMesh;
  for (QXModelImage* pImage : m_arrImages) delete pImage;
  for (auto const& [strName, pPass] : m_mapPasses) delete pPass;
}

void ModelDataInfo::Swap(ModelDataInfo& other) {
  std::swap(m_strName, other.m_strName);
  std::swap(m_eUpAxis, other.m_eUpAxis);
  std::swap(m_arrMeshes, other.m_arrMeshes);
  std::swap(m_arrImages, other.m_arrImages);
  std::swap(m_arrNodes, other.m_arrNodes);
  std::swap(m_mapPasses, other.m_mapPasses);
}

int ModelDataInfo::AddMesh(QXModelMesh* pMesh) {
  if (pMesh == nullptr) return -1;
  return static_cast<int>(m_arrMeshes.Add(pMesh));
}

int ModelDataInfo::GetMeshCount() const {
  return static_cast<int>(m_arrMeshes.GetSize());
}

QXModelMesh* ModelDataInfo::GetMesh(int nIndex) const {
  if (nIndex < 0 || nIndex >= GetMeshCount()) return nullptr;
  return m_arrMeshes.GetAt(static_cast<std::uint64_t>(nIndex));
}

int ModelDataInfo::AddImage(QXModelImage* pImage) {
  if (pImage == nullptr) return -1;
  return static_cast<int>(m_arrImages.Add(pImage));
}

int ModelDataInfo::GetImageCount() const {
  return static_cast<int>(m_arrImages.GetSize());
}

QXModelImage* ModelDataInfo::GetImage(int nIndex) const {
  if (nIndex < 0 || nIndex >= GetImageCount()) return nullptr;
  return m_arrImages.GetAt(static_cast<std::uint64_t>(nIndex));
}

int ModelDataInfo::AddNode(QXModelNode const& node) {
  if (GetMesh(node.m_nMesh) == nullptr) return -1;
  return static_cast<int>(m_arrNodes.Add(node));
}

int ModelDataInfo::GetNodeCount() const {
  return static_cast<int>(m_arrNodes.GetSize());
}

QXModelNode* ModelDataInfo::GetNode(int nIndex) {
  if (nIndex < 0 || nIndex >= GetNodeCount()) return nullptr;
  return &m_arrNodes[static_cast<std::uint64_t>(nIndex)];
}

QXModelNode const* ModelDataInfo::GetNode(int nIndex) const {
  if (nIndex < 0 || nIndex >= GetNodeCount()) return nullptr;
  return &m_arrNodes[static_cast<std::uint64_t>(nIndex)];
}

QdcUnicodeString ModelDataInfo::FindFreePassName(
    QdcUnicodeString const& strMaterial, std::map<QdcUnicodeString, int>& mapLast) const {
  QdcUnicodeString const strFirst = m_strName + L"|" + strMaterial;
  int& nLast = mapLast.try_emplace(strFirst, 0).first->second;
  QdcUnicodeString strName;
  // A material may itself be called as a numbered one.
  do {
    ++nLast;
    strName = nLast == 1 ? strFirst : strFirst + (L"#" + std::to_wstring(nLast)).c_str();
  } while (m_mapPasses.contains(strName));
  return strName;
}

void ModelDataInfo::MakePasses() {
  for (auto const& [strName, pPass] : m_mapPasses) delete pPass;
  m_mapPasses.clear();
  std::map<std::string, QdcUnicodeString> mapNames;
  std::map<QdcUnicodeString, int> mapLast;
  for (QXModelMesh* pMesh : m_arrMeshes) {
    std::unique_ptr<QXPass> pPass = detail::MakeModelPass(*this, *pMesh);
    auto const [itName, bNew] = mapNames.try_emplace(detail::GetPassBytes(*pPass));
    if (bNew) {
      itName->second = FindFreePassName(pMesh->m_strMaterialName, mapLast);
      pPass->SetName(itName->second);
      m_mapPasses[itName->second] = pPass.get();
      pPass.release();
    }
    for (QXIndexPackage* pPackage : pMesh->m_arrIndexPackages) {
      pPackage->m_arrPassNames.RemoveAll();
      pPackage->m_arrPassNames.Add(itName->second);
    }
  }
  for (int i = 0; i < GetImageCount(); ++i) GetImage(i)->m_strTextureName = detail::MakeModelTextureName(*this, i);
}

void ModelDataInfo::Transform(QXMatrix4d const& matTransform) {
  for (int i = 0; i < GetNodeCount(); ++i) {
    QXModelNode* pNode = GetNode(i);
    pNode->m_matWorld = pNode->m_matWorld * matTransform;
  }
}

QXBoundingBox ModelDataInfo::GetBoundingBox() const {
  constexpr double Huge = 1e300;
  double dMin[3] = {Huge, Huge, Huge};
  double dMax[3] = {-Huge, -Huge, -Huge};
  for (int i = 0; i < GetNodeCount(); ++i) {
    QXModelNode const* pNode = GetNode(i);
    GrowOverMesh(*GetMesh(pNode->m_nMesh), pNode->m_matWorld, dMin, dMax);
  }
  QXBoundingBox box;
  box.SetNULL();
  if (dMin[0] <= dMax[0]) box.SetExtents(QXVector3d(dMin[0], dMin[1], dMin[2]), QXVector3d(dMax[0], dMax[1], dMax[2]));
  return box;
}

unsigned int ModelDataInfo::GetTriangleCount() const {
  unsigned int nCount = 0;
  for (int i = 0; i < GetNodeCount(); ++i) nCount += GetMesh(GetNode(i)->m_nMesh)->GetTriangleCount();
  return nCount;
}

unsigned int ModelDataInfo::GetVertexCount() const {
  unsigned int nCount = 0;
  for (int i = 0; i < GetNodeCount(); ++i) {
    QXModelMesh const* pMesh = GetMesh(GetNode(i)->m_nMesh);
    if (pMesh->m_pVertexPackage != nullptr) nCount += pMesh->m_pVertexPackage->m_nVertexNum;
  }
  return nCount;
}

}  // namespace QXC
