/// @file
/// Sequences of adding, folding, merging, saving and loading. Beside the library's geometry stands a second one that is
/// filled by the plainest code there is; both must agree whenever they are folded or merged.
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "../tests/staticgeometry/QXMergeReference.h"
#include "StaticGeometryChecks.h"

namespace {

using namespace QXC;
using namespace QXFuzz;

using Passes = std::map<QdcUnicodeString, QXPass*>;
using Records = std::vector<QXBucketIndexPackage>;
using Buckets = std::vector<QXStaticGeometryBucket*>;

/// The input, a byte at a time; zeros behind its end.
class Input {
public:
  Input(std::uint8_t const* pData, std::size_t nSize) : m_pData(pData), m_nLeft(nSize) {}
  bool IsEmpty() const { return m_nLeft == 0; }
  unsigned int Next(unsigned int nEnd) {
    if (IsEmpty()) return 0;
    --m_nLeft;
    return *m_pData++ % nEnd;
  }
  float NextFloat() { return static_cast<float>(Next(256)) * 0.375F - 40.0F; }

private:
  std::uint8_t const* m_pData;
  std::size_t m_nLeft;
};

QXMatrix4d NextMatrix(Input& input) {
  QXMatrix4d matrix;
  unsigned int const nKind = input.Next(3);
  if (nKind > 0) matrix.SetTrans(QXVector3d(input.NextFloat(), input.NextFloat(), 6378137.0));
  if (nKind > 1) {
    matrix[0][0] = 0.0;
    matrix[0][1] = 2.0;
    matrix[1][0] = -0.5;
    matrix[1][1] = 0.0;
  }
  return matrix;
}

/// Meshes, index packages and passes, which outlive both geometries.
class Host {
public:
  Host() {
    for (int i = 0; i < 12; ++i) {
      QdcUnicodeString strName;
      strName.Format(L"p%02d", i);
      AddPass(strName, i % 3 == 2 ? 2 : 1, i);
    }
    AddPass(L"PolyLine", 0, 12);
    AddPass(L"photo", 1, 13);
    m_mapPasses[L"photo"]->GetTextureUnitState(0)->SetTextureName(L"photo.gif");
    AddPass(L"fixed", 1, 14);
    m_mapPasses[L"fixed"]->SetPFFMode(1);
    AddPass(L"moving", 2, 15);
    m_mapPasses[L"moving"]->m_pExtension = new QXMaterialExtension;
    m_mapPasses[L"moving"]->m_pExtension->m_fTurns[1][4] = 0.5F;
    AddPass(L"resting", 3, 16);
    m_mapPasses[L"resting"]->m_pExtension = new QXMaterialExtension;
    // Filed under a name that is not its own.
    m_mapPasses[L"alias"] = m_mapPasses[L"p03"];
    for (auto const& [strKey, pPass] : m_mapPasses) m_arrKeys.push_back(strKey);
    m_arrKeys.push_back(L"unknown");
  }

  QXVertexDataPackage& NextMesh(Input& input, bool bLargeAllowed) {
    m_arrMeshes.push_back(std::make_unique<QXVertexDataPackage>());
    QXVertexDataPackage& mesh = *m_arrMeshes.back();
    unsigned int const nShape = input.Next(256);
    if (bLargeAllowed && (nShape & 7) == 7) {
      // Many vertices without arrays choose buckets and cost nothing.
      static constexpr unsigned int Large[] = {65534, 65535, 65536, 40000};
      mesh.m_nVertexNum = Large[nShape >> 3 & 3];
      return mesh;
    }
    if (nShape & 1) mesh.m_nOptions |= 0x400;
    mesh.m_nVertexDim = static_cast<unsigned short>(2 + (nShape >> 1 & 3) % 3);
    mesh.SetVertexNum(input.Next(20), 0);
    Fill(input, mesh.m_pVertices, mesh.m_nVertexNum * mesh.m_nVertexDim);
    if (nShape & 8) {
      mesh.SetNormalNum(mesh.m_nVertexNum, 0);
      Fill(input, mesh.m_pNormals, mesh.m_nNormalNum * 3);
    }
    // More or fewer than vertices.
    if (nShape & 16) mesh.SetColorNum(input.Next(24), 0);
    if (nShape & 32) mesh.SetSecondColorNum(input.Next(24), 0);
    for (unsigned int unit = 0; unit < (nShape >> 6); ++unit) {
      mesh.m_nTexDims[unit] = static_cast<unsigned short>(2 + input.Next(3));
      mesh.SetTexCoordNum(unit, unit == 2 ? input.Next(24) : mesh.m_nVertexNum, 0);
      Fill(input, mesh.m_pTexCoords[unit], mesh.m_nTexCoordNums[unit] * mesh.m_nTexDims[unit]);
    }
    return mesh;
  }

