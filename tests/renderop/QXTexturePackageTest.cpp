#include <cstddef>
#include <iterator>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/renderop/QXTexturePackage.h>

#include "../QXBareTexture.h"

namespace QXC {
namespace {

void Fill(QXTexturePackage& package, QXTexture* pTextures, int& nExtra) {
  for (int unit = 0; unit < 8; ++unit) {
    package.m_nTextureIDs[unit] = 100 + unit;
    package.m_pTextures[unit] = pTextures + unit;
    package.m_matTextures[unit].SetTrans(QXVector3d(unit + 1.0, 0.0, 0.0));
  }
  package.m_pExtra = &nExtra;
  package.m_strTextureName = L"facade.png";
  package.m_bOwned = 0;
  package.m_bFlag = 1;
}

void ExpectEqual(QXTexturePackage const& copy, QXTexturePackage const& source) {
  for (std::size_t unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(copy.m_nTextureIDs[unit], source.m_nTextureIDs[unit]);
    EXPECT_EQ(copy.m_pTextures[unit], source.m_pTextures[unit]);
    EXPECT_EQ(copy.m_matTextures[unit], source.m_matTextures[unit]);
  }
  EXPECT_EQ(copy.m_pExtra, source.m_pExtra);
  EXPECT_TRUE(copy.m_strTextureName == source.m_strTextureName);
  EXPECT_EQ(copy.m_bOwned, source.m_bOwned);
  EXPECT_EQ(copy.m_bFlag, source.m_bFlag);
}

TEST(QXTexturePackage, FreshHasNoTextureAndBelongsToTheOperation) {
  QXTexturePackage const package;
  for (std::size_t unit = 0; unit < 8; ++unit) {
    EXPECT_EQ(package.m_nTextureIDs[unit], -1);
    EXPECT_EQ(package.m_pTextures[unit], nullptr);
    EXPECT_EQ(package.m_matTextures[unit], QXMatrix4d::IDENTITY);
  }
  EXPECT_EQ(package.m_pExtra, nullptr);
  EXPECT_TRUE(package.m_strTextureName == L"");
  EXPECT_EQ(package.m_bOwned, 1);
  EXPECT_EQ(package.m_bFlag, 0);
}

TEST(QXTexturePackage, FieldsStandInOrder) {
  QXTexturePackage const package;
  void const* const fields[] = {&package.m_nTextureIDs, &package.m_pTextures, &package.m_matTextures, &package.m_pExtra,
      &package.m_strTextureName, &package.m_bOwned, &package.m_bFlag};
  EXPECT_EQ(fields[0], static_cast<void const*>(&package));
  for (std::size_t i = 1; i < std::size(fields); ++i) EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
}

TEST(QXTexturePackage, CopiesCarryEveryFieldAndSharePointers) {
  QXBareTexture textures[8];
  int extra = 0;
  QXTexturePackage source;
  Fill(source, textures, extra);
  QXTexturePackage const copy(source);
  ExpectEqual(copy, source);
  QXTexturePackage assigned;
  assigned = source;
  ExpectEqual(assigned, source);
}

TEST(QXTexturePackage, NeitherCopiesNorDestructionCountReferences) {
  QXBareTexture textures[8];
  int extra = 0;
  {
    QXTexturePackage source;
    Fill(source, textures, extra);
    QXTexturePackage const copy(source);
    QXTexturePackage assigned;
    assigned = copy;
  }
  for (QXBareTexture const& texture : textures) EXPECT_EQ(texture.GetRef(), 0);
}

}  // namespace
}  // namespace QXC
