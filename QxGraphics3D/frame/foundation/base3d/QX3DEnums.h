/// @file
/// Enumerations of the 3D foundation. The values are part of the contract with plug-ins; a value that has no name
/// here passes through unchanged.
#pragma once

#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

/// Shape of the world that a scene shows.
enum SceneType : int {
  SCENE_GLOBE = 0,  ///< Earth-centred coordinates: down is towards the origin
  SCENE_PLANE = 2,  ///< flat coordinates: z is up everywhere
};

/// How the objects of a viewport are drawn.
enum RenderStateSet : int {
  RENDER_STATE_POINT = 0,  ///< vertices only
  RENDER_STATE_SOLID = 1,  ///< filled surfaces, the state of a new viewport
  RENDER_STATE_LINE = 2,   ///< edges only
};

/// Which material description a drawable takes its surface from.
enum QXMaterialSystemType : int {
  MATERIAL_SYSTEM_FIXED = 0,     ///< passes with colours and texture units
  MATERIAL_SYSTEM_EXTENDED = 1,  ///< passes with a material extension
};

/// Which triangles the renderer leaves out, by the winding of their vertices as seen on the screen.
enum CullingMode : int {
  CULLING_NONE = 1,
  CULLING_CLOCKWISE = 2,
  CULLING_ANTICLOCKWISE = 3,
};

/// Kind of renderer, see QXMathEngine::m_msGraphics3DType.
enum _Graphics3DType : int {
  GRAPHICS3D_UNKNOWN = 0,
  GRAPHICS3D_IMMEDIATE = 1,  ///< textures are loaded before the first part of them is replaced
  GRAPHICS3D_DEFERRED = 7,   ///< the renderer loads a texture itself when it gets the first part of it
};

/// Layout of a pixel in memory. Names and values follow OGRE's numbering; where a name reads left to right from the
/// highest byte of a word, as OGRE's do, the bytes in memory stand the other way round.
enum QX3DPixelFormat : int {
  PF_UNKNOWN = 0,
  PF_L8 = 1,         ///< 1 byte: luminance
  PF_BYTE_LA = 5,    ///< 2 bytes: luminance, alpha
  PF_R8G8B8 = 10,    ///< 3 bytes
  PF_B8G8R8 = 11,    ///< 3 bytes
  PF_A8R8G8B8 = 12,  ///< 4 bytes: blue, green, red, alpha in memory
  PF_A8B8G8R8 = 13,  ///< 4 bytes: red, green, blue, alpha in memory
  PF_B8G8R8A8 = 14,  ///< 4 bytes: alpha, red, green, blue in memory
  PF_R8G8B8A8 = 28,  ///< 4 bytes: images from files store blue, green, red, alpha under this value as well
};

/// How the bytes of an image are packed.
enum QXTextureCompression : unsigned int {
  TEXTURE_COMPRESSION_NONE = 0,
  TEXTURE_COMPRESSION_BLOCK = 14,               ///< 4 by 4 pixels: 8 bytes for a 3-byte format, 16 for a 4-byte format
  TEXTURE_COMPRESSION_RAW = 16,                 ///< the bytes of a whole file, which the renderer decodes
  TEXTURE_COMPRESSION_BLOCK_ALPHA = 19,         ///< blocks that carry transparency
  TEXTURE_COMPRESSION_BLOCK_ALPHA_SMOOTH = 20,  ///< blocks that carry transparency
};

}  // namespace QXC
