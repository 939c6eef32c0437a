#include <plugins/ogre/instancing/QXOgreInstanceDraws.h>

#include <algorithm>
#include <bit>

#include <OgreHardwareBufferManager.h>
#include <OgreRenderQueue.h>
#include <OgreVertexIndexData.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/QXOgreMaterials.h>
#include <plugins/ogre/instancing/QXOgrePlacements.h>

namespace QXC {

namespace {

constexpr std::size_t LEAST_ROOM = 64;
/// Sets of coordinates beside what instances bring.
constexpr int MOST_SETS = 6;
constexpr int UNREAD = -1;

}  // namespace

QXOgreInstanceDraws::QXOgreInstanceDraws(QXOgreDevice& device)
    : m_Device(device), m_nRoom(0), m_nMost(0), m_arrSets(), m_nGeometryVersion(0), m_nLookVersion(0),
      m_bTransparentColors(false), m_bBlended(false) {}

QXOgreInstanceDraws::~QXOgreInstanceDraws() = default;

void QXOgreInstanceDraws::Clear() {
  m_arrBatches.clear();
  m_arrMaterials.clear();
  m_pBuffer.reset();
  m_nRoom = 0;
  m_nGeometryVersion = 0;
}

void QXOgreInstanceDraws::MakeRoom(std::size_t nInstances) {
  if (nInstances <= m_nRoom) return;
  // OGRE tells buffers apart by their address, where a new one may lie too: what was made with the old one goes.
  m_arrBatches.clear();
  std::size_t const nRoom = std::bit_ceil(std::max(nInstances, LEAST_ROOM));
  m_pBuffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
      sizeof(QXOgreInstance), nRoom, Ogre::HardwareBuffer::HBU_DYNAMIC_WRITE_ONLY_DISCARDABLE);
  m_pBuffer->setIsInstanceData(true);
  m_pBuffer->setInstanceDataStepRate(1);
  // In the end: where the device has no room for a buffer, the next frame asks again.
  m_nRoom = nRoom;
}

void QXOgreInstanceDraws::FindSets(QXOgreDrawable const& mesh) {
  std::array<int, 8> arrSets;
  arrSets.fill(UNREAD);
  for (auto const& pRenderable : mesh.GetRenderables())
    for (QXOgreBinding const& binding : pRenderable->GetBindings())
      arrSets[static_cast<std::size_t>(binding.m_nCoordSet)] = 0;
  int nSets = 0;
  for (int& nSet : arrSets)
    if (nSet != UNREAD) nSet = nSets < MOST_SETS ? nSets++ : 0;
  if (arrSets == m_arrSets) return;
  m_arrSets = arrSets;
  m_arrBatches.clear();
}

std::unique_ptr<Ogre::VertexData> QXOgreInstanceDraws::MakeVertexData(
    QXOgreDrawable const& mesh, std::size_t nFirstInstance) const {
  Ogre::VertexData const& source = *mesh.GetGeometry().GetVertexData();
  auto pVertexData = std::make_unique<Ogre::VertexData>();
  Ogre::VertexDeclaration& declaration = *pVertexData->vertexDeclaration;
  pVertexData->vertexCount = source.vertexCount;
  unsigned short nStream = 0;
  std::array<bool, 8> arrTaken{};
  for (Ogre::VertexElement const& element : source.vertexDeclaration->getElements()) {
    unsigned short nIndex = element.getIndex();
    if (element.getSemantic() == Ogre::VES_SPECULAR) continue;
    if (element.getSemantic() == Ogre::VES_TEXTURE_COORDINATES) {
      int const nSet = m_arrSets[nIndex];
      if (nSet == UNREAD || arrTaken[static_cast<std::size_t>(nSet)]) continue;
      arrTaken[static_cast<std::size_t>(nSet)] = true;
      nIndex = static_cast<unsigned short>(nSet);
    }
    declaration.addElement(nStream, element.getOffset(), element.getType(), element.getSemantic(), nIndex);
    pVertexData->vertexBufferBinding->setBinding(nStream++, source.vertexBufferBinding->getBuffer(element.getSource()));
  }
  std::size_t const nOffset = nFirstInstance * sizeof(QXOgreInstance);
  std::size_t const nRows = nOffset + offsetof(QXOgreInstance, m_fRows);
  constexpr std::size_t ROW = 4 * sizeof(float);
  declaration.addElement(nStream, nRows, Ogre::VET_FLOAT4, Ogre::VES_BLEND_WEIGHTS);
  declaration.addElement(nStream, nRows + ROW, Ogre::VET_FLOAT4, Ogre::VES_BLEND_INDICES);
  declaration.addElement(nStream, nRows + 2 * ROW, Ogre::VET_FLOAT4, Ogre::VES_SPECULAR);
  declaration.addElement(nStream, nOffset + offsetof(QXOgreInstance, m_fColor), Ogre::VET_FLOAT4, Ogre::VES_TANGENT);
  declaration.addElement(
      nStream, nOffset + offsetof(QXOgreInstance, m_nIdentifier), Ogre::VET_UBYTE4_NORM, Ogre::VES_BINORMAL);
  pVertexData->vertexBufferBinding->setBinding(nStream, m_pBuffer);
  return pVertexData;
}

