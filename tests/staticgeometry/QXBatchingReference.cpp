#include "QXBatchingReference.h"

#include <algorithm>
#include <cstddef>
#include <cwctype>
#include <set>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

namespace QXC {

namespace {

using Buckets = std::vector<QXStaticGeometryBucket*>;
using Records = std::vector<QXBucketIndexPackage>;

QXStaticGeometryBucket* ChooseBucket(QXStaticGeometry& geometry, unsigned int nNum, int nType) {
  Buckets& large = nType == 1 ? geometry.m_vecTypedBuckets32 : geometry.m_vecBuckets32;
  Buckets& small = nType == 1 ? geometry.m_vecTypedBuckets16 : geometry.m_vecBuckets16;
  if (nNum > 65535) {
    if (large.empty()) large.push_back(new QXStaticGeometryBucket);
    large[0]->m_nIndexType = 1;
    return large[0];
  }
  if (small.empty()) small.push_back(new QXStaticGeometryBucket);
  if (small.back()->m_pVertexPackage->m_nVertexNum + nNum > 65535) small.push_back(new QXStaticGeometryBucket);
  small.back()->m_nIndexType = 0;
  return small.back();
}

bool KeepsTransforms(QXPass const& pass) {
  QXMaterialExtension const* p = pass.m_pExtension;
  if (!p || p->GetType() != 1) return false;
  return p->m_fSlides[0][4] > 0.0F || p->m_fSlides[1][4] > 0.0F || p->m_fTurns[0][4] > 0.0F || p->m_fTurns[1][4] > 0.0F;
}

void AddRecord(QXStaticGeometryBucket& bucket, QXIndexPackage* pPackage, QXPass* pPass, std::set<std::wstring>& names) {
  QXBucketIndexPackage record;
  record.m_nVertexStart = static_cast<int>(bucket.m_pVertexPackage->m_nVertexNum);
  record.m_vecIndexPackages.push_back(pPackage);
  if (!pPass) {
    bucket.m_mapPassIndices[L""].push_back(record);
    return;
  }
  bool const bKept = KeepsTransforms(*pPass);
  bool const bExtended = pPass->m_pExtension && pPass->m_pExtension->GetType() == 1;
  for (unsigned int unit = 0; unit < pPass->GetTextureUnitStatesSize(); ++unit) {
    if (!bKept && unit < 8) record.m_matTextures[unit] = pPass->GetTextureUnitState(unit)->GetTextureTransform();
    if (bExtended && unit >= 1 && unit < 8) record.m_matTextures[unit] = QXMatrix4d::IDENTITY;
    names.insert(pPass->GetTextureUnitState(unit)->GetTextureName().Cstr());
  }
  if (bucket.m_mapPasses.count(pPass->GetName()) == 0) {
    auto* pCopy = new QXPass(*pPass);
    if (!bKept) {
      pCopy->m_matPass = QXMatrix4d::IDENTITY;
      for (unsigned int unit = 0; unit < pCopy->GetTextureUnitStatesSize(); ++unit)
        pCopy->GetTextureUnitState(unit)->m_matUnit = QXMatrix4d::IDENTITY;
    }
    pCopy->m_nPassWord = 0;
    bucket.m_mapPasses[pPass->GetName()] = pCopy;
  }
  bucket.m_mapPassIndices[pPass->GetName()].push_back(record);
}

void AddCounts(QXVertexDataPackage& merged, QXVertexDataPackage const& mesh) {
  // Arrays of an earlier merge do not outlive the counts that they were made for.
  int const nOptions = static_cast<int>(merged.m_nOptions | (mesh.m_nOptions & 0x400u));
  QXVertexDataFields<float, QXVertexDeclaration> fields = merged;
  fields.m_nVertexNum += mesh.m_nVertexNum;
  if (mesh.m_nVertexDim > fields.m_nVertexDim) fields.m_nVertexDim = mesh.m_nVertexDim;
  if (mesh.m_nNormalDim > fields.m_nNormalDim) fields.m_nNormalDim = mesh.m_nNormalDim;
  fields.m_nNormalNum += mesh.m_nNormalNum;
  fields.m_nColorNum += mesh.m_nColorNum;
  fields.m_nSecondColorNum += mesh.m_nSecondColorNum;
  for (int unit = 0; unit < 8; ++unit) {
    if (mesh.m_nTexDims[unit] > fields.m_nTexDims[unit]) fields.m_nTexDims[unit] = mesh.m_nTexDims[unit];
    fields.m_nTexCoordNums[unit] += mesh.m_nTexCoordNums[unit];
    fields.m_pTexCoords[unit] = nullptr;
  }
  fields.m_nOptions = static_cast<unsigned int>(nOptions);
  fields.m_pVertices = fields.m_pNormals = nullptr;
  fields.m_pColors = fields.m_pSecondColors = nullptr;
  merged.Reset();
  static_cast<QXVertexDataFields<float, QXVertexDeclaration>&>(merged) = fields;
}

void JoinRecords(Records& master, Records const& joining, int nLayer) {
  for (QXBucketIndexPackage record : joining) {
    record.m_fTextureLayer = static_cast<float>(nLayer);
    auto const same = [&](QXBucketIndexPackage const& other) { return other.m_nVertexStart == record.m_nVertexStart; };
    master.insert(std::find_if(master.begin(), master.end(), same), record);
  }
}

void FoldMap(
    QXStaticGeometryBucket& bucket, std::map<QdcUnicodeString, QXPass*> const& passes, int nStep, int nA, int nB) {
  int k = 0;
  QXPass* pMaster = nullptr;
  QdcUnicodeString strMaster;
  for (auto const& [strKey, pPass] : passes) {
    if (k % 8 == 0) {
      k = 0;
      pMaster = pPass;
      strMaster = strKey;
      if (bucket.m_mapPassIndices.count(strKey))
        for (QXBucketIndexPackage& record : bucket.m_mapPassIndices[strKey]) record.m_fTextureLayer = 0.0F;
      k += nStep;
      pPass->m_strVertexProgram = nStep == 1 ? L"RenderModelSecVP.glsl" : L"MutiRenderModelSecVP.glsl";
      pPass->m_strFragmentProgram = nStep == 1 ? L"RenderModelSecFP.glsl" : L"MutiRenderModelSecFP.glsl";
      QdcUnicodeString strName;
      strName.Format(nStep == 1 ? L"FirTex_%d_%d_%p_" : L"SecTex_%d_%d_%p_", nA, nB, static_cast<void*>(&bucket));
      pPass->SetName(strName + pPass->GetName());
      continue;
    }
    for (int unit = 0; unit < nStep; ++unit) {
      QdcUnicodeString const strTexture = pPass->GetTextureUnitState(static_cast<unsigned int>(unit))->GetTextureName();
      pMaster->CreateTextureUnitState()->SetTextureName(strTexture);
      pMaster->m_nUnitWords[k + unit] = pPass->m_nUnitWords[unit];
    }
    pMaster->m_bMultiTexture = 1;
    if (bucket.m_mapPassIndices.count(strKey))
      JoinRecords(bucket.m_mapPassIndices[strMaster], bucket.m_mapPassIndices[strKey], k);
    bucket.m_mapPassIndices.erase(strKey);
    k += nStep;
    bucket.m_mapPasses.erase(strKey);
    delete pPass;
  }
}

bool EndsInGif(std::wstring strName) {
  for (wchar_t& nCharacter : strName) nCharacter = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(nCharacter)));
  return strName.size() > 4 && strName.compare(strName.size() - 4, 4, L".gif") == 0;
}

