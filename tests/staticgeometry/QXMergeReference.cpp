#include "QXMergeReference.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <set>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector4d.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

namespace QXC {

namespace {

using Package = QXVertexDataPackage;

/// An array that gives 0 for what it does not have and forgets what does not fit.
template <class T>
struct Guarded {
  T* m_pItems;
  std::uint64_t m_nNum;

  T Get(std::uint64_t nPlace) const { return m_pItems && nPlace < m_nNum ? m_pItems[nPlace] : T{}; }
  void Set(std::uint64_t nPlace, T value) {
    if (m_pItems && nPlace < m_nNum) m_pItems[nPlace] = value;
  }
};

Guarded<float> Positions(Package const& p) {
  return {p.m_pVertices, std::uint64_t{p.m_nVertexNum} * p.m_nVertexDim};
}

Guarded<float> Normals(Package const& p) {
  return {p.m_pNormals, std::uint64_t{p.m_nNormalNum} * p.m_nNormalDim};
}

Guarded<float> Coords(Package const& p, unsigned int nUnit) {
  return {p.m_pTexCoords[nUnit], std::uint64_t{p.m_nTexCoordNums[nUnit]} * p.m_nTexDims[nUnit]};
}

void Multiply(QXVector4d& point, QXMatrix4d const& matrix, bool bNormalize) {
  QXVector3d three = QXVector3d::MultiplyMatrix(QXVector3d(point[0], point[1], point[2]), matrix);
  if (bNormalize) three.Normalize();
  point[0] = three.x;
  point[1] = three.y;
  point[2] = three.z;
}

QXVector4d ReadPoint(Guarded<float> const& from, std::uint64_t nPoint, unsigned int nDim) {
  QXVector4d point(0.0, 0.0, 0.0, 1.0);
  for (unsigned int i = 0; i < nDim && i < 4; ++i) point[static_cast<int>(i)] = from.Get(nPoint * nDim + i);
  return point;
}

void WritePoint(Guarded<float>& to, std::uint64_t& nCursor, QXVector4d const& point, unsigned int nDim) {
  for (unsigned int i = 0; i < nDim; ++i)
    to.Set(nCursor++, i < 4 ? static_cast<float>(point[static_cast<int>(i)]) : 0.0F);
}

class BucketReference {
public:
  BucketReference(QXStaticGeometryBucket& bucket, QXMatrix4d const& inverse, unsigned char bNoTransform)
      : m_bucket(bucket), m_to(*bucket.m_pVertexPackage), m_inverse(inverse), m_bNoTransform(bNoTransform != 0),
        m_bPolyline(bucket.m_mapPasses.count(L"PolyLine") != 0) {}

  void Run() {
    MakeVertices();
    MakeIndices();
    for (std::size_t s = 0; s < m_bucket.m_vecPackages.size(); ++s) CopyMesh(s);
    int nKey = 0;
    for (auto const& [key, records] : m_bucket.m_mapPassIndices) {
      for (int nLevel = 0; nLevel <= m_bucket.m_nMaxLevel; ++nLevel) CopyLevel(records, nKey, nLevel);
      ++nKey;
    }
  }

private:
  void MakeVertices() {
    unsigned int const num = m_to.m_nVertexNum;
    m_to.SetVertexNum(num, 0);
    if (m_to.m_nNormalNum != 0) m_to.SetNormalNum(num, 0);
    if (m_to.m_nSecondColorNum != 0) m_to.SetSecondColorNum(num, 0);
    if (m_to.m_nColorNum != 0) m_to.SetColorNum(num, 0);
    for (unsigned int unit = 0; unit < 8; ++unit) {
      if (m_to.m_nTexCoordNums[unit] != 0) m_to.SetTexCoordNum(unit, num, 0);
    }
  }

  static QXIndexPackage* LevelOf(QXBucketIndexPackage const& record, int nLevel) {
    auto const place = static_cast<std::size_t>(nLevel);
    return place < record.m_vecIndexPackages.size() ? record.m_vecIndexPackages[place] : nullptr;
  }

