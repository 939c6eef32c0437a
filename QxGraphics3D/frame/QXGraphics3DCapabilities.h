/// @file
/// What a graphics device offers.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Maker of the graphics processor, in the order of the device tables. Any other value survives.
enum GPUVendor : int {
  GPU_UNKNOWN = 0,
  GPU_NVIDIA = 1,
  GPU_AMD = 2,
  GPU_INTEL = 3,
  GPU_SOFTWARE = 4,
};

/// A capability describes itself: the top four bits name the capability word (0 to 3), the low 28 bits are the mask
/// inside that word. Categories 0 and 1 hold for every graphics system, 2 and 3 belong to one of them. Only bit 19
/// of category 0 is read by the library; plug-ins may define further values.
enum Capabilities : unsigned int {
  CAP_AUTOMIPMAP = 0x00000001,
  CAP_BLENDING = 0x00000002,
  CAP_ANISOTROPY = 0x00000004,
  CAP_CUBEMAPPING = 0x00000008,
  CAP_HWSTENCIL = 0x00000010,
  CAP_VERTEX_PROGRAM = 0x00000020,
  CAP_FRAGMENT_PROGRAM = 0x00000040,
  CAP_TEXTURE_COMPRESSION = 0x00000080,
  CAP_HWRENDER_TO_TEXTURE = 0x00000100,
  CAP_INSTANCING = 0x00000200,
  CAP_NON_POWER_OF_2_TEXTURES = 0x00000400,
  CAP_USER_CLIP_PLANES = 0x00000800,
  CAP_TEXTURE_FLOAT = 0x00080000,
};

/// What the graphics device offers. One object is QXGraphics3D::m_Capabilities, which a plug-in fills once it knows
/// the device; hosts read it after QXGraphics3D::Initialize.
class QXGRAPHICS3D_API QXGraphics3DCapabilities {
public:
  QXGraphics3DCapabilities();
  QXGraphics3DCapabilities(QXGraphics3DCapabilities const& other);
  QXGraphics3DCapabilities& operator=(QXGraphics3DCapabilities const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  virtual ~QXGraphics3DCapabilities();

  unsigned short GetNumTextureUnits() const;
  void SetNumTextureUnits(unsigned short nUnits);
  /// In pixels.
  double GetMaxPointSize() const;
  void SetMaxPointSize(double dSize);
  QdcUnicodeString const& GetDeviceName() const;
  void SetDeviceName(QdcUnicodeString const& strName);
  GPUVendor GetVendor() const;
  void SetVendor(GPUVendor eVendor);
  /// In bits a pixel.
  int GetStencilBufferBitDepth() const;
  void SetStencilBufferBitDepth(int nBits);
  float GetMaxAnisotropy() const;
  void SetMaxAnisotropy(float fAnisotropy);
  /// Edge length in pixels.
  int GetMaxTextureSize() const;
  void SetMaxTextureSize(int nSize);

  /// 1 when any bit of the mask is set in the category's word. Categories above 3 have no word: 0.
  unsigned char HasCapability(Capabilities eCapability) const;
  /// Adds the mask to the category's word; categories above 3 are ignored.
  void SetCapability(Capabilities eCapability);
  /// Takes the mask out of the category's word; categories above 3 are ignored.
  void UnSetCapability(Capabilities eCapability);
  /// 1 when the category is 2 or 3.
  unsigned char IsCapabilityRenderSystemSpecific(Capabilities eCapability) const;
  /// Whether float textures may be used: not when the root registry's key "IsSupportFloatTexture" reads "false" in
  /// any case, not without CAP_TEXTURE_FLOAT, and not on vendor 3, whose drivers offer them but fail to filter them.
  unsigned char IsSupportFloatTex() const;

private:
  unsigned short m_nNumTextureUnits = 0;
  double m_dMaxPointSize = 0.0;
  int m_arrCapabilities[4] = {};
  QdcUnicodeString m_strDeviceName;
  GPUVendor m_eVendor = GPU_UNKNOWN;
  int m_nStencilBufferBitDepth = 0;
  float m_fMaxAnisotropy = 0.0f;
  int m_nMaxTextureSize = 0;
};

}  // namespace QXC
