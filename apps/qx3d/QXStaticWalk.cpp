#include <apps/qx3d/QXStaticWalk.h>

#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXMessage.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/stream/QXStream.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace QXApp {

namespace {

using QXC::QXVector3d;

/// Numbers that are read at a time: whole positions, of 2, 3 or 4.
constexpr unsigned int ChunkSize = 4 * 3 * 1024;

/// Versions of the format.
constexpr double Known[] = {1.0, 1.1, 1.2, 1.3};
constexpr double WithIDs = 1.0;
constexpr double WithTypes = 1.1;
constexpr double WithTextures = 1.2;

/// The smallest that each can be: a count beyond what is left of the file is told before anything is read.
constexpr unsigned int LeastBucket = 34;
constexpr unsigned int LeastLevel = 8;
constexpr unsigned int LeastPackage = 17;
constexpr unsigned int LeastPass = 100;
constexpr unsigned int LeastSubObject = 48;
constexpr unsigned int LeastTexture = 8;
constexpr unsigned int SphereSize = 32;

class Walker {
public:
  Walker(QXC::QXStream& stream, QXStaticContents& contents) : m_Stream(stream), m_Contents(contents) {}

  void Walk() {
    m_Contents.m_nSize = m_Stream.Remaining();
    if (ReadVersion() && ReadIDs() && ReadList(0) && ReadList(1) && ReadTypedLists() && ReadTextures() &&
        m_Stream.Remaining() > 0)
      Fault(m_Stream.GetPosition(),
          "the geometry ends here, and " + std::to_string(m_Stream.Remaining()) + " further bytes follow");
  }

private:
  /// @return  false, for the callers to leave with
  bool Fault(QXUInt64 nOffset, std::string const& strText) {
    if (m_Contents.m_strFault.empty()) {
      m_Contents.m_strFault = strText;
      m_Contents.m_nFaultOffset = nOffset;
    }
    return false;
  }

  /// Whether everything read so far was there.
  bool IsThere(char const* szWhat) {
    if (m_Stream.IsGood() != 0) return true;
    bool const bEnded = m_Stream.GetProblem() == QXC::STREAM_ENDED;
    return Fault(m_Stream.GetPosition(),
        bEnded ? std::string("the file ends within ") + szWhat : std::string(szWhat) + " makes no sense");
  }

  /// A record that could not be read, though its stream may still be good.
  bool FailedTo(char const* szWhat) {
    return IsThere(szWhat) && Fault(m_Stream.GetPosition(), std::string(szWhat) + " makes no sense");
  }

  bool ReadCount(int& nCount, unsigned int nLeastSize, char const* szWhat) {
    QXUInt64 const nOffset = m_Stream.GetPosition();
    m_Stream >> nCount;
    if (!IsThere("a count")) return false;
    if (nCount >= 0 && m_Stream.CanHold(nCount, nLeastSize) != 0) return true;
    return Fault(nOffset, std::to_string(nCount) + " " + szWhat + " are announced, more than the file can hold");
  }

  bool ReadVersion() {
    m_Stream >> m_Contents.m_dVersion;
    if (!IsThere("the version")) return false;
    if (std::find(std::begin(Known), std::end(Known), m_Contents.m_dVersion) != std::end(Known)) return true;
    return Fault(0, "this is no version of static geometry; known are 1.0, 1.1, 1.2 and 1.3");
  }

  bool ReadIDs() {
    if (!(m_Contents.m_dVersion > WithIDs)) return true;
    if (!ReadCount(m_Contents.m_nIDs, 4, "identifiers")) return false;
    int nID = 0;
    for (int i = 0; i < m_Contents.m_nIDs; ++i) m_Stream >> nID;
    return IsThere("the identifiers");
  }

  bool ReadTypedLists() { return !(m_Contents.m_dVersion > WithTypes) || (ReadList(2) && ReadList(3)); }

