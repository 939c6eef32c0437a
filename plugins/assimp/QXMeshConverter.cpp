#include <plugins/assimp/QXMeshConverter.h>

#include <plugins/assimp/QXNormalBuilder.h>
#include <plugins/assimp/QXPolygonCutter.h>
#include <plugins/assimp/QXVertexJoiner.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <assimp/GltfMaterial.h>
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

bool IsFinite(aiVector3D const& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// Corners of the triangles that can be drawn, three after three.
std::vector<unsigned int> CollectTriangles(aiMesh const& mesh) {
  static_assert(sizeof(aiVector3D) == 3 * sizeof(float));
  std::vector<unsigned int> vecCorners;
  vecCorners.reserve(std::size_t{3} * mesh.mNumFaces);
  for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
    aiFace const& face = mesh.mFaces[i];
    if (face.mNumIndices < 3 || face.mIndices == nullptr) continue;
    bool const bGood = std::all_of(face.mIndices, face.mIndices + face.mNumIndices,
        [&](unsigned int nVertex) { return nVertex < mesh.mNumVertices && IsFinite(mesh.mVertices[nVertex]); });
    if (bGood) CutPolygon(&mesh.mVertices[0].x, face.mIndices, face.mNumIndices, vecCorners);
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

unsigned char ToByte(double dValue) {
  return static_cast<unsigned char>(std::lround(dValue * 255.0));
}

/// The vertices of the finished mesh: where each comes from, and its normal.
struct VertexPlan {
  std::vector<unsigned int> m_vecSources;
  /// Three floats a vertex.
  std::vector<float> m_vecNormals;
};

/// Whether every corner has a normal that points somewhere. Files write zeros for "compute it yourself".
bool HasUsableNormals(aiMesh const& mesh, std::vector<unsigned int> const& vecCorners) {
  if (!mesh.HasNormals()) return false;
  return std::all_of(vecCorners.begin(), vecCorners.end(), [&](unsigned int nVertex) {
    float const fLength2 = mesh.mNormals[nVertex].SquareLength();
    return fLength2 > 0.25f && fLength2 < 4.0f;  // a length that is no number fails too
  });
}

/// Keeps the vertices that are used, in the order of first use, with the normals of the file.
VertexPlan KeepVertices(aiMesh const& mesh, std::vector<unsigned int>& vecCorners) {
  constexpr unsigned int Unused = std::numeric_limits<unsigned int>::max();
  std::vector<unsigned int> vecNumbers(mesh.mNumVertices, Unused);
  VertexPlan plan;
  for (unsigned int& nCorner : vecCorners) {
    if (vecNumbers[nCorner] == Unused) {
      vecNumbers[nCorner] = static_cast<unsigned int>(plan.m_vecSources.size());
      plan.m_vecSources.push_back(nCorner);
      aiVector3D const& normal = mesh.mNormals[nCorner];
      plan.m_vecNormals.insert(plan.m_vecNormals.end(), {normal.x, normal.y, normal.z});
    }
    nCorner = vecNumbers[nCorner];
  }
  return plan;
}

VertexPlan PlanVertices(aiMesh const& mesh, bool bNormalsOfFile, std::vector<unsigned int>& vecCorners) {
  if (bNormalsOfFile && HasUsableNormals(mesh, vecCorners)) return KeepVertices(mesh, vecCorners);
  VertexPlan plan;
  QXCornerNormals const normals = BuildNormals(&mesh.mVertices[0].x, mesh.mNumVertices, vecCorners);
  SplitByNormal(normals, mesh.mNumVertices, vecCorners, plan.m_vecSources, plan.m_vecNormals);
  return plan;
}

void FillPositions(
    aiMesh const& mesh, VertexPlan const& plan, double const (&dOffset)[3], QXC::QXVertexDataPackage& package) {
  unsigned int const nCount = static_cast<unsigned int>(plan.m_vecSources.size());
  package.SetVertexNum(nCount, 0);
  float* pTarget = package.m_pVertices;
  for (unsigned int nVertex : plan.m_vecSources)
    for (unsigned int nAxis = 0; nAxis < 3; ++nAxis)
      *pTarget++ = static_cast<float>(static_cast<double>(mesh.mVertices[nVertex][nAxis]) - dOffset[nAxis]);
  package.SetNormalNum(nCount, 0);
  std::copy(plan.m_vecNormals.begin(), plan.m_vecNormals.end(), package.m_pNormals);
}

/// The importer counts the rows of a picture from the bottom.
void FillTexCoords(aiMesh const& mesh, VertexPlan const& plan, unsigned int nSet, QXC::QXVertexDataPackage& package) {
  if (!mesh.HasTextureCoords(nSet)) return;
  package.SetTexCoordNum(0, static_cast<unsigned int>(plan.m_vecSources.size()), 0);
  float* pTarget = package.m_pTexCoords[0];
  for (unsigned int nVertex : plan.m_vecSources) {
    aiVector3D const& coord = mesh.mTextureCoords[nSet][nVertex];
    *pTarget++ = std::isfinite(coord.x) ? coord.x : 0.0f;
    *pTarget++ = std::isfinite(coord.y) ? 1.0f - coord.y : 0.0f;
  }
}

void FillColors(aiMesh const& mesh, VertexPlan const& plan, bool bLinear, QXC::QXVertexDataPackage& package) {
  if (!mesh.HasVertexColors(0)) return;
  package.SetColorNum(static_cast<unsigned int>(plan.m_vecSources.size()), 0);
  unsigned int* pTarget = package.m_pColors;
  for (unsigned int nVertex : plan.m_vecSources) {
    QXC::QXColorValue3D const color = MakeColor(mesh.mColors[0][nVertex], bLinear);
    *pTarget++ = QDC::QDCRGBA(ToByte(color.r), ToByte(color.g), ToByte(color.b), ToByte(color.a));
    if (color.a < 1.0) package.m_bTransparent = 1;
  }
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

/// Formats without materials get one that the importer made up; its grey is nobody's choice. In glTF, whose made-up
/// material is white and whose materials need no names, any other colour was chosen.
bool IsMadeUp(QXC::QdcUnicodeString const& strName, aiColor4D const& color, bool bGltf) {
  if (strName.IsEmpty()) return !bGltf || color == aiColor4D(1.0f, 1.0f, 1.0f, 1.0f);
  return strName == L"DefaultMaterial" || strName == L"%%%DEFAULT" || strName == L"$ColladaAutoName$_0" ||
         strName == L"DefaultPLYMaterial";
}

/// Black for a colour that is not stated.
QXC::QXColorValue3D ReadColor(aiMaterial const& material, char const* szKey, float fFactor, bool bLinear) {
  aiColor4D color(0.0f, 0.0f, 0.0f, 1.0f);
  if (material.Get(szKey, 0, 0, color) != aiReturn_SUCCESS) return QXC::QXColorValue3D(0.0, 0.0, 0.0, 1.0);
  return MakeColor(aiColor4D(color.r * fFactor, color.g * fFactor, color.b * fFactor, 1.0f), bLinear);
}

/// Importers fill in highlights for materials that the file says have none.
bool HasHighlights(aiMaterial const& material) {
  int nShading = aiShadingMode_Gouraud;
  material.Get(AI_MATKEY_SHADING_MODEL, nShading);
  return nShading == aiShadingMode_Phong || nShading == aiShadingMode_Blinn || nShading == aiShadingMode_CookTorrance;
}

void SetHighlights(aiMaterial const& material, QXC::QXModelMesh& mesh) {
  float fShininess = 0.0f;
  float fStrength = 1.0f;
  material.Get(AI_MATKEY_SHININESS, fShininess);
  material.Get(AI_MATKEY_SHININESS_STRENGTH, fStrength);
  if (!HasHighlights(material) || !std::isfinite(fShininess) || fShininess <= 0.0f) return;
  // What is no number makes black, and then there are no highlights.
  mesh.m_SpecularColor = ReadColor(material, "$clr.specular", fStrength, false);
  mesh.m_dShininess = static_cast<double>(fShininess);
}

/// glTF says whether the opacity of a colour means anything; by default it does not. Beside a picture that stands in the
/// picture's reference.
bool IsOpaqueColor(aiMaterial const& material) {
  if (material.GetTextureCount(aiTextureType_BASE_COLOR) + material.GetTextureCount(aiTextureType_DIFFUSE) > 0)
    return false;
  aiString strMode;
  return material.Get(AI_MATKEY_GLTF_ALPHAMODE, strMode) == aiReturn_SUCCESS && strMode == aiString("OPAQUE");
}

void SetMaterial(aiMaterial const& material, bool bLinearColors, QXC::QXModelMesh& mesh) {
  aiString strName;
  if (material.Get(AI_MATKEY_NAME, strName) == aiReturn_SUCCESS)
    mesh.m_strMaterialName = QXC::QdcUnicodeString::FromUTF8(strName.C_Str());
  aiColor4D color(1.0f, 1.0f, 1.0f, 1.0f);
  bool const bColor = material.Get(AI_MATKEY_BASE_COLOR, color) == aiReturn_SUCCESS ||
                      material.Get(AI_MATKEY_COLOR_DIFFUSE, color) == aiReturn_SUCCESS;
  if (!bColor || IsMadeUp(mesh.m_strMaterialName, color, bLinearColors)) return;
  float fOpacity = 1.0f;
  material.Get(AI_MATKEY_OPACITY, fOpacity);
  // Exporters disagree on which end of the scale is clear; what nobody could see was meant to be solid.
  if (fOpacity > 0.0f && fOpacity < color.a) color.a = fOpacity;
  if (IsOpaqueColor(material)) color.a = 1.0f;
  mesh.m_BaseColor = MakeColor(color, bLinearColors);
  mesh.m_bBaseColorSet = 1;
  mesh.m_EmissiveColor = ReadColor(material, "$clr.emissive", 1.0f, bLinearColors);
  // The materials of glTF have roughness instead.
  if (!bLinearColors) SetHighlights(material, mesh);
}

}  // namespace

std::unique_ptr<QXC::QXModelMesh> ConvertMesh(
    aiMesh const& mesh, aiMaterial const* pMaterial, QXMeshRules const& rules, double (&dOffset)[3]) {
  if (mesh.mVertices == nullptr || mesh.mFaces == nullptr) return nullptr;
  std::vector<unsigned int> vecCorners = CollectTriangles(mesh);
  if (vecCorners.empty() || vecCorners.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    return nullptr;
  ChooseOffset(mesh, vecCorners, dOffset);

  auto pResult = std::make_unique<QXC::QXModelMesh>();
  pResult->m_strName = QXC::QdcUnicodeString::FromUTF8(mesh.mName.C_Str());
  pResult->m_pVertexPackage = new QXC::QXVertexDataPackage;
  VertexPlan const plan = PlanVertices(mesh, rules.m_bNormalsOfFile, vecCorners);
  FillPositions(mesh, plan, dOffset, *pResult->m_pVertexPackage);
  FillTexCoords(mesh, plan, rules.m_nCoordSet, *pResult->m_pVertexPackage);
  FillColors(mesh, plan, rules.m_bLinearColors, *pResult->m_pVertexPackage);
  JoinVertices(*pResult->m_pVertexPackage, vecCorners);
  std::unique_ptr<QXC::QXIndexPackage> pIndices = MakeIndices(vecCorners, pResult->m_pVertexPackage->m_nVertexNum);
  pResult->m_arrIndexPackages.Add(pIndices.get());
  pIndices.release();
  if (pMaterial != nullptr) SetMaterial(*pMaterial, rules.m_bLinearColors, *pResult);
  pResult->UpdateBounds();
  return pResult;
}

}  // namespace QXAssimp