void FoldBuckets(Buckets const& buckets, int nA, int nB) {
  for (QXStaticGeometryBucket* pBucket : buckets) {
    std::map<QdcUnicodeString, QXPass*> singles;
    std::map<QdcUnicodeString, QXPass*> pairs;
    for (auto const& [strKey, pPass] : pBucket->m_mapPasses) {
      if (pPass->GetPFFMode() == 1 || pPass->GetTextureUnitStatesSize() == 0) continue;
      if (EndsInGif(pPass->GetTextureUnitState(0)->GetTextureName().Cstr())) continue;
      (pPass->GetTextureUnitStatesSize() == 1 ? singles : pairs)[strKey] = pPass;
    }
    FoldMap(*pBucket, singles, 1, nA, nB);
    FoldMap(*pBucket, pairs, 2, nA, nB);
  }
}

// The name with the bucket's address taken out.
std::wstring PlainName(QXStaticGeometryBucket const& bucket, std::wstring strName) {
  QdcUnicodeString strAddress;
  strAddress.Format(L"%p", static_cast<void const*>(&bucket));
  std::wstring const strFind = strAddress.Cstr();
  for (auto at = strName.find(strFind); at != std::wstring::npos; at = strName.find(strFind))
    strName.replace(at, strFind.size(), L"@");
  return strName;
}

