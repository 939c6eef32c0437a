/// @file
/// What a file of static geometry holds, byte by byte.
#pragma once

#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>

#include <string>
#include <vector>

namespace QXC {
class QXStream;
}

namespace QXApp {

/// One merged index package.
struct QXStaticRange {
  int m_nLevel = 0;
  /// Key of the pass that draws it.
  std::string m_strPass;
  int m_nIndices = 0;
  /// Bytes of an index.
  int m_nWidth = 2;
};

struct QXStaticPass {
  std::string m_strKey;
  std::string m_strVertexProgram;
  std::string m_strFragmentProgram;
  std::vector<std::string> m_vecTextures;
};

struct QXStaticBucket {
  QXUInt64 m_nOffset = 0;
  /// Behind the last byte that could be read.
  QXUInt64 m_nEnd = 0;
  int m_nIndexType = 0;
  int m_nType = -1;
  unsigned int m_nVertices = 0;
  unsigned int m_nVertexDim = 0;
  unsigned int m_nNormals = 0;
  unsigned int m_nColors = 0;
  /// Numbers a vertex of each unit of texture coordinates.
  std::vector<unsigned int> m_vecUnitDims;
  std::vector<QXStaticRange> m_vecRanges;
  std::vector<QXStaticPass> m_vecPasses;
  int m_nSubObjects = 0;
  /// Of the positions, relative to the base frame.
  QXC::QXBoundingBox m_Bounds;
};

struct QXStaticTexture {
  std::string m_strName;
  int m_nSpheres = 0;
};

/// As far as the file could be read.
struct QXStaticContents {
  double m_dVersion = 0.0;
  int m_nIDs = 0;
  /// The list of each bucket is 0 to 3, in the order of the file.
  std::vector<QXStaticBucket> m_vecBuckets[4];
  std::vector<QXStaticTexture> m_vecTextures;
  QXUInt64 m_nSize = 0;
  /// The first fault: what is wrong with the value at an offset; empty for a file without one.
  std::string m_strFault;
  QXUInt64 m_nFaultOffset = 0;
};

/// Reads a file from its first byte to its last and looks at every value: counts against what is left of the file,
/// indices against vertices, positions for being numbers, sub-objects against the ranges that they are about. It stops
/// at the first fault.
/// Cost: linear in the file; memory of the largest index package, and of the texts.
QXStaticContents WalkStatic(QXC::QXStream& stream);

/// "byte 123: what is wrong", or an empty text.
std::string DescribeFault(QXStaticContents const& contents);

}  // namespace QXApp
