/// @file
/// The states of the device that a material pass asks for.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

/// Which value passes when it is compared with the stored one.
enum QXCompareFunction : int {
  COMPARE_NEVER = 0,
  COMPARE_ALWAYS = 1,
  COMPARE_LESS = 2,
  COMPARE_LESS_EQUAL = 3,
  COMPARE_EQUAL = 4,
  COMPARE_NOT_EQUAL = 5,
  COMPARE_GREATER_EQUAL = 6,
  COMPARE_GREATER = 7,
};

/// What a colour is multiplied with when it joins the one in the colour buffer.
enum QXBlendFactor : int {
  BLEND_ONE = 0,
  BLEND_ZERO = 1,
  BLEND_DEST_COLOUR = 2,
  BLEND_SOURCE_COLOUR = 3,
  BLEND_ONE_MINUS_DEST_COLOUR = 4,
  BLEND_ONE_MINUS_SOURCE_COLOUR = 5,
  BLEND_ONE_MINUS_DEST_ALPHA = 6,
  BLEND_ONE_MINUS_SOURCE_ALPHA = 7,
  BLEND_DEST_ALPHA = 8,
  BLEND_SOURCE_ALPHA = 9,
};

/// How the repetition of a texture is switched off, bits of QXPass::m_nUnitWords.
enum QXUnitWordBit : unsigned int {
  UNIT_WORD_CLAMP_U = 1u,
  UNIT_WORD_CLAMP_V = 2u,
};

/// The plain values of a pass. The states have the numbers of the same operations of QXGraphics3D. Any value of an
/// enumeration survives being copied, saved and loaded; what it does is the renderer's business.
struct QXPassStates {
  static constexpr int MAX_UNIT_WORDS = 8;

  /// Transform of the texture coordinates of all units, before each unit's own; the identity at first.
  QXMatrix4d m_matPass;
  /// For the host; 0 in the copies that static geometry keeps.
  int m_nPassWord = 0;
  /// How unit i repeats its texture: bit 0 clamps u, bit 1 clamps v (QXUnitWordBit), 0 repeats both ways.
  unsigned int m_nUnitWords[MAX_UNIT_WORDS] = {};
  /// 1: the units hold the textures of several passes, and the fourth coordinate of unit 0 says which one is meant.
  unsigned char m_bMultiTexture = 0;

  QXColorValue3D m_clrAmbient{1.0, 1.0, 1.0, 1.0};
  /// Its alpha is the opacity of the pass.
  QXColorValue3D m_clrDiffuse{1.0, 1.0, 1.0, 1.0};
  QXColorValue3D m_clrSpecular{0.0, 0.0, 0.0, 1.0};
  QXColorValue3D m_clrEmissive{0.0, 0.0, 0.0, 1.0};
  /// Exponent of the highlight, 0 for none.
  double m_dShininess = 0.0;
  /// 0: drawn in its plain diffuse colour.
  unsigned char m_bLighting = 1;

  /// QXBlendFactor; at first the drawn colour replaces the one in the buffer.
  int m_eSourceFactor = BLEND_ONE;
  int m_eDestFactor = BLEND_ZERO;
  CullingMode m_eCulling = CULLING_NONE;
  unsigned char m_bDepthCheck = 1;
  unsigned char m_bDepthWrite = 1;
  /// QXCompareFunction.
  int m_eDepthFunction = COMPARE_LESS_EQUAL;
  /// Pixels whose alpha (0 to 255) fails this QXCompareFunction against m_nAlphaReference are dropped.
  int m_eAlphaFunction = COMPARE_ALWAYS;
  unsigned char m_nAlphaReference = 0;
  /// In pixels.
  double m_dLineWidth = 1.0;
  double m_dPointSize = 1.0;
};

}  // namespace QXC
