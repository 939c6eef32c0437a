#include <plugins/ogre/QXOgreBillboardSet.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>

#include <OgreHardwareBufferManager.h>
#include <OgreRenderQueue.h>
#include <OgreVertexIndexData.h>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/texture/QXTexture.h>

#include <plugins/ogre/QXOgreBillboard.h>
#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/QXOgreImage.h>
#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/picking/QXOgrePickFilter.h>

namespace QXC {

namespace {

constexpr std::size_t LEAST_ROOM = 64;
constexpr std::size_t CORNERS = 4;
constexpr std::size_t INDICES = 6;

/// Whether four corners, x and y of each, lie beyond one side of what the projection shows.
bool IsOutside(std::array<double, 8> const& arrCorners, double dZ, QXMatrix4d const& matProjection) {
  unsigned int nOutside = 0x3F;
  for (std::size_t i = 0; i < CORNERS; ++i) {
    double const dPoint[4] = {arrCorners[2 * i], arrCorners[2 * i + 1], dZ, 1.0};
    double dClip[4] = {};
    for (int k = 0; k < 4; ++k)
      for (int j = 0; j < 4; ++j) dClip[k] += dPoint[j] * matProjection[j][k];
    unsigned int nSides = 0;
    for (unsigned int k = 0; k < 3; ++k) {
      if (dClip[k] < -dClip[3]) nSides |= 1U << (2 * k);
      if (dClip[k] > dClip[3]) nSides |= 2U << (2 * k);
    }
    nOutside &= nSides;
  }
  return nOutside != 0;
}

/// How far a place on the screen has to move to meet a whole pixel, in pixels.
double ToWholePixel(double dClip, double dW, int nPixels) {
  double const dPlace = (dClip / dW * 0.5 + 0.5) * nPixels;
  return std::round(dPlace) - dPlace;
}

}  // namespace

struct QXOgreBillboardSet::Batch {
  Batch(QXOgreDevice& device, Ogre::VertexData* pVertexData)
      : m_Renderable(device, pVertexData, &m_IndexData, QX_OPERATION_TRIANGLE_LIST, QXColorValue3D::White, m_Place) {
    m_Renderable.SetIdentity(0, QX_OGRE_NUMBERING_WHOLE);
  }

