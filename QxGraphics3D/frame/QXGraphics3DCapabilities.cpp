#include <QxGraphics3D/frame/QXGraphics3DCapabilities.h>

#include <cstdint>
#include <iterator>

#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>

namespace QXC {

namespace {

constexpr std::uint32_t MASK_BITS = 0x0FFFFFFFu;
constexpr int CATEGORY_SHIFT = 28;
constexpr GPUVendor VENDOR_WITHOUT_FLOAT_TEXTURES = GPU_INTEL;

std::uint32_t CategoryOf(Capabilities eCapability) {
  return static_cast<std::uint32_t>(eCapability) >> CATEGORY_SHIFT;
}

std::uint32_t MaskOf(Capabilities eCapability) {
  return static_cast<std::uint32_t>(eCapability) & MASK_BITS;
}

}  // namespace

QXGraphics3DCapabilities::QXGraphics3DCapabilities() = default;
QXGraphics3DCapabilities::QXGraphics3DCapabilities(QXGraphics3DCapabilities const& other) = default;
QXGraphics3DCapabilities& QXGraphics3DCapabilities::operator=(QXGraphics3DCapabilities const& other) = default;
QXGraphics3DCapabilities::~QXGraphics3DCapabilities() = default;

unsigned short QXGraphics3DCapabilities::GetNumTextureUnits() const {
  return m_nNumTextureUnits;
}

void QXGraphics3DCapabilities::SetNumTextureUnits(unsigned short nUnits) {
  m_nNumTextureUnits = nUnits;
}

double QXGraphics3DCapabilities::GetMaxPointSize() const {
  return m_dMaxPointSize;
}

void QXGraphics3DCapabilities::SetMaxPointSize(double dSize) {
  m_dMaxPointSize = dSize;
}

QdcUnicodeString const& QXGraphics3DCapabilities::GetDeviceName() const {
  return m_strDeviceName;
}

void QXGraphics3DCapabilities::SetDeviceName(QdcUnicodeString const& strName) {
  m_strDeviceName = strName;
}

GPUVendor QXGraphics3DCapabilities::GetVendor() const {
  return m_eVendor;
}

void QXGraphics3DCapabilities::SetVendor(GPUVendor eVendor) {
  m_eVendor = eVendor;
}

int QXGraphics3DCapabilities::GetStencilBufferBitDepth() const {
  return m_nStencilBufferBitDepth;
}

void QXGraphics3DCapabilities::SetStencilBufferBitDepth(int nBits) {
  m_nStencilBufferBitDepth = nBits;
}

float QXGraphics3DCapabilities::GetMaxAnisotropy() const {
  return m_fMaxAnisotropy;
}

void QXGraphics3DCapabilities::SetMaxAnisotropy(float fAnisotropy) {
  m_fMaxAnisotropy = fAnisotropy;
}

int QXGraphics3DCapabilities::GetMaxTextureSize() const {
  return m_nMaxTextureSize;
}

void QXGraphics3DCapabilities::SetMaxTextureSize(int nSize) {
  m_nMaxTextureSize = nSize;
}

unsigned char QXGraphics3DCapabilities::HasCapability(Capabilities eCapability) const {
  std::uint32_t const nCategory = CategoryOf(eCapability);
  if (nCategory >= std::size(m_arrCapabilities)) return 0;
  std::uint32_t const nWord = static_cast<std::uint32_t>(m_arrCapabilities[nCategory]);
  return static_cast<unsigned char>((nWord & MaskOf(eCapability)) != 0);
}

void QXGraphics3DCapabilities::SetCapability(Capabilities eCapability) {
  std::uint32_t const nCategory = CategoryOf(eCapability);
  if (nCategory >= std::size(m_arrCapabilities)) return;
  std::uint32_t const nWord = static_cast<std::uint32_t>(m_arrCapabilities[nCategory]);
  m_arrCapabilities[nCategory] = static_cast<int>(nWord | MaskOf(eCapability));
}

void QXGraphics3DCapabilities::UnSetCapability(Capabilities eCapability) {
  std::uint32_t const nCategory = CategoryOf(eCapability);
  if (nCategory >= std::size(m_arrCapabilities)) return;
  std::uint32_t const nWord = static_cast<std::uint32_t>(m_arrCapabilities[nCategory]);
  m_arrCapabilities[nCategory] = static_cast<int>(nWord & ~MaskOf(eCapability));
}

unsigned char QXGraphics3DCapabilities::IsCapabilityRenderSystemSpecific(Capabilities eCapability) const {
  std::uint32_t const nCategory = CategoryOf(eCapability);
  return static_cast<unsigned char>(nCategory == 2 || nCategory == 3);
}

unsigned char QXGraphics3DCapabilities::IsSupportFloatTex() const {
  QdcUnicodeString strValue;
  QXRegistry::Root().Lookup(L"IsSupportFloatTexture", strValue);
  if (strValue.CompareNoCase(L"false") == 0) return 0;
  if (HasCapability(CAP_TEXTURE_FLOAT) == 0) return 0;
  return static_cast<unsigned char>(m_eVendor != VENDOR_WITHOUT_FLOAT_TEXTURES);
}

}  // namespace QXC
