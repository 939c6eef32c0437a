/// @file
/// Other scene libraries that merge the same meshes.
#pragma once

#include "QXBenchCity.h"

#include <cstddef>
#include <memory>

namespace QXBench {

/// Holds the meshes in the other library's form, ready to be merged.
class MergeRival {
public:
  virtual ~MergeRival() = default;
  virtual void Merge() = 0;
  /// In the merged geometry.
  virtual std::size_t CountVertices() const = 0;
};

std::unique_ptr<MergeRival> MakeOgreRival(City& city);
std::unique_ptr<MergeRival> MakeOsgRival(City& city);

}  // namespace QXBench