  QXIndexPackage* NextIndices(Input& input, unsigned int nVertices) {
    unsigned int const nShape = input.Next(64);
    if (nShape == 63) return nullptr;
    m_arrIndices.push_back(std::make_unique<QXIndexPackage>());
    QXIndexPackage& package = *m_arrIndices.back();
    package.m_eOperationType = static_cast<int>(nShape & 7);
    package.m_bFlag = static_cast<unsigned char>(nShape >> 3 & 1);
    for (unsigned int name = 0; name < (nShape >> 4 & 3); ++name)
      package.m_arrPassNames.Add(m_arrKeys[input.Next(static_cast<unsigned int>(m_arrKeys.size()))]);
    int const nIndices = nVertices == 0 ? 0 : static_cast<int>(input.Next(24));
    if (input.Next(4) == 0) {
      package.SetIndexNum32(nIndices);
      for (int i = 0; i < nIndices; ++i) package.GetIndices32()[i] = input.Next(22);
    } else {
      package.SetIndexNum(nIndices);
      for (int i = 0; i < nIndices; ++i) package.GetIndices16()[i] = static_cast<unsigned short>(input.Next(22));
    }
    return &package;
  }

  Passes m_mapPasses;

private:
  void AddPass(QdcUnicodeString const& strName, int nUnits, int nNumber) {
    m_arrPasses.push_back(std::make_unique<QXPass>());
    QXPass& pass = *m_arrPasses.back();
    pass.SetName(strName);
    pass.m_nPassWord = 5;
    pass.m_nUnitWords[0] = static_cast<unsigned int>(nNumber);
    pass.m_nUnitWords[1] = static_cast<unsigned int>(nNumber) + 100;
    for (int unit = 0; unit < nUnits; ++unit) {
      QXTextureUnitState* const pUnit = pass.CreateTextureUnitState();
      QdcUnicodeString strTexture;
      strTexture.Format(L"t%d.png", (nNumber + unit) % 9);
      pUnit->SetTextureName(strTexture);
      pUnit->m_matUnit[0][0] = 0.25 * (unit + 1);
      pUnit->m_matUnit[2][0] = nNumber * 0.125;
    }
    m_mapPasses[strName] = &pass;
  }

  static void Fill(Input& input, float* pNumbers, unsigned int nNum) {
    for (unsigned int i = 0; i < nNum; ++i) pNumbers[i] = input.NextFloat();
  }