  void MakeIndices() {
    for (auto const& [key, records] : m_bucket.m_mapPassIndices) {
      for (int nLevel = 0; nLevel <= m_bucket.m_nMaxLevel; ++nLevel) {
        auto* pPackage = new QXIndexPackage;
        pPackage->m_arrPassNames.Add(key);
        if (!records.empty() && LevelOf(records[0], 0))
          pPackage->m_eOperationType = LevelOf(records[0], 0)->m_eOperationType;
        int nSum = 0;
        for (auto const& record : records) {
          if (LevelOf(record, nLevel) && LevelOf(record, nLevel)->m_nIndexNum > 0)
            nSum += LevelOf(record, nLevel)->m_nIndexNum;
        }
        m_bucket.m_mapLevelIndices[nLevel].push_back(pPackage);
        if (m_to.m_nVertexNum == 0) continue;
        if (m_to.m_nVertexNum <= 65535)
          pPackage->SetIndexNum(nSum);
        else
          pPackage->SetIndexNum32(nSum);
      }
    }
  }

  void CopyMesh(std::size_t s) {
    if (!m_bucket.m_vecPackages[s]) return;
    Package const& mesh = *m_bucket.m_vecPackages[s];
    QXMatrix4d transform = m_bucket.m_vecMatrices[s] * m_inverse;
    CopyPositions(mesh, transform);
    if (!m_bPolyline && !m_bNoTransform) transform.SetTrans(QXVector3d::ZERO);
    CopyNormals(mesh, transform);
    CopyColors(mesh.m_nColorNum, mesh.m_pColors, mesh.m_nVertexNum, m_to.m_pColors, m_to.m_nColorNum, m_nColor);
    CopyColors(mesh.m_nSecondColorNum, mesh.m_pSecondColors, mesh.m_nVertexNum, m_to.m_pSecondColors,
        m_to.m_nSecondColorNum, m_nSecondColor);
    for (unsigned int unit = 0; unit < 8; ++unit) {
      if (m_to.m_nTexCoordNums[unit] != 0) CopyCoords(mesh, unit, transform);
    }
  }

  void CopyPositions(Package const& mesh, QXMatrix4d const& transform) {
    Guarded<float> to = Positions(m_to);
    for (unsigned int i = 0; i < mesh.m_nVertexNum; ++i) {
      QXVector4d point = ReadPoint(Positions(mesh), i, mesh.m_nVertexDim);
      if (!m_bNoTransform) Multiply(point, transform, false);
      // A mesh without positions leaves a gap.
      if (mesh.m_pVertices)
        WritePoint(to, m_nPosition, point, m_to.m_nVertexDim);
      else
        m_nPosition += m_to.m_nVertexDim;
    }
  }

  void CopyNormals(Package const& mesh, QXMatrix4d const& transform) {
    Guarded<float> to = Normals(m_to);
    if (!mesh.m_pNormals) {
      m_nNormal += std::uint64_t{mesh.m_nVertexNum} * m_to.m_nNormalDim;
      return;
    }
    for (unsigned int i = 0; i < mesh.m_nNormalNum; ++i) {
      QXVector4d normal = ReadPoint(Normals(mesh), i, mesh.m_nNormalDim);
      if (m_bucket.m_nType < 0 && !m_bNoTransform) Multiply(normal, transform, !m_bPolyline);
      WritePoint(to, m_nNormal, normal, m_to.m_nNormalDim);
    }
  }

  static void CopyColors(unsigned int nMesh, unsigned int* pMesh, unsigned int nVertices, unsigned int* pTo,
      unsigned int nTo, std::uint64_t& nCursor) {
    Guarded<unsigned int> to{pTo, nTo};
    Guarded<unsigned int> const from{pMesh, nMesh};
    for (unsigned int i = 0; i < nMesh; ++i) to.Set(nCursor++, from.Get(i));
    for (unsigned int i = 0; nMesh == 0 && i < nVertices; ++i) to.Set(nCursor++, 0xFFFFFFFFU);
  }

  void CopyCoords(Package const& mesh, unsigned int nUnit, QXMatrix4d const& transform) {
    Guarded<float> to = Coords(m_to, nUnit);
    Guarded<float> const from = Coords(mesh, nUnit);
    unsigned int const dim = mesh.m_nTexDims[nUnit];
    unsigned int const toDim = m_to.m_nTexDims[nUnit];
    std::uint64_t& cursor = m_nCoords[nUnit];
    for (unsigned int i = 0; i < mesh.m_nVertexNum; ++i, cursor += toDim) {
      // A vertex without coordinates gets zeros, also where they would have been a point.
      if (!mesh.m_pTexCoords[nUnit] || i >= mesh.m_nTexCoordNums[nUnit]) continue;
      if (m_bPolyline && nUnit == 0 && dim == 3) {
        QXVector4d point = ReadPoint(from, i, 3);
        Multiply(point, transform, false);
        for (unsigned int k = 0; k < 3 && k < toDim; ++k)
          to.Set(cursor + k, static_cast<float>(point[static_cast<int>(k)]));
      } else {
        for (unsigned int k = 0; k < dim && k < toDim; ++k) to.Set(cursor + k, from.Get(std::uint64_t{i} * dim + k));
      }
    }
  }