  Ogre::IndexData m_IndexData;
  /// The vertices are in the coordinates of the eye already.
  QXOgrePlace m_Place;
  QXOgreRenderable m_Renderable;
};

QXOgreBillboardSet::QXOgreBillboardSet(QXOgreDevice& device)
    : m_Device(device), m_arrBindings(1), m_SelectionColor(QXOgreLook().m_SelectionColor), m_nRoom(0), m_nMade(0) {}

QXOgreBillboardSet::~QXOgreBillboardSet() {
  for (QXOgreBillboard* const pBillboard : m_arrBillboards) pBillboard->m_pSet = nullptr;
}

void QXOgreBillboardSet::Add(QXOgreBillboard* pBillboard) {
  pBillboard->m_nIndex = m_arrBillboards.size();
  pBillboard->m_nNumber = m_nMade++;
  m_arrBillboards.push_back(pBillboard);
}

void QXOgreBillboardSet::Remove(QXOgreBillboard* pBillboard) {
  m_arrBillboards[pBillboard->m_nIndex] = m_arrBillboards.back();
  m_arrBillboards[pBillboard->m_nIndex]->m_nIndex = pBillboard->m_nIndex;
  m_arrBillboards.pop_back();
}

QXBoundingBox QXOgreBillboardSet::GetBounds() const {
  QXBoundingBox box;
  for (QXOgreBillboard const* const p : m_arrBillboards) {
    // Turned about the middle of the lower edge it stays inside this ball.
    double const dRadius = p->m_bPixels ? 0.0 : std::hypot(0.5 * p->m_dWidth, p->m_dHeight);
    bool const bFinite = std::isfinite(static_cast<float>(p->m_vecPosition.x + dRadius)) &&
                         std::isfinite(static_cast<float>(p->m_vecPosition.y + dRadius)) &&
                         std::isfinite(static_cast<float>(p->m_vecPosition.z + dRadius));
    if (!p->m_bVisible || !bFinite) continue;
    QXVector3d const vecRadius(dRadius, dRadius, dRadius);
    box.Merge(QXBoundingBox(p->m_vecPosition - vecRadius, p->m_vecPosition + vecRadius));
  }
  return box;
}

bool QXOgreBillboardSet::Place(QXOgreBillboard const& billboard, QXOgreView const& view, Item& item) {
  QXVector3d vecPosition = billboard.m_vecPosition;
  vecPosition.z *= view.m_dVerticalExaggeration;
  QXVector3d const vecEye = (vecPosition - view.m_vecOrigin).MultiplyMatrix(view.m_matView);
  double const dDistance = vecEye.Length();
  if (dDistance < billboard.m_dNear || (billboard.m_dFar > 0.0 && dDistance > billboard.m_dFar)) return false;
  QXMatrix4d const& mat = view.m_matProjection;
  double const dW = vecEye.x * mat[0][3] + vecEye.y * mat[1][3] + vecEye.z * mat[2][3] + mat[3][3];
  // Written so that what is no number is not drawn either.
  if (!(dW > 0.0 && billboard.m_dWidth > 0.0 && billboard.m_dHeight > 0.0)) return false;
  // Units of the eye's coordinates in one of the size's.
  double const dUnitX = billboard.m_bPixels ? 2.0 * dW / (mat[0][0] * view.m_nWidth) : 1.0;
  double const dUnitY = billboard.m_bPixels ? 2.0 * dW / (mat[1][1] * view.m_nHeight) : 1.0;
  double const dHalf = 0.5 * billboard.m_dWidth;
  double const arrX[CORNERS] = {-dHalf, dHalf, dHalf, -dHalf};
  double const arrY[CORNERS] = {0.0, 0.0, billboard.m_dHeight, billboard.m_dHeight};
  double const dCos = std::cos(billboard.m_dRotation);
  double const dSin = std::sin(billboard.m_dRotation);
  for (std::size_t i = 0; i < CORNERS; ++i) {
    item.m_arrCorners[2 * i] = vecEye.x + (arrX[i] * dCos - arrY[i] * dSin) * dUnitX;
    item.m_arrCorners[2 * i + 1] = vecEye.y + (arrX[i] * dSin + arrY[i] * dCos) * dUnitY;
  }
  if (billboard.m_bPixels && billboard.m_dRotation == 0.0) {
    // Its pixels meet the target's: half a pixel beside them, small pictures and letters blur.
    double const dX = item.m_arrCorners[0];
    double const dY = item.m_arrCorners[1];
    double const dClipX = dX * mat[0][0] + dY * mat[1][0] + vecEye.z * mat[2][0] + mat[3][0];
    double const dClipY = dX * mat[0][1] + dY * mat[1][1] + vecEye.z * mat[2][1] + mat[3][1];
    double const dMoveX = ToWholePixel(dClipX, dW, view.m_nWidth) * dUnitX;
    double const dMoveY = ToWholePixel(dClipY, dW, view.m_nHeight) * dUnitY;
    for (std::size_t i = 0; i < CORNERS; ++i) {
      item.m_arrCorners[2 * i] += dMoveX;
      item.m_arrCorners[2 * i + 1] += dMoveY;
    }
  }
  for (double const d : item.m_arrCorners)
    if (!std::isfinite(static_cast<float>(d))) return false;
  item.m_dDepth = -vecEye.z;
  return std::isfinite(static_cast<float>(vecEye.z)) && !IsOutside(item.m_arrCorners, vecEye.z, mat);
}

void QXOgreBillboardSet::SelectObjects(std::set<unsigned int> const& setIDs) {
  for (QXOgreBillboard* const p : m_arrBillboards)
    p->m_bSelected = p->m_nSelectionID != 0 && setIDs.contains(p->m_nSelectionID);
}

QXOgreBillboard* QXOgreBillboardSet::Find(unsigned int nSelectionID) const {
  auto const position = std::find_if(m_arrBillboards.begin(), m_arrBillboards.end(),
      [&](QXOgreBillboard const* p) { return nSelectionID != 0 && p->m_nSelectionID == nSelectionID; });
  return position == m_arrBillboards.end() ? nullptr : *position;
}

void QXOgreBillboardSet::CollectItems(QXOgreView const& view) {
  m_arrItems.clear();
  Item item;
  for (QXOgreBillboard const* const pBillboard : m_arrBillboards) {
    if (!pBillboard->m_bVisible || (view.m_pPick && !view.m_pPick->Takes(pBillboard->m_nSelectionID)) ||
        !Place(*pBillboard, view, item))
      continue;
    QXOgreTextureSource* const pSource = pBillboard->m_pUse ? pBillboard->m_pUse->GetSource() : nullptr;
    if (pSource) pSource->PrepareFor(m_Device.GetFrame());
    item.m_pBillboard = pBillboard;
    item.m_pSource = pSource;
    item.m_bTransparent = pBillboard->m_Color.a < 1.0 || (pSource && pSource->IsTransparent());
    m_arrItems.push_back(item);
  }
}

void QXOgreBillboardSet::SortItems() {
  auto const texture = [](Item const& item) { return item.m_pSource ? item.m_pSource->GetTexture().m_nBindID : 0U; };
  std::sort(m_arrItems.begin(), m_arrItems.end(), [&](Item const& a, Item const& b) {
    if (a.m_bTransparent != b.m_bTransparent) return b.m_bTransparent;
    // What covers everything behind it may come in any order, so it comes in the one that takes the fewest batches.
    if (!a.m_bTransparent && texture(a) != texture(b)) return texture(a) < texture(b);
    if (a.m_dDepth != b.m_dDepth) return a.m_dDepth > b.m_dDepth;
    return a.m_pBillboard->m_nNumber < b.m_pBillboard->m_nNumber;
  });
}

void QXOgreBillboardSet::MakeRoom(std::size_t nQuads) {
  if (nQuads <= m_nRoom) return;
  std::size_t const nRoom = std::bit_ceil(std::max(nQuads, LEAST_ROOM));
  auto& manager = Ogre::HardwareBufferManager::getSingleton();
  m_pVertexBuffer = manager.createVertexBuffer(
      sizeof(Vertex), nRoom * CORNERS, Ogre::HardwareBuffer::HBU_DYNAMIC_WRITE_ONLY_DISCARDABLE);
  std::vector<std::uint32_t> arrIndices;
  for (std::uint32_t i = 0; i < nRoom; ++i)
    for (std::uint32_t const nCorner : {0U, 1U, 2U, 0U, 2U, 3U})
      arrIndices.push_back(static_cast<std::uint32_t>(CORNERS) * i + nCorner);
  m_pIndexBuffer = manager.createIndexBuffer(
      Ogre::HardwareIndexBuffer::IT_32BIT, arrIndices.size(), Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
  m_pIndexBuffer->writeData(0, arrIndices.size() * sizeof(std::uint32_t), arrIndices.data(), true);
  if (!m_pVertexData) {
    m_pVertexData = std::make_unique<Ogre::VertexData>();
    Ogre::VertexDeclaration& declaration = *m_pVertexData->vertexDeclaration;
    declaration.addElement(0, offsetof(Vertex, m_fPosition), Ogre::VET_FLOAT3, Ogre::VES_POSITION);
    declaration.addElement(0, offsetof(Vertex, m_fColor), Ogre::VET_FLOAT4, Ogre::VES_DIFFUSE);
    declaration.addElement(0, offsetof(Vertex, m_fTexCoord), Ogre::VET_FLOAT2, Ogre::VES_TEXTURE_COORDINATES, 0);
    declaration.addElement(0, offsetof(Vertex, m_nIdentifier), Ogre::VET_UBYTE4_NORM, Ogre::VES_SPECULAR, 0);
  }
  m_pVertexData->vertexBufferBinding->setBinding(0, m_pVertexBuffer);
  m_pVertexData->vertexCount = nRoom * CORNERS;
  // In the end: where the device has no room for a buffer, the next frame asks again and writes into none too small.
  m_nRoom = nRoom;
}

void QXOgreBillboardSet::UploadVertices() {
  MakeRoom(m_arrItems.size());
  m_arrVertices.resize(m_arrItems.size() * CORNERS);
  Vertex* pVertex = m_arrVertices.data();
  for (Item const& item : m_arrItems) {
    QXColorValue3D const& color = item.m_pBillboard->m_Color;
    QdcRect2D const& part = item.m_pBillboard->m_rcPart;
    double const arrU[CORNERS] = {part.left, part.right, part.right, part.left};
    double const arrV[CORNERS] = {part.bottom, part.bottom, part.top, part.top};
    unsigned int const nID = item.m_pBillboard->m_nSelectionID;
    for (std::size_t i = 0; i < CORNERS; ++i) {
      *pVertex++ = {{static_cast<float>(item.m_arrCorners[2 * i]), static_cast<float>(item.m_arrCorners[2 * i + 1]),
                        static_cast<float>(-item.m_dDepth)},
          {static_cast<float>(color.r), static_cast<float>(color.g), static_cast<float>(color.b),
              static_cast<float>(color.a)},
          {static_cast<float>(arrU[i]), static_cast<float>(arrV[i])},
          {static_cast<std::uint8_t>(nID >> 24U), static_cast<std::uint8_t>(nID >> 16U & 0xFFU),
              static_cast<std::uint8_t>(nID >> 8U & 0xFFU), static_cast<std::uint8_t>(nID & 0xFFU)}};
    }
  }
  m_pVertexBuffer->writeData(0, m_arrVertices.size() * sizeof(Vertex), m_arrVertices.data(), true);
}

bool QXOgreBillboardSet::IsOneBatch(Item const& first, Item const& next, std::vector<Ogre::Real> const& arrDepths) {
  if (first.m_pBillboard->m_bSelected != next.m_pBillboard->m_bSelected) return false;
  if (first.m_pSource != next.m_pSource || first.m_bTransparent != next.m_bTransparent) return false;
  if (!first.m_bTransparent) return true;
  // The farthest of the drawables that stand no farther than the first; OGRE compares in float.
  auto const position = std::lower_bound(
      arrDepths.begin(), arrDepths.end(), static_cast<Ogre::Real>(first.m_dDepth), std::greater<Ogre::Real>());
  return position == arrDepths.end() || *position <= static_cast<Ogre::Real>(next.m_dDepth);
}

void QXOgreBillboardSet::QueueBatch(
    std::size_t nBatch, std::size_t nFirst, std::size_t nEnd, bool bIdentifiers, Ogre::RenderQueue& queue) {
  if (nBatch == m_arrBatches.size()) m_arrBatches.push_back(std::make_unique<Batch>(m_Device, m_pVertexData.get()));
  Batch& batch = *m_arrBatches[nBatch];
  Item const& first = m_arrItems[nFirst];
  batch.m_IndexData.indexBuffer = m_pIndexBuffer;
  batch.m_IndexData.indexStart = nFirst * INDICES;
  batch.m_IndexData.indexCount = (nEnd - nFirst) * INDICES;
  batch.m_Place.m_fDepth = static_cast<Ogre::Real>(first.m_dDepth);
  m_arrBindings.resize(first.m_pSource ? 1 : 0);
  if (first.m_pSource) {
    m_arrBindings[0] = QXOgreBinding();
    m_arrBindings[0].m_pUse = first.m_pBillboard->m_pUse.get();
  }
  batch.m_Renderable.SetBindings(m_arrBindings);
  QXOgreSurface surface;
  surface.m_bTransparent = first.m_bTransparent;
  surface.m_strCoordSets = batch.m_Renderable.GetCoordSets();
  batch.m_Renderable.SetMaterial(m_Device.GetMaterials().Get(surface));
  batch.m_Renderable.SetLook(QXColorValue3D::White, m_SelectionColor, first.m_pBillboard->m_bSelected != 0, false);
  batch.m_Renderable.DrawIdentifiers(bIdentifiers);
  queue.addRenderable(&batch.m_Renderable, Ogre::RENDER_QUEUE_MAIN, QXOgreDrawable::PLAIN_PRIORITY);
}

void QXOgreBillboardSet::Queue(
    QXOgreView const& view, std::vector<Ogre::Real>& arrDepths, Ogre::RenderQueue& queue, QXOgreCounts& counts) {
  CollectItems(view);
  if (m_arrItems.empty()) return;
  SortItems();
  UploadVertices();
  std::sort(arrDepths.begin(), arrDepths.end(), std::greater<Ogre::Real>());
  std::size_t nBatches = 0;
  std::size_t nFirst = 0;
  for (std::size_t i = 1; i <= m_arrItems.size(); ++i) {
    if (i < m_arrItems.size() && IsOneBatch(m_arrItems[nFirst], m_arrItems[i], arrDepths)) continue;
    QueueBatch(nBatches++, nFirst, i, view.m_pPick != nullptr, queue);
    nFirst = i;
  }
  auto const nItems = static_cast<unsigned int>(m_arrItems.size());
  counts.m_nDrawOperations += static_cast<unsigned int>(nBatches);
  counts.m_nTriangles += 2 * nItems;
  counts.m_nVertices += static_cast<unsigned int>(CORNERS) * nItems;
}

}  // namespace QXC