  std::vector<std::unique_ptr<QXPass>> m_arrPasses;
  std::vector<QdcUnicodeString> m_arrKeys;
  std::vector<std::unique_ptr<QXVertexDataPackage>> m_arrMeshes;
  std::vector<std::unique_ptr<QXIndexPackage>> m_arrIndices;
};

QXStaticGeometryBucket& ChooseSlowly(QXStaticGeometry& geometry, unsigned int nVertices, int nType) {
  Buckets& large = nType == 1 ? geometry.m_vecTypedBuckets32 : geometry.m_vecBuckets32;
  Buckets& small = nType == 1 ? geometry.m_vecTypedBuckets16 : geometry.m_vecBuckets16;
  if (nVertices > 65535) {
    if (large.empty()) large.push_back(new QXStaticGeometryBucket);
    large.front()->m_nIndexType = 1;
    return *large.front();
  }
  if (small.empty() || small.back()->m_pVertexPackage->m_nVertexNum + nVertices > 65535)
    small.push_back(new QXStaticGeometryBucket);
  small.back()->m_nIndexType = 0;
  return *small.back();
}

bool KeepsTransforms(QXPass const& pass) {
  if (!pass.m_pExtension || pass.m_pExtension->GetType() != 1) return false;
  auto const moves = [](auto const& groups) { return groups[0][4] > 0.0F || groups[1][4] > 0.0F; };
  return moves(pass.m_pExtension->m_fSlides) || moves(pass.m_pExtension->m_fTurns);
}

using Spheres = std::map<QdcUnicodeString, QXBoundingSphere>;

void AddRecordSlowly(QXStaticGeometryBucket& bucket, QXIndexPackage& package, QdcUnicodeString const& strName,
    Passes const& passes, QXSubObjectInfo const* pSubObject, Spheres& spheres) {
  QXBucketIndexPackage record;
  record.m_nVertexStart = static_cast<int>(bucket.m_pVertexPackage->m_nVertexNum);
  record.m_vecIndexPackages.push_back(&package);
  QdcUnicodeString strKey;
  if (passes.count(strName) != 0) {
    QXPass const& pass = *passes.at(strName);
    strKey = pass.GetName();
    bool const bKeeps = KeepsTransforms(pass);
    bool const bExtended = pass.m_pExtension && pass.m_pExtension->GetType() == 1;
    for (unsigned int unit = 0; unit < pass.GetTextureUnitStatesSize(); ++unit) {
      QXTextureUnitState const& state = *pass.GetTextureUnitState(unit);
      if (!bKeeps && unit < 8) record.m_matTextures[unit] = state.GetTextureTransform();
      if (bExtended && unit >= 1 && unit < 8) record.m_matTextures[unit] = QXMatrix4d();
      if (pSubObject) spheres.emplace(state.GetTextureName(), pSubObject->m_BoundingSphere);
    }
    if (bucket.m_mapPasses.count(strKey) == 0) {
      auto* const pCopy = new QXPass(pass);
      if (!bKeeps) {
        pCopy->m_matPass = QXMatrix4d();
        for (unsigned int unit = 0; unit < pCopy->GetTextureUnitStatesSize(); ++unit)
          pCopy->GetTextureUnitState(unit)->m_matUnit = QXMatrix4d();
      }
      pCopy->m_nPassWord = 0;
      bucket.m_mapPasses[strKey] = pCopy;
    }
  }
  bucket.m_mapPassIndices[strKey].push_back(record);
}

void AddSlowly(QXStaticGeometry& geometry, QXVertexDataPackage& mesh, QdcArray<QXIndexPackage*>& arrIndices,
    Passes const& passes, QXMatrix4d const& matrix, QXSubObjectInfo* pSubObject, int nType) {
  QXStaticGeometryBucket& bucket = ChooseSlowly(geometry, mesh.m_nVertexNum, nType);
  Spheres spheres;
  for (QXIndexPackage* pPackage : arrIndices) {
    if (!pPackage) continue;
    if (pPackage->m_eOperationType == 2 && pPackage->m_arrPassNames.GetSize() == 0)
      pPackage->m_arrPassNames.Add(L"TempLine");
    for (QdcUnicodeString const& strName : pPackage->m_arrPassNames)
      AddRecordSlowly(bucket, *pPackage, strName, passes, pSubObject, spheres);
  }
  QXVertexDataPackage& sums = *bucket.m_pVertexPackage;
  if (pSubObject) {
    delete std::exchange(bucket.m_mapSubObjects[static_cast<int>(sums.m_nVertexNum)], pSubObject);
  }
  sums.m_nVertexNum += mesh.m_nVertexNum;
  sums.m_nVertexDim = std::max(sums.m_nVertexDim, mesh.m_nVertexDim);
  sums.m_nNormalDim = std::max(sums.m_nNormalDim, mesh.m_nNormalDim);
  sums.m_nNormalNum += mesh.m_nNormalNum;
  sums.m_nColorNum += mesh.m_nColorNum;
  sums.m_nSecondColorNum += mesh.m_nSecondColorNum;
  if (mesh.m_nOptions & 0x400) sums.m_nOptions |= 0x400;
  for (unsigned int unit = 0; unit < 8; ++unit) {
    sums.m_nTexDims[unit] = std::max(sums.m_nTexDims[unit], mesh.m_nTexDims[unit]);
    sums.m_nTexCoordNums[unit] += mesh.m_nTexCoordNums[unit];
  }
  // Those of an earlier merge are shorter than the sums from now on.
  auto const drop = [](auto*& pItems) { delete[] std::exchange(pItems, nullptr); };
  drop(sums.m_pVertices);
  drop(sums.m_pNormals);
  drop(sums.m_pColors);
  drop(sums.m_pSecondColors);
  for (float*& pNumbers : sums.m_pTexCoords) drop(pNumbers);
  bucket.m_vecPackages.push_back(&mesh);
  bucket.m_vecMatrices.push_back(matrix);
  bucket.m_nType = nType;
  for (auto const& [strTexture, sphere] : spheres) geometry.m_mapTextureSpheres[strTexture].Add(sphere);
}

void JoinSlowly(Records& master, Records& joining, float fLayer) {
  for (QXBucketIndexPackage& record : joining) {
    record.m_fTextureLayer = fLayer;
    auto const same = [&](QXBucketIndexPackage const& other) { return other.m_nVertexStart == record.m_nVertexStart; };
    master.insert(std::ranges::find_if(master, same), record);
  }
}

/// Folds the passes of the keys, each with nStep textures.
void FoldPassesSlowly(
    QXStaticGeometryBucket& bucket, std::vector<QdcUnicodeString> const& arrKeys, unsigned int nStep) {
  unsigned int nSlot = 0;
  QdcUnicodeString strMaster;
  for (QdcUnicodeString const& strKey : arrKeys) {
    QXPass& pass = *bucket.m_mapPasses[strKey];
    if (nSlot % 8 == 0) {
      nSlot = 0;
      strMaster = strKey;
      for (QXBucketIndexPackage& record : bucket.m_mapPassIndices[strKey]) record.m_fTextureLayer = 0.0F;
      pass.m_strVertexProgram = nStep == 1 ? L"RenderModelSecVP.glsl" : L"MutiRenderModelSecVP.glsl";
      pass.m_strFragmentProgram = nStep == 1 ? L"RenderModelSecFP.glsl" : L"MutiRenderModelSecFP.glsl";
      QdcUnicodeString strName;
      strName.Format(nStep == 1 ? L"FirTex_3_4_" : L"SecTex_3_4_");
      pass.SetName(strName + pass.GetName());
    } else {
      QXPass& master = *bucket.m_mapPasses[strMaster];
      for (unsigned int unit = 0; unit < nStep; ++unit) {
        master.CreateTextureUnitState()->SetTextureName(pass.GetTextureUnitState(unit)->GetTextureName());
        master.m_nUnitWords[nSlot + unit] = pass.m_nUnitWords[unit];
      }
      master.m_bMultiTexture = 1;
      JoinSlowly(bucket.m_mapPassIndices[strMaster], bucket.m_mapPassIndices[strKey], static_cast<float>(nSlot));
      bucket.m_mapPassIndices.erase(strKey);
      bucket.m_mapPasses.erase(strKey);
      delete &pass;
    }
    nSlot += nStep;
  }
}

void FoldSlowly(QXStaticGeometry& geometry) {
  for (Buckets const* pList : {&geometry.m_vecBuckets32, &geometry.m_vecBuckets16}) {
    for (QXStaticGeometryBucket* pBucket : *pList) {
      std::vector<QdcUnicodeString> arrSingles;
      std::vector<QdcUnicodeString> arrPairs;
      for (auto const& [strKey, pPass] : pBucket->m_mapPasses) {
        std::size_t const nUnits = pPass->GetTextureUnitStatesSize();
        if (pPass->GetPFFMode() == 1 || nUnits == 0) continue;
        if (pPass->GetTextureUnitState(0)->GetTextureName() == L"photo.gif") continue;
        (nUnits == 1 ? arrSingles : arrPairs).push_back(strKey);
      }
      FoldPassesSlowly(*pBucket, arrSingles, 1);
      FoldPassesSlowly(*pBucket, arrPairs, 2);
    }
  }
}

/// The name without the bucket's address, which stands behind the two numbers of a folded pass.
std::wstring WithoutAddresses(QdcUnicodeString const& strName) {
  std::wstring text = strName.Cstr();
  for (std::size_t at = 0; (at = text.find(L"_3_4_0x", at)) != std::wstring::npos; at += 5)
    text.erase(at + 5, text.find(L'_', at + 5) + 1 - (at + 5));
  return text;
}

/// Compares two passes but for the addresses in their names.
void RequireSamePass(QXPass const& first, QXPass const& second) {
  Require(WithoutAddresses(first.GetName()) == WithoutAddresses(second.GetName()));
  QXPass renamed(second);
  renamed.SetName(first.GetName());
  auto const bytes = [](QXPass const& pass) { return Written([&](QXStream& stream) { pass.Save(stream, 1.0); }); };
  Require(bytes(first) == bytes(renamed));
}

bool IsSameMatrix(QXMatrix4d const& first, QXMatrix4d const& second) {
  return std::memcmp(first.m, second.m, sizeof first.m) == 0;
}

void RequireSameRecord(QXBucketIndexPackage const& first, QXBucketIndexPackage const& second) {
  Require(first.m_nVertexStart == second.m_nVertexStart && first.m_fTextureLayer == second.m_fTextureLayer);
  Require(first.m_vecIndexPackages == second.m_vecIndexPackages);
  for (int unit = 0; unit < 8; ++unit) Require(IsSameMatrix(first.m_matTextures[unit], second.m_matTextures[unit]));
}

void RequireSameBucket(QXStaticGeometryBucket const& first, QXStaticGeometryBucket const& second) {
  Require(first.m_nIndexType == second.m_nIndexType && first.m_nType == second.m_nType);
  QXVertexDataPackage const& sums = *first.m_pVertexPackage;
  QXVertexDataPackage const& others = *second.m_pVertexPackage;
  Require(sums.m_nOptions == others.m_nOptions && sums.m_nVertexDim == others.m_nVertexDim);
  Require(sums.m_nNormalDim == others.m_nNormalDim && sums.m_nVertexNum == others.m_nVertexNum);
  Require(sums.m_nNormalNum == others.m_nNormalNum && sums.m_nColorNum == others.m_nColorNum);
  Require(sums.m_nSecondColorNum == others.m_nSecondColorNum);
  Require(std::ranges::equal(sums.m_nTexDims, others.m_nTexDims));
  Require(std::ranges::equal(sums.m_nTexCoordNums, others.m_nTexCoordNums));
  Require(first.m_vecPackages == second.m_vecPackages);
  Require(std::ranges::equal(first.m_vecMatrices, second.m_vecMatrices, IsSameMatrix));
  auto const sameKey = [](auto const& a, auto const& b) { return a.first == b.first; };
  Require(std::ranges::equal(first.m_mapPasses, second.m_mapPasses, sameKey));
  for (auto const& [strKey, pPass] : first.m_mapPasses) RequireSamePass(*pPass, *second.m_mapPasses.at(strKey));
  Require(std::ranges::equal(first.m_mapPassIndices, second.m_mapPassIndices, sameKey));
  for (auto const& [strKey, records] : first.m_mapPassIndices) {
    Records const& slow = second.m_mapPassIndices.at(strKey);
    Require(records.size() == slow.size());
    for (std::size_t i = 0; i < records.size(); ++i) RequireSameRecord(records[i], slow[i]);
  }
  Require(std::ranges::equal(first.m_mapSubObjects, second.m_mapSubObjects, sameKey));
}

void RequireSame(QXStaticGeometry const& first, QXStaticGeometry const& second) {
  Buckets arrFirst;
  Buckets arrSecond;
  VisitBuckets(first, [&](QXStaticGeometryBucket& bucket) { arrFirst.push_back(&bucket); });
  VisitBuckets(second, [&](QXStaticGeometryBucket& bucket) { arrSecond.push_back(&bucket); });
  Require(arrFirst.size() == arrSecond.size() && first.m_vecBuckets32.size() == second.m_vecBuckets32.size());
  Require(first.m_vecTypedBuckets32.size() == second.m_vecTypedBuckets32.size());
  for (std::size_t i = 0; i < arrFirst.size(); ++i) RequireSameBucket(*arrFirst[i], *arrSecond[i]);
  auto const same = [](auto const& a, auto const& b) {
    return a.first == b.first && a.second.GetSize() == b.second.GetSize();
  };
  Require(std::ranges::equal(first.m_mapTextureSpheres, second.m_mapTextureSpheres, same));
}

/// Merged geometry comes back from its bytes. Loaded buckets have no secondary colours, which the file does not hold.
void RequireSavesAndLoads(QXStaticGeometry& geometry) {
  std::string const saved = Saved(geometry);
  if (saved.empty()) return;
  bool bSurvives = true;
  VisitBuckets(geometry,
      [&](QXStaticGeometryBucket& bucket) { bSurvives = bSurvives && SurvivesSaving(*bucket.m_pVertexPackage); });
  QXMemoryStream stream(saved.data(), saved.size());
  QXStaticGeometry read;
  Require(bSurvives && read.LoadVecData(stream, 0.0F) == 1 && stream.Remaining() == 0);
  Require(Saved(read) == saved);
  Require(static_cast<std::size_t>(geometry.GetDataSize()) >= saved.size());
}

class Sequence {
public:
  Sequence(std::uint8_t const* pData, std::size_t nSize) : m_input(pData, nSize) {}

