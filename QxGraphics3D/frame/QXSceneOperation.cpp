#include <QxGraphics3D/frame/QXSceneOperation.h>

#include <cmath>
#include <cstdint>
#include <utility>

namespace QXC {

namespace {

// Shift counts are taken modulo 32, so that every layer bit count has a defined result.
unsigned int ShiftOf(int nLayerIDUnit) {
  return (32u - static_cast<unsigned int>(nLayerIDUnit)) & 31u;
}

// 2^s - 1 in double precision and with s not reduced: at 32 layer bits and more no bit is left for the object, until at
// 86 the power is too small to count beside the 1 and the mask becomes -1, every bit. At least one bit is always the
// layer's, so that 32 bits hold the mask.
std::uint32_t ObjectMask(int nLayerIDUnit) {
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(std::ldexp(1.0, 32 - nLayerIDUnit) - 1.0));
}

}  // namespace

QXSceneOperation::QXSceneOperation() = default;
QXSceneOperation::QXSceneOperation(QXSceneOperation const& other) = default;
QXSceneOperation& QXSceneOperation::operator=(QXSceneOperation const& other) = default;
QXSceneOperation::~QXSceneOperation() = default;

void QXSceneOperation::SetDefault() {
  m_nRenderGroupID = 50;
  m_nRenderPriority = 0;
  m_nHashFunction = 0;
  m_strParentNodeName = QdcUnicodeString();
}

unsigned int QXSceneOperation::GetRenderGroupID() const {
  return m_nRenderGroupID;
}

unsigned int QXSceneOperation::SetRenderGroupID(unsigned int nRenderGroupID) {
  return std::exchange(m_nRenderGroupID, nRenderGroupID);
}

unsigned short QXSceneOperation::GetRenderPriority() const {
  return m_nRenderPriority;
}

unsigned short QXSceneOperation::SetRenderPriority(unsigned short nPriority) {
  return std::exchange(m_nRenderPriority, nPriority);
}

unsigned short QXSceneOperation::GetMaxRenderPriority() const {
  return m_nMaxRenderPriority;
}

unsigned short QXSceneOperation::SetMaxRenderPriority(unsigned short nPriority) {
  return std::exchange(m_nMaxRenderPriority, nPriority);
}

unsigned int QXSceneOperation::GetHashFunction() const {
  return m_nHashFunction;
}

unsigned int QXSceneOperation::SetHashFunction(HashFunction eFunction) {
  return std::exchange(m_nHashFunction, static_cast<unsigned int>(eFunction));
}

QdcUnicodeString const& QXSceneOperation::GetParentNodeName() const {
  return m_strParentNodeName;
}

QdcUnicodeString QXSceneOperation::SetParentNodeName(QdcUnicodeString const& strName) {
  QdcUnicodeString strFormer(strName);  // first: strName may be what GetParentNodeName gave
  std::swap(strFormer, m_strParentNodeName);
  return strFormer;
}

int QXSceneOperation::GetLayerIDUnit() const {
  return m_nLayerIDUnit;
}

void QXSceneOperation::SetLayerIDUnit(int nBits) {
  m_nLayerIDUnit = nBits < 2 ? 1 : nBits;
}

int QXSceneOperation::GetClampToObjectPassPriority() {
  return m_nClampToObjectPassPriority++;
}

unsigned int QXSceneOperation::GetID(int nLayer, int nID) const {
  std::uint32_t const nObject = static_cast<std::uint32_t>(nID) & ObjectMask(m_nLayerIDUnit);
  return nObject | (static_cast<std::uint32_t>(nLayer) << ShiftOf(m_nLayerIDUnit));
}

void QXSceneOperation::GetID(unsigned int nValue, int& nLayer, int& nID) const {
  unsigned int const nShift = ShiftOf(m_nLayerIDUnit);
  std::uint32_t const nObject = nValue - ((nValue >> nShift) << nShift);
  // The layer goes through the object's mask. With fewer object bits than layer bits that cuts the layer, and pickers
  // written against it expect the cut value.
  nLayer = static_cast<int>(((nValue - nObject) >> nShift) & ObjectMask(m_nLayerIDUnit));
  nID = static_cast<int>(nObject);
}

void QXSceneOperation::GetID(unsigned char* pRGBA, int& nLayer, int& nID) const {
  std::uint32_t const nValue = (static_cast<std::uint32_t>(pRGBA[3]) << 24) +
                               (static_cast<std::uint32_t>(pRGBA[0]) << 16) +
                               (static_cast<std::uint32_t>(pRGBA[1]) << 8) + pRGBA[2];
  GetID(nValue, nLayer, nID);
}

void QXSceneOperation::Release() {}

}  // namespace QXC
