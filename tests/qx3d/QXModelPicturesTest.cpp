#include <apps/qx3d/QXHostTexture.h>
#include <apps/qx3d/QXModelPictures.h>

#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>

#include <tests/assimp/QXTestFiles.h>
#include <tests/fileparser/QXModelMaker.h>
#include <tests/qx3d/QXGifMaker.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

using Folder = QXAssimp::QXTestFolder;

/// A model of one triangle for each picture.
QXC::ModelDataInfo MakeModel(std::vector<QXC::QXModelImage> const& vecImages) {
  QXC::ModelDataInfo model;
  model.SetName(L"/models/a.glb");
  for (QXC::QXModelImage const& image : vecImages) {
    QXC::QXModelMesh* pMesh = QXC::MakeTriangle();
    pMesh->m_pVertexPackage->SetTexCoordNum(0, 3, 0);
    pMesh->m_Texture.m_nImage = model.AddImage(new QXC::QXModelImage(image));
    model.AddMesh(pMesh);
  }
  return model;
}

QXC::QXModelImage InFile(std::string const& strPath) {
  QXC::QXModelImage image;
  image.m_strFilePath = QXC::QdcUnicodeString::FromUTF8(strPath.c_str());
  image.m_strName = image.m_strFilePath;
  return image;
}

QXC::QXModelImage Carried(std::vector<unsigned char> const& vecBytes) {
  QXC::QXModelImage image;
  image.m_strName = L"carried";
  for (unsigned char n : vecBytes) image.m_arrBytes.Add(n);
  return image;
}

/// An uncompressed TGA image of 4-byte pixels, blue, green, red, alpha, top row first.
std::vector<unsigned char> MakeTga(
    unsigned char nWidth, unsigned char nHeight, std::vector<unsigned char> const& vecPixels) {
  std::vector<unsigned char> vecBytes = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, nWidth, 0, nHeight, 0, 32, 0x28};
  vecBytes.insert(vecBytes.end(), vecPixels.begin(), vecPixels.end());
  return vecBytes;
}

std::string QuartersPath() {
  return QXAssimp::ModelPath("quarters.png");
}

/// Red, green, blue, alpha of a pixel, as text.
std::string PixelOf(QXC::QXTexture& texture, unsigned int x, unsigned int y) {
  QXC::QXTextureData const& data = *texture.GetTextureData();
  unsigned char const* p = data.m_pPixels + std::size_t{4} * (std::size_t{y} * data.m_nWidth + x);
  return std::to_string(p[2]) + " " + std::to_string(p[1]) + " " + std::to_string(p[0]) + " " + std::to_string(p[3]);
}

QXTextureKey Key(int nImage) {
  QXTextureKey key;
  key.m_nImage = nImage;
  return key;
}

TEST(QXModelPictures, WithoutAModelNothingIsUsable) {
  QXModelPictures const pictures;
  EXPECT_FALSE(pictures.IsUsable(-1));
  EXPECT_FALSE(pictures.IsUsable(0));
  EXPECT_FALSE(pictures.HasAnimated());
}

TEST(QXModelPictures, FilesAndCarriedBytesBecomeTheSameTexture) {
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(MakeModel({InFile(QuartersPath()), Carried(QXAssimp::ReadTestFile(QuartersPath()))}), vecProblems);
  EXPECT_TRUE(vecProblems.empty());
  for (int i : {0, 1}) {
    ASSERT_TRUE(pictures.IsUsable(i));
    EXPECT_TRUE(pictures.IsStill(i));
    EXPECT_FALSE(pictures.IsTransparent(i));
    QXHostTexture texture;
    pictures.Fill(Key(i), texture);
    EXPECT_EQ(texture.GetTextureData()->m_nWidth, 8u);
    EXPECT_EQ(texture.GetTextureData()->m_eFormat, QXC::PF_A8R8G8B8);
    EXPECT_EQ(texture.IsHasTransparentData(), 0);
    EXPECT_EQ(texture.m_bMipmapEnabled, 1);
    EXPECT_EQ(texture.GetTextureRepeatMode(), 0);
    EXPECT_EQ(PixelOf(texture, 0, 0), "255 0 0 255");
    EXPECT_EQ(PixelOf(texture, 7, 0), "0 255 0 255");
    EXPECT_EQ(PixelOf(texture, 0, 7), "0 0 255 255");
    EXPECT_EQ(PixelOf(texture, 7, 7), "255 255 255 255");
  }
  EXPECT_EQ(pictures.GetTextureName(Key(0)), QuartersPath());
  EXPECT_EQ(pictures.GetTextureName(Key(1)), "/models/a.glb|1");
}