  static std::uint32_t ReadIndex(QXIndexPackage const& package, int nPlace, int nIndexType) {
    std::size_t const size = nIndexType == 0 ? 2 : 4;
    std::size_t const bytes =
        package.m_pIndices ? static_cast<std::size_t>(package.m_nIndexNum) * (package.m_nIndexType == 1 ? 4 : 2) : 0;
    auto const start = static_cast<std::size_t>(nPlace) * size;
    if (start + size > bytes) return 0;
    std::uint16_t nShort = 0;
    std::uint32_t nLong = 0;
    auto const* const pFrom = static_cast<unsigned char const*>(package.m_pIndices) + start;
    if (size == 2) std::memcpy(&nShort, pFrom, 2);
    if (size == 4) std::memcpy(&nLong, pFrom, 4);
    return size == 2 ? nShort : nLong;
  }

  static void WriteIndex(QXIndexPackage& package, std::uint64_t nPlace, std::uint32_t nSum, int nIndexType) {
    std::size_t const size = nIndexType == 0 ? 2 : 4;
    std::size_t const bytes =
        package.m_pIndices ? static_cast<std::size_t>(package.m_nIndexNum) * (package.m_nIndexType == 1 ? 4 : 2) : 0;
    if (nPlace >= static_cast<std::uint64_t>(package.m_nIndexNum) || nPlace * size + size > bytes) return;
    auto const nShort = static_cast<std::uint16_t>(nSum);
    auto* const pTo = static_cast<unsigned char*>(package.m_pIndices) + nPlace * size;
    if (size == 2) std::memcpy(pTo, &nShort, 2);
    if (size == 4) std::memcpy(pTo, &nSum, 4);
  }

  void CopyLevel(std::vector<QXBucketIndexPackage> const& records, int nKey, int nLevel) {
    QXIndexPackage& to = *m_bucket.m_mapLevelIndices[nLevel].at(static_cast<std::size_t>(nKey));
    std::uint64_t cursor = 0;
    int nOffset = 0;
    for (auto const& record : records) {
      static QXIndexPackage const empty;
      bool const bThere = LevelOf(record, nLevel) != nullptr;
      QXIndexPackage const& from = bThere ? *LevelOf(record, nLevel) : empty;
      if (bThere) to.m_bFlag = from.m_bFlag;
      if (bThere) to.m_eOperationType = from.m_eOperationType;
      std::set<std::uint32_t> touched;
      int const nNum = from.m_nIndexNum > 0 ? from.m_nIndexNum : 0;
      for (int i = 0; i < nNum; ++i) {
        std::uint32_t nSum =
            ReadIndex(from, i, m_bucket.m_nIndexType) + static_cast<std::uint32_t>(record.m_nVertexStart);
        if (m_bucket.m_nIndexType == 0) nSum &= 0xFFFFU;
        WriteIndex(to, cursor++, nSum, m_bucket.m_nIndexType);
        touched.insert(nSum);
      }
      if (nLevel == 0) CountSubObject(record.m_nVertexStart, nKey, nOffset, nNum);
      nOffset += nNum;
      if (!m_bPolyline && !m_bNoTransform && nLevel == 0) TransformTouched(touched, record);
    }
  }

  void CountSubObject(int nStart, int nKey, int nOffset, int nNum) {
    if (m_bucket.m_mapSubObjects.count(nStart) == 0) return;
    QXSubObjectInfo& subObject = *m_bucket.m_mapSubObjects[nStart];
    if (subObject.m_mapPassSlots.count(nKey) != 0) {
      auto const slot = static_cast<std::uint64_t>(subObject.m_mapPassSlots[nKey]);
      if (slot < subObject.m_arrOffsets.GetSize() && slot < subObject.m_arrCounts.GetSize())
        subObject.m_arrCounts[slot] += nNum;
    } else {
      subObject.m_mapPassSlots[nKey] = static_cast<int>(subObject.m_arrOffsets.GetSize());
      subObject.m_arrOffsets.Add(nOffset);
      subObject.m_arrCounts.Add(nNum);
    }
  }

