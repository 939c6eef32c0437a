#include <QxGraphics3D/texture/QXTexture.h>

#include <QxGraphics3D/frame/foundation/base/QdcColor.h>
#include <QxGraphics3D/frame/foundation/base/QdcColorDictTable.h>

#include <tests/QXBareTexture.h>

#include <gtest/gtest.h>

namespace QXC {
namespace {

class SwitchedTexture : public QXBareTexture {
public:
  void SetTextureMipMap(unsigned char bMipmapEnabled) override { m_nMipMap = bMipmapEnabled; }

  int m_nMipMap = -1;
};

void ExpectRow(QXTexture const& texture, unsigned int nRow, unsigned int nColor) {
  unsigned char const* const pPixel = texture.m_TextureData.m_pPixels + nRow * 4;
  EXPECT_EQ(pPixel[0], QDCBLUEVAL(nColor)) << nRow;
  EXPECT_EQ(pPixel[1], QDCGREENVAL(nColor)) << nRow;
  EXPECT_EQ(pPixel[2], QDCREDVAL(nColor)) << nRow;
  EXPECT_EQ(pPixel[3], QDCALPHAVAL(nColor)) << nRow;
}

TEST(QXTextureColorTable, WithoutItemsChangesNothing) {
  SwitchedTexture texture;
  auto* const pOld = new unsigned char[4];
  texture.m_TextureData.m_pPixels = pOld;
  EXPECT_EQ(texture.SetTextureDataByColorDictTable(nullptr), 0);
  QdcColorDictTable const table;
  EXPECT_EQ(texture.SetTextureDataByColorDictTable(&table), 0);
  EXPECT_EQ(texture.m_TextureData.m_pPixels, pOld);
  EXPECT_EQ(texture.m_TextureData.m_eFormat, PF_UNKNOWN);
  EXPECT_EQ(texture.m_bLoadedImage, 0);
  EXPECT_EQ(texture.m_nMipMap, -1);
}

TEST(QXTextureColorTable, MakesAColumnOf1024Pixels) {
  QdcColorDictTable table;
  table.Add(-5.0, QDCRGBA(1, 2, 3, 4));
  table.Add(7.0, QDCRGBA(200, 100, 50, 255));
  SwitchedTexture texture;
  texture.m_TextureData.m_pPixels = new unsigned char[4];
  texture.m_TextureData.m_nCompression = 16;
  texture.m_TextureData.m_nDataSize = 4;
  EXPECT_EQ(texture.SetTextureDataByColorDictTable(&table), 1);
  EXPECT_EQ(texture.m_TextureData.m_eFormat, PF_R8G8B8A8);
  EXPECT_EQ(texture.m_TextureData.m_nWidth, 1u);
  EXPECT_EQ(texture.m_TextureData.m_nHeight, 1024u);
  EXPECT_EQ(texture.m_TextureData.m_nCompression, 0u);
  EXPECT_EQ(texture.m_TextureData.GetBlockLength(), 4096u);
  EXPECT_EQ(texture.m_TextureData.m_nDataSize, 0u);
  EXPECT_EQ(texture.m_bLoadedImage, 1);
  EXPECT_EQ(texture.m_nMipMap, 0);
}

TEST(QXTextureColorTable, GoesFromTheLowestValueToOneStepBeforeTheHighest) {
  QdcColorDictTable table;
  table.Add(1024.0, QDCRGBA(255, 255, 0, 255));
  table.Add(0.0, QDCRGBA(0, 0, 255, 0));
  table.Add(512.0, QDCRGBA(0, 255, 0, 128));
  QXBareTexture texture;
  ASSERT_EQ(texture.SetTextureDataByColorDictTable(&table), 1);
  for (unsigned int nRow = 0; nRow < 1024; ++nRow) ExpectRow(texture, nRow, table.GetColor(nRow, 1));
  ExpectRow(texture, 0, QDCRGBA(0, 0, 255, 0));
  ExpectRow(texture, 512, QDCRGBA(0, 255, 0, 128));
  // 511/512 of the way: close to the highest value's colour, not the colour itself.
  unsigned char const* const pLast = texture.m_TextureData.m_pPixels + 1023 * 4;
  EXPECT_EQ(pLast[1], 255);
  EXPECT_EQ(pLast[2], 255 * 511 / 512 + 1);
}

TEST(QXTextureColorTable, OfOneItemIsOneSolidColour) {
  QdcColorDictTable table;
  table.Add(3.0, QDCRGBA(10, 20, 30, 40));
  QXBareTexture texture;
  ASSERT_EQ(texture.SetTextureDataByColorDictTable(&table), 1);
  for (unsigned int nRow = 0; nRow < 1024; ++nRow) ExpectRow(texture, nRow, QDCRGBA(10, 20, 30, 40));
}

TEST(QXTextureColorTable, ReplacesItsOwnRamp) {
  QdcColorDictTable table;
  table.Add(3.0, QDCRGBA(10, 20, 30, 40));
  QXBareTexture texture;
  ASSERT_EQ(texture.SetTextureDataByColorDictTable(&table), 1);
  table.Add(3.0, QDCRGBA(10, 20, 30, 40));
  ASSERT_EQ(texture.SetTextureDataByColorDictTable(&table), 1);
  ExpectRow(texture, 1023, QDCRGBA(10, 20, 30, 40));
}

}  // namespace
}  // namespace QXC