TEST(QXModelPictures, NameTellsTheFormOfATexture) {
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(MakeModel({InFile(QuartersPath())}), vecProblems);
  QXTextureKey key = Key(0);
  key.m_bRepeat = true;
  key.m_bMirrorV = true;
  key.m_eAlpha = QXC::QX_ALPHA_MASK;
  key.m_nThreshold = 128;
  EXPECT_EQ(pictures.GetTextureName(key), QuartersPath() + "|repeat|mirror-v|mask-128");
  QXHostTexture texture;
  pictures.Fill(key, texture);
  EXPECT_EQ(texture.GetTextureRepeatMode(), 1);
}

TEST(QXModelPictures, EdgesBecomePowersOfTwoByStretching) {
  Folder const folder;
  std::vector<unsigned char> vecPixels;
  for (int i = 0; i < 3; ++i)
    for (int n : {0, 0, 255, 255}) vecPixels.push_back(static_cast<unsigned char>(n));
  std::string const strPath = folder.Write("three.tga", MakeTga(3, 1, vecPixels));
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(MakeModel({InFile(strPath)}), vecProblems);
  QXHostTexture texture;
  pictures.Fill(Key(0), texture);
  EXPECT_EQ(texture.GetTextureData()->m_nWidth, 4u);
  EXPECT_EQ(texture.GetTextureData()->m_nHeight, 1u);
  EXPECT_EQ(PixelOf(texture, 3, 0), "255 0 0 255");
}

TEST(QXModelPictures, MirroredTextureHoldsThePictureTwiceOnEachAxis) {
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(MakeModel({InFile(QuartersPath())}), vecProblems);
  QXTextureKey key = Key(0);
  key.m_bMirrorU = true;
  QXHostTexture wide;
  pictures.Fill(key, wide);
  EXPECT_EQ(wide.GetTextureData()->m_nWidth, 16u);
  EXPECT_EQ(wide.GetTextureData()->m_nHeight, 8u);
  for (unsigned int y : {0u, 7u})
    for (unsigned int x = 0; x < 8; ++x) EXPECT_EQ(PixelOf(wide, x, y), PixelOf(wide, 15 - x, y));
  EXPECT_EQ(PixelOf(wide, 8, 0), "0 255 0 255");
  key.m_bMirrorV = true;
  QXHostTexture both;
  pictures.Fill(key, both);
  EXPECT_EQ(both.GetTextureData()->m_nHeight, 16u);
  EXPECT_EQ(PixelOf(both, 0, 8), "0 0 255 255");
  EXPECT_EQ(PixelOf(both, 15, 15), "255 0 0 255");
}

TEST(QXModelPictures, AlphaIsKeptMaskedOrFilled) {
  Folder const folder;
  // Alpha 100, 128, 0, 255; the clear pixel is black.
  std::string const strPath =
      folder.Write("alpha.tga", MakeTga(4, 1, {0, 0, 255, 100, 0, 255, 0, 128, 0, 0, 0, 0, 255, 0, 0, 255}));
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(MakeModel({InFile(strPath)}), vecProblems);
  EXPECT_TRUE(pictures.IsTransparent(0));
  QXHostTexture kept;
  pictures.Fill(Key(0), kept);
  EXPECT_EQ(kept.IsHasTransparentData(), 1);
  EXPECT_EQ(PixelOf(kept, 0, 0), "255 0 0 100");
  // Its neighbour's colour, which filtering then draws in instead of black.
  EXPECT_EQ(PixelOf(kept, 2, 0), "0 255 0 0");
  QXTextureKey key = Key(0);
  key.m_eAlpha = QXC::QX_ALPHA_MASK;
  key.m_nThreshold = 128;
  QXHostTexture masked;
  pictures.Fill(key, masked);
  EXPECT_EQ(PixelOf(masked, 0, 0), "0 0 0 0");
  EXPECT_EQ(PixelOf(masked, 1, 0), "0 255 0 255");
  key.m_eAlpha = QXC::QX_ALPHA_OPAQUE;
  QXHostTexture filled;
  pictures.Fill(key, filled);
  EXPECT_EQ(filled.IsHasTransparentData(), 0);
  EXPECT_EQ(PixelOf(filled, 0, 0), "255 0 0 255");
  EXPECT_EQ(PixelOf(filled, 2, 0), "0 0 0 255");
}