  void TransformTouched(std::set<std::uint32_t> const& touched, QXBucketIndexPackage const& record) {
    for (unsigned int unit = 0; unit < 8; ++unit) {
      unsigned int const dim = m_to.m_nTexDims[unit];
      if (m_to.m_nTexCoordNums[unit] == 0 || (unit >= 2 && dim == 4)) continue;
      Guarded<float> to = Coords(m_to, unit);
      for (std::uint32_t const nVertex : touched) {
        if (nVertex >= m_to.m_nVertexNum) continue;
        std::uint64_t const place = std::uint64_t{nVertex} * dim;
        QXVector3d coord(dim > 0 ? to.Get(place) : 0.0F, dim > 1 ? to.Get(place + 1) : 0.0F, 1.0);
        coord = QXVector3d::MultiplyMatrix(coord, record.m_matTextures[unit]);
        if (dim > 0) to.Set(place, static_cast<float>(coord.x));
        if (dim > 1) to.Set(place + 1, static_cast<float>(coord.y));
        if (dim == 4) to.Set(place + 3, record.m_fTextureLayer);
      }
    }
  }

  QXStaticGeometryBucket& m_bucket;
  Package& m_to;
  QXMatrix4d m_inverse;
  bool m_bNoTransform;
  bool m_bPolyline;
  std::uint64_t m_nPosition = 0;
  std::uint64_t m_nNormal = 0;
  std::uint64_t m_nColor = 0;
  std::uint64_t m_nSecondColor = 0;
  std::uint64_t m_nCoords[8] = {};
};

template <class Visitor>
void VisitLists(QXStaticGeometry const& geometry, Visitor visit) {
  visit(geometry.m_vecBuckets32);
  visit(geometry.m_vecBuckets16);
  visit(geometry.m_vecTypedBuckets32);
  visit(geometry.m_vecTypedBuckets16);
}

class Comparison {
public:
  std::string m_strDifference;

  void Require(bool bEqual, std::string const& strWhat) {
    if (!bEqual && m_strDifference.empty()) m_strDifference = strWhat;
  }

  void CompareBuckets(QXStaticGeometryBucket const& a, QXStaticGeometryBucket const& b) {
    ComparePackages(*a.m_pVertexPackage, *b.m_pVertexPackage);
    Require(a.m_mapLevelIndices.size() == b.m_mapLevelIndices.size(), "number of levels");
    for (auto const& [level, packages] : a.m_mapLevelIndices) {
      auto const found = b.m_mapLevelIndices.find(level);
      Require(found != b.m_mapLevelIndices.end() && found->second.size() == packages.size(), "packages of a level");
      for (std::size_t i = 0; m_strDifference.empty() && i < packages.size(); ++i)
        CompareIndices(*packages[i], *found->second[i]);
    }
    Require(a.m_mapSubObjects.size() == b.m_mapSubObjects.size(), "number of sub-objects");
    for (auto const& [start, pSubObject] : a.m_mapSubObjects) {
      auto const found = b.m_mapSubObjects.find(start);
      Require(found != b.m_mapSubObjects.end(), "sub-object");
      if (m_strDifference.empty()) CompareSubObjects(*pSubObject, *found->second);
    }
  }

private:
  void CompareFloats(
      float const* pA, float const* pB, std::uint64_t nNum, std::uint64_t nDim, std::string const& strWhat) {
    Require((pA == nullptr) == (pB == nullptr), strWhat + ": one is null");
    for (std::uint64_t i = 0; pA && pB && m_strDifference.empty() && i < nNum * nDim; ++i) {
      bool const bEqual = std::memcmp(pA + i, pB + i, sizeof(float)) == 0 || (std::isnan(pA[i]) && std::isnan(pB[i]));
      if (bEqual) continue;
      Require(false, strWhat + " " + std::to_string(i / nDim) + " of " + std::to_string(nNum) + ", number " +
                         std::to_string(i % nDim) + ": " + std::to_string(pA[i]) + " and " + std::to_string(pB[i]));
    }
  }

  void CompareWords(unsigned int const* pA, unsigned int const* pB, unsigned int nNum, std::string const& strWhat) {
    Require((pA == nullptr) == (pB == nullptr), strWhat + ": one is null");
    if (pA && pB) Require(std::memcmp(pA, pB, std::size_t{nNum} * 4) == 0, strWhat);
  }

