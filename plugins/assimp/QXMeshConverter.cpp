#include <plugins/assimp/QXMeshConverter.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <assimp/material.h>
#include <assimp/mesh.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace QXAssimp {

namespace {

/// Most vertices that 16-bit indices reach. The last number stays free: devices read it as a restart mark.
constexpr unsigned int MaxShortVertices = 65535;

bool IsFinite(aiVector3D const& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

/// Corners of the triangles that can be drawn, three after three.
std::vector<unsigned int> CollectTriangles(aiMesh const& mesh) {
  std::vector<unsigned int> vecCorners;
  vecCorners.reserve(std::size_t{3} * mesh.mNumFaces);
  for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
    aiFace const& face = mesh.mFaces[i];
    if (face.mNumIndices != 3) continue;
    bool const bGood = std::all_of(face.mIndices, face.mIndices + 3,
        [&](unsigned int nVertex) { return nVertex < mesh.mNumVertices && IsFinite(mesh.mVertices[nVertex]); });
    if (bGood) vecCorners.insert(vecCorners.end(), face.mIndices, face.mIndices + 3);
  }
  return vecCorners;
}

/// Whole numbers, so that subtracting them from a float of their size is exact; zeros near the origin.
void ChooseOffset(aiMesh const& mesh, std::vector<unsigned int> const& vecCorners, double (&dOffset)[3]) {
  for (unsigned int nAxis = 0; nAxis < 3; ++nAxis) {
    double dMin = std::numeric_limits<double>::max();
    double dMax = -dMin;
    for (unsigned int nVertex : vecCorners) {
      double const d = static_cast<double>(mesh.mVertices[nVertex][nAxis]);
      dMin = std::min(dMin, d);
      dMax = std::max(dMax, d);
    }
    double const dMiddle = std::round(0.5 * dMin + 0.5 * dMax);
    dOffset[nAxis] = std::fabs(dMiddle) > 2.0 * (dMax - dMin) && std::fabs(dMiddle) > 1000.0 ? dMiddle : 0.0;
  }
}

double EncodeSrgb(double dLinear) {
  if (dLinear <= 0.0031308) return 12.92 * dLinear;
  return 1.055 * std::pow(dLinear, 1.0 / 2.4) - 0.055;
}

QXC::QXColorValue3D MakeColor(aiColor4D const& color, bool bLinear) {
  auto const convert = [bLinear](float fValue) {
    double const dValue = std::isfinite(fValue) ? std::clamp(static_cast<double>(fValue), 0.0, 1.0) : 0.0;
    return bLinear ? EncodeSrgb(dValue) : dValue;
  };
  double const dAlpha = std::isfinite(color.a) ? std::clamp(static_cast<double>(color.a), 0.0, 1.0) : 1.0;
  return QXC::QXColorValue3D(convert(color.r), convert(color.g), convert(color.b), dAlpha);
}

unsigned char ToByte(double dValue) { return static_cast<unsigned char>(std::lround(dValue * 255.0)); }

void StoreVector(aiVector3D const& vec, float* pTarget) {
  for (unsigned int nAxis = 0; nAxis < 3; ++nAxis) pTarget[nAxis] = vec[nAxis];
}

void FillPositions(aiMesh const& mesh, std::vector<unsigned int> const& vecUsed, double const (&dOffset)[3],
    QXC::QXVertexDataPackage& package) {
  package.SetVertexNum(static_cast<unsigned int>(vecUsed.size()), 0);
  float* pTarget = package.m_pVertices;
  for (unsigned int nVertex : vecUsed)
    for (unsigned int nAxis = 0; nAxis < 3; ++nAxis)
      *pTarget++ = static_cast<float>(static_cast<double>(mesh.mVertices[nVertex][nAxis]) - dOffset[nAxis]);
}

void FillAttributes(aiMesh const& mesh, std::vector<unsigned int> const& vecUsed, bool bLinearColors,
    QXC::QXVertexDataPackage& package) {
  unsigned int const nCount = static_cast<unsigned int>(vecUsed.size());
  if (mesh.HasNormals()) package.SetNormalNum(nCount, 0);
  if (mesh.HasTextureCoords(0)) package.SetTexCoordNum(0, nCount, 0);
  if (mesh.HasVertexColors(0)) package.SetColorNum(nCount, 0);
  for (std::size_t i = 0; i < vecUsed.size(); ++i) {
    unsigned int const nVertex = vecUsed[i];
    if (mesh.HasNormals()) {
      // A triangle without an area has no direction; any will do, as long as it is a number.
      aiVector3D const& normal = mesh.mNormals[nVertex];
      StoreVector(IsFinite(normal) ? normal : aiVector3D(0.0f, 0.0f, 1.0f), package.m_pNormals + 3 * i);
    }
    if (mesh.HasTextureCoords(0)) {
      aiVector3D const& coord = mesh.mTextureCoords[0][nVertex];
      package.m_pTexCoords[0][2 * i] = std::isfinite(coord.x) ? coord.x : 0.0f;
      package.m_pTexCoords[0][2 * i + 1] = std::isfinite(coord.y) ? coord.y : 0.0f;
    }
    if (mesh.HasVertexColors(0)) {
      QXC::QXColorValue3D const color = MakeColor(mesh.mColors[0][nVertex], bLinearColors);
      package.m_pColors[i] = QDC::QDCRGBA(ToByte(color.r), ToByte(color.g), ToByte(color.b), ToByte(color.a));
      if (color.a < 1.0) package.m_bTransparent = 1;
    }
  }
}

/// Drops the vertices that nothing uses, so that neither bounds nor memory count them.
/// The corners get the new numbers, in the order of first use, which devices like as well.
/// @return  the old number of each vertex kept
std::vector<unsigned int> Compact(unsigned int nVertexNum, std::vector<unsigned int>& vecCorners) {
  constexpr unsigned int Unused = std::numeric_limits<unsigned int>::max();
  std::vector<unsigned int> vecNumbers(nVertexNum, Unused);
  std::vector<unsigned int> vecUsed;
  for (unsigned int& nCorner : vecCorners) {
    if (vecNumbers[nCorner] == Unused) {
      vecNumbers[nCorner] = static_cast<unsigned int>(vecUsed.size());
      vecUsed.push_back(nCorner);
    }
    nCorner = vecNumbers[nCorner];
  }
  return vecUsed;
}

std::unique_ptr<QXC::QXIndexPackage> MakeIndices(std::vector<unsigned int> const& vecCorners, unsigned int nVertexNum) {
  auto pPackage = std::make_unique<QXC::QXIndexPackage>();
  int const nCount = static_cast<int>(vecCorners.size());
  if (nVertexNum <= MaxShortVertices) {
    pPackage->SetIndexNum(nCount);
    std::transform(vecCorners.begin(), vecCorners.end(), pPackage->GetIndices16(),
        [](unsigned int nVertex) { return static_cast<unsigned short>(nVertex); });
  } else {
    pPackage->SetIndexNum32(nCount);
    std::copy(vecCorners.begin(), vecCorners.end(), pPackage->GetIndices32());
  }
  return pPackage;
}

/// Formats without materials get one that the importer made up; its grey is nobody's choice.
bool IsMadeUp(QXC::QdcUnicodeString const& strName) {
  return strName.IsEmpty() || strName == L"DefaultMaterial" || strName == L"%%%DEFAULT" ||
      strName == L"$ColladaAutoName$_0" || strName == L"DefaultPLYMaterial";
}

void SetMaterial(aiMaterial const& material, bool bLinearColors, QXC::QXModelMesh& mesh) {
  aiString strName;
  if (material.Get(AI_MATKEY_NAME, strName) == aiReturn_SUCCESS)
    mesh.m_strMaterialName = QXC::QdcUnicodeString::FromUTF8(strName.C_Str());
  aiColor4D color(1.0f, 1.0f, 1.0f, 1.0f);
  bool const bColor = material.Get(AI_MATKEY_BASE_COLOR, color) == aiReturn_SUCCESS ||
      material.Get(AI_MATKEY_COLOR_DIFFUSE, color) == aiReturn_SUCCESS;
  if (!bColor || IsMadeUp(mesh.m_strMaterialName)) return;
  float fOpacity = 1.0f;
  if (material.Get(AI_MATKEY_OPACITY, fOpacity) == aiReturn_SUCCESS && fOpacity < color.a) color.a = fOpacity;
  mesh.m_BaseColor = MakeColor(color, bLinearColors);
  mesh.m_bBaseColorSet = 1;
}

}  // namespace

