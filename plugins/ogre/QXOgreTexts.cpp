#include <plugins/ogre/QXOgreTexts.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <utility>

#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>
#include <QxGraphics3D/text/QXTextureFontManager.h>

#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreRenderTarget.h>
#include <plugins/ogre/QXOgreTextureManager.h>

namespace QXC {

namespace {

/// At 96 dpi.
constexpr double POINTS_OF_A_PIXEL = 0.75;
constexpr std::size_t CORNERS = 4;
constexpr unsigned short STRIDE = 4;
constexpr short COLOR_OFFSET = 3;

QXTextLayout MakeLayout() {
  return QXTextLayout(QXTextureFontManager::GetSingleton());
}

float* Copy(std::vector<float> const& arrValues) {
  auto* const pCopy = new float[arrValues.size()];
  std::copy(arrValues.begin(), arrValues.end(), pCopy);
  return pCopy;
}

}  // namespace

struct QXOgreTexts::Page {
  std::vector<float> m_arrVertices;
  std::vector<float> m_arrPlaces;
  std::vector<float> m_arrOffsets;

  void Add(QXTextGlyph const& glyph, QXVector3d const& vecAnchor, unsigned int nColor) {
    QXTextureFont::TexCoords const& part = glyph.m_TexCoords;
    for (std::size_t i = 0; i < CORNERS; ++i) {
      bool const bRight = i == 1 || i == 2;
      bool const bTop = i >= 2;
      for (double const d : {vecAnchor.x, vecAnchor.y, vecAnchor.z}) m_arrVertices.push_back(static_cast<float>(d));
      m_arrVertices.push_back(std::bit_cast<float>(nColor));
      m_arrPlaces.push_back(bRight ? part.m_fRight : part.m_fLeft);
      m_arrPlaces.push_back(bTop ? part.m_fBottom : part.m_fTop);
      m_arrOffsets.push_back(static_cast<float>(bRight ? glyph.m_nRight : glyph.m_nLeft));
      m_arrOffsets.push_back(static_cast<float>(bTop ? glyph.m_nTop : glyph.m_nBottom));
    }
  }

