#include <plugins/ogre/effects/QXOgreQuads.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include <OgreHardwareBufferManager.h>
#include <OgreRenderQueue.h>
#include <OgreVertexIndexData.h>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreDrawable.h>

namespace QXC {

namespace {

constexpr std::size_t LEAST_ROOM = 16;
constexpr std::size_t CORNERS = 4;
constexpr std::size_t INDICES = 6;

}  // namespace

struct QXOgreQuads::Batch {
  Batch(QXOgreDevice& device, Ogre::VertexData* pVertexData)
      : m_Renderable(device, pVertexData, &m_IndexData, QX_OPERATION_TRIANGLE_LIST, QXColorValue3D::White, m_Place) {
    m_Renderable.SetLook(QXColorValue3D::White, QXColorValue3D(), false, false);
  }

  Ogre::IndexData m_IndexData;
  /// The vertices are in the coordinates of the eye already.
  QXOgrePlace m_Place;
  QXOgreRenderable m_Renderable;
};

QXOgreQuads::QXOgreQuads(QXOgreDevice& device) : m_Device(device), m_arrBindings(1), m_nRoom(0), m_nBatches(0) {}

QXOgreQuads::~QXOgreQuads() = default;

void QXOgreQuads::Clear() {
  m_arrQuads.clear();
  m_nBatches = 0;
}

void QXOgreQuads::MakeRoom() {
  if (m_arrQuads.size() <= m_nRoom) return;
  std::size_t const nRoom = std::bit_ceil(std::max(m_arrQuads.size(), LEAST_ROOM));
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
  }
  m_pVertexData->vertexBufferBinding->setBinding(0, m_pVertexBuffer);
  m_pVertexData->vertexCount = nRoom * CORNERS;
  // In the end: where the device has no room for a buffer, the next view asks again and writes into none too small.
  m_nRoom = nRoom;
}

void QXOgreQuads::Upload() {
  if (m_arrQuads.empty()) return;
  MakeRoom();
  m_pVertexBuffer->writeData(0, m_arrQuads.size() * sizeof(Corners), m_arrQuads.data(), true);
}

void QXOgreQuads::Queue(Run const& run, Ogre::RenderQueue& queue) {
  if (m_nBatches == m_arrBatches.size()) m_arrBatches.push_back(std::make_unique<Batch>(m_Device, m_pVertexData.get()));
  Batch& batch = *m_arrBatches[m_nBatches++];
  batch.m_IndexData.indexBuffer = m_pIndexBuffer;
  batch.m_IndexData.indexStart = run.m_nFirst * INDICES;
  batch.m_IndexData.indexCount = (run.m_nEnd - run.m_nFirst) * INDICES;
  batch.m_Place.m_fDepth = run.m_fDepth;
  m_arrBindings.resize(run.m_pUse ? 1 : 0);
  if (run.m_pUse) {
    m_arrBindings[0] = QXOgreBinding();
    m_arrBindings[0].m_pUse = run.m_pUse;
  }
  batch.m_Renderable.SetBindings(m_arrBindings);
  QXOgreSurface surface = run.m_Surface;
  surface.m_strCoordSets = batch.m_Renderable.GetCoordSets();
  batch.m_Renderable.SetMaterial(m_Device.GetMaterials().Get(surface));
  queue.addRenderable(&batch.m_Renderable, Ogre::RENDER_QUEUE_MAIN, QXOgreDrawable::PLAIN_PRIORITY);
}

}  // namespace QXC
