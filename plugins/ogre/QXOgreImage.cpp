#include <plugins/ogre/QXOgreImage.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include <OgreHardwarePixelBuffer.h>
#include <OgreResourceGroupManager.h>
#include <OgreTextureManager.h>

#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreOpenGL.h>

namespace QXC {

namespace {

// OpenGL's numbers.
constexpr unsigned int TEXTURE_2D = 0x0DE1;
constexpr unsigned int TEXTURE_BINDING_2D = 0x8069;
constexpr unsigned int TEXTURE_BASE_LEVEL = 0x813C;
constexpr unsigned int TEXTURE_MAX_LEVEL = 0x813D;
constexpr unsigned int TEXTURE_SWIZZLE_A = 0x8E45;
constexpr int SWIZZLE_ONE = 1;

/// Works on a plain texture. OGRE remembers what is bound, so that is bound again afterwards.
template <class Work>
void WithTexture(unsigned int nID, Work&& work) {
  QXOgreOpenGL const& gl = QXOgreOpenGL::Get();
  int nFormer = 0;
  gl.m_pfnGetInteger(TEXTURE_BINDING_2D, &nFormer);
  gl.m_pfnBindTexture(TEXTURE_2D, nID);
  work(gl);
  gl.m_pfnBindTexture(TEXTURE_2D, static_cast<unsigned int>(nFormer));
}

void SetParameter(unsigned int nID, unsigned int eParameter, int nValue) {
  WithTexture(nID, [&](QXOgreOpenGL const& gl) { gl.m_pfnTexParameter(TEXTURE_2D, eParameter, nValue); });
}

/// Makes all levels anew from the first one.
void GenerateLevels(unsigned int nID) {
  WithTexture(nID, [](QXOgreOpenGL const& gl) { gl.m_pfnGenerateMipmap(TEXTURE_2D); });
}

Ogre::PixelBox MakeBox(unsigned int nWidth, unsigned int nHeight, Ogre::PixelFormat eFormat, void const* pPixels) {
  return {nWidth, nHeight, 1, eFormat, const_cast<void*>(pPixels)};
}

void CheckSize(QXOgreDevice const& device, unsigned int nWidth, unsigned int nHeight) {
  unsigned int const nMax = device.GetMaxTargetSize();
  if (nWidth >= 1 && nHeight >= 1 && nWidth <= nMax && nHeight <= nMax) return;
  throw std::runtime_error("a texture of " + std::to_string(nWidth) + " x " + std::to_string(nHeight) +
                           " pixels is impossible: each side takes 1 to " + std::to_string(nMax) + " pixels");
}

}  // namespace

QXOgreImage::QXOgreImage(QXOgreDevice& device, QXOgrePixels const& pixels, bool bGenerateLevels)
    : m_Device(device), m_eFormat(pixels.m_eFormat), m_nByteCount(0), m_nWidth(pixels.m_arrLevels.front().m_nWidth),
      m_nHeight(pixels.m_arrLevels.front().m_nHeight), m_nLevelCount(0), m_nID(0), m_bStack(false),
      m_bTransparent(pixels.m_bTransparent), m_bForeign(false), m_bGenerated(false) {
  auto const nLevels = static_cast<unsigned int>(pixels.m_arrLevels.size());
  Create(1, nLevels, bGenerateLevels && nLevels == 1 && !Ogre::PixelUtil::isCompressed(m_eFormat));
  for (unsigned int i = 0; i < nLevels; ++i) Fill(0, i, pixels.m_arrLevels[i]);
}

QXOgreImage::QXOgreImage(QXOgreDevice& device, std::vector<QXOgrePixels> const& arrLayers)
    : m_Device(device), m_eFormat(arrLayers.front().m_eFormat), m_nByteCount(0),
      m_nWidth(arrLayers.front().m_arrLevels.front().m_nWidth),
      m_nHeight(arrLayers.front().m_arrLevels.front().m_nHeight), m_nLevelCount(0), m_nID(0), m_bStack(true),
      m_bTransparent(false), m_bForeign(false), m_bGenerated(false) {
  for (QXOgrePixels const& layer : arrLayers) {
    QXOgreLevel const& level = layer.m_arrLevels.front();
    if (level.m_nWidth != m_nWidth || level.m_nHeight != m_nHeight || layer.m_eFormat != m_eFormat)
      throw std::runtime_error("the layers of a texture must have one size and one format");
    m_bTransparent = m_bTransparent || layer.m_bTransparent;
  }
  auto const nLayers = static_cast<unsigned int>(arrLayers.size());
  Create(nLayers, 1, false);
  for (unsigned int i = 0; i < nLayers; ++i) Fill(i, 0, arrLayers[i].m_arrLevels.front());
}

QXOgreImage::QXOgreImage(QXOgreDevice& device, Ogre::TexturePtr const& pForeign)
    : m_Device(device), m_pTexture(pForeign), m_eFormat(m_pTexture->getFormat()), m_nByteCount(0),
      m_nWidth(m_pTexture->getWidth()), m_nHeight(m_pTexture->getHeight()),
      m_nLevelCount(m_pTexture->getNumMipmaps() + 1), m_nID(0), m_bStack(false), m_bTransparent(true), m_bForeign(true),
      m_bGenerated(true) {
  m_pTexture->getCustomAttribute("GLID", &m_nID);
}

QXOgreImage::~QXOgreImage() {
  if (!m_bForeign) m_Device.Discard(m_pTexture, m_nByteCount);
}

void QXOgreImage::Create(unsigned int nLayers, unsigned int nLevels, bool bGenerateLevels) {
  CheckSize(m_Device, m_nWidth, m_nHeight);
  auto& manager = Ogre::TextureManager::getSingleton();
  int const nUsage = Ogre::TU_STATIC_WRITE_ONLY | (bGenerateLevels ? Ogre::TU_AUTOMIPMAP : 0);
  Ogre::TextureType const eType = m_bStack ? Ogre::TEX_TYPE_2D_ARRAY : Ogre::TEX_TYPE_2D;
  // Blocks cannot be converted into anything else on the way, as OGRE does with pixels.
  if (Ogre::PixelUtil::isCompressed(m_eFormat) && !m_Device.TakesBlocks(m_eFormat))
    throw std::runtime_error("the device does not take blocks of " + Ogre::PixelUtil::getFormatName(m_eFormat));
  int const nMipmaps = bGenerateLevels ? static_cast<int>(Ogre::MIP_UNLIMITED) : static_cast<int>(nLevels) - 1;
  m_pTexture =
      manager.createManual(QXOgreDevice::MakeName("texture"), Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME,
          eType, m_nWidth, m_nHeight, nLayers, nMipmaps, m_eFormat, nUsage);
  m_nLevelCount = m_pTexture->getNumMipmaps() + 1;
  m_bGenerated = bGenerateLevels;
  m_pTexture->getCustomAttribute("GLID", &m_nID);
  for (unsigned int i = 0; i < m_nLevelCount; ++i)
    m_nByteCount += nLayers * Ogre::PixelUtil::getMemorySize(std::max(m_nWidth >> i, 1U), std::max(m_nHeight >> i, 1U),
                                  1, m_pTexture->getFormat());
  QXOgreDevice::CountMemory(m_nByteCount);
  // OGRE lets a gray image be as transparent as it is dark.
  if (m_eFormat == Ogre::PF_BYTE_L && !m_bStack) SetParameter(m_nID, TEXTURE_SWIZZLE_A, SWIZZLE_ONE);
}

void QXOgreImage::Fill(unsigned int nLayer, unsigned int nLevel, QXOgreLevel const& level) {
  m_pTexture->getBuffer(0, nLevel)->blitFromMemory(MakeBox(level.m_nWidth, level.m_nHeight, m_eFormat, level.m_pPixels),
      Ogre::Box(0, 0, nLayer, level.m_nWidth, level.m_nHeight, nLayer + 1));
}

void QXOgreImage::Write(QXOgrePart const& part, void const* pCells) {
  auto const nLeft = static_cast<unsigned int>(part.m_nLeft * part.m_nCellEdge);
  auto const nTop = static_cast<unsigned int>(part.m_nTop * part.m_nCellEdge);
  // The last blocks of an image may reach beyond it.
  unsigned int const nRight =
      std::min(static_cast<unsigned int>((part.m_nLeft + part.m_nColumns) * part.m_nCellEdge), m_nWidth);
  unsigned int const nBottom =
      std::min(static_cast<unsigned int>((part.m_nTop + part.m_nRows) * part.m_nCellEdge), m_nHeight);
  m_pTexture->getBuffer()->blitFromMemory(
      MakeBox(nRight - nLeft, nBottom - nTop, m_eFormat, pCells), Ogre::Box(nLeft, nTop, nRight, nBottom));
  if (m_nLevelCount == 1 || m_bGenerated) return;
  if (Ogre::PixelUtil::isCompressed(m_eFormat)) {
    m_nLevelCount = 1;
    SetLevels(0, 0);
  } else {
    GenerateLevels(m_nID);
  }
}

void QXOgreImage::Read(unsigned char* pPixels) const {
  if (m_eFormat == Ogre::PF_BYTE_LA) return ReadLuminanceAlpha(pPixels);
  m_pTexture->getBuffer()->blitToMemory(MakeBox(m_nWidth, m_nHeight, Ogre::PF_BYTE_BGRA, pPixels));
}

void QXOgreImage::ReadLuminanceAlpha(unsigned char* pPixels) const {
  // OGRE converts from what OpenGL has, which is red and green: luminance and alpha come of the way it is looked up.
  std::size_t const nCount = std::size_t{m_nWidth} * m_nHeight;
  std::vector<unsigned char> arrPairs(nCount * 2);
  m_pTexture->getBuffer()->blitToMemory(MakeBox(m_nWidth, m_nHeight, m_eFormat, arrPairs.data()));
  for (std::size_t i = 0; i < nCount; ++i) {
    std::fill_n(pPixels + 4 * i, 3, arrPairs[2 * i]);
    pPixels[4 * i + 3] = arrPairs[2 * i + 1];
  }
}

void QXOgreImage::SetLevels(int nFirst, int nLast) {
  if (m_bStack) return;
  int const nEnd = static_cast<int>(m_nLevelCount) - 1;
  nFirst = std::clamp(nFirst, 0, nEnd);
  SetParameter(m_nID, TEXTURE_BASE_LEVEL, nFirst);
  SetParameter(m_nID, TEXTURE_MAX_LEVEL, std::clamp(nLast, nFirst, nEnd));
}

}  // namespace QXC