  void Run() {
    // Buckets of many vertices take a second of the slow side: few sequences have them, and those merge once.
    bool const bLarge = m_input.Next(64) == 63;
    for (int nStep = 0; nStep < 30 && !m_input.IsEmpty(); ++nStep) {
      unsigned int nWhat = m_input.Next(8);
      if (bLarge && nWhat == 6) nWhat = 7;
      m_bLargeAllowed = bLarge && m_nLarge < 3;
      if (nWhat < 5) {
        Add();
      } else if (nWhat == 5) {
        Fold();
      } else if (nWhat == 6) {
        Merge();
      } else {
        SaveAndLoad();
      }
    }
    Merge();
    SaveAndLoad();
  }

private:
  void Add() {
    QXVertexDataPackage& mesh = m_host.NextMesh(m_input, m_bLargeAllowed);
    if (mesh.m_nVertexNum > 1000) ++m_nLarge;
    QdcArray<QXIndexPackage*> arrIndices;
    for (unsigned int n = m_input.Next(4); n > 0; --n) arrIndices.Add(m_host.NextIndices(m_input, mesh.m_nVertexNum));
    QXMatrix4d matrix = NextMatrix(m_input);
    int const nType = static_cast<int>(m_input.Next(4)) - 1;
    QXSubObjectInfo* pFirst = nullptr;
    QXSubObjectInfo* pSecond = nullptr;
    if (m_input.Next(2) != 0) {
      pFirst = new QXSubObjectInfo;
      pFirst->m_BoundingSphere.SetRadius(m_input.NextFloat());
      pSecond = new QXSubObjectInfo(*pFirst);
    }
    m_fast.AddVertexDataAndIndexPackage(&mesh, arrIndices, m_host.m_mapPasses, matrix, pFirst, nType);
    AddSlowly(m_slow, mesh, arrIndices, m_host.m_mapPasses, matrix, pSecond, nType);
    m_bMerged = false;
  }

