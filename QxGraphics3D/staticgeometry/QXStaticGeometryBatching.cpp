#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMaterialExtension.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

namespace QXC {

namespace {

constexpr unsigned int SmallVertexNum = 65535;
constexpr unsigned int TextureMatrixNum = 8;
constexpr unsigned int MergedOption = 0x400;

using BucketList = std::vector<QXStaticGeometryBucket*>;
// The texture names that one mesh uses; the passes of the host hold them.
using TextureNames = std::vector<QdcUnicodeString const*>;

// Lists are public and a host may have taken a bucket or its package out: both count as not there.
QXStaticGeometryBucket& AppendBucket(BucketList& buckets) {
  auto bucket = std::make_unique<QXStaticGeometryBucket>();
  buckets.push_back(bucket.get());
  return *bucket.release();
}

QXStaticGeometryBucket& ChooseLarge(BucketList& buckets) {
  if (buckets.empty()) AppendBucket(buckets);
  if (!buckets.front()) buckets.front() = new QXStaticGeometryBucket;
  buckets.front()->m_nIndexType = 1;
  return *buckets.front();
}

bool HasRoom(QXStaticGeometryBucket const* pBucket, unsigned int nVertexNum) {
  if (!pBucket) return false;
  QXVertexDataPackage const* pMerged = pBucket->m_pVertexPackage;
  return !pMerged || (pMerged->m_nVertexNum <= SmallVertexNum && pMerged->m_nVertexNum + nVertexNum <= SmallVertexNum);
}

QXStaticGeometryBucket& ChooseSmall(BucketList& buckets, unsigned int nVertexNum) {
  if (buckets.empty() || !HasRoom(buckets.back(), nVertexNum)) AppendBucket(buckets);
  buckets.back()->m_nIndexType = 0;
  return *buckets.back();
}

// How the matrices of a pass reach the screen.
struct PassTransforms {
  // Only the first unit has a transformation that the merge may apply.
  bool m_bExtended = false;
  // A texture that moves is transformed anew in every frame, so its matrices must stay in the pass.
  bool m_bKept = false;
};

// Whether one of the two textures moves.
bool Moves(float const (&fGroups)[2][QXMaterialExtension::GROUP_SIZE]) {
  constexpr int Speed = QXMaterialExtension::GROUP_SIZE - 1;
  return fGroups[0][Speed] > 0.0F || fGroups[1][Speed] > 0.0F;
}

PassTransforms GetTransforms(QXPass const& pass) {
  QXMaterialExtension const* pExtension = pass.m_pExtension;
  if (!pExtension || pExtension->GetType() != MATERIAL_EXTENSION_MOVING_TEXTURES) return {};
  return {true, Moves(pExtension->m_fSlides) || Moves(pExtension->m_fTurns)};
}

void FillTextureMatrices(QXBucketIndexPackage& record, QXPass const& pass, PassTransforms transforms) {
  if (transforms.m_bKept) return;
  // A folded pass may have more units than a vertex has coordinates.
  unsigned int const nUnits = std::min(
      static_cast<unsigned int>(pass.GetTextureUnitStatesSize()), transforms.m_bExtended ? 1U : TextureMatrixNum);
  for (unsigned int unit = 0; unit < nUnits; ++unit)
    record.m_matTextures[unit] = pass.GetTextureUnitState(unit)->GetTextureTransform();
}

void CollectTextureNames(QXPass const& pass, TextureNames& names) {
  unsigned int const nUnits = static_cast<unsigned int>(pass.GetTextureUnitStatesSize());
  for (unsigned int unit = 0; unit < nUnits; ++unit) names.push_back(&pass.GetTextureUnitState(unit)->GetTextureName());
}

// However many units use a texture, it counts a mesh once.
void KeepEachOnce(TextureNames& names) {
  auto const before = [](QdcUnicodeString const* pFirst, QdcUnicodeString const* pSecond) {
    return *pFirst < *pSecond;
  };
  auto const same = [](QdcUnicodeString const* pFirst, QdcUnicodeString const* pSecond) { return *pFirst == *pSecond; };
  std::sort(names.begin(), names.end(), before);
  names.erase(std::unique(names.begin(), names.end(), same), names.end());
}

void AddPass(
    QXStaticGeometryBucket& bucket, QdcUnicodeString const& strKey, QXPass const& pass, PassTransforms transforms) {
  QXPass*& pHeld = bucket.m_mapPasses[strKey];
  if (pHeld) return;
  auto copy = std::make_unique<QXPass>(pass);
  if (!transforms.m_bKept) {
    copy->m_matPass = QXMatrix4d::IDENTITY;
    unsigned int const nUnits = static_cast<unsigned int>(copy->GetTextureUnitStatesSize());
    for (unsigned int unit = 0; unit < nUnits; ++unit)
      copy->GetTextureUnitState(unit)->m_matUnit = QXMatrix4d::IDENTITY;
  }
  copy->m_nPassWord = 0;
  pHeld = copy.release();
}

// Room for one more item, and in a small bucket for as many as will probably come before it is full: items are large,
// and doubling would move each of them once more and leave room that nobody fills.
template <class T>
void MakeRoom(std::vector<T>& items, QXStaticGeometryBucket const& bucket) {
  if (items.size() < items.capacity()) return;
  std::size_t const nVertexNum = bucket.m_pVertexPackage->m_nVertexNum;
  std::size_t nWanted = 2 * items.size();
  if (bucket.m_nIndexType == 0 && nVertexNum > 0)
    nWanted = std::clamp(items.size() * SmallVertexNum / nVertexNum, items.size() + items.size() / 4, 4 * items.size());
  items.reserve(std::max<std::size_t>(nWanted, items.size() + 2));
}

// Files one index package of a mesh under each of its passes.
void AddRecords(QXStaticGeometryBucket& bucket, QXIndexPackage& package,
    std::map<QdcUnicodeString, QXPass*> const& mapPasses, TextureNames* pTextureNames) {
  QdcUnicodeString const strNoPass;
  for (QdcUnicodeString const& strName : package.m_arrPassNames) {
    auto const found = mapPasses.find(strName);
    QXPass const* const pPass = found == mapPasses.end() ? nullptr : found->second;
    QdcUnicodeString const& strKey = pPass ? pPass->GetName() : strNoPass;
    std::vector<QXBucketIndexPackage>& records = bucket.m_mapPassIndices[strKey];
    MakeRoom(records, bucket);
    QXBucketIndexPackage& record = records.emplace_back();
    record.m_nVertexStart = static_cast<int>(bucket.m_pVertexPackage->m_nVertexNum);
    record.m_vecIndexPackages.push_back(&package);
    if (!pPass) continue;
    PassTransforms const transforms = GetTransforms(*pPass);
    FillTextureMatrices(record, *pPass, transforms);
    if (pTextureNames) CollectTextureNames(*pPass, *pTextureNames);
    // Where records are, their pass came with the first; looking it up again would cost as much as finding them. Under
    // no name there may be records that never had one. The last condition notices a host that took the passes out.
    bool const bHasPass =
        records.size() > 1 && !strKey.IsEmpty() && bucket.m_mapPasses.size() >= bucket.m_mapPassIndices.size();
    if (!bHasPass) AddPass(bucket, strKey, *pPass, transforms);
  }
}

// Arrays of an earlier merge or of a file would be shorter than the counts say from now on.
void DropArrays(QXVertexDataPackage& merged) {
  auto const drop = [](auto*& pItems) {
    delete[] pItems;
    pItems = nullptr;
  };
  drop(merged.m_pVertices);
  drop(merged.m_pNormals);
  drop(merged.m_pColors);
  drop(merged.m_pSecondColors);
  for (float*& pTexCoords : merged.m_pTexCoords) drop(pTexCoords);
}

void AddCounts(QXVertexDataPackage& merged, QXVertexDataPackage const& mesh) {
  merged.m_nVertexNum += mesh.m_nVertexNum;
  merged.m_nVertexDim = std::max(merged.m_nVertexDim, mesh.m_nVertexDim);
  merged.m_nNormalDim = std::max(merged.m_nNormalDim, mesh.m_nNormalDim);
  merged.m_nNormalNum += mesh.m_nNormalNum;
  merged.m_nColorNum += mesh.m_nColorNum;
  merged.m_nSecondColorNum += mesh.m_nSecondColorNum;
  merged.m_nOptions |= mesh.m_nOptions & MergedOption;
  for (unsigned int unit = 0; unit < QXVertexDataPackage::UnitNum; ++unit) {
    merged.m_nTexDims[unit] = std::max(merged.m_nTexDims[unit], mesh.m_nTexDims[unit]);
    merged.m_nTexCoordNums[unit] += mesh.m_nTexCoordNums[unit];
  }
}

void StoreSubObject(QXStaticGeometryBucket& bucket, std::unique_ptr<QXSubObjectInfo> subObject) {
  int const nVertexStart = static_cast<int>(bucket.m_pVertexPackage->m_nVertexNum);
  auto& subObjects = bucket.m_mapSubObjects;
  // Each mesh starts behind all others.
  QXSubObjectInfo*& pHeld = subObjects.try_emplace(subObjects.end(), nVertexStart, nullptr)->second;
  if (pHeld != subObject.get()) delete pHeld;
  pHeld = subObject.release();
}

}  // namespace

void QXStaticGeometry::AddVertexDataAndIndexPackage(
    QXVertexDataPackageTemplate<float, QXVertexDeclaration>* pVertexPackage,
    QdcArray<QXIndexPackage*>& arrIndexPackages, std::map<QdcUnicodeString, QXPass*>& mapPasses, QXMatrix4d& matModel,
    QXSubObjectInfo* pSubObject, int nType) {
  if (!pVertexPackage) return;
  // Taken over from here on, so that it does not leak where memory runs out.
  std::unique_ptr<QXSubObjectInfo> subObject(pSubObject);
  unsigned int const nVertexNum = pVertexPackage->m_nVertexNum;
  bool const bTyped = nType == 1;
  QXStaticGeometryBucket& bucket = nVertexNum > SmallVertexNum
                                       ? ChooseLarge(bTyped ? m_vecTypedBuckets32 : m_vecBuckets32)
                                       : ChooseSmall(bTyped ? m_vecTypedBuckets16 : m_vecBuckets16, nVertexNum);
  if (!bucket.m_pVertexPackage) bucket.m_pVertexPackage = new QXVertexDataPackage;

  TextureNames textureNames;
  for (QXIndexPackage* pPackage : arrIndexPackages) {
    if (!pPackage) continue;
    if (pPackage->m_eOperationType == QX_OPERATION_LINE_LIST && pPackage->m_arrPassNames.GetSize() == 0)
      pPackage->m_arrPassNames.Add(L"TempLine");
    AddRecords(bucket, *pPackage, mapPasses, pSubObject ? &textureNames : nullptr);
  }

  if (subObject) StoreSubObject(bucket, std::move(subObject));
  DropArrays(*bucket.m_pVertexPackage);
  AddCounts(*bucket.m_pVertexPackage, *pVertexPackage);
  bucket.m_vecPackages.push_back(pVertexPackage);
  MakeRoom(bucket.m_vecMatrices, bucket);
  bucket.m_vecMatrices.push_back(matModel);
  bucket.m_nType = nType;
  KeepEachOnce(textureNames);
  for (QdcUnicodeString const* pName : textureNames) m_mapTextureSpheres[*pName].Add(pSubObject->m_BoundingSphere);
}

}  // namespace QXC
