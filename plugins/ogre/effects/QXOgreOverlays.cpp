#include <plugins/ogre/effects/QXOgreOverlays.h>

#include <algorithm>
#include <cstddef>

#include <QxGraphics3D/frame/QXViewport.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreRenderTarget.h>
#include <plugins/ogre/QXOgreScene.h>

namespace QXC {

namespace {

QXOgreTextureSource* SourceOf(QXOgreTextureUse const* pUse) {
  return pUse ? pUse->GetSource() : nullptr;
}

QXOgreQuads::Corners MakeCorners(
    QdcRect2D const& rcPixels, QdcRect2D const& rcPart, QXColorValue3D const& color, int nHeight) {
  auto const corner = [&](double dX, double dY, double dU, double dV) {
    return QXOgreQuads::Vertex{{static_cast<float>(dX), static_cast<float>(nHeight - dY), 0.0F},
        {static_cast<float>(color.r), static_cast<float>(color.g), static_cast<float>(color.b),
            static_cast<float>(color.a)},
        {static_cast<float>(dU), static_cast<float>(dV)}};
  };
  return {corner(rcPixels.left, rcPixels.bottom, rcPart.left, rcPart.bottom),
      corner(rcPixels.right, rcPixels.bottom, rcPart.right, rcPart.bottom),
      corner(rcPixels.right, rcPixels.top, rcPart.right, rcPart.top),
      corner(rcPixels.left, rcPixels.top, rcPart.left, rcPart.top)};
}

}  // namespace

QXOgreOverlays::QXOgreOverlays(QXOgreDevice& device, QXOgreScene& scene)
    : m_Device(device), m_Scene(scene), m_Quads(device) {
  m_Scene.AddItem(this);
}

QXOgreOverlays::~QXOgreOverlays() {
  m_Scene.RemoveItem(this);
}

QXOgreOverlay* QXOgreOverlays::Create(QdcUnicodeString const& strName) {
  if (strName.IsEmpty() || Find(strName)) return nullptr;
  return m_mapOverlays.emplace(strName, std::make_unique<QXOgreOverlay>(strName)).first->second.get();
}

QXOgreOverlay* QXOgreOverlays::Find(QdcUnicodeString const& strName) const {
  auto const position = m_mapOverlays.find(strName);
  return position == m_mapOverlays.end() ? nullptr : position->second.get();
}

void QXOgreOverlays::Sort() {
  m_arrSorted.clear();
  for (auto const& [strName, pOverlay] : m_mapOverlays)
    if (pOverlay->IsVisible()) m_arrSorted.push_back(pOverlay.get());
  // No stable sort, which takes memory: the name says what comes first of two on one height.
  std::sort(m_arrSorted.begin(), m_arrSorted.end(), [](QXOgreOverlay const* a, QXOgreOverlay const* b) {
    return a->GetZOrder() != b->GetZOrder() ? a->GetZOrder() < b->GetZOrder() : a->GetName() < b->GetName();
  });
}

void QXOgreOverlays::DrawInto(QXOgreRenderTarget& target) {
  Sort();
  if (m_arrSorted.empty()) return;
  QXViewport const viewport(0, 0, static_cast<int>(target.GetWidth()), static_cast<int>(target.GetHeight()));
  target.DrawAbove(viewport, m_Scene, QXOgreRenderTarget::MakePixelView(viewport));
}

void QXOgreOverlays::CollectQuads(QXOgreView const& view) {
  m_Quads.Clear();
  m_arrUses.clear();
  QdcRect2D rcPixels;
  QdcRect2D rcPart;
  for (QXOgreOverlay const* const pOverlay : m_arrSorted) {
    if (!pOverlay->Place(view.m_nWidth, view.m_nHeight, rcPixels, rcPart)) continue;
    QXOgreTextureSource* const pSource = SourceOf(pOverlay->GetUse());
    if (pSource) pSource->PrepareFor(m_Device.GetFrame());
    m_arrUses.push_back(pSource ? pOverlay->GetUse() : nullptr);
    m_Quads.Add(MakeCorners(rcPixels, rcPart, pOverlay->GetColor(), view.m_nHeight));
  }
}

Ogre::Real QXOgreOverlays::QueueRun(std::size_t nFirst, std::size_t nEnd, Ogre::RenderQueue& queue) {
  QXOgreQuads::Run run;
  run.m_nFirst = nFirst;
  run.m_nEnd = nEnd;
  run.m_pUse = m_arrUses[nFirst];
  // All of them, opaque or not: only what is blended is drawn in an order that can be said, the farthest first.
  run.m_Surface.m_bTransparent = true;
  run.m_Surface.m_bDepthTest = false;
  run.m_Surface.m_bDepthWrite = false;
  run.m_fDepth = static_cast<Ogre::Real>(m_arrUses.size() - nFirst);
  m_Quads.Queue(run, queue);
  return run.m_fDepth;
}

void QXOgreOverlays::Queue(
    QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts) {
  CollectQuads(view);
  m_Quads.Upload();
  std::size_t nFirst = 0;
  for (std::size_t i = 1; i <= m_arrUses.size(); ++i) {
    if (i < m_arrUses.size() && SourceOf(m_arrUses[i]) == SourceOf(m_arrUses[nFirst])) continue;
    arrDepths.push_back(QueueRun(nFirst, i, queue));
    nFirst = i;
    ++counts.m_nDrawOperations;
  }
  auto const nQuads = static_cast<unsigned int>(m_arrUses.size());
  counts.m_nTriangles += 2 * nQuads;
  counts.m_nVertices += 4 * nQuads;
}

}  // namespace QXC
