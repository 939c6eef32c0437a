#include <apps/qx3d/QXVertexCollector.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

#include <algorithm>
#include <bit>
#include <cstddef>

namespace QXApp {

namespace {

QXC::QXBoundingBox BoundsOf(std::vector<float> const& vecFloats) {
  float fMin[3] = {vecFloats[0], vecFloats[1], vecFloats[2]};
  float fMax[3] = {vecFloats[0], vecFloats[1], vecFloats[2]};
  for (std::size_t i = 0; i < vecFloats.size(); i += QXVertexCollector::Stride) {
    for (std::size_t nAxis = 0; nAxis < 3; ++nAxis) {
      fMin[nAxis] = std::min(fMin[nAxis], vecFloats[i + nAxis]);
      fMax[nAxis] = std::max(fMax[nAxis], vecFloats[i + nAxis]);
    }
  }
  auto const widen = [](float const(&f)[3]) {
    return QXC::QXVector3d(static_cast<double>(f[0]), static_cast<double>(f[1]), static_cast<double>(f[2]));
  };
  return QXC::QXBoundingBox(widen(fMin), widen(fMax));
}

std::unique_ptr<QXC::QXVertexIndexPackage> MakeIndices(std::vector<unsigned int> const& vecIndices, bool bShort) {
  auto pPackage = std::make_unique<QXC::QXVertexIndexPackage>();
  pPackage->m_nIndexNum = static_cast<unsigned int>(vecIndices.size());
  if (bShort) {
    auto* pIndices = new unsigned short[vecIndices.size()];
    std::transform(vecIndices.begin(), vecIndices.end(), pIndices,
        [](unsigned int nVertex) { return static_cast<unsigned short>(nVertex); });
    pPackage->m_pIndices = pIndices;
  } else {
    auto* pIndices = new unsigned int[vecIndices.size()];
    std::copy(vecIndices.begin(), vecIndices.end(), pIndices);
    pPackage->m_nIndexType = 1;
    pPackage->m_pIndices = pIndices;
  }
  return pPackage;
}

void FillSet(QXC::QXTexCoordBlock& block, int nSet, std::vector<float> const& vecPairs) {
  if (vecPairs.empty()) return;
  block.m_pBuffers[nSet] = new float[vecPairs.size()];
  std::copy(vecPairs.begin(), vecPairs.end(), block.m_pBuffers[nSet]);
  block.m_nCounts[nSet] = static_cast<unsigned int>(vecPairs.size() / 2);
}

std::unique_ptr<QXC::QXTexCoordBlock> MakeTexCoords(
    std::vector<float> const& vecTexCoords, std::vector<float> const& vecOffsets) {
  auto pBlock = std::make_unique<QXC::QXTexCoordBlock>();
  FillSet(*pBlock, 0, vecTexCoords);
  FillSet(*pBlock, 1, vecOffsets);
  return pBlock;
}

}  // namespace

unsigned int QXVertexCollector::AddVertex(
    QXC::QXVector3d const& vecPosition, QXC::QXVector3d const& vecNormal, unsigned int nColor) {
  unsigned int const nVertex = GetVertexCount();
  m_vecFloats.insert(m_vecFloats.end(),
      {static_cast<float>(vecPosition.x), static_cast<float>(vecPosition.y), static_cast<float>(vecPosition.z),
          static_cast<float>(vecNormal.x), static_cast<float>(vecNormal.y), static_cast<float>(vecNormal.z),
          std::bit_cast<float>(nColor)});
  return nVertex;
}

std::unique_ptr<QXC::QXRenderOperationMultiIndex> QXVertexCollector::Finish(
    QXC::QXVector3d const& vecOrigin, std::unique_ptr<QXC::QXTexturePackage> pTexture) {
  auto pOperation = std::make_unique<QXC::QXRenderOperationMultiIndex>();
  auto pBlock = std::make_unique<QXC::QXVertexBlock>();
  pBlock->m_pBuffer = new float[m_vecFloats.size()];
  std::copy(m_vecFloats.begin(), m_vecFloats.end(), pBlock->m_pBuffer);
  pBlock->m_nVertexCount = GetVertexCount();
  pBlock->m_nStride = Stride;
  pBlock->m_nPositionOffset = 0;
  pBlock->m_nNormalOffset = 3;
  pBlock->m_nColorOffset = 6;
  pOperation->m_pVertexBlock = pBlock.release();

  std::unique_ptr<QXC::QXVertexIndexPackage> pIndices = MakeIndices(m_vecIndices, GetVertexCount() <= 65535);
  if (!m_vecTexCoords.empty()) pOperation->m_pTexCoordBlock = MakeTexCoords(m_vecTexCoords, m_vecOffsets).release();
  pOperation->SetAt(pIndices.get(), pTexture.get());
  pIndices.release();
  pTexture.release();
  QXC::QXBoundingBox box = BoundsOf(m_vecFloats);
  pOperation->SetBoundingBox(box);
  QXC::QXMatrix4d mat;
  mat.SetTrans(vecOrigin);
  pOperation->SetMatrix(mat);
  m_vecFloats.clear();
  m_vecTexCoords.clear();
  m_vecOffsets.clear();
  m_vecIndices.clear();
  return pOperation;
}

}  // namespace QXApp
