#include <plugins/ogre/QXOgreGeometry.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include <OgreHardwareBufferManager.h>
#include <OgreHardwareIndexBuffer.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreVertexIndexData.h>

#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>
#include <QxGraphics3D/renderop/QXIndexBlock.h>
#include <QxGraphics3D/renderop/QXRenderOperationMultiIndex.h>
#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>
#include <QxGraphics3D/renderop/QXTexCoordBlock.h>
#include <QxGraphics3D/renderop/QXVertexBlock.h>
#include <QxGraphics3D/renderop/QXVertexIndexPackage.h>

#include <plugins/ogre/effects/QXOgreSkin.h>

namespace QXC {

namespace {

constexpr std::uint32_t OPAQUE_WHITE = 0xFFFFFFFF;
/// Places of the streams that can be overwritten.
constexpr unsigned short POSITION_STREAM = 0;
constexpr unsigned short NORMAL_STREAM = 1;
constexpr unsigned short COLOR_STREAM = 2;

/// The element of nDim numbers at nOffset of each vertex; none where the block has no such element.
QXOgreElement ElementOf(QXVertexBlock const& block, short nOffset, unsigned short nDim) {
  if (nOffset < 0) return {};
  return {block.m_pBuffer + nOffset, block.m_nStride, nDim};
}

/// Whether an element of nSize floats, if present at all, stands inside the stride.
bool Fits(QXVertexBlock const& block, short nOffset, int nSize) {
  return nOffset < 0 || nOffset + nSize <= block.m_nStride;
}

bool IsUsable(QXVertexBlock const* pBlock) {
  return pBlock && pBlock->m_pBuffer && pBlock->m_nVertexCount > 0 && pBlock->m_nPositionOffset >= 0 &&
         Fits(*pBlock, pBlock->m_nPositionOffset, 3) && Fits(*pBlock, pBlock->m_nNormalOffset, 3) &&
         Fits(*pBlock, pBlock->m_nColorOffset, 1);
}

/// The vertices of a usable source.
QXOgreVertices VerticesOf(QXRenderOperationMultiIndex const& source) {
  QXVertexBlock const& block = *source.m_pVertexBlock;
  QXOgreVertices vertices;
  vertices.m_nCount = block.m_nVertexCount;
  vertices.m_Position = ElementOf(block, block.m_nPositionOffset, 3);
  vertices.m_Normal = ElementOf(block, block.m_nNormalOffset, 3);
  vertices.m_Color = ElementOf(block, block.m_nColorOffset, 1);
  if (!source.m_pTexCoordBlock) return vertices;
  QXTexCoordBlock const& coords = *source.m_pTexCoordBlock;
  for (unsigned int i = 0; i < QXTexCoordBlock::UnitNum; ++i) {
    unsigned short const nDim = coords.m_nDims[i];
    // A set that does not reach all vertices would be read beyond its end.
    if (!coords.m_pBuffers[i] || nDim < 1 || nDim > 4 || coords.m_nCounts[i] < vertices.m_nCount) continue;
    std::size_t const nStride = coords.m_nStrides[i] == 0 ? nDim : coords.m_nStrides[i];
    vertices.m_TexCoords[i] = {coords.m_pBuffers[i], nStride, nDim};
  }
  return vertices;
}

unsigned int TriangleCount(int eOperationType, unsigned int nIndexNum) {
  if (eOperationType == QX_OPERATION_TRIANGLE_LIST) return nIndexNum / 3;
  if (eOperationType == QX_OPERATION_TRIANGLE_STRIP || eOperationType == QX_OPERATION_TRIANGLE_FAN)
    return nIndexNum < 3 ? 0 : nIndexNum - 2;
  return 0;
}

bool HasTransparent(std::uint32_t const* pColors, unsigned int nCount) {
  return std::any_of(pColors, pColors + nCount, [](std::uint32_t nColor) { return (nColor >> 24) != 0xFF; });
}

template <class T>
bool IndicesStayBelow(T const* pIndices, unsigned int nCount, unsigned int nLimit) {
  T nMax = 0;
  for (unsigned int i = 0; i < nCount; ++i) nMax = std::max(nMax, pIndices[i]);
  return nMax < nLimit;
}

}  // namespace

QXOgreGeometry::QXOgreGeometry()
    : m_nDeviceMemory(0), m_nVertexCount(0), m_bColors(0), m_bTransparentVertices(0), m_nTexCoordDims(),
      m_fLabelReach(0.0F) {}
QXOgreGeometry::~QXOgreGeometry() = default;

void QXOgreGeometry::Upload(QXRenderOperationMultiIndex const& source) {
  Clear();
  if (!IsUsable(source.m_pVertexBlock)) return;
  QXOgreVertices const vertices = VerticesOf(source);
  Upload(vertices);
  if (QXOgreSkin::IsFor(vertices)) m_pSkin = std::make_unique<QXOgreSkin>(vertices);
  UploadRanges(source);
}

void QXOgreGeometry::Upload(QXOgreVertices const& vertices) {
  Clear();
  m_nVertexCount = vertices.m_nCount;
  MeasureBounds(vertices.m_Position);
  m_pVertexData = std::make_unique<Ogre::VertexData>();
  m_pVertexData->vertexCount = m_nVertexCount;
  bool const bLines = vertices.m_bWideLines;
  UploadNumbers(vertices.m_Position, bLines ? 4 : 3, true, Ogre::VES_POSITION, 0);
  // No normal is a normal of zeros: the fragment program then takes the face's own.
  UploadNumbers(vertices.m_Normal, 3, bLines, Ogre::VES_NORMAL, 0);
  UploadColors(vertices.m_Color);
  UploadTexCoords(vertices);
}

void QXOgreGeometry::Clear() {
  m_arrRanges.clear();
  m_pVertexData.reset();
  m_pSkin.reset();
  m_pObjectBuffer.reset();
  m_vecZero = QXVector3d::ZERO;
  m_Bounds.SetNULL();
  m_nDeviceMemory = 0;
  m_nVertexCount = 0;
  m_bColors = 0;
  m_bTransparentVertices = 0;
  std::fill_n(m_nTexCoordDims, SetNum, static_cast<unsigned short>(0));
  m_fLabelReach = 0.0F;
}

int QXOgreGeometry::FindTexCoordSet(unsigned int nWanted) const {
  if (GetTexCoordDim(nWanted) > 0) return static_cast<int>(nWanted);
  // Numbers of bones are no place in a texture.
  unsigned int const nEnd = m_pSkin ? QXSkeletonAnimation::BONE_SET : SetNum;
  for (unsigned int i = 0; i < nEnd; ++i)
    if (m_nTexCoordDims[i] > 0) return static_cast<int>(i);
  return -1;
}

void QXOgreGeometry::MeasureBounds(QXOgreElement const& position) {
  double const dInfinity = std::numeric_limits<double>::infinity();
  double dMin[3] = {dInfinity, dInfinity, dInfinity};
  double dMax[3] = {-dInfinity, -dInfinity, -dInfinity};
  int const nDim = std::min<int>(position.m_nDim, 3);
  // A number that the source is short of is 0.
  for (int k = nDim; k < 3; ++k) dMin[k] = dMax[k] = 0.0;
  for (std::size_t i = 0; i < m_nVertexCount; ++i) {
    float const* const pPosition = position.At(i);
    for (int k = 0; k < nDim; ++k) {
      dMin[k] = std::min(dMin[k], static_cast<double>(pPosition[k]));
      dMax[k] = std::max(dMax[k], static_cast<double>(pPosition[k]));
    }
  }
  m_Bounds.SetExtents({dMin[0], dMin[1], dMin[2]}, {dMax[0], dMax[1], dMax[2]});
  QXVector3d const vecCenter = m_Bounds.GetCenter();
  double const dSize = (m_Bounds.GetMax() - m_Bounds.GetMin()).Length();
  // Moving rounds anew, so only what lies far out is moved: there the difference is exact.
  bool const bFar = std::isfinite(dSize) && vecCenter.Length() > 4.0 * dSize;
  m_vecZero = bFar ? vecCenter : QXVector3d::ZERO;
}

void QXOgreGeometry::UploadNumbers(QXOgreElement const& element, unsigned short nDim, bool bPlaces,
    Ogre::VertexElementSemantic eSemantic, unsigned short nIndex) {
  Ogre::VertexElementType const eType = Ogre::VertexElement::multiplyTypeCount(Ogre::VET_FLOAT1, nDim);
  bool const bMoved = bPlaces && !(m_vecZero == QXVector3d::ZERO);
  if (!bMoved && element.IsDense(nDim)) return AddStream(eType, eSemantic, nIndex, element.m_pFirst);
  double const dZero[4] = {bMoved ? m_vecZero.x : 0.0, bMoved ? m_vecZero.y : 0.0, bMoved ? m_vecZero.z : 0.0, 0.0};
  std::vector<float> arrNumbers(std::size_t{m_nVertexCount} * nDim, 0.0F);
  std::size_t const nGiven = element.m_pFirst ? std::min(nDim, element.m_nDim) : 0;
  for (std::size_t i = 0; i < m_nVertexCount && element.m_pFirst; ++i) {
    float const* const pSource = element.At(i);
    float* const pTarget = arrNumbers.data() + i * nDim;
    for (std::size_t k = 0; k < nDim; ++k) pTarget[k] = static_cast<float>((k < nGiven ? pSource[k] : 0.0F) - dZero[k]);
  }
  AddStream(eType, eSemantic, nIndex, arrNumbers.data());
}

void QXOgreGeometry::UploadColors(QXOgreElement const& color) {
  std::vector<std::uint32_t> arrColors(m_nVertexCount, OPAQUE_WHITE);
  if (color.m_pFirst)
    for (std::size_t i = 0; i < m_nVertexCount; ++i) arrColors[i] = std::bit_cast<std::uint32_t>(*color.At(i));
  m_bColors = color.m_pFirst != nullptr;
  m_bTransparentVertices = HasTransparent(arrColors.data(), m_nVertexCount);
  AddStream(Ogre::VET_UBYTE4_NORM, Ogre::VES_DIFFUSE, 0, arrColors.data());
}

void QXOgreGeometry::AddStream(
    Ogre::VertexElementType eType, Ogre::VertexElementSemantic eSemantic, unsigned short nIndex, void const* pData) {
  auto const nSource = static_cast<unsigned short>(m_pVertexData->vertexBufferBinding->getBufferCount());
  std::size_t const nSize = Ogre::VertexElement::getTypeSize(eType);
  auto const pBuffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
      nSize, m_nVertexCount, Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
  pBuffer->writeData(0, nSize * m_nVertexCount, pData, true);
  m_pVertexData->vertexDeclaration->addElement(nSource, 0, eType, eSemantic, nIndex);
  m_pVertexData->vertexBufferBinding->setBinding(nSource, pBuffer);
  m_nDeviceMemory += nSize * m_nVertexCount;
}

unsigned char QXOgreGeometry::UpdatePositions(unsigned int nFirst, unsigned int nCount, float const* pPositions) {
  if (!pPositions || !m_pVertexData || nFirst > m_nVertexCount || nCount > m_nVertexCount - nFirst) return 0;
  std::size_t const nSize = 3 * sizeof(float);
  auto const pBuffer = m_pVertexData->vertexBufferBinding->getBuffer(POSITION_STREAM);
  // The corners of wide lines are more than positions.
  if (pBuffer->getVertexSize() != nSize) return 0;
  double const dZero[3] = {m_vecZero.x, m_vecZero.y, m_vecZero.z};
  std::vector<float> arrPositions(std::size_t{nCount} * 3);
  for (std::size_t i = 0; i < nCount; ++i) {
    float const* const p = pPositions + 3 * i;
    for (std::size_t k = 0; k < 3; ++k) arrPositions[3 * i + k] = static_cast<float>(p[k] - dZero[k]);
    QXVector3d const vecPoint(p[0], p[1], p[2]);
    m_Bounds.Merge(QXBoundingBox(vecPoint, vecPoint));
  }
  pBuffer->writeData(nFirst * nSize, nCount * nSize, arrPositions.data());
  if (m_pSkin) m_pSkin->SetPositions(nFirst, nCount, pPositions);
  return 1;
}

void QXOgreGeometry::Move(std::vector<QXMatrix4d> const& arrMoves) {
  if (!m_pSkin) return;
  m_pSkin->Move(arrMoves, m_vecZero);
  auto const& streams = *m_pVertexData->vertexBufferBinding;
  auto const write = [&](unsigned short nStream, std::vector<float> const& arrNumbers) {
    if (!arrNumbers.empty())
      streams.getBuffer(nStream)->writeData(0, arrNumbers.size() * sizeof(float), arrNumbers.data(), true);
  };
  write(POSITION_STREAM, m_pSkin->GetPositions());
  write(NORMAL_STREAM, m_pSkin->GetNormals());
}

unsigned char QXOgreGeometry::UpdateColors(unsigned int nFirst, unsigned int nCount, std::uint32_t const* pColors) {
  if (!pColors || !m_bColors || nFirst > m_nVertexCount || nCount > m_nVertexCount - nFirst) return 0;
  std::size_t const nSize = sizeof(std::uint32_t);
  m_pVertexData->vertexBufferBinding->getBuffer(COLOR_STREAM)->writeData(nFirst * nSize, nCount * nSize, pColors);
  // A vertex that was transparent may not be any more, but nobody remembers the others: blending draws both right.
  if (HasTransparent(pColors, nCount)) m_bTransparentVertices = 1;
  return 1;
}

void QXOgreGeometry::FillColor(unsigned int nFirst, unsigned int nCount, std::uint32_t nColor) {
  std::vector<std::uint32_t> const arrColors(nCount, nColor);
  std::size_t const nSize = sizeof(std::uint32_t);
  m_pVertexData->vertexBufferBinding->getBuffer(COLOR_STREAM)
      ->writeData(nFirst * nSize, nCount * nSize, arrColors.data());
  if (HasTransparent(&nColor, 1)) m_bTransparentVertices = 1;
}

void QXOgreGeometry::AddObjectWords(std::vector<std::uint32_t> const& arrWords) {
  auto const nStream = static_cast<unsigned short>(m_pVertexData->vertexBufferBinding->getBufferCount());
  AddStream(Ogre::VET_UBYTE4_NORM, Ogre::VES_SPECULAR, 0, arrWords.data());
  m_pObjectBuffer = m_pVertexData->vertexBufferBinding->getBuffer(nStream);
}

void QXOgreGeometry::FillObjectWord(unsigned int nFirst, unsigned int nCount, std::uint32_t nWord) {
  std::size_t const nSize = sizeof(std::uint32_t);
  std::vector<std::uint32_t> const arrWords(nCount, nWord);
  m_pObjectBuffer->writeData(nFirst * nSize, nCount * nSize, arrWords.data());
}

std::vector<double> QXOgreGeometry::ReadPositions(unsigned int nFirst, unsigned int nCount) const {
  std::vector<double> arrPositions(std::size_t{nCount} * 3);
  if (nCount == 0) return arrPositions;
  auto const pBuffer = m_pVertexData->vertexBufferBinding->getBuffer(POSITION_STREAM);
  std::size_t const nSize = pBuffer->getVertexSize();
  std::size_t const nNumbers = nSize / sizeof(float);
  std::vector<float> arrNumbers(nCount * nNumbers);
  pBuffer->readData(nFirst * nSize, nCount * nSize, arrNumbers.data());
  double const dZero[3] = {m_vecZero.x, m_vecZero.y, m_vecZero.z};
  for (std::size_t i = 0; i < nCount; ++i)
    for (std::size_t k = 0; k < 3; ++k)
      arrPositions[3 * i + k] = static_cast<double>(arrNumbers[i * nNumbers + k]) + dZero[k];
  return arrPositions;
}

void QXOgreGeometry::UploadTexCoords(QXOgreVertices const& vertices) {
  for (unsigned short nSet = 0; nSet < SetNum; ++nSet) {
    QXOgreElement const& coords = vertices.m_TexCoords[nSet];
    if (!coords.m_pFirst) continue;
    bool const bPlaces = vertices.m_bWideLines && nSet == 0;
    UploadNumbers(coords, coords.m_nDim, bPlaces, Ogre::VES_TEXTURE_COORDINATES, nSet);
    m_nTexCoordDims[nSet] = coords.m_nDim;
    if (nSet != 1) continue;
    for (std::size_t i = 0; i < m_nVertexCount; ++i)
      for (std::size_t k = 0; k < coords.m_nDim; ++k)
        m_fLabelReach = std::max(m_fLabelReach, std::abs(coords.At(i)[k]));
  }
}

void QXOgreGeometry::UploadRanges(QXRenderOperationMultiIndex const& source) {
  auto const addPackage = [&](QXVertexIndexPackage const* pPackage, int nPackage) {
    if (!pPackage) return;
    AddRange(pPackage->m_pIndices, pPackage->m_nIndexType, pPackage->m_nStart, pPackage->m_nIndexNum,
        pPackage->m_eOperationType, pPackage->m_Color, nPackage);
  };
  addPackage(source.m_pVertexIndexPackage, -1);
  if (source.m_pIndexBlock) {
    QXIndexBlock const& block = *source.m_pIndexBlock;
    AddRange(block.m_pBuffer, block.m_nIndexType, 0, block.m_nIndexNum, QX_OPERATION_TRIANGLE_LIST,
        QXColorValue3D::White, -1);
  }
  auto const& arrPackages = source.GetIndexPackageArray();
  for (unsigned int i = 0; i < arrPackages.GetSize(); ++i) addPackage(arrPackages[i], static_cast<int>(i));
}

void QXOgreGeometry::AddRange(void const* pIndices, int nIndexType, unsigned int nStart, unsigned int nCount,
    int eOperationType, QXColorValue3D const& color, int nPackage) {
  unsigned int const nTriangles = TriangleCount(eOperationType, nCount);
  bool const bKnown = eOperationType >= QX_OPERATION_POINT_LIST && eOperationType <= QX_OPERATION_TRIANGLE_FAN;
  // Whoever numbers ranges counts those that draw nothing too, so a range that cannot be drawn stands in its place.
  QXOgreRange range{nullptr, eOperationType, color, 0, nPackage};
  if (pIndices && nCount > 0 && bKnown) UploadIndices(range, pIndices, nIndexType == 1, nStart, nCount);
  if (range.m_pIndexData) range.m_nTriangleCount = nTriangles;
  m_arrRanges.push_back(std::move(range));
}

void QXOgreGeometry::UploadIndices(
    QXOgreRange& range, void const* pIndices, bool bWide, unsigned int nStart, unsigned int nCount) {
  std::size_t const nSize = bWide ? sizeof(std::uint32_t) : sizeof(std::uint16_t);
  auto const* const pFirst = static_cast<unsigned char const*>(pIndices) + nStart * nSize;
  bool const bValid = bWide ? IndicesStayBelow(reinterpret_cast<std::uint32_t const*>(pFirst), nCount, m_nVertexCount)
                            : IndicesStayBelow(reinterpret_cast<std::uint16_t const*>(pFirst), nCount, m_nVertexCount);
  if (!bValid) return;
  range.m_pIndexData = std::make_unique<Ogre::IndexData>();
  range.m_pIndexData->indexCount = nCount;
  range.m_pIndexData->indexBuffer = Ogre::HardwareBufferManager::getSingleton().createIndexBuffer(
      bWide ? Ogre::HardwareIndexBuffer::IT_32BIT : Ogre::HardwareIndexBuffer::IT_16BIT, nCount,
      Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
  range.m_pIndexData->indexBuffer->writeData(0, nCount * nSize, pFirst, true);
  m_nDeviceMemory += nCount * nSize;
}

}  // namespace QXC
