#include <apps/qx3d/QXLabelParts.h>

#include <apps/qx3d/QXSceneBuilder.h>
#include <apps/qx3d/QXSceneFile.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/text/QXTextLayout.h>

#include <cmath>
#include <numbers>

namespace QXApp {

namespace {

using QXC::QXVector3d;

unsigned int Pack(unsigned char const (&nColor)[3]) {
  return QDC::QDCRGBA(nColor[0], nColor[1], nColor[2], 255);
}

/// From the pixels of a laid out line to where they are shown: moved to its place, scaled, and turned about the
/// position.
class Placement {
public:
  Placement(QXSceneLabel const& label, QXC::QXTextLayout const& layout) {
    bool const bFlat = label.m_eFacing == QXLabelFacing::Flat;
    // A font of so many points at 96 to an inch is so many pixels high.
    double const dEmPixels = label.GetSize() * 96.0 / 72.0;
    m_dScale = bFlat ? label.m_dHeight / dEmPixels : 1.0;
    m_dShiftX = -0.5 * (label.m_nAlignX + 1) * layout.GetWidth();
    // From the lower edge of the ink at -1 to its upper edge at 1.
    double const dAscent = layout.GetAscent();
    double const dDescent = layout.GetDescent();
    m_dShiftY = dDescent - 0.5 * (label.m_nAlignY + 1) * (dAscent + dDescent);
    // Half a pixel would blur upright letters.
    if (!bFlat) {
      m_dShiftX = std::floor(m_dShiftX);
      m_dShiftY = std::floor(m_dShiftY);
    }
    m_dShiftX = m_dScale * m_dShiftX + label.m_dOffset[0];
    m_dShiftY = m_dScale * m_dShiftY + label.m_dOffset[1];
    // Quarter turns are exact: the letters stay on whole pixels.
    double const dQuarters = label.m_dRotation / 90.0;
    double const dRadians = label.m_dRotation * std::numbers::pi / 180.0;
    m_dSin = dQuarters == std::round(dQuarters) ? std::round(std::sin(dRadians)) : std::sin(dRadians);
    m_dCos = dQuarters == std::round(dQuarters) ? std::round(std::cos(dRadians)) : std::cos(dRadians);
  }

  QXVector3d Apply(double x, double y) const {
    double const dX = m_dScale * x + m_dShiftX;
    double const dY = m_dScale * y + m_dShiftY;
    return QXVector3d(m_dCos * dX - m_dSin * dY, m_dSin * dX + m_dCos * dY, 0.0);
  }

private:
  double m_dScale;
  double m_dShiftX;
  double m_dShiftY;
  double m_dSin;
  double m_dCos;
};

struct Corner {
  int m_nX;
  int m_nY;
  float m_fU;
  float m_fV;
};

/// Two triangles, counter-clockwise as the text is read.
void AddQuad(QXLabelParts::Part& part, QXC::QXTextGlyph const& glyph, QXSceneLabel const& label,
    Placement const& placement, bool bFacing) {
  unsigned int const nColor = Pack(glyph.m_bHalo != 0 ? label.m_nHalo : label.m_nColor);
  QXC::QXTextureFont::TexCoords const& coords = glyph.m_TexCoords;
  QXVector3d const vecAnchor = label.m_vecPosition - part.m_vecOrigin;
  unsigned int const nFirst = part.m_Collector.GetVertexCount();
  for (Corner const& corner : {Corner{glyph.m_nLeft, glyph.m_nBottom, coords.m_fLeft, coords.m_fTop},
           Corner{glyph.m_nRight, glyph.m_nBottom, coords.m_fRight, coords.m_fTop},
           Corner{glyph.m_nRight, glyph.m_nTop, coords.m_fRight, coords.m_fBottom},
           Corner{glyph.m_nLeft, glyph.m_nTop, coords.m_fLeft, coords.m_fBottom}}) {
    QXVector3d const vecOffset = placement.Apply(corner.m_nX, corner.m_nY);
    part.m_Collector.AddVertex(bFacing ? vecAnchor : vecAnchor + vecOffset, QXVector3d::UNIT_Z, nColor);
    part.m_Collector.AddTexCoord(static_cast<double>(corner.m_fU), static_cast<double>(corner.m_fV));
    if (bFacing) part.m_Collector.AddOffset(vecOffset.x, vecOffset.y);
  }
  for (unsigned int const n : {0U, 1U, 2U, 0U, 2U, 3U}) part.m_Collector.AddIndex(nFirst + n);
}

}  // namespace

QXLabelParts::QXLabelParts(QXVector3d const& vecOrigin, QXC::QXBoundingBox const& bounds)
    : m_vecOrigin(vecOrigin), m_dCellSize(GetCellSize(bounds)) {}

void QXLabelParts::Add(QXSceneLabel const& label, QXC::QXTextLayout const& layout) {
  Placement const placement(label, layout);
  QXLabelPartKey key;
  key.m_bOverlay = !label.m_bDepth;
  key.m_bFacing = label.m_eFacing == QXLabelFacing::Camera;
  key.m_nCellX = static_cast<int>(std::round((label.m_vecPosition.x - m_vecOrigin.x) / m_dCellSize));
  key.m_nCellY = static_cast<int>(std::round((label.m_vecPosition.y - m_vecOrigin.y) / m_dCellSize));
  m_nQuads += layout.GetGlyphs().size();
  for (QXC::QXTextGlyph const& glyph : layout.GetGlyphs()) {
    key.m_bLetters = glyph.m_bHalo == 0;
    key.m_nPage = glyph.m_nPage;
    auto const [it, bNew] = m_mapParts.try_emplace(key);
    if (bNew)
      it->second.m_vecOrigin =
          m_vecOrigin + QXVector3d(std::round(key.m_nCellX * m_dCellSize), std::round(key.m_nCellY * m_dCellSize), 0.0);
    AddQuad(it->second, glyph, label, placement, key.m_bFacing);
  }
}

}  // namespace QXApp
