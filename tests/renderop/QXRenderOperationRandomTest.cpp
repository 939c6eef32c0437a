#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/QXRenderOperation.h>

// Random sequences of allocations, copies, assignments and releases over a few operations, beside a reference that
// keeps every array in a std::vector. Under the address sanitizer this is also the test of who frees what.
namespace QXC {
namespace {

template <class T>
using Array = std::optional<std::vector<T>>;

// What an operation must hold. An empty optional is a null pointer.
struct QXReferenceOperation {
  Array<float> vertices;
  Array<float> normals;
  Array<float> coords;
  Array<unsigned short> indices;
  Array<unsigned int> colors;
  unsigned int nVertexNum = 0;
  unsigned int nNormalNum = 0;
  unsigned int nCoordNum = 0;
  unsigned int nIndexNum = 0;
  unsigned int nColorNum = 0;
  bool bShared = false;
};

template <class T>
void CopyArray(
    Array<T>& target, unsigned int& nTarget, Array<T> const& source, unsigned int nSource, unsigned int nPer) {
  target.reset();
  nTarget = 0;
  if (nSource == 0 || !source) return;
  target = std::vector<T>(source->begin(), source->begin() + static_cast<std::ptrdiff_t>(nSource) * nPer);
  nTarget = nSource;
}

QXReferenceOperation CopyOf(QXReferenceOperation const& source) {
  QXReferenceOperation copy;
  CopyArray(copy.vertices, copy.nVertexNum, source.vertices, source.nVertexNum, 3);
  CopyArray(copy.normals, copy.nNormalNum, source.normals, source.nNormalNum, 3);
  CopyArray(copy.coords, copy.nCoordNum, source.coords, source.nCoordNum, 2);
  CopyArray(copy.indices, copy.nIndexNum, source.indices, source.nIndexNum, 1);
  CopyArray(copy.colors, copy.nColorNum, source.colors, source.nColorNum, 1);
  copy.bShared = source.bShared;
  return copy;
}

template <class T>
void ExpectArray(T const* pItems, Array<T> const& expected) {
  ASSERT_EQ(pItems != nullptr, expected.has_value());
  if (expected) {
    EXPECT_EQ(std::vector<T>(pItems, pItems + expected->size()), *expected);
  }
}

void ExpectEqual(QXRenderOperation const& operation, QXReferenceOperation const& reference) {
  ExpectArray(operation.m_pVertices, reference.vertices);
  ExpectArray(operation.m_pNormals, reference.normals);
  ExpectArray(operation.m_pTexCoords[0], reference.coords);
  ExpectArray(operation.m_pIndices, reference.indices);
  ExpectArray(operation.m_pDiffuseColors, reference.colors);
  ASSERT_EQ(operation.m_nVertexNum, reference.nVertexNum);
  ASSERT_EQ(operation.m_nNormalNum, reference.nNormalNum);
  ASSERT_EQ(operation.m_nTexVertexNums[0], reference.nCoordNum);
  ASSERT_EQ(operation.m_nIndexNum, reference.nIndexNum);
  ASSERT_EQ(operation.m_nDiffuseColorNum, reference.nColorNum);
  ASSERT_EQ(operation.m_bIndexShared, reference.bShared ? 1 : 0);
}

class QXRandomOperations {
public:
  explicit QXRandomOperations(std::uint32_t nSeed) : m_Random(nSeed) {
    for (std::size_t i = 0; i < Count; ++i) m_arrOperations.push_back(std::make_unique<QXRenderOperation>());
    m_arrReferences.resize(Count);
  }

  void Step() {
    std::size_t const target = Below(Count);
    switch (Below(8)) {
    case 0: AllocateVertices(target); break;
    case 1: AllocateIndices(target); break;
    case 2: AllocateColors(target); break;
    case 3: ShareIndices(target); break;
    case 4: Release(target); break;
    case 5: Rebuild(target, Below(Count)); break;
    default: Assign(target, Below(Count)); break;
    }
    for (std::size_t i = 0; i < Count; ++i) ExpectEqual(*m_arrOperations[i], m_arrReferences[i]);
  }

private:
  static constexpr std::size_t Count = 4;

  unsigned int Below(std::size_t nLimit) { return static_cast<unsigned int>(m_Random() % nLimit); }