std::unique_ptr<QXC::QXModelMesh> ConvertMesh(
    aiMesh const& mesh, aiMaterial const* pMaterial, bool bLinearColors, double (&dOffset)[3]) {
  if (mesh.mVertices == nullptr || mesh.mFaces == nullptr) return nullptr;
  std::vector<unsigned int> vecCorners = CollectTriangles(mesh);
  if (vecCorners.empty() || vecCorners.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    return nullptr;
  ChooseOffset(mesh, vecCorners, dOffset);

  auto pResult = std::make_unique<QXC::QXModelMesh>();
  pResult->m_strName = QXC::QdcUnicodeString::FromUTF8(mesh.mName.C_Str());
  pResult->m_pVertexPackage = new QXC::QXVertexDataPackage;
  std::vector<unsigned int> const vecUsed = Compact(mesh.mNumVertices, vecCorners);
  FillPositions(mesh, vecUsed, dOffset, *pResult->m_pVertexPackage);
  FillAttributes(mesh, vecUsed, bLinearColors, *pResult->m_pVertexPackage);
  std::unique_ptr<QXC::QXIndexPackage> pIndices = MakeIndices(vecCorners, pResult->m_pVertexPackage->m_nVertexNum);
  pResult->m_arrIndexPackages.Add(pIndices.get());
  pIndices.release();
  if (pMaterial != nullptr) SetMaterial(*pMaterial, bLinearColors, *pResult);
  pResult->UpdateBounds();
  return pResult;
}

}  // namespace QXAssimp
