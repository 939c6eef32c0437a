#include <plugins/ogre/QXOgreMerge.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/renderop/QXRenderOperation.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXTexturePackage.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

namespace QXC {

namespace {

constexpr unsigned short STRIDE = 7;
constexpr short NORMAL_OFFSET = 3;
constexpr short COLOR_OFFSET = 6;
constexpr std::uint32_t OPAQUE_WHITE = 0xFFFFFFFF;

void Store(float* pTarget, QXVector3d const& vec) {
  pTarget[0] = static_cast<float>(vec.x);
  pTarget[1] = static_cast<float>(vec.y);
  pTarget[2] = static_cast<float>(vec.z);
}

QXVector3d At(float const* pSource, std::size_t nVertex) {
  float const* const p = pSource + 3 * nVertex;
  return {p[0], p[1], p[2]};
}

/// The matrix that turns normals: the inverse transposed, without translation.
QXMatrix4d NormalMatrix(QXMatrix4d const& matModel) {
  QXMatrix4d const matInverse = matModel.Invert();
  QXMatrix4d matResult;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) matResult[i][j] = matInverse[j][i];
  return matResult;
}

void CopyVertices(QXRenderOperation const& source, float* pTarget) {
  QXMatrix4d const matModel = source.GetMatrix() ? *source.GetMatrix() : QXMatrix4d::IDENTITY;
  QXMatrix4d const matNormal = NormalMatrix(matModel);
  for (std::size_t i = 0; i < source.m_nVertexNum; ++i, pTarget += STRIDE) {
    Store(pTarget, At(source.m_pVertices, i).MultiplyMatrix(matModel));
    bool const bNormal = source.m_pNormals && i < source.m_nNormalNum;
    Store(pTarget + NORMAL_OFFSET, bNormal ? At(source.m_pNormals, i).MultiplyMatrix(matNormal) : QXVector3d::ZERO);
    bool const bColor = source.m_pDiffuseColors && i < source.m_nDiffuseColorNum;
    pTarget[COLOR_OFFSET] = std::bit_cast<float>(bColor ? std::uint32_t{source.m_pDiffuseColors[i]} : OPAQUE_WHITE);
  }
}

/// Whether an operation's coordinates of a unit reach all its vertices.
bool HasTexCoords(QXRenderOperation const& source, unsigned int nUnit) {
  return source.m_pVertices && source.m_pTexCoords[nUnit] && source.m_nTexVertexNums[nUnit] >= source.m_nVertexNum;
}

/// One pair of coordinates a vertex in each unit that some operation has.
QXTexCoordBlock* MakeTexCoords(std::vector<QXRenderOperation const*> const& arrOperations, std::size_t nVertexNum) {
  auto* const pBlock = new QXTexCoordBlock;
  for (unsigned int nUnit = 0; nUnit < QXTexCoordBlock::UnitNum; ++nUnit) {
    bool const bWanted = std::any_of(arrOperations.begin(), arrOperations.end(),
        [&](QXRenderOperation const* pOperation) { return HasTexCoords(*pOperation, nUnit); });
    if (!bWanted) continue;
    pBlock->m_pBuffers[nUnit] = new float[nVertexNum * 2]();
    pBlock->m_nCounts[nUnit] = static_cast<unsigned int>(nVertexNum);
    float* pTarget = pBlock->m_pBuffers[nUnit];
    for (QXRenderOperation const* const pOperation : arrOperations) {
      if (!pOperation->m_pVertices) continue;
      std::size_t const nCount = std::size_t{pOperation->m_nVertexNum} * 2;
      if (HasTexCoords(*pOperation, nUnit)) std::copy_n(pOperation->m_pTexCoords[nUnit], nCount, pTarget);
      pTarget += nCount;
    }
  }
  return pBlock;
}

/// The operation's textures, all units at once; null without any.
QXTexturePackage* MakeTextures(QXRenderOperation const& source) {
  QXTexture* const* const pEnd = source.m_pTextures + QXRenderOperation::UnitNum;
  if (std::all_of(source.m_pTextures, pEnd, [](QXTexture const* p) { return !p; })) return nullptr;
  auto* const pPackage = new QXTexturePackage;
  std::copy(source.m_pTextures, pEnd, pPackage->m_pTextures);
  pPackage->m_bFlag = 1;
  return pPackage;
}

QXVertexIndexPackage* MakeRange(QXRenderOperation const& source, unsigned int nFirstVertex) {
  auto* const pPackage = new QXVertexIndexPackage;
  pPackage->m_nIndexType = 1;
  pPackage->m_Color = source.m_Color0;
  unsigned int const nCount = source.m_pIndices ? source.m_nIndexNum : source.m_nVertexNum;
  auto* const pIndices = new unsigned int[nCount];
  for (unsigned int i = 0; i < nCount; ++i) pIndices[i] = nFirstVertex + (source.m_pIndices ? source.m_pIndices[i] : i);
  // An index into the neighbour's vertices is as wrong as one beyond all of them: the range then draws nothing.
  bool const bValid = !source.m_pIndices || std::all_of(source.m_pIndices, source.m_pIndices + nCount,
                                                [&](unsigned short n) { return n < source.m_nVertexNum; });
  pPackage->m_pIndices = pIndices;
  pPackage->m_nIndexNum = bValid ? nCount : 0;
  return pPackage;
}

}  // namespace

std::unique_ptr<QXRenderOperationMultiIndex> Merge(std::vector<QXRenderOperation const*> const& arrOperations) {
  auto pResult = std::make_unique<QXRenderOperationMultiIndex>();
  std::size_t nVertexNum = 0;
  for (QXRenderOperation const* const pOperation : arrOperations)
    if (pOperation->m_pVertices) nVertexNum += pOperation->m_nVertexNum;
  pResult->m_pVertexBlock = new QXVertexBlock;
  pResult->m_pVertexBlock->m_pBuffer = new float[nVertexNum * STRIDE]();
  pResult->m_pVertexBlock->m_nVertexCount = static_cast<unsigned int>(nVertexNum);
  pResult->m_pVertexBlock->m_nStride = STRIDE;
  pResult->m_pVertexBlock->m_nNormalOffset = NORMAL_OFFSET;
  pResult->m_pVertexBlock->m_nColorOffset = COLOR_OFFSET;
  pResult->m_pTexCoordBlock = MakeTexCoords(arrOperations, nVertexNum);
  unsigned int nFirst = 0;
  for (QXRenderOperation const* const pOperation : arrOperations) {
    if (!pOperation->m_pVertices) continue;
    CopyVertices(*pOperation, pResult->m_pVertexBlock->m_pBuffer + std::size_t{nFirst} * STRIDE);
    pResult->SetAt(MakeRange(*pOperation, nFirst), MakeTextures(*pOperation));
    nFirst += pOperation->m_nVertexNum;
  }
  return pResult;
}

}  // namespace QXC