  void Fold() {
    RequireSame(m_fast, m_slow);
    m_fast.AssginMutiTexture(3, 4);
    FoldSlowly(m_slow);
    RequireSame(m_fast, m_slow);
  }

  void Merge() {
    RequireSame(m_fast, m_slow);
    QXMatrix4d const matBase = NextMatrix(m_input);
    auto const bNoTransform = static_cast<unsigned char>(m_input.Next(4) == 1);
    m_fast.AssignStaticGeometry(matBase, bNoTransform);
    MergeByReference(m_slow, matBase, bNoTransform);
    std::string const strDifference = CompareMerged(m_fast, m_slow);
    if (!strDifference.empty()) std::fprintf(stderr, "%s\n", strDifference.c_str());
    Require(strDifference.empty());
    m_fast.GetBoundingSphere(1);
    m_bMerged = true;
  }

  void SaveAndLoad() {
    if (m_bMerged) return RequireSavesAndLoads(m_fast);
    // Counts without arrays: nobody can read it, and nobody is harmed.
    std::string const saved = Saved(m_fast);
    QXMemoryStream stream(saved.data(), saved.size());
    QXStaticGeometry read;
    read.LoadVecData(stream, 0.0F);
  }

  Input m_input;
  Host m_host;
  QXStaticGeometry m_fast;
  QXStaticGeometry m_slow;
  unsigned int m_nLarge = 0;
  bool m_bLargeAllowed = false;
  bool m_bMerged = true;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* pData, std::size_t nSize) {
  Sequence(pData, nSize).Run();
  return 0;
}