  template <class T>
  void FillRandom(T* pItems, Array<T>& reference, std::size_t nNum) {
    reference.emplace();
    for (std::size_t i = 0; i < nNum; ++i) {
      pItems[i] = static_cast<T>(Below(1000));
      reference->push_back(pItems[i]);
    }
  }

  void AllocateVertices(std::size_t nTarget) {
    unsigned int const num = Below(6);
    QXRenderOperation& operation = *m_arrOperations[nTarget];
    QXReferenceOperation& reference = m_arrReferences[nTarget];
    unsigned int const kind = Below(4);
    if (kind == 0) operation.SetVertexNum(num);
    if (kind == 1) operation.SetVertexNormalNum(num);
    if (kind == 2) operation.SetTexVertexNum(num);
    if (kind == 3) operation.SetVertexNormTextureNum(num);
    FillRandom(operation.m_pVertices, reference.vertices, std::size_t{3} * num);
    reference.nVertexNum = num;
    if (kind & 1u) {
      FillRandom(operation.m_pNormals, reference.normals, std::size_t{3} * num);
      reference.nNormalNum = num;
    }
    if (kind & 2u) {
      FillRandom(operation.m_pTexCoords[0], reference.coords, std::size_t{2} * num);
      reference.nCoordNum = num;
    }
  }

  void AllocateIndices(std::size_t nTarget) {
    unsigned int const num = Below(6);
    m_arrOperations[nTarget]->SetIndexNum(num);
    FillRandom(m_arrOperations[nTarget]->m_pIndices, m_arrReferences[nTarget].indices, num);
    m_arrReferences[nTarget].nIndexNum = num;
    m_arrReferences[nTarget].bShared = false;
  }

  void AllocateColors(std::size_t nTarget) {
    unsigned int const num = Below(6);
    QXRenderOperation& operation = *m_arrOperations[nTarget];
    operation.m_nDiffuseColorNum = m_arrReferences[nTarget].nColorNum = Below(6);
    operation.SetDiffuseColorNum(num);
    std::size_t const size = std::max(num, operation.m_nDiffuseColorNum);
    FillRandom(operation.m_pDiffuseColors, m_arrReferences[nTarget].colors, size);
  }

  // Only where there is nothing of its own to lose: that is how a host shares an array.
  void ShareIndices(std::size_t nTarget) {
    QXRenderOperation& operation = *m_arrOperations[nTarget];
    if (operation.m_pIndices) return;
    operation.m_pIndices = m_nShared;
    operation.m_nIndexNum = 4;
    operation.m_bIndexShared = 1;
    m_arrReferences[nTarget].indices = std::vector<unsigned short>(m_nShared, m_nShared + 4);
    m_arrReferences[nTarget].nIndexNum = 4;
    m_arrReferences[nTarget].bShared = true;
  }

  void Release(std::size_t nTarget) {
    m_arrOperations[nTarget]->Release();
    QXReferenceOperation& reference = m_arrReferences[nTarget];
    reference.vertices.reset();
    reference.normals.reset();
    reference.coords.reset();
    reference.colors.reset();
    if (!reference.bShared) reference.indices.reset();
    reference.nVertexNum = reference.nNormalNum = reference.nIndexNum = 0;
  }

  void Rebuild(std::size_t nTarget, std::size_t nSource) {
    m_arrOperations[nTarget] = std::make_unique<QXRenderOperation>(*m_arrOperations[nSource]);
    m_arrReferences[nTarget] = CopyOf(m_arrReferences[nSource]);
  }

  void Assign(std::size_t nTarget, std::size_t nSource) {
    *m_arrOperations[nTarget] = *m_arrOperations[nSource];
    if (nTarget != nSource) m_arrReferences[nTarget] = CopyOf(m_arrReferences[nSource]);
  }

  std::mt19937 m_Random;
  std::vector<std::unique_ptr<QXRenderOperation>> m_arrOperations;
  std::vector<QXReferenceOperation> m_arrReferences;
  unsigned short m_nShared[4] = {11, 12, 13, 14};
};

TEST(QXRenderOperation, RandomSequencesHoldWhatTheReferenceHolds) {
  constexpr std::uint32_t Seed = 20261121;
  for (std::uint32_t run = 0; run < 50; ++run) {
    SCOPED_TRACE(testing::Message() << "seed " << Seed + run);
    QXRandomOperations operations(Seed + run);
    for (int step = 0; step < 200 && !testing::Test::HasFailure(); ++step) operations.Step();
  }
}

}  // namespace
}  // namespace QXC
