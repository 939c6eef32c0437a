/// @file
/// What the tests of persisted geometry share.
#pragma once

#include <QxGraphics3D/frame/foundation/base3d/QXVertexDataPackage.h>
#include <QxGraphics3D/frame/foundation/stream/QXMemoryStream.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>
#include <QxGraphics3D/staticgeometry/QXVertexPackageStream.h>

#include <tests/foundation/stream/QXByteWriter.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace QXTest {

using QXC::QXBytes;
using QXC::QXByteWriter;

/// The bytes that write(stream) writes.
template <class Action>
QXBytes Written(Action write) {
  QXC::QXMemoryStream stream;
  write(stream);
  return {stream.GetData(), stream.GetData() + stream.GetSize()};
}

inline QXBytes SavedPackage(QXC::QXVertexDataPackage const& package, unsigned char bWide) {
  return Written([&](QXC::QXStream& stream) { QXC::SaveVertexPackage(package, stream, bWide); });
}
inline QXBytes SavedBucket(QXC::QXStaticGeometryBucket& bucket) {
  return Written([&](QXC::QXStream& stream) { bucket.Save(stream, 1.3); });
}
inline QXBytes SavedGeometry(QXC::QXStaticGeometry& geometry) {
  return Written([&](QXC::QXStream& stream) { geometry.SaveVecData(stream, 0.0F); });
}

/// Where two rows of bytes differ first, for a message that can be read; empty if they do not.
inline std::string Difference(QXBytes const& first, QXBytes const& second) {
  auto const [at, other] = std::ranges::mismatch(first, second);
  if (at == first.end() && other == second.end()) return {};
  auto const text = [](QXBytes const& bytes, QXBytes::const_iterator position) {
    return position == bytes.end() ? std::string("the end") : std::to_string(*position);
  };
  return "byte " + std::to_string(at - first.begin()) + ": " + text(first, at) + ", not " + text(second, other);
}

/// A block of exactly the bytes, so that the address sanitizer sees its end, and a stream over it.
class QXExactStream {
public:
  QXExactStream(QXBytes const& bytes, std::size_t nSize)
      : m_pBytes(new unsigned char[nSize]), m_stream(Filled(bytes, nSize), nSize) {}
  explicit QXExactStream(QXBytes const& bytes) : QXExactStream(bytes, bytes.size()) {}
  operator QXC::QXStream&() { return m_stream; }
  QXC::QXMemoryStream* operator->() { return &m_stream; }

private:
  unsigned char const* Filled(QXBytes const& bytes, std::size_t nSize) {
    std::copy_n(bytes.begin(), nSize, m_pBytes.get());
    return m_pBytes.get();
  }

  std::unique_ptr<unsigned char[]> m_pBytes;
  QXC::QXMemoryStream m_stream;
};

/// Copies of the numbers of an array, for comparisons.
template <class T>
std::vector<T> Values(T const* pItems, std::size_t nNum) {
  return pItems ? std::vector<T>(pItems, pItems + nNum) : std::vector<T>();
}

inline void SetPositions(QXC::QXVertexDataPackage& package, unsigned short nDim, std::vector<float> const& arrNumbers,
    unsigned short nStride = 0) {
  package.m_nVertexDim = nDim;
  package.SetVertexNum(static_cast<unsigned int>(arrNumbers.size() / nDim), nStride);
  std::ranges::copy(arrNumbers, package.m_pVertices);
}
inline void SetNormals(QXC::QXVertexDataPackage& package, unsigned short nDim, std::vector<float> const& arrNumbers,
    unsigned short nStride = 0) {
  package.m_nNormalDim = nDim;
  package.SetNormalNum(static_cast<unsigned int>(arrNumbers.size() / nDim), nStride);
  std::ranges::copy(arrNumbers, package.m_pNormals);
}
inline void SetColors(
    QXC::QXVertexDataPackage& package, std::vector<unsigned int> const& arrColors, unsigned short nStride = 0) {
  package.SetColorNum(static_cast<unsigned int>(arrColors.size()), nStride);
  std::ranges::copy(arrColors, package.m_pColors);
}
inline void SetUnit(QXC::QXVertexDataPackage& package, unsigned int nUnit, unsigned short nDim,
    std::vector<float> const& arrNumbers, unsigned short nStride = 0) {
  package.m_nTexDims[nUnit] = nDim;
  package.SetTexCoordNum(nUnit, static_cast<unsigned int>(arrNumbers.size() / nDim), nStride);
  std::ranges::copy(arrNumbers, package.m_pTexCoords[nUnit]);
}

}  // namespace QXTest
