/// @file
/// Order of the fields of a record, which plug-ins are compiled against.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>

namespace QXC {

/// Each field stands behind the one before it.
inline void ExpectInOrder(std::initializer_list<void const*> arrFields) {
  for (std::size_t i = 1; i < arrFields.size(); ++i) {
    EXPECT_LT(arrFields.begin()[i - 1], arrFields.begin()[i]) << "field " << i;
  }
}

}  // namespace QXC