  bool ReadList(int nList) {
    int nBuckets = 0;
    if (!ReadCount(nBuckets, LeastBucket, "buckets")) return false;
    // At once: growing would hold a second array meanwhile, for a file of nothing but empty buckets.
    m_Contents.m_vecBuckets[nList].reserve(static_cast<std::size_t>(nBuckets));
    for (int i = 0; i < nBuckets; ++i) {
      m_Contents.m_vecBuckets[nList].emplace_back();
      m_pBucket = &m_Contents.m_vecBuckets[nList].back();
      m_pBucket->m_nOffset = m_Stream.GetPosition();
      bool const bRead = ReadBucket();
      m_pBucket->m_nEnd = m_Stream.GetPosition();
      if (!bRead) return false;
    }
    return true;
  }

  bool ReadBucket() {
    QXUInt64 const nOffset = m_Stream.GetPosition();
    m_Stream >> m_pBucket->m_nIndexType;
    if (m_Contents.m_dVersion > WithTypes) m_Stream >> m_pBucket->m_nType;
    if (!IsThere("the head of a bucket")) return false;
    if (m_pBucket->m_nIndexType != 0 && m_pBucket->m_nIndexType != 1)
      return Fault(nOffset,
          "the index type is " + std::to_string(m_pBucket->m_nIndexType) + "; it must be 0 for 16 bits or 1 for 32");
    return ReadVertices() && ReadLevels() && ReadPasses() && ReadSubObjects();
  }

  bool ReadVertices() {
    int nOptions = 0;
    unsigned short nDims = 0;
    m_Stream >> nOptions;
    QXUInt64 const nDimOffset = m_Stream.GetPosition();
    m_Stream >> nDims;
    if (!IsThere("the vertices")) return false;
    bool const bAlike = nDims < 5;
    m_pBucket->m_nVertexDim = bAlike ? nDims : nDims & 0xFU;
    unsigned int const nNormalDim = bAlike ? nDims : nDims >> 8U;
    if (m_pBucket->m_nVertexDim < 2 || m_pBucket->m_nVertexDim > 4)
      return Fault(nDimOffset,
          "positions of " + std::to_string(m_pBucket->m_nVertexDim) + " numbers are announced; they must have 2 to 4");
    m_pBucket->m_Bounds.SetNULL();
    return ReadArray(m_pBucket->m_nVertices, m_pBucket->m_nVertexDim, 0, "positions") &&
           ReadArray(m_pBucket->m_nNormals, nNormalDim, 1, "normals") &&
           ReadArray(m_pBucket->m_nColors, 1, 2, "colours") && ReadUnits();
  }

  /// A count, and where it is not 0 a stride and numbers.
  /// @param nKind  0: positions; 1: other floats; 2: words of any value
  bool ReadArray(unsigned int& nCount, unsigned int nDim, int nKind, char const* szWhat) {
    QXUInt64 const nOffset = m_Stream.GetPosition();
    unsigned short nStride = 0;
    m_Stream >> nCount;
    if (nCount > 0) m_Stream >> nStride;
    if (!IsThere("the vertices")) return false;
    if (nCount > 0 && nKind > 0 && nCount != m_pBucket->m_nVertices)
      return Fault(nOffset, "there are " + std::to_string(nCount) + " " + szWhat + " for " +
                                std::to_string(m_pBucket->m_nVertices) + " vertices");
    return ReadNumbers(nOffset, nCount, nDim, nKind, szWhat);
  }

  bool ReadNumbers(QXUInt64 nCountOffset, unsigned int nCount, unsigned int nDim, int nKind, char const* szWhat) {
    if (nCount > 0 && nDim == 0)
      return Fault(nCountOffset, std::to_string(nCount) + " " + szWhat + " of no numbers are announced");
    if (m_Stream.CanHold(nCount, 4 * std::max(nDim, 1U)) == 0)
      return Fault(nCountOffset, std::to_string(nCount) + " " + szWhat + " are announced, more than the file can hold");
    QXUInt64 nLeft = QXUInt64{nCount} * nDim;
    float fNumbers[ChunkSize];
    while (nLeft > 0) {
      auto const nNumbers = static_cast<unsigned int>(std::min<QXUInt64>(nLeft, ChunkSize));
      QXUInt64 const nOffset = m_Stream.GetPosition();
      m_Stream.Load(fNumbers, nNumbers);
      if (!IsThere(szWhat)) return false;
      nLeft -= nNumbers;
      if (nKind == 2) continue;
      for (unsigned int i = 0; i < nNumbers; ++i)
        if (!std::isfinite(fNumbers[i]))
          return Fault(nOffset + QXUInt64{4} * i, std::string("among the ") + szWhat + " is one that is no number");
      if (nKind == 0) MergeBounds(fNumbers, nNumbers, nDim);
    }
    return true;
  }

