#include <plugins/assimp/QXPictureCollector.h>

#include <plugins/assimp/QXMtlMaps.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>

#include <assimp/GltfMaterial.h>
#include <assimp/material.h>
#include <assimp/scene.h>
#include <assimp/texture.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

namespace QXAssimp {

namespace {

using QXC::QXMatrix4d;

QXC::QXModelWrap MakeWrap(aiMaterial const& material, char const* szKey, aiTextureType eType) {
  int nMode = aiTextureMapMode_Wrap;
  material.Get(szKey, static_cast<unsigned int>(eType), 0, nMode);
  switch (nMode) {
  case aiTextureMapMode_Clamp:
  case aiTextureMapMode_Decal: return QXC::QX_WRAP_CLAMP;
  case aiTextureMapMode_Mirror: return QXC::QX_WRAP_MIRROR;
  default: return QXC::QX_WRAP_REPEAT;
  }
}

QXMatrix4d MakeShift(double dU, double dV) {
  QXMatrix4d mat;
  mat.SetTrans(QXC::QXVector3d(dU, dV, 0.0));
  return mat;
}

QXMatrix4d MakeScale(double dU, double dV) {
  QXMatrix4d mat;
  mat[0][0] = dU;
  mat[1][1] = dV;
  return mat;
}

/// Counter-clockwise as seen on axes of which v points up.
QXMatrix4d MakeTurn(double dAngle) {
  QXMatrix4d mat;
  mat[0][0] = std::cos(dAngle);
  mat[0][1] = std::sin(dAngle);
  mat[1][0] = -mat[0][1];
  mat[1][1] = mat[0][0];
  return mat;
}

/// glTF counts rows from the top and turns about the corner. The importer has its own axes count from the bottom and
/// turns about the middle, and hides the difference in the translation, from where it is taken back.
QXMatrix4d MakeGltfTransform(aiUVTransform const& source) {
  double const dTurn = -static_cast<double>(source.mRotation);
  double const dCos = std::cos(dTurn);
  double const dSin = std::sin(dTurn);
  double const dScaleU = static_cast<double>(source.mScaling.x);
  double const dScaleV = static_cast<double>(source.mScaling.y);
  double const dU = static_cast<double>(source.mTranslation.x) - 0.5 * dScaleU * (-dCos + dSin + 1.0);
  double const dV = 0.5 * dScaleV * (dSin + dCos - 1.0) + 1.0 - dScaleV - static_cast<double>(source.mTranslation.y);
  // Rows point down, which turns the direction of the angle around.
  return MakeScale(dScaleU, dScaleV) * MakeTurn(-dTurn) * MakeShift(dU, dV);
}

/// Every other format: scaled, turned about the middle, moved, with rows counted from the bottom.
QXMatrix4d MakePlainTransform(aiUVTransform const& source) {
  QXMatrix4d const matFlip = MakeScale(1.0, -1.0) * MakeShift(0.0, 1.0);
  return matFlip * MakeScale(static_cast<double>(source.mScaling.x), static_cast<double>(source.mScaling.y)) *
         MakeShift(-0.5, -0.5) * MakeTurn(static_cast<double>(source.mRotation)) * MakeShift(0.5, 0.5) *
         MakeShift(static_cast<double>(source.mTranslation.x), static_cast<double>(source.mTranslation.y)) * matFlip;
}

bool IsGltf(int nType) {
  return nType == QXC::QXFileType::EM_MODEL_GLTF || nType == QXC::QXFileType::EM_MODEL_GLB;
}

/// A transform that turns coordinates into no numbers is none.
bool IsFinite(QXMatrix4d const& mat) {
  for (int i = 0; i < 16; ++i)
    if (!std::isfinite(mat[i / 4][i % 4])) return false;
  return true;
}

void SetAlpha(aiMaterial const& material, QXC::QXModelTexture& texture) {
  aiString strMode;
  if (material.Get(AI_MATKEY_GLTF_ALPHAMODE, strMode) != aiReturn_SUCCESS) return;
  if (std::strcmp(strMode.C_Str(), "OPAQUE") == 0) texture.m_eAlpha = QXC::QX_ALPHA_OPAQUE;
  if (std::strcmp(strMode.C_Str(), "BLEND") == 0) texture.m_eAlpha = QXC::QX_ALPHA_BLEND;
  if (std::strcmp(strMode.C_Str(), "MASK") != 0) return;
  texture.m_eAlpha = QXC::QX_ALPHA_MASK;
  float fCutoff = 0.5f;
  material.Get(AI_MATKEY_GLTF_ALPHACUTOFF, fCutoff);
  if (std::isfinite(fCutoff)) texture.m_dAlphaCutoff = static_cast<double>(fCutoff);
}

std::string GetName(aiMaterial const& material) {
  aiString strName;
  material.Get(AI_MATKEY_NAME, strName);
  return strName.C_Str();
}

/// Modelling programs leave black, or no colour at all, under a picture where it shall stand alone, and their own
/// formats mean it so with any colour.
bool ReplacesColor(aiMaterial const& material, int nType, QXMtlMaps const& maps) {
  if (IsGltf(nType)) return false;
  if (nType != QXC::QXFileType::EM_MODEL_OBJ || maps.IsColorless(GetName(material))) return true;
  aiColor4D color(1.0f, 1.0f, 1.0f, 1.0f);
  material.Get(AI_MATKEY_COLOR_DIFFUSE, color);
  return color.r == 0.0f && color.g == 0.0f && color.b == 0.0f;
}

}  // namespace

QXPictureCollector::QXPictureCollector(
    aiScene const& scene, int nType, QXMtlMaps const& maps, QXC::ModelDataInfo& model)
    : m_Scene(scene), m_nType(nType), m_Maps(maps), m_Model(model) {}

/// The identity without a transform, and where one gives no numbers.
QXMatrix4d QXPictureCollector::MakeTransform(aiMaterial const& material, int nTextureType) const {
  aiUVTransform transform;
  if (QXMtlTransform const* pOptions = m_Maps.Find(GetName(material))) {
    transform.mScaling = aiVector2D(pOptions->m_fScale[0], pOptions->m_fScale[1]);
    transform.mTranslation = aiVector2D(pOptions->m_fOffset[0], pOptions->m_fOffset[1]);
  } else if (material.Get(_AI_MATKEY_UVTRANSFORM_BASE, static_cast<unsigned int>(nTextureType), 0, transform) !=
             aiReturn_SUCCESS) {
    return QXMatrix4d();
  }
  QXMatrix4d const mat = IsGltf(m_nType) ? MakeGltfTransform(transform) : MakePlainTransform(transform);
  return IsFinite(mat) ? mat : QXMatrix4d();
}

QXC::QXModelTexture QXPictureCollector::Collect(aiMaterial const& material, unsigned int& nCoordSet) {
  nCoordSet = 0;
  QXC::QXModelTexture texture;
  for (aiTextureType eType : {aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE}) {
    aiString strName;
    if (material.Get(AI_MATKEY_TEXTURE(eType, 0), strName) != aiReturn_SUCCESS || strName.length == 0) continue;
    texture.m_nImage = AddImage(strName.C_Str());
    int nSet = 0;
    material.Get(AI_MATKEY_UVWSRC(eType, 0), nSet);
    nCoordSet = static_cast<unsigned int>(std::max(nSet, 0));
    texture.m_eWrapU = MakeWrap(material, _AI_MATKEY_MAPPINGMODE_U_BASE, eType);
    texture.m_eWrapV = MakeWrap(material, _AI_MATKEY_MAPPINGMODE_V_BASE, eType);
    texture.m_matTransform = MakeTransform(material, eType);
    texture.m_bReplacesColor = ReplacesColor(material, m_nType, m_Maps) ? 1 : 0;
    SetAlpha(material, texture);
    break;
  }
  return texture;
}

int QXPictureCollector::AddImage(char const* szName) {
  auto const itFound = m_mapImages.find(szName);
  if (itFound != m_mapImages.end()) return itFound->second;
  auto pImage = std::make_unique<QXC::QXModelImage>();
  aiTexture const* pTexture = m_Scene.GetEmbeddedTexture(szName);
  char const* szTold = szName;
  if (pTexture != nullptr) {
    if (pTexture->mFilename.length > 0) szTold = pTexture->mFilename.C_Str();
    // Bytes of a file; the other kind, bare pixels, comes from no format that is read here.
    if (pTexture->mHeight == 0 && pTexture->pcData != nullptr) {
      pImage->m_arrBytes.SetSize(pTexture->mWidth);
      std::memcpy(pImage->m_arrBytes.GetData(), pTexture->pcData, pTexture->mWidth);
    }
  }
  pImage->m_strName = QXC::QdcUnicodeString::FromUTF8(szTold);
  int const nImage = m_Model.AddImage(pImage.get());
  pImage.release();
  m_mapImages.emplace(szName, nImage);
  return nImage;
}

}  // namespace QXAssimp