  std::unique_ptr<QXRenderOperationMultiIndex> MakeOperation() const {
    auto pOperation = std::make_unique<QXRenderOperationMultiIndex>();
    auto const nVertices = static_cast<unsigned int>(m_arrVertices.size() / STRIDE);
    auto* const pBlock = pOperation->m_pVertexBlock = new QXVertexBlock;
    pBlock->m_pBuffer = Copy(m_arrVertices);
    pBlock->m_nVertexCount = nVertices;
    pBlock->m_nStride = STRIDE;
    pBlock->m_nNormalOffset = -1;
    pBlock->m_nColorOffset = COLOR_OFFSET;
    auto* const pCoords = pOperation->m_pTexCoordBlock = new QXTexCoordBlock;
    for (unsigned int i = 0; i < 2; ++i) {
      pCoords->m_pBuffers[i] = Copy(i == 0 ? m_arrPlaces : m_arrOffsets);
      pCoords->m_nCounts[i] = nVertices;
    }
    std::vector<unsigned int> arrIndices;
    for (unsigned int i = 0; i < nVertices; i += CORNERS)
      for (unsigned int const nCorner : {0U, 1U, 2U, 0U, 2U, 3U}) arrIndices.push_back(i + nCorner);
    auto* const pRange = new QXVertexIndexPackage;
    pRange->m_nIndexType = 1;
    pRange->m_nIndexNum = static_cast<unsigned int>(arrIndices.size());
    auto* const pIndices = new unsigned int[arrIndices.size()];
    std::copy(arrIndices.begin(), arrIndices.end(), pIndices);
    pRange->m_pIndices = pIndices;
    pOperation->SetAt(pRange, nullptr);
    return pOperation;
  }
};

QXOgreTexts::QXOgreTexts(QXOgreGraphics3D& graphics3D, QXOgreScene& scene) : m_Graphics3D(graphics3D), m_Scene(scene) {}

QXOgreTexts::~QXOgreTexts() = default;

void QXOgreTexts::SetFont(QdcUnicodeString const& strFaceName, double dPixels) {
  m_Style.SetFaceName(strFaceName);
  double const dPoints = std::round(dPixels * POINTS_OF_A_PIXEL);
  // What is no number stands neither before nor behind other sizes: the lines of other texts would be found for it.
  m_Style.SetSize(std::isfinite(dPoints) ? dPoints : 0.0);
}

void QXOgreTexts::Add(
    QdcUnicodeString const& strText, QXVector3d const& vecPosition, unsigned char bWindow, unsigned int nColor) {
  bool const bPlace = std::isfinite(vecPosition.x) && std::isfinite(vecPosition.y) && std::isfinite(vecPosition.z);
  if (bPlace) m_arrTexts.push_back({strText, m_Style, vecPosition, nColor, bWindow});
}

QXTextLayout const& QXOgreTexts::LayOut(Text const& text) {
  LineMap::key_type key(text.m_Style.GetFaceName(), text.m_Style.GetSize(), text.m_strText);
  auto position = m_mapLines.find(key);
  if (position == m_mapLines.end()) {
    position = m_mapLines.emplace(std::move(key), Line{MakeLayout(), true}).first;
    position->second.m_Layout.SetText(text.m_strText, text.m_Style, 0);
  }
  position->second.m_bUsed = true;
  return position->second.m_Layout;
}

void QXOgreTexts::Collect(unsigned char bWindow, QXVector3d const& vecZero, Pages& pages) {
  for (Text const& text : m_arrTexts) {
    if (text.m_bWindow != bWindow) continue;
    for (QXTextGlyph const& glyph : LayOut(text).GetGlyphs())
      pages[glyph.m_nPage].Add(glyph, text.m_vecPosition - vecZero, text.m_nColor);
  }
}

void QXOgreTexts::DrawPages(Pages const& pages, QXVector3d const& vecZero, unsigned char bWindow,
    QXOgreRenderTarget& target, QXViewport const& viewport) {
  if (pages.empty()) return;
  QXMatrix4d matModel;
  matModel.SetTrans(vecZero);
  QXOgreLook look;
  look.m_Surface.m_eProgram = QX_OGRE_PROGRAM_LABEL;
  look.m_Surface.m_bDepthTest = false;
  look.m_Surface.m_bDepthWrite = false;
  for (auto const& [nPage, page] : pages) {
    auto pDrawable = std::make_unique<QXOgreDrawable>(m_Graphics3D.GetDevice());
    pDrawable->SetGeometry(*page.MakeOperation(), nullptr);
    pDrawable->SetModelMatrix(matModel);
    pDrawable->SetTexture(0, m_Graphics3D.GetTextures().GetTexture(QXTextLayout::GetPageName(nPage), 0));
    pDrawable->SetLook(look);
    pDrawable->SetScene(&m_Scene);
    m_arrDrawables.push_back(std::move(pDrawable));
  }
  QXOgreView view = QXOgreRenderTarget::MakePixelView(viewport);
  if (!bWindow) {
    view.m_matView = m_Graphics3D.m_matView;
    view.m_matProjection = m_Graphics3D.m_matProjection;
    view.m_dVerticalExaggeration = target.GetVerticalExaggeration();
  }
  target.DrawOver(viewport, m_Scene, view);
  m_arrDrawables.clear();
}

void QXOgreTexts::Draw(QXOgreRenderTarget* pTarget, QXViewport const* pViewport) {
  // Texts far out lie close together: what is left of their coordinates is told apart in float.
  auto const first =
      std::find_if(m_arrTexts.begin(), m_arrTexts.end(), [](Text const& text) { return !text.m_bWindow; });
  QXVector3d const vecZero = first == m_arrTexts.end() ? QXVector3d::ZERO : first->m_vecPosition;
  m_Graphics3D.Try([&] {
    Pages world;
    Pages window;
    Collect(0, vecZero, world);
    Collect(1, QXVector3d::ZERO, window);
    QXTextureFontManager::GetSingleton().AddCharBitmapToTexture();
    if (!pTarget) return;
    DrawPages(world, vecZero, 0, *pTarget, *pViewport);
    DrawPages(window, QXVector3d::ZERO, 1, *pTarget, *pViewport);
  });
  m_arrDrawables.clear();
  m_arrTexts.clear();
  DropUnused();
}

void QXOgreTexts::DropUnused() {
  std::erase_if(m_mapLines, [](auto const& entry) { return !entry.second.m_bUsed; });
  for (auto& entry : m_mapLines) entry.second.m_bUsed = false;
}

void QXOgreTexts::ReleaseResources() {
  m_mapLines.clear();
}

}  // namespace QXC