TEST(QXModelPictures, AnimationTravelsAsTheBytesOfItsFile) {
  Folder const folder;
  std::vector<unsigned char> const vecGif = MakeGif({0, 1, 2}, 10);
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(MakeModel({InFile(folder.Write("a.gif", vecGif)), Carried(vecGif),
                    InFile(folder.Write("clear.gif", MakeGif({0, 3}, 10)))}),
      vecProblems);
  ASSERT_TRUE(vecProblems.empty()) << vecProblems[0];
  EXPECT_TRUE(pictures.HasAnimated());
  for (int i : {0, 1}) {
    EXPECT_TRUE(pictures.IsAnimated(i));
    EXPECT_FALSE(pictures.IsStill(i));
    EXPECT_FALSE(pictures.IsTransparent(i));
    QXHostTexture texture;
    pictures.Fill(Key(i), texture);
    QXC::QXTextureData const& data = *texture.GetTextureData();
    EXPECT_EQ(data.m_nCompression, QXC::TEXTURE_COMPRESSION_RAW);
    ASSERT_EQ(data.m_nDataSize, vecGif.size());
    EXPECT_EQ(std::vector<unsigned char>(data.m_pPixels, data.m_pPixels + data.m_nDataSize), vecGif);
  }
  EXPECT_TRUE(pictures.IsTransparent(2));
}

TEST(QXModelPictures, AnimationOfOneFrameIsAStillPicture) {
  Folder const folder;
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(MakeModel({InFile(folder.Write("a.gif", MakeGif({1}, 0)))}), vecProblems);
  ASSERT_TRUE(vecProblems.empty()) << vecProblems[0];
  EXPECT_TRUE(pictures.IsStill(0));
  EXPECT_FALSE(pictures.HasAnimated());
  QXHostTexture texture;
  pictures.Fill(Key(0), texture);
  EXPECT_EQ(PixelOf(texture, 3, 3), "0 255 0 255");
}

TEST(QXModelPictures, EachBadPictureIsToldOnceWithAWayOut) {
  Folder const folder;
  std::vector<std::string> vecProblems;
  auto const expect = [&](QXC::QXModelImage const& image, std::vector<std::string> const& vecParts) {
    QXC::ModelDataInfo model = MakeModel({image});
    // A second mesh with the same picture.
    model.AddMesh(new QXC::QXModelMesh(*model.GetMesh(0)));
    vecProblems.clear();
    QXModelPictures pictures;
    pictures.Load(model, vecProblems);
    EXPECT_FALSE(pictures.IsUsable(0));
    ASSERT_EQ(vecProblems.size(), 1u) << vecParts.front();
    EXPECT_EQ(vecProblems[0].find("picture "), 0u);
    EXPECT_NE(vecProblems[0].find(';'), std::string::npos) << vecProblems[0];
    for (std::string const& strPart : vecParts)
      EXPECT_NE(vecProblems[0].find(strPart), std::string::npos) << strPart << " in: " << vecProblems[0];
  };
  expect(InFile(folder.Path("gone.png")), {"gone.png", "no such file"});
  expect(InFile(folder.Path()), {"no regular file"});
  expect(InFile(folder.Write("notes.txt", "x")), {"notes.txt", "unknown kind", ".png"});
  expect(InFile(folder.Write("broken.png", "not a picture")), {"broken.png"});
  expect(InFile(folder.Write("broken.gif", "GIF89a")), {"broken.gif"});
  expect(InFile(folder.Write("broken.ktx2", "x")), {"broken.ktx2", "it is broken"});
  expect(Carried({1, 2, 3}), {"carried"});
  expect(QXC::QXModelImage(), {"picture 0", "carries no picture"});
}

TEST(QXModelPictures, PictureThatNoMeshUsesIsNotRead) {
  QXC::ModelDataInfo model = MakeModel({InFile("/gone.png")});
  model.GetMesh(0)->m_Texture.m_nImage = -1;
  std::vector<std::string> vecProblems;
  QXModelPictures pictures;
  pictures.Load(model, vecProblems);
  EXPECT_TRUE(vecProblems.empty());
  EXPECT_FALSE(pictures.IsUsable(0));
}

}  // namespace
}  // namespace QXApp