  void MergeBounds(float const* pNumbers, unsigned int nNumbers, unsigned int nDim) {
    QXC::QXBoundingBox& bounds = m_pBucket->m_Bounds;
    for (unsigned int i = 0; i + nDim <= nNumbers; i += nDim) {
      QXVector3d const vec(static_cast<double>(pNumbers[i]), static_cast<double>(pNumbers[i + 1]),
          nDim > 2 ? static_cast<double>(pNumbers[i + 2]) : 0.0);
      bounds.Merge(QXC::QXBoundingBox(vec, vec));
    }
  }

  bool ReadUnits() {
    int nUnits = 0;
    QXUInt64 const nOffset = m_Stream.GetPosition();
    if (!ReadCount(nUnits, 8, "units of texture coordinates")) return false;
    if (nUnits > 8)
      return Fault(nOffset, "there are " + std::to_string(nUnits) +
                                " units of texture coordinates; a "
                                "vertex has at most 8");
    for (int i = 0; i < nUnits; ++i) {
      unsigned short nDim = 0;
      unsigned int nCount = 0;
      unsigned short nStride = 0;
      m_Stream >> nDim;
      QXUInt64 const nCountOffset = m_Stream.GetPosition();
      m_Stream >> nCount >> nStride;
      if (!IsThere("the texture coordinates")) return false;
      if (nCount > 0 && nCount != m_pBucket->m_nVertices)
        return Fault(nCountOffset, "there are " + std::to_string(nCount) + " texture coordinates for " +
                                       std::to_string(m_pBucket->m_nVertices) + " vertices");
      if (!ReadNumbers(nCountOffset, nCount, nDim, 1, "texture coordinates")) return false;
      m_pBucket->m_vecUnitDims.push_back(nDim);
    }
    return true;
  }

  bool ReadLevels() {
    int nLevels = 0;
    if (!ReadCount(nLevels, LeastLevel, "levels")) return false;
    for (int i = 0; i < nLevels; ++i) {
      int nLevel = 0;
      int nPackages = 0;
      m_Stream >> nLevel;
      if (!ReadCount(nPackages, LeastPackage, "index packages")) return false;
      for (int j = 0; j < nPackages; ++j)
        if (!ReadRange(nLevel)) return false;
    }
    return true;
  }

  bool ReadRange(int nLevel) {
    QXC::QXIndexPackage package;
    if (package.Load(m_Stream, 0) == 0) return FailedTo("an index package");
    QXStaticRange range;
    range.m_nLevel = nLevel;
    range.m_strPass = package.m_arrPassNames.GetSize() > 0 ? Narrow(package.m_arrPassNames[0]) : std::string();
    range.m_nIndices = package.m_nIndexNum;
    range.m_nWidth = package.m_nIndexType == 1 ? 4 : 2;
    m_pBucket->m_vecRanges.push_back(range);
    QXUInt64 const nEnd = m_Stream.GetPosition();
    for (int i = 0; i < package.m_nIndexNum; ++i) {
      unsigned int const nIndex = GetIndex(package, i);
      if (nIndex < m_pBucket->m_nVertices) continue;
      auto const nBehind = static_cast<QXUInt64>(package.m_nIndexNum - i) * static_cast<QXUInt64>(range.m_nWidth);
      return Fault(nEnd - nBehind, "index " + std::to_string(i) + " of its package names vertex " +
                                       std::to_string(nIndex) + " of " + std::to_string(m_pBucket->m_nVertices));
    }
    return true;
  }

