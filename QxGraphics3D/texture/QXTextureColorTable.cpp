#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base/QdcColorDictTable.h>

#include <algorithm>
#include <memory>
#include <new>

namespace QXC {

namespace {

constexpr unsigned int RampHeight = 1024;
constexpr unsigned int RampLength = RampHeight * 4;

/// Fills the ramp from the lowest value up. The highest itself is one step beyond the last row.
void FillRamp(QdcColorDictTable const& table, unsigned char* pBytes) {
  double dFirst = 0.0;
  double dLast = 0.0;
  unsigned int nColor = 0;
  table.GetItem(0, dFirst, nColor);
  table.GetItem(table.GetCount() - 1, dLast, nColor);
  double const dLow = std::min(dFirst, dLast);
  double const dStep = (std::max(dFirst, dLast) - dLow) / 1024.0;
  for (unsigned int i = 0; i < RampHeight; ++i, pBytes += 4) {
    nColor = table.GetColor(dLow + i * dStep, 1);
    pBytes[0] = QDCBLUEVAL(nColor);
    pBytes[1] = QDCGREENVAL(nColor);
    pBytes[2] = QDCREDVAL(nColor);
    pBytes[3] = QDCALPHAVAL(nColor);
  }
}

}  // namespace

unsigned char QXTexture::SetTextureDataByColorDictTable(QdcColorDictTable const* pTable) {
  if (pTable == nullptr || pTable->GetCount() < 1) return 0;
  std::unique_ptr<unsigned char[]> pRamp(new (std::nothrow) unsigned char[RampLength]);
  if (pRamp == nullptr) return 0;
  FillRamp(*pTable, pRamp.get());
  m_TextureData.Release();
  m_TextureData.m_eFormat = PF_R8G8B8A8;
  m_TextureData.m_nWidth = 1;
  m_TextureData.m_nHeight = RampHeight;
  m_TextureData.m_nCompression = 0;
  // Levels would mix far values of the ramp.
  SetTextureMipMap(0);
  m_TextureData.m_pPixels = pRamp.release();
  m_TextureData.SetBlockLength(RampLength);
  m_TextureData.m_nDataSize = 0;
  m_bLoadedImage = 1;
  return 1;
}

}  // namespace QXC
