/// @file
/// Description of one extra vertex element of a vertex package.
#pragma once

namespace QXC {

/// Where a renderer finds a vertex element that the fixed arrays of a package do not name: four words, all 0
/// when unused. The library carries them; whoever fills a package and the renderer that draws it agree on them.
struct QXVertexDeclaration {
  /// Number of the vertex buffer that holds the element.
  unsigned int m_nSource = 0;
  /// Bytes from the start of a vertex to the element.
  unsigned int m_nOffset = 0;
  /// Number type and component count, in the renderer's numbering.
  unsigned int m_nType = 0;
  /// What the element means to the vertex program, in the renderer's numbering.
  unsigned int m_nSemantic = 0;
};

}  // namespace QXC