void QXOgreInstanceDraws::DemandBatches(QXOgreDrawable const& mesh, std::size_t nCount) {
  while (m_arrBatches.size() < nCount) {
    Batch batch;
    batch.m_pVertexData = MakeVertexData(mesh, m_arrBatches.size() * m_nMost);
    for (QXOgreRange const& range : mesh.GetGeometry().GetRanges())
      batch.m_arrRenderables.push_back(std::make_unique<QXOgreRenderable>(m_Device, batch.m_pVertexData.get(),
          range.m_pIndexData.get(), range.m_eOperationType, range.m_Color, m_Place));
    Dress(mesh, batch);
    m_arrBatches.push_back(std::move(batch));
  }
}

void QXOgreInstanceDraws::Dress(QXOgreDrawable const& mesh, Batch& batch) const {
  for (std::size_t i = 0; i < batch.m_arrRenderables.size(); ++i) {
    QXOgreRenderable& renderable = *batch.m_arrRenderables[i];
    renderable.CopyLook(*mesh.GetRenderables()[i], m_arrSets);
    renderable.SetMaterial(m_arrMaterials[i]);
  }
}

void QXOgreInstanceDraws::Dress(QXOgreDrawable const& mesh) {
  FindSets(mesh);
  m_arrMaterials.clear();
  m_bBlended = false;
  for (auto const& pRenderable : mesh.GetRenderables()) {
    QXOgreSurface surface = mesh.GetLook().m_Surface;
    surface.m_eProgram = QX_OGRE_PROGRAM_PLAIN;
    surface.m_eVertices = QX_OGRE_VERTICES_INSTANCED;
    surface.m_bTransparent = pRenderable->IsBlended() || m_bTransparentColors;
    for (QXOgreBinding binding : pRenderable->GetBindings()) {
      binding.m_nCoordSet = m_arrSets[static_cast<std::size_t>(binding.m_nCoordSet)];
      surface.m_strCoordSets += binding.GetLetter();
    }
    m_arrMaterials.push_back(m_Device.GetMaterials().Get(surface));
    m_bBlended = m_bBlended || (surface.m_bTransparent && pRenderable->IsVisible());
  }
  for (Batch& batch : m_arrBatches) Dress(mesh, batch);
  m_nLookVersion = mesh.GetLookVersion();
}

bool QXOgreInstanceDraws::PrepareTextures(QXOgreDrawable& mesh) {
  bool bFits = true;
  for (Batch const& batch : m_arrBatches) {
    for (std::size_t i = 0; i < batch.m_arrRenderables.size(); ++i) {
      if (batch.m_arrRenderables[i]->PrepareTextures(m_Device.GetFrame())) continue;
      mesh.UpdateMaterial(i);
      bFits = false;
    }
    if (!bFits) return false;
  }
  return true;
}

void QXOgreInstanceDraws::Follow(QXOgreDrawable& mesh, QXOgrePlacements const& placements, std::size_t nMost) {
  bool const bGeometry = mesh.GetGeometryVersion() != m_nGeometryVersion;
  if (bGeometry || nMost != m_nMost) m_arrBatches.clear();
  m_nMost = nMost;
  MakeRoom(placements.GetCount());
  bool const bColors = placements.HasTransparentColors() != m_bTransparentColors;
  m_bTransparentColors = placements.HasTransparentColors();
  if (bGeometry || bColors || mesh.GetLookVersion() != m_nLookVersion) Dress(mesh);
  m_nGeometryVersion = mesh.GetGeometryVersion();
  DemandBatches(mesh, 1);
  if (PrepareTextures(mesh)) return;
  Dress(mesh);
  DemandBatches(mesh, 1);
}

void QXOgreInstanceDraws::Queue(QXOgreDrawable const& mesh, QXOgrePlacements const& placements, std::size_t nSeen,
    bool bIdentifiers, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts) {
  DemandBatches(mesh, (nSeen + m_nMost - 1) / m_nMost);
  {
    Ogre::HardwareBufferLockGuard const lock(
        m_pBuffer, 0, nSeen * sizeof(QXOgreInstance), Ogre::HardwareBuffer::HBL_DISCARD);
    placements.Write(0, nSeen, static_cast<QXOgreInstance*>(lock.pData), bIdentifiers);
  }
  QXMatrix4d matTurn = placements.GetToEye();
  m_Place.m_fDepth = static_cast<Ogre::Real>(-placements.GetVisibleBounds().GetCenter().MultiplyMatrix(matTurn).z);
  matTurn.SetTrans(QXVector3d::ZERO);
  m_Place.m_matToEye = ToOgre(matTurn);
  std::vector<QXOgreRange> const& arrRanges = mesh.GetGeometry().GetRanges();
  for (std::size_t nBatch = 0; nBatch * m_nMost < nSeen; ++nBatch) {
    std::size_t const nCount = std::min(m_nMost, nSeen - nBatch * m_nMost);
    for (std::size_t i = 0; i < arrRanges.size(); ++i) {
      QXOgreRenderable& renderable = *m_arrBatches[nBatch].m_arrRenderables[i];
      if (!renderable.IsVisible()) continue;
      renderable.SetInstanceCount(nCount);
      renderable.DrawIdentifiers(bIdentifiers);
      queue.addRenderable(&renderable, Ogre::RENDER_QUEUE_MAIN, mesh.GetQueuePriority());
      if (renderable.IsBlended()) arrDepths.push_back(m_Place.m_fDepth);
      ++counts.m_nDrawOperations;
      counts.m_nTriangles += static_cast<unsigned int>(nCount * arrRanges[i].m_nTriangleCount);
    }
  }
  counts.m_nVertices += static_cast<unsigned int>(nSeen * mesh.GetGeometry().GetVertexCount());
}

}  // namespace QXC
