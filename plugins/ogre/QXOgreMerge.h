/// @file
/// Self-contained render operations as one of several index ranges.
#pragma once

#include <memory>
#include <vector>

namespace QXC {

class QXRenderOperation;
class QXRenderOperationMultiIndex;

/// Copies the operations into one vertex block, one index range each with the operation's first colour. The operations'
/// own matrices differ, so positions and normals are turned into the common coordinates; colours, textures and texture
/// coordinates come along. Indices in threes are triangles; without indices the vertices stand in threes.
std::unique_ptr<QXRenderOperationMultiIndex> Merge(std::vector<QXRenderOperation const*> const& arrOperations);

}  // namespace QXC
