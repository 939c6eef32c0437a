/// @file
/// Arrays of 16- or 32-bit indices behind one untyped pointer.
#pragma once

#include <cstddef>

namespace QXC::detail {

/// Frees an array that was made as `new unsigned int[]` for type 1 and as `new unsigned short[]` for any other
/// type: the form of delete must match the form of new, so the type has to travel with the pointer.
inline void FreeIndexArray(void* pIndices, int nIndexType) {
  if (nIndexType == 1)
    delete[] static_cast<unsigned int*>(pIndices);
  else
    delete[] static_cast<unsigned short*>(pIndices);
}

/// Zero-filled.
inline void* NewIndexArray(std::size_t nNum, int nIndexType) {
  if (nIndexType == 1) return new unsigned int[nNum]();
  return new unsigned short[nNum]();
}

inline std::size_t GetIndexSize(int nIndexType) {
  return nIndexType == 1 ? sizeof(unsigned int) : sizeof(unsigned short);
}

}  // namespace QXC::detail