std::string ComparePasses(QXStaticGeometryBucket const& a, QXStaticGeometryBucket const& b) {
  if (a.m_mapPasses.size() != b.m_mapPasses.size()) return "number of passes";
  for (auto x = a.m_mapPasses.begin(), y = b.m_mapPasses.begin(); x != a.m_mapPasses.end(); ++x, ++y) {
    QXPass const& p = *x->second;
    QXPass const& q = *y->second;
    if (x->first != y->first) return "key of a pass";
    if (PlainName(a, p.GetName().Cstr()) != PlainName(b, q.GetName().Cstr())) return "name of a pass";
    if (p.m_nPassWord != q.m_nPassWord || !(p.m_matPass == q.m_matPass)) return "word or matrix of a pass";
    if (p.m_strVertexProgram != q.m_strVertexProgram || p.m_strFragmentProgram != q.m_strFragmentProgram)
      return "programs of a pass";
    if (p.m_bMultiTexture != q.m_bMultiTexture) return "multi-texture byte of a pass";
    if (!std::equal(p.m_nUnitWords, p.m_nUnitWords + 8, q.m_nUnitWords)) return "unit words of a pass";
    if (p.GetTextureUnitStatesSize() != q.GetTextureUnitStatesSize()) return "number of units of a pass";
    for (unsigned int unit = 0; unit < p.GetTextureUnitStatesSize(); ++unit) {
      if (p.GetTextureUnitState(unit)->GetTextureName() != q.GetTextureUnitState(unit)->GetTextureName())
        return "texture of a unit";
      if (!(p.GetTextureUnitState(unit)->m_matUnit == q.GetTextureUnitState(unit)->m_matUnit))
        return "matrix of a unit";
    }
  }
  return {};
}

bool SameRecord(QXBucketIndexPackage const& x, QXBucketIndexPackage const& y) {
  return x.m_nVertexStart == y.m_nVertexStart && x.m_fTextureLayer == y.m_fTextureLayer &&
         x.m_vecIndexPackages == y.m_vecIndexPackages &&
         std::equal(x.m_matTextures, x.m_matTextures + 8, y.m_matTextures);
}

std::string CompareCounts(QXVertexDataPackage const& p, QXVertexDataPackage const& q) {
  if (p.m_nVertexNum != q.m_nVertexNum || p.m_nNormalNum != q.m_nNormalNum || p.m_nColorNum != q.m_nColorNum ||
      p.m_nSecondColorNum != q.m_nSecondColorNum)
    return "counts";
  if (p.m_nVertexDim != q.m_nVertexDim || p.m_nNormalDim != q.m_nNormalDim) return "dimensions";
  if (p.m_nOptions != q.m_nOptions) return "options";
  for (int unit = 0; unit < 8; ++unit) {
    if (p.m_nTexDims[unit] != q.m_nTexDims[unit] || p.m_nTexCoordNums[unit] != q.m_nTexCoordNums[unit])
      return "unit " + std::to_string(unit);
  }
  return (p.m_pVertices != nullptr) == (q.m_pVertices != nullptr) ? std::string() : "array of positions";
}

bool SameSphere(QXBoundingSphere const& x, QXBoundingSphere const& y) {
  return x.GetCenter() == y.GetCenter() && x.GetRadius() == y.GetRadius();
}

