#include <QxGraphics3D/frame/foundation/fileparser/detail/QXModelPassMaker.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseToolkit.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace QXC::detail {

namespace {

/// Nothing of a picture is decoded here; two kinds have no alpha whatever they show.
bool MayHaveAlpha(QXModelImage const& image) {
  int const nType = image.m_arrBytes.GetSize() > 0 ? QXFileParseToolkit::GetFileTypeByContent(
                                                         image.m_arrBytes.GetData(), image.m_arrBytes.GetSize())
                                                   : QXFileParseToolkit::GetFileTypeByExtName(image.m_strFilePath);
  return nType != QXFileType::EM_IMAGE_JPG && nType != QXFileType::EM_IMAGE_HDR;
}

void Blend(QXPass& pass) {
  pass.m_eSourceFactor = BLEND_SOURCE_ALPHA;
  pass.m_eDestFactor = BLEND_ONE_MINUS_SOURCE_ALPHA;
}

void BlendWithoutDepth(QXPass& pass) {
  Blend(pass);
  pass.m_bDepthWrite = 0;
}

/// Pixels from the cutoff on stay, as they are; all of them at a cutoff that is no number.
void CutOut(double dCutoff, QXPass& pass) {
  double const dReference = std::ceil(std::clamp(dCutoff, 0.0, 2.0) * 255.0);
  if (!(dReference >= 1.0)) return;
  pass.m_eAlphaFunction = dReference > 255.0 ? COMPARE_NEVER : COMPARE_GREATER_EQUAL;
  pass.m_nAlphaReference = static_cast<unsigned char>(std::min(dReference, 255.0));
}

void SetColors(QXModelMesh const& mesh, QXPass& pass) {
  QXColorValue3D color = mesh.m_BaseColor;
  if (mesh.m_Texture.m_nImage >= 0 && mesh.m_Texture.m_bReplacesColor != 0)
    color = QXColorValue3D(1.0, 1.0, 1.0, color.a);
  pass.m_clrDiffuse = color;
  pass.m_clrAmbient = color;
  pass.m_clrSpecular = mesh.m_SpecularColor;
  pass.m_clrEmissive = mesh.m_EmissiveColor;
  pass.m_dShininess = mesh.m_dShininess;
}

void SetAlpha(ModelDataInfo const& model, QXModelMesh const& mesh, QXPass& pass) {
  QXModelImage const* pImage = model.GetImage(mesh.m_Texture.m_nImage);
  bool const bColors = mesh.m_pVertexPackage != nullptr && mesh.m_pVertexPackage->m_bTransparent != 0;
  bool const bTransparent = mesh.m_BaseColor.a < 1.0 || bColors;
  switch (pImage != nullptr ? mesh.m_Texture.m_eAlpha : QX_ALPHA_AUTO) {
  case QX_ALPHA_OPAQUE: pass.m_clrDiffuse.a = pass.m_clrAmbient.a = 1.0; break;
  case QX_ALPHA_MASK: CutOut(mesh.m_Texture.m_dAlphaCutoff, pass); break;
  case QX_ALPHA_BLEND: BlendWithoutDepth(pass); break;
  default:
    if (bTransparent) {
      BlendWithoutDepth(pass);
    } else if (pImage != nullptr && MayHaveAlpha(*pImage)) {
      // Opaque for all that is known. With depths it is drawn right if it is, and holes show what is behind them.
      Blend(pass);
      pass.m_eAlphaFunction = COMPARE_GREATER;
    }
  }
}

void SetTexture(ModelDataInfo const& model, QXModelTexture const& texture, QXPass& pass) {
  QXModelImage const* pImage = model.GetImage(texture.m_nImage);
  if (pImage == nullptr) return;
  QXTextureUnitState* pUnit = pass.CreateTextureUnitState();
  pUnit->SetTextureName(MakeModelTextureName(model, texture.m_nImage));
  pUnit->m_matUnit = texture.m_matTransform;
  if (texture.m_eWrapU == QX_WRAP_CLAMP) pass.m_nUnitWords[0] |= UNIT_WORD_CLAMP_U;
  if (texture.m_eWrapV == QX_WRAP_CLAMP) pass.m_nUnitWords[0] |= UNIT_WORD_CLAMP_V;
}

}  // namespace

QdcUnicodeString MakeModelTextureName(ModelDataInfo const& model, int nImage) {
  QXModelImage const* pImage = model.GetImage(nImage);
  if (pImage == nullptr) return QdcUnicodeString();
  if (!pImage->m_strFilePath.IsEmpty()) return pImage->m_strFilePath;
  return model.GetName() + QdcUnicodeString((L"|" + std::to_wstring(nImage)).c_str());
}

std::unique_ptr<QXPass> MakeModelPass(ModelDataInfo const& model, QXModelMesh const& mesh) {
  auto pPass = std::make_unique<QXPass>();
  SetColors(mesh, *pPass);
  SetTexture(model, mesh.m_Texture, *pPass);
  SetAlpha(model, mesh, *pPass);
  return pPass;
}

std::string GetPassBytes(QXPass const& pass) {
  QXMemoryStream stream;
  pass.Save(stream, 1.0);
  return std::string(reinterpret_cast<char const*>(stream.GetData()), static_cast<std::size_t>(stream.GetSize()));
}

}  // namespace QXC::detail