  void ComparePackages(Package const& a, Package const& b) {
    Require(a.m_nVertexNum == b.m_nVertexNum && a.m_nVertexDim == b.m_nVertexDim, "number of vertices");
    Require(a.m_nNormalNum == b.m_nNormalNum && a.m_nNormalDim == b.m_nNormalDim, "number of normals");
    Require(a.m_nColorNum == b.m_nColorNum, "number of colours");
    Require(a.m_nSecondColorNum == b.m_nSecondColorNum, "number of second colours");
    for (unsigned int unit = 0; unit < 8; ++unit) {
      Require(a.m_nTexCoordNums[unit] == b.m_nTexCoordNums[unit] && a.m_nTexDims[unit] == b.m_nTexDims[unit],
          "number of coordinates");
    }
    if (!m_strDifference.empty()) return;
    CompareFloats(a.m_pVertices, b.m_pVertices, a.m_nVertexNum, a.m_nVertexDim, "position");
    if (a.m_pVertices && b.m_pVertices) {
      std::uint64_t const end = std::uint64_t{a.m_nVertexNum} * a.m_nVertexDim;
      CompareFloats(a.m_pVertices + end, b.m_pVertices + end, 4, 1, "slack");
    }
    CompareFloats(a.m_pNormals, b.m_pNormals, a.m_nNormalNum, a.m_nNormalDim, "normal");
    CompareWords(a.m_pColors, b.m_pColors, a.m_nColorNum, "colours");
    CompareWords(a.m_pSecondColors, b.m_pSecondColors, a.m_nSecondColorNum, "second colours");
    for (unsigned int unit = 0; unit < 8; ++unit) {
      CompareFloats(a.m_pTexCoords[unit], b.m_pTexCoords[unit], a.m_nTexCoordNums[unit], a.m_nTexDims[unit],
          "unit " + std::to_string(unit) + ", coordinate");
    }
  }

  void CompareIndices(QXIndexPackage const& a, QXIndexPackage const& b) {
    Require(a.m_nIndexNum == b.m_nIndexNum, "number of indices");
    Require(a.m_nIndexType == b.m_nIndexType, "width of indices");
    Require(a.m_bFlag == b.m_bFlag, "flag");
    Require(a.m_eOperationType == b.m_eOperationType, "operation type");
    Require(a.m_arrPassNames.GetSize() == 1 && b.m_arrPassNames.GetSize() == 1 &&
                a.m_arrPassNames[0] == b.m_arrPassNames[0],
        "pass names");
    Require((a.m_pIndices == nullptr) == (b.m_pIndices == nullptr), "one index array is null");
    if (!m_strDifference.empty() || !a.m_pIndices) return;
    std::size_t const bytes = static_cast<std::size_t>(a.m_nIndexNum) * (a.m_nIndexType == 1 ? 4 : 2);
    Require(std::memcmp(a.m_pIndices, b.m_pIndices, bytes) == 0, "indices");
  }

  void CompareSubObjects(QXSubObjectInfo const& a, QXSubObjectInfo const& b) {
    Require(a.m_mapPassSlots == b.m_mapPassSlots, "slots of a sub-object");
    Require(std::vector<int>(a.m_arrOffsets.begin(), a.m_arrOffsets.end()) ==
                std::vector<int>(b.m_arrOffsets.begin(), b.m_arrOffsets.end()),
        "offsets of a sub-object");
    Require(std::vector<int>(a.m_arrCounts.begin(), a.m_arrCounts.end()) ==
                std::vector<int>(b.m_arrCounts.begin(), b.m_arrCounts.end()),
        "counts of a sub-object");
  }
};

}  // namespace

void MergeByReference(QXStaticGeometry& geometry, QXMatrix4d const& matBase, unsigned char bNoTransform) {
  QXMatrix4d const inverse = matBase.Invert();
  VisitLists(geometry, [&](std::vector<QXStaticGeometryBucket*> const& buckets) {
    for (QXStaticGeometryBucket* pBucket : buckets) BucketReference(*pBucket, inverse, bNoTransform).Run();
  });
}

std::string CompareMerged(QXStaticGeometry const& a, QXStaticGeometry const& b) {
  std::vector<QXStaticGeometryBucket*> arrA;
  std::vector<QXStaticGeometryBucket*> arrB;
  VisitLists(a, [&](auto const& buckets) { arrA.insert(arrA.end(), buckets.begin(), buckets.end()); });
  VisitLists(b, [&](auto const& buckets) { arrB.insert(arrB.end(), buckets.begin(), buckets.end()); });
  Comparison comparison;
  comparison.Require(arrA.size() == arrB.size(), "number of buckets");
  for (std::size_t i = 0; comparison.m_strDifference.empty() && i < arrA.size(); ++i)
    comparison.CompareBuckets(*arrA[i], *arrB[i]);
  return comparison.m_strDifference;
}

}  // namespace QXC