  bool ReadPasses() {
    int nPasses = 0;
    if (!ReadCount(nPasses, LeastPass, "passes")) return false;
    for (int i = 0; i < nPasses; ++i) {
      QXC::QdcUnicodeString strKey;
      QXC::QXPass pass;
      m_Stream >> strKey;
      if (pass.Load(m_Stream, 1.0) == 0) return FailedTo("a pass");
      QXStaticPass& shown = m_pBucket->m_vecPasses.emplace_back();
      shown.m_strKey = Narrow(strKey);
      shown.m_strVertexProgram = Narrow(pass.m_strVertexProgram);
      shown.m_strFragmentProgram = Narrow(pass.m_strFragmentProgram);
      for (unsigned int nUnit = 0; nUnit < pass.GetTextureUnitStatesSize(); ++nUnit)
        shown.m_vecTextures.push_back(Narrow(pass.GetTextureUnitState(nUnit)->GetTextureName()));
    }
    return true;
  }

  bool ReadSubObjects() {
    if (!(m_Contents.m_dVersion > WithIDs)) return true;
    if (!ReadCount(m_pBucket->m_nSubObjects, LeastSubObject, "sub-objects")) return false;
    std::vector<int> vecCounts;
    for (QXStaticRange const& range : m_pBucket->m_vecRanges)
      if (range.m_nLevel == 0) vecCounts.push_back(range.m_nIndices);
    for (int i = 0; i < m_pBucket->m_nSubObjects; ++i) {
      QXUInt64 const nOffset = m_Stream.GetPosition();
      int nFirst = 0;
      QXC::QXSubObjectInfo object;
      m_Stream >> nFirst;
      if (object.Load(m_Stream) == 0) return FailedTo("a sub-object");
      if (nFirst < 0 || static_cast<unsigned int>(nFirst) >= m_pBucket->m_nVertices)
        return Fault(nOffset, "a sub-object begins at vertex " + std::to_string(nFirst) + " of " +
                                  std::to_string(m_pBucket->m_nVertices));
      if (!CheckSlots(object, vecCounts))
        return Fault(nOffset, "a sub-object lies outside of the indices that it is about");
    }
    return true;
  }

  /// Each slot is a range of the index package at a position in level 0.
  /// @param vecCounts  of the indices of those packages
  static bool CheckSlots(QXC::QXSubObjectInfo const& object, std::vector<int> const& vecCounts) {
    for (auto const& [nPass, nSlot] : object.m_mapPassSlots) {
      if (nPass < 0 || static_cast<std::size_t>(nPass) >= vecCounts.size() || nSlot < 0) return false;
      auto const nIndex = static_cast<std::size_t>(nSlot);
      if (nIndex >= object.m_arrOffsets.GetSize() || nIndex >= object.m_arrCounts.GetSize()) return false;
      int const nFirst = object.m_arrOffsets[nIndex];
      int const nCount = object.m_arrCounts[nIndex];
      if (nFirst < 0 || nCount < 0 || nFirst > vecCounts[static_cast<std::size_t>(nPass)] - nCount) return false;
    }
    return true;
  }

  bool ReadTextures() {
    if (!(m_Contents.m_dVersion > WithTextures)) return true;
    int nTextures = 0;
    if (!ReadCount(nTextures, LeastTexture, "textures")) return false;
    for (int i = 0; i < nTextures; ++i) {
      QXC::QdcUnicodeString strName;
      QXStaticTexture texture;
      m_Stream >> strName;
      if (!ReadCount(texture.m_nSpheres, SphereSize, "spheres")) return false;
      texture.m_strName = Narrow(strName);
      double dSphere[4];
      for (int j = 0; j < texture.m_nSpheres; ++j)
        for (double& d : dSphere) m_Stream >> d;
      if (!IsThere("the spheres of a texture")) return false;
      m_Contents.m_vecTextures.push_back(texture);
    }
    return true;
  }

  QXC::QXStream& m_Stream;
  QXStaticContents& m_Contents;
  QXStaticBucket* m_pBucket = nullptr;
};

}  // namespace

QXStaticContents WalkStatic(QXC::QXStream& stream) {
  QXStaticContents contents;
  Walker(stream, contents).Walk();
  return contents;
}

std::string DescribeFault(QXStaticContents const& contents) {
  return contents.m_strFault.empty() ? std::string()
                                     : "byte " + std::to_string(contents.m_nFaultOffset) + ": " + contents.m_strFault;
}

}  // namespace QXApp
