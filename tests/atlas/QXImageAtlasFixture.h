/// @file
/// What the tests of both image atlases begin with.
#pragma once

#include "QXToldTextures.h"

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>

#include <gtest/gtest.h>

#include <ctime>
#include <initializer_list>

namespace QXC {

/// An image atlas that stands in for the one of the process, over textures that tell what happens to them.
template <class Manager, class Image>
class QXImageAtlasFixture : public testing::Test {
protected:
  QXImageAtlasFixture() {
    m_Manager.SetTextureManager(&m_Textures);
    GetTold().clear();
  }

  static QdcArray<Image*> List(std::initializer_list<Image*> images) {
    QdcArray<Image*> arrImages;
    for (Image* const pImage : images) arrImages.Add(pImage);
    return arrImages;
  }

  /// A record made now has one user, the name "a", and the defaults in all that both kinds of record share.
  void ExpectNewRecord() {
    auto const nBefore = static_cast<unsigned int>(std::clock());
    Image const& image = *m_Manager.GetTextureImage(L"a");
    auto const nAfter = static_cast<unsigned int>(std::clock());
    EXPECT_EQ(image.m_nRefCount, 1);
    EXPECT_EQ(image.m_FirstRect, QdcRect2D());
    EXPECT_EQ(image.m_SecondRect, QdcRect2D());
    EXPECT_EQ(image.m_bFlag, 0);
    EXPECT_EQ(image.m_pTextureData, nullptr);
    EXPECT_EQ(image.m_nOwnerID, 0);
    EXPECT_EQ(image.m_nUserValue, 0);
    EXPECT_EQ(image.m_bLoaded, 0);
    EXPECT_TRUE(image.m_strName == L"a");
    EXPECT_EQ(image.m_nUserTag, 0u);
    EXPECT_EQ(image.m_pManager, &m_Manager);
    EXPECT_GE(image.m_nCreateTime, nBefore);
    EXPECT_LE(image.m_nCreateTime, nAfter);
    EXPECT_EQ(image.m_bUserFlagA, 0);
    EXPECT_EQ(image.m_bUserFlagB, 0);
    EXPECT_EQ(image.m_arrUserData.GetSize(), 0u);
  }

  QXToldTextureManager m_Textures;
  Manager m_Manager;
  QXAsSingleton<Manager> m_Singleton{m_Manager};
};

}  // namespace QXC
