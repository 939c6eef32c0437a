#include <apps/qx3d/QXModelColors.h>

#include <apps/qx3d/QXModelPictures.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <algorithm>
#include <cmath>

namespace QXApp {

namespace {

using QXC::QXColorValue3D;

constexpr QXColorValue3D Ground(0.66, 0.69, 0.60, 1.0);
constexpr QXColorValue3D Roof(0.74, 0.41, 0.31, 1.0);
constexpr QXColorValue3D Wall(0.90, 0.86, 0.78, 1.0);

/// Below this a model counts as dark: old modelling programs wrote palettes of half brightness, in which a lit picture
/// loses everything that does not face the sun.
constexpr double DarkBelow = 0.6;

unsigned char ToByte(double dValue) {
  return static_cast<unsigned char>(std::lround(std::clamp(dValue, 0.0, 1.0) * 255.0));
}

double Brightest(QXC::QXModelMesh const& mesh) {
  double dColor = 1.0;
  if (mesh.m_bBaseColorSet != 0) dColor = std::max({mesh.m_BaseColor.r, mesh.m_BaseColor.g, mesh.m_BaseColor.b});
  QXC::QXVertexDataPackage const& package = *mesh.m_pVertexPackage;
  if (package.m_pColors == nullptr) return dColor;
  int nVertex = 0;
  for (unsigned int i = 0; i < package.m_nColorNum; ++i) {
    unsigned int const nColor = package.m_pColors[i];
    nVertex =
        std::max({nVertex, int{QDC::QDCREDVAL(nColor)}, int{QDC::QDCGREENVAL(nColor)}, int{QDC::QDCBLUEVAL(nColor)}});
  }
  return dColor * nVertex / 255.0;
}

/// The colour as a transparent ink on light paper.
QXColorValue3D PrintOnPaper(QXColorValue3D const& color) {
  constexpr QXColorValue3D Paper(0.92, 0.90, 0.83, 1.0);
  constexpr double Ink = 0.55;
  auto const mix = [](double dInk, double dPaper) { return Ink * dInk + (1.0 - Ink) * dPaper; };
  return QXColorValue3D(mix(color.r, Paper.r), mix(color.g, Paper.g), mix(color.b, Paper.b), color.a);
}

}  // namespace

QXModelColors::QXModelColors(
    QXC::ModelDataInfo const& model, QXC::QXBoundingBox const& box, QXModelPictures const& pictures)
    : m_Pictures(pictures), m_dBottom(box.m_dMin[2]), m_dHeight(box.m_dMax[2] - box.m_dMin[2]) {
  double dBrightest = 0.0;
  for (int i = 0; i < model.GetMeshCount(); ++i) {
    QXC::QXModelMesh const& mesh = *model.GetMesh(i);
    // Pictures are drawn as they are, and say nothing about the colours beside them.
    if (HasColors(mesh) && !HasPicture(mesh)) dBrightest = std::max(dBrightest, Brightest(mesh));
  }
  // A model that is black throughout is meant to be black.
  m_bDark = dBrightest > 0.05 && dBrightest < DarkBelow;
}

bool QXModelColors::HasPicture(QXC::QXModelMesh const& mesh) const {
  return m_Pictures.IsUsable(mesh.m_Texture.m_nImage);
}

bool QXModelColors::HasColors(QXC::QXModelMesh const& mesh) const {
  return mesh.m_bBaseColorSet != 0 || mesh.m_pVertexPackage->m_pColors != nullptr;
}

bool QXModelColors::IsOpaque(QXC::QXModelMesh const& mesh) const {
  return HasPicture(mesh) && mesh.m_Texture.m_eAlpha == QXC::QX_ALPHA_OPAQUE;
}

unsigned int QXModelColors::GetColor(QXC::QXModelMesh const& mesh, unsigned int nVertex,
    QXC::QXVector3d const& vecPosition, QXC::QXVector3d const& vecNormal) const {
  QXColorValue3D color = mesh.m_BaseColor;
  bool const bPicture = HasPicture(mesh);
  if (bPicture && mesh.m_Texture.m_bReplacesColor != 0) color = QXColorValue3D(1.0, 1.0, 1.0, color.a);
  if (unsigned int const* pColors = mesh.m_pVertexPackage->m_pColors) {
    unsigned int const nColor = pColors[nVertex];
    color.r *= QDC::QDCREDVAL(nColor) / 255.0;
    color.g *= QDC::QDCGREENVAL(nColor) / 255.0;
    color.b *= QDC::QDCBLUEVAL(nColor) / 255.0;
    color.a *= QDC::QDCALPHAVAL(nColor) / 255.0;
  }
  if (IsOpaque(mesh)) color.a = 1.0;
  if (bPicture) return QDC::QDCRGBA(ToByte(color.r), ToByte(color.g), ToByte(color.b), ToByte(color.a));
  if (!HasColors(mesh)) {
    bool const bUp = vecNormal.z > 0.4;
    bool const bLow = vecPosition.z <= m_dBottom + 0.02 * m_dHeight;
    color = bUp ? (bLow ? Ground : Roof) : Wall;
  } else if (m_bDark) {
    color = PrintOnPaper(color);
  }
  return QDC::QDCRGBA(ToByte(color.r), ToByte(color.g), ToByte(color.b), ToByte(color.a));
}

bool QXModelColors::IsTransparent(QXC::QXModelMesh const& mesh) const {
  if (IsOpaque(mesh)) return false;
  return mesh.m_BaseColor.a < 1.0 || mesh.m_pVertexPackage->m_bTransparent != 0;
}

}  // namespace QXApp
