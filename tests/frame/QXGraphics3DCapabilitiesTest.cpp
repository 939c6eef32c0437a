#include <QxGraphics3D/frame/QXGraphics3DCapabilities.h>

#include <gtest/gtest.h>

#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>

namespace QXC {
namespace {

Capabilities Make(unsigned int nCategory, unsigned int nMask) {
  return static_cast<Capabilities>((nCategory << 28) | nMask);
}

/// Puts the registry key back, so that the other tests see what the process started with.
class QXFloatTexture : public testing::Test {
protected:
  QXFloatTexture() {
    m_bFound = QXRegistry::Root().Lookup(L"IsSupportFloatTexture", m_strFormer);
    SetKey(L"");
    m_Capabilities.SetCapability(CAP_TEXTURE_FLOAT);
  }
  ~QXFloatTexture() override { SetKey(m_strFormer); }
  static void SetKey(QdcUnicodeString const& strValue) { QXRegistry::Root()[L"IsSupportFloatTexture"] = strValue; }

  QXGraphics3DCapabilities m_Capabilities;
  QdcUnicodeString m_strFormer;
  unsigned char m_bFound = 0;
};

TEST(QXGraphics3DCapabilities, ConstructionLeavesTheDefaults) {
  QXGraphics3DCapabilities const capabilities;
  EXPECT_EQ(capabilities.GetNumTextureUnits(), 0);
  EXPECT_EQ(capabilities.GetMaxPointSize(), 0.0);
  EXPECT_TRUE(capabilities.GetDeviceName().IsEmpty());
  EXPECT_EQ(static_cast<int>(capabilities.GetVendor()), 0);
  EXPECT_EQ(capabilities.GetStencilBufferBitDepth(), 0);
  EXPECT_EQ(capabilities.GetMaxAnisotropy(), 0.0f);
  EXPECT_EQ(capabilities.GetMaxTextureSize(), 0);
  for (unsigned int nCategory = 0; nCategory < 4; ++nCategory) {
    EXPECT_EQ(capabilities.HasCapability(Make(nCategory, 0x0FFFFFFFu)), 0);
  }
}

TEST(QXGraphics3DCapabilities, AccessorsAndCopiesCarryEveryField) {
  QXGraphics3DCapabilities capabilities;
  capabilities.SetNumTextureUnits(16);
  capabilities.SetMaxPointSize(63.5);
  capabilities.SetCapability(Make(2, 0x10));
  capabilities.SetDeviceName(L"device");
  capabilities.SetVendor(static_cast<GPUVendor>(77));
  capabilities.SetStencilBufferBitDepth(8);
  capabilities.SetMaxAnisotropy(15.5f);
  capabilities.SetMaxTextureSize(16384);
  QXGraphics3DCapabilities const copy(capabilities);
  QXGraphics3DCapabilities assigned;
  assigned = capabilities;
  for (QXGraphics3DCapabilities const* pCapabilities : {static_cast<QXGraphics3DCapabilities const*>(&capabilities),
           &copy, static_cast<QXGraphics3DCapabilities const*>(&assigned)}) {
    EXPECT_EQ(pCapabilities->GetNumTextureUnits(), 16);
    EXPECT_EQ(pCapabilities->GetMaxPointSize(), 63.5);
    EXPECT_EQ(pCapabilities->HasCapability(Make(2, 0x10)), 1);
    EXPECT_TRUE(pCapabilities->GetDeviceName() == L"device");
    EXPECT_EQ(static_cast<int>(pCapabilities->GetVendor()), 77);
    EXPECT_EQ(pCapabilities->GetStencilBufferBitDepth(), 8);
    EXPECT_EQ(pCapabilities->GetMaxAnisotropy(), 15.5f);
    EXPECT_EQ(pCapabilities->GetMaxTextureSize(), 16384);
  }
}

TEST(QXGraphics3DCapabilities, EachCategoryHasAWordOfItsOwn) {
  QXGraphics3DCapabilities capabilities;
  for (unsigned int nCategory = 0; nCategory < 4; ++nCategory) capabilities.SetCapability(Make(nCategory, 6));
  capabilities.UnSetCapability(Make(1, 6));
  EXPECT_EQ(capabilities.HasCapability(Make(0, 6)), 1);
  EXPECT_EQ(capabilities.HasCapability(Make(1, 6)), 0);
  EXPECT_EQ(capabilities.HasCapability(Make(2, 6)), 1);
  EXPECT_EQ(capabilities.HasCapability(Make(3, 6)), 1);
}

TEST(QXGraphics3DCapabilities, OneCommonBitIsEnough) {
  QXGraphics3DCapabilities capabilities;
  capabilities.SetCapability(Make(1, 0x4));
  EXPECT_EQ(capabilities.HasCapability(Make(1, 0x6)), 1);
  EXPECT_EQ(capabilities.HasCapability(Make(1, 0x3)), 0);
  EXPECT_EQ(capabilities.HasCapability(Make(1, 0x0)), 0);
  capabilities.SetCapability(Make(1, 0x2));
  capabilities.UnSetCapability(Make(1, 0x4));
  EXPECT_EQ(capabilities.HasCapability(Make(1, 0x2)), 1);
  EXPECT_EQ(capabilities.HasCapability(Make(1, 0x4)), 0);
}

TEST(QXGraphics3DCapabilities, CategoriesBeyondTheWordsAreIgnored) {
  QXGraphics3DCapabilities capabilities;
  for (unsigned int nCategory = 4; nCategory < 16; ++nCategory) {
    capabilities.SetCapability(Make(nCategory, 0x0FFFFFFFu));
    EXPECT_EQ(capabilities.HasCapability(Make(nCategory, 0x0FFFFFFFu)), 0);
    capabilities.UnSetCapability(Make(nCategory, 0x0FFFFFFFu));
    EXPECT_EQ(capabilities.IsCapabilityRenderSystemSpecific(Make(nCategory, 1)), 0);
  }
  for (unsigned int nCategory = 0; nCategory < 4; ++nCategory) {
    EXPECT_EQ(capabilities.HasCapability(Make(nCategory, 0x0FFFFFFFu)), 0);
  }
  EXPECT_EQ(capabilities.GetNumTextureUnits(), 0);
  EXPECT_TRUE(capabilities.GetDeviceName().IsEmpty());
}

TEST(QXGraphics3DCapabilities, CategoriesTwoAndThreeBelongToARenderSystem) {
  QXGraphics3DCapabilities const capabilities;
  EXPECT_EQ(capabilities.IsCapabilityRenderSystemSpecific(Make(0, 1)), 0);
  EXPECT_EQ(capabilities.IsCapabilityRenderSystemSpecific(Make(1, 1)), 0);
  EXPECT_EQ(capabilities.IsCapabilityRenderSystemSpecific(Make(2, 1)), 1);
  EXPECT_EQ(capabilities.IsCapabilityRenderSystemSpecific(Make(3, 1)), 1);
}

TEST_F(QXFloatTexture, MissingKeyLeavesItToTheDevice) {
  EXPECT_EQ(m_Capabilities.IsSupportFloatTex(), 1);
}

TEST_F(QXFloatTexture, KeyFalseInAnyCaseTurnsItOff) {
  for (wchar_t const* szValue : {L"false", L"FALSE", L"False"}) {
    SetKey(szValue);
    EXPECT_EQ(m_Capabilities.IsSupportFloatTex(), 0);
  }
  for (wchar_t const* szValue : {L"true", L"0", L"falsely", L"no"}) {
    SetKey(szValue);
    EXPECT_EQ(m_Capabilities.IsSupportFloatTex(), 1);
  }
}

TEST_F(QXFloatTexture, DeviceWithoutBitNineteenHasNone) {
  static_assert(CAP_TEXTURE_FLOAT == 0x80000);
  m_Capabilities.UnSetCapability(CAP_TEXTURE_FLOAT);
  EXPECT_EQ(m_Capabilities.IsSupportFloatTex(), 0);
  m_Capabilities.SetCapability(Make(1, 0x80000));
  EXPECT_EQ(m_Capabilities.IsSupportFloatTex(), 0);
}

TEST_F(QXFloatTexture, VendorThreeHasNoneAndEveryOtherHas) {
  for (int const nVendor : {0, 1, 2, 4, 5, 1000, -1}) {
    m_Capabilities.SetVendor(static_cast<GPUVendor>(nVendor));
    EXPECT_EQ(m_Capabilities.IsSupportFloatTex(), 1) << nVendor;
  }
  m_Capabilities.SetVendor(static_cast<GPUVendor>(3));
  EXPECT_EQ(m_Capabilities.IsSupportFloatTex(), 0);
}

}  // namespace
}  // namespace QXC
