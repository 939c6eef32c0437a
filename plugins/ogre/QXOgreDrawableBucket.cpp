// The side of drawables that draws buckets of static geometry.
#include <plugins/ogre/QXOgreDrawable.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>

#include <plugins/ogre/QXOgreBucket.h>
#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreTextureUnits.h>

namespace QXC {

namespace {

bool IsTransparent(unsigned int nColor) {
  return nColor >> 24U != 0xFFU;
}

Ogre::Vector4 ToVector4(QXColorValue3D const& color) {
  return {static_cast<float>(color.r), static_cast<float>(color.g), static_cast<float>(color.b),
      static_cast<float>(color.a)};
}

}  // namespace

void QXOgreDrawable::SetBucket(
    QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances, QXTextureManager* pManager) {
  ClearGeometry();
  if (!m_pDevice) return;
  m_pBucket = std::make_unique<QXOgreBucket>(bucket, arrLevelDistances, pManager, m_Geometry);
  std::vector<QXOgreRange> const& arrRanges = m_Geometry.GetRanges();
  for (std::size_t i = 0; i < arrRanges.size(); ++i)
    m_arrRenderables.push_back(
        std::make_unique<QXOgreRenderable>(*m_pDevice, m_Geometry.GetVertexData(), arrRanges[i].m_pIndexData.get(),
            arrRanges[i].m_eOperationType, arrRanges[i].m_Color, m_pBucket->GetRange(i).m_Place));
  SetIdentities();
  UpdateMaterials();
  UpdateWorld();
}

void QXOgreDrawable::SetBatchState(QXBatchSelAndVertexColor const& state) {
  if (!m_pBucket) return;
  for (auto const& [nKey, bSelected] : state.m_mapSelections) SelectObject(nKey, bSelected != 0);
  for (auto const& [nKey, nColor] : state.m_mapVertexColors) {
    QXOgreBucket::Span const* const pSpan = m_pBucket->FindObject(nKey);
    if (!pSpan) continue;
    m_Geometry.FillColor(pSpan->m_nFirst, pSpan->m_nCount, nColor);
    if (IsTransparent(nColor)) m_pBucket->NoteTransparent(*pSpan);
  }
  UpdateMaterials();
}

void QXOgreDrawable::NoteTransparent(unsigned int nFirst, unsigned int nCount, unsigned int const* pColors) {
  if (nCount > 0 && std::any_of(pColors, pColors + nCount, IsTransparent)) m_pBucket->NoteTransparent({nFirst, nCount});
}

void QXOgreDrawable::PutPlace(std::size_t nRange, QXMatrix4d const& matToEye) {
  QXOgreBucketRange& range = m_pBucket->GetRange(nRange);
  range.m_Place = m_Place;
  auto const fDepth = static_cast<float>(-range.m_vecCenter.MultiplyMatrix(matToEye).z);
  if (std::isfinite(fDepth)) range.m_Place.m_fDepth = fDepth;
}

void QXOgreDrawable::MoveTextures(std::size_t nRange) {
  QXOgreBucketRange& range = m_pBucket->GetRange(nRange);
  // The second texture of those that are chosen among is that of another pass.
  unsigned int const nUnits =
      range.m_Look.m_Surface.m_eProgram == QX_OGRE_PROGRAM_CHOICE ? 1 : QXOgreBucketMotion::UNITS;
  for (unsigned int nUnit = 0; nUnit < nUnits; ++nUnit) {
    if (!range.m_Motion.Moves(nUnit)) continue;
    range.m_Textures.SetMatrix(nUnit, range.m_matPass * range.m_Motion.GetTransform(nUnit, QdcTime::GetMillisecond()));
    QXMatrix4d const matTexture = range.m_Textures.GetMatrix(nUnit) * m_Textures.GetMatrix(nUnit);
    m_arrRenderables[nRange]->SetTextureMatrix(nUnit, matTexture);
  }
}

bool QXOgreDrawable::IsLevelDrawn(std::size_t nRange, double dDistance) const {
  return m_pBucket->IsLevelDrawn(m_pBucket->GetRange(nRange).m_nLevel, dDistance);
}

void QXOgreDrawable::UpdateBucketMaterial(std::size_t nRange) {
  QXOgreBucketRange const& range = m_pBucket->GetRange(nRange);
  QXOgrePassLook const& pass = range.m_Look;
  QXOgreRenderable& renderable = *m_arrRenderables[nRange];
  QXOgreSurface surface = Combine(m_Look.m_Surface, pass.m_Surface);
  renderable.SetBindings(FindBucketBindings(nRange, surface.m_eProgram));
  surface.m_strCoordSets = renderable.GetCoordSets();
  QXColorValue3D const own = GetTint();
  QXColorValue3D const& diffuse = pass.m_Diffuse;
  QXColorValue3D const tint(own.r * diffuse.r, own.g * diffuse.g, own.b * diffuse.b, own.a * diffuse.a);
  surface.m_bTransparent = pass.m_Surface.m_bTransparent || tint.a * renderable.GetColor().a < 1.0 ||
                           range.m_bTransparentVertices || renderable.HasTransparentTextures();
  renderable.SetMaterial(m_pDevice->GetMaterials().Get(surface));
  renderable.SetLook(tint, m_Look.m_SelectionColor, m_Look.m_bSelected, m_Look.m_bLight && pass.m_bLight);
  renderable.setCustomParameter(QX_OGRE_AMBIENT, ToVector4(pass.m_Ambient));
  renderable.setCustomParameter(QX_OGRE_EMISSIVE, ToVector4(pass.m_Emissive));
  renderable.setCustomParameter(QX_OGRE_HIGHLIGHT, ToVector4(pass.m_Highlight));
}

std::vector<QXOgreBinding> QXOgreDrawable::FindBucketBindings(std::size_t nRange, int& eProgram) const {
  if (eProgram == QX_OGRE_PROGRAM_LINES) return {};
  QXOgreTextureUnits const& units = m_pDevice->GetTextureUnits();
  QXOgreBucketRange const& range = m_pBucket->GetRange(nRange);
  int const nFirstSet = m_Geometry.FindTexCoordSet(units.GetCoordSet(0));
  bool const bOwn = range.m_Textures.HasTextures();
  std::size_t nMost = 8;
  if (eProgram != QX_OGRE_PROGRAM_PASS) {
    bool const bLayers = nFirstSet >= 0 && m_Geometry.GetTexCoordDim(static_cast<unsigned int>(nFirstSet)) == 4;
    if (bOwn && bLayers) return FindFoldedBindings(nRange, eProgram);
    // Nobody says which texture it is: it is the one that the pass had before others were folded into it.
    nMost = eProgram == QX_OGRE_PROGRAM_PAIRS ? 2 : 1;
    eProgram = QX_OGRE_PROGRAM_PASS;
  }
  QXOgreTextureSet const& set = bOwn ? range.m_Textures : m_Textures;
  std::vector<QXOgreBinding> arrBindings;
  for (QXOgreTextureSet::Unit const& unit : set.GetUnits()) {
    if (!unit.GetSource() || unit.m_nUnit >= nMost) continue;
    int const nSet = m_Geometry.FindTexCoordSet(units.GetCoordSet(unit.m_nUnit));
    if (nSet < 0) continue;
    arrBindings.push_back(Bind(set, unit, nSet));
    arrBindings.back().m_bClampU = range.m_bClampU[unit.m_nUnit];
    arrBindings.back().m_bClampV = range.m_bClampV[unit.m_nUnit];
  }
  return arrBindings;
}

std::vector<QXOgreBinding> QXOgreDrawable::FindFoldedBindings(std::size_t nRange, int eProgram) const {
  QXOgreTextureUnits const& units = m_pDevice->GetTextureUnits();
  QXOgreBucketRange const& range = m_pBucket->GetRange(nRange);
  int const nSets[2] = {
      m_Geometry.FindTexCoordSet(units.GetCoordSet(0)), m_Geometry.FindTexCoordSet(units.GetCoordSet(1))};
  std::vector<QXOgreBinding> arrBindings;
  for (QXOgreTextureSet::Unit const& unit : range.m_Textures.GetUnits()) {
    if (!unit.GetSource()) continue;
    // The meshes count places: that of a texture that is not there stays.
    arrBindings.resize(unit.m_nUnit + 1);
    arrBindings.back() = Bind(range.m_Textures, unit, 0);
    arrBindings.back().m_bClampU = range.m_bClampU[unit.m_nUnit];
    arrBindings.back().m_bClampV = range.m_bClampV[unit.m_nUnit];
  }
  for (std::size_t i = 0; i < arrBindings.size(); ++i)
    arrBindings[i].m_nCoordSet = nSets[eProgram == QX_OGRE_PROGRAM_PAIRS ? i % 2 : 0];
  return arrBindings;
}

}  // namespace QXC