std::string CompareBucket(QXStaticGeometryBucket const& a, QXStaticGeometryBucket const& b) {
  std::string strDifference = CompareCounts(*a.m_pVertexPackage, *b.m_pVertexPackage);
  if (strDifference.empty()) strDifference = ComparePasses(a, b);
  if (!strDifference.empty()) return strDifference;
  if (a.m_nIndexType != b.m_nIndexType || a.m_nType != b.m_nType || a.m_nMaxLevel != b.m_nMaxLevel) return "types";
  if (a.m_vecPackages != b.m_vecPackages || a.m_vecMatrices != b.m_vecMatrices) return "meshes or matrices";
  if (a.m_mapPassIndices.size() != b.m_mapPassIndices.size()) return "number of keys";
  for (auto x = a.m_mapPassIndices.begin(), y = b.m_mapPassIndices.begin(); x != a.m_mapPassIndices.end(); ++x, ++y) {
    if (x->first != y->first) return "key of records";
    if (!std::equal(x->second.begin(), x->second.end(), y->second.begin(), y->second.end(), SameRecord))
      return "records";
  }
  auto const same = [](auto const& x, auto const& y) {
    return x.first == y.first && SameSphere(x.second->m_BoundingSphere, y.second->m_BoundingSphere);
  };
  bool const bSame = std::equal(
      a.m_mapSubObjects.begin(), a.m_mapSubObjects.end(), b.m_mapSubObjects.begin(), b.m_mapSubObjects.end(), same);
  return bSame ? std::string() : "sub-objects";
}

}  // namespace

void AddByReference(QXStaticGeometry& geometry, QXVertexDataPackage* pMesh,
    std::vector<QXIndexPackage*> const& packages, std::map<QdcUnicodeString, QXPass*> const& mapPasses,
    QXMatrix4d const& matModel, QXSubObjectInfo* pSubObject, int nType) {
  if (!pMesh) return;
  QXStaticGeometryBucket& bucket = *ChooseBucket(geometry, pMesh->m_nVertexNum, nType);
  std::set<std::wstring> names;
  for (QXIndexPackage* pPackage : packages) {
    if (!pPackage) continue;
    if (pPackage->m_eOperationType == 2 && pPackage->m_arrPassNames.GetSize() == 0)
      pPackage->m_arrPassNames.Add(L"TempLine");
    for (QdcUnicodeString const& strName : pPackage->m_arrPassNames)
      AddRecord(bucket, pPackage, mapPasses.count(strName) ? mapPasses.at(strName) : nullptr, names);
  }
  int const nStart = static_cast<int>(bucket.m_pVertexPackage->m_nVertexNum);
  if (pSubObject) {
    if (bucket.m_mapSubObjects.count(nStart)) delete bucket.m_mapSubObjects[nStart];
    bucket.m_mapSubObjects[nStart] = pSubObject;
  }
  AddCounts(*bucket.m_pVertexPackage, *pMesh);
  bucket.m_vecPackages.push_back(pMesh);
  bucket.m_vecMatrices.push_back(matModel);
  bucket.m_nType = nType;
  if (!pSubObject) return;
  for (std::wstring const& strName : names)
    geometry.m_mapTextureSpheres[strName.c_str()].Add(pSubObject->m_BoundingSphere);
}

void FoldByReference(QXStaticGeometry& geometry, int nA, int nB) {
  FoldBuckets(geometry.m_vecBuckets32, nA, nB);
  FoldBuckets(geometry.m_vecBuckets16, nA, nB);
}

std::string CompareGathered(QXStaticGeometry const& a, QXStaticGeometry const& b) {
  Buckets const* const listsOfA[] = {
      &a.m_vecBuckets32, &a.m_vecBuckets16, &a.m_vecTypedBuckets32, &a.m_vecTypedBuckets16};
  Buckets const* const listsOfB[] = {
      &b.m_vecBuckets32, &b.m_vecBuckets16, &b.m_vecTypedBuckets32, &b.m_vecTypedBuckets16};
  for (int list = 0; list < 4; ++list) {
    std::string const strList = "list " + std::to_string(list);
    if (listsOfA[list]->size() != listsOfB[list]->size()) return strList + ": number of buckets";
    for (std::size_t bucket = 0; bucket < listsOfA[list]->size(); ++bucket) {
      std::string const strDifference = CompareBucket(*(*listsOfA[list])[bucket], *(*listsOfB[list])[bucket]);
      if (!strDifference.empty()) return strList + ", bucket " + std::to_string(bucket) + ": " + strDifference;
    }
  }
  auto const same = [](auto const& x, auto const& y) {
    return x.first == y.first &&
           std::equal(x.second.begin(), x.second.end(), y.second.begin(), y.second.end(), SameSphere);
  };
  bool const bSame = std::equal(a.m_mapTextureSpheres.begin(), a.m_mapTextureSpheres.end(),
      b.m_mapTextureSpheres.begin(), b.m_mapTextureSpheres.end(), same);
  return bSame ? std::string() : "spheres of the textures";
}

}  // namespace QXC
