#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXTextureUnitState.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <cstddef>
#include <memory>
#include <unordered_map>

namespace QXC {

namespace {

using Records = std::vector<QXBucketIndexPackage>;
using PassEntry = std::map<QdcUnicodeString, QXPass*>::iterator;

// What folding passes of one texture and of two has different.
struct FoldKind {
  wchar_t const* m_szVertexProgram;
  wchar_t const* m_szFragmentProgram;
  wchar_t const* m_szNameFormat;
  // Textures, and with them layers, that each pass of a group brings.
  unsigned int m_nUnitNum;
};

constexpr FoldKind SingleKind = {L"RenderModelSecVP.glsl", L"RenderModelSecFP.glsl", L"FirTex_%d_%d_%p_", 1};
constexpr FoldKind PairKind = {L"MutiRenderModelSecVP.glsl", L"MutiRenderModelSecFP.glsl", L"SecTex_%d_%d_%p_", 2};
constexpr unsigned int GroupUnitNum = 8;

// The records of a group's passes in one sequence. A record goes just before the first one of the same mesh, so a mesh
// that comes again piles up in front of its first record, latest first; one that has none yet goes to the end. Doing
// that in the sequence itself would look through it and move its tail for every record; here the pile of each mesh is a
// chain, and the sequence is written once.
class RecordWeaver {
public:
  // The records that the group starts from keep their places.
  void Start(Records& records) {
    for (QXBucketIndexPackage& record : records) Append(record);
  }

  void Join(Records& records) {
    for (QXBucketIndexPackage& record : records) {
      auto const first = m_mapFirst.find(record.m_nVertexStart);
      if (first == m_mapFirst.end()) {
        Append(record);
      } else {
        Item& place = m_vecItems[first->second];
        m_vecPiled.push_back({&record, place.m_nPile});
        place.m_nPile = m_vecPiled.size();
      }
    }
  }

  // Moves the records out of the sequences they came from.
  Records Weave() const {
    Records woven;
    woven.reserve(m_vecItems.size() + m_vecPiled.size());
    for (Item const& item : m_vecItems) {
      for (std::size_t pile = item.m_nPile; pile != 0; pile = m_vecPiled[pile - 1].m_nPile)
        woven.push_back(std::move(*m_vecPiled[pile - 1].m_pRecord));
      woven.push_back(std::move(*item.m_pRecord));
    }
    return woven;
  }

private:
  struct Item {
    QXBucketIndexPackage* m_pRecord;
    // Number of the record in m_vecPiled that stands before this one, counted from 1; 0 for none.
    std::size_t m_nPile;
  };

  void Append(QXBucketIndexPackage& record) {
    m_mapFirst.try_emplace(record.m_nVertexStart, m_vecItems.size());
    m_vecItems.push_back({&record, 0});
  }

  std::vector<Item> m_vecItems;
  std::vector<Item> m_vecPiled;
  // First vertex of a mesh to the place of its first record in m_vecItems.
  std::unordered_map<int, std::size_t> m_mapFirst;
};

// Passes that become one: a master and those that join it. The bucket is changed by Finish.
class FoldGroup {
public:
  FoldGroup(QXStaticGeometryBucket& bucket, FoldKind const& kind, PassEntry master)
      : m_Bucket(bucket), m_Kind(kind), m_Master(master) {}

  void Join(PassEntry entry) { m_vecJoining.push_back(entry); }
  bool IsFull() const { return (1 + m_vecJoining.size()) * m_Kind.m_nUnitNum >= GroupUnitNum; }

  void Finish(int nA, int nB) {
    QXPass& master = *m_Master->second;
    master.m_strVertexProgram = m_Kind.m_szVertexProgram;
    master.m_strFragmentProgram = m_Kind.m_szFragmentProgram;
    QdcUnicodeString strName;
    strName.Format(m_Kind.m_szNameFormat, nA, nB, static_cast<void*>(&m_Bucket));
    strName += master.GetName();
    master.SetName(strName);
    if (Records* pRecords = SetLayer(m_Master->first, 0)) m_Weaver.Start(*pRecords);

    unsigned int nLayer = 0;
    for (PassEntry const& entry : m_vecJoining) {
      nLayer += m_Kind.m_nUnitNum;
      JoinUnits(master, *entry->second, nLayer);
      if (Records* pRecords = SetLayer(entry->first, nLayer)) m_Weaver.Join(*pRecords);
    }
    ReplaceRecords();
    for (PassEntry const& entry : m_vecJoining) {
      std::unique_ptr<QXPass> const joined(entry->second);
      m_Bucket.m_mapPassIndices.erase(entry->first);
      m_Bucket.m_mapPasses.erase(entry);
    }
  }

private:
  // The records under the key; null, and no new entry, if there are none.
  Records* SetLayer(QdcUnicodeString const& strKey, unsigned int nLayer) {
    auto const found = m_Bucket.m_mapPassIndices.find(strKey);
    if (found == m_Bucket.m_mapPassIndices.end()) return nullptr;
    for (QXBucketIndexPackage& record : found->second) record.m_fTextureLayer = static_cast<float>(nLayer);
    return &found->second;
  }

  void JoinUnits(QXPass& master, QXPass& joining, unsigned int nLayer) const {
    for (unsigned int unit = 0; unit < m_Kind.m_nUnitNum; ++unit) {
      master.CreateTextureUnitState()->SetTextureName(joining.GetTextureUnitState(unit)->GetTextureName());
      master.m_nUnitWords[nLayer + unit] = joining.m_nUnitWords[unit];
    }
    master.m_bMultiTexture = 1;
  }

  void ReplaceRecords() {
    if (m_vecJoining.empty()) return;
    Records woven = m_Weaver.Weave();
    if (!woven.empty()) m_Bucket.m_mapPassIndices[m_Master->first] = std::move(woven);
  }

  QXStaticGeometryBucket& m_Bucket;
  FoldKind const& m_Kind;
  PassEntry m_Master;
  std::vector<PassEntry> m_vecJoining;
  RecordWeaver m_Weaver;
};

// A texture that travels as raw bytes may be an animation, which has a texture object of its own.
bool IsRawTexture(QdcUnicodeString const& strName) {
  return QXFileType::ExtNameToFileType(QXFile::GetExt(strName)) == QXFileType::EM_IMAGE_GIF;
}

// Number of units that the pass is folded by, 0 if it is left alone.
std::uint64_t GetFoldableUnits(QXPass* pPass) {
  if (!pPass || pPass->GetPFFMode() == 1 || pPass->GetTextureUnitStatesSize() == 0) return 0;
  QXTextureUnitState const* pUnit = pPass->GetTextureUnitState(0);
  if (!pUnit || IsRawTexture(pUnit->GetTextureName())) return 0;
  return pPass->GetTextureUnitStatesSize();
}

void FoldPasses(
    QXStaticGeometryBucket& bucket, FoldKind const& kind, std::vector<PassEntry> const& entries, int nA, int nB) {
  std::unique_ptr<FoldGroup> group;
  for (PassEntry const& entry : entries) {
    if (!group) {
      group = std::make_unique<FoldGroup>(bucket, kind, entry);
    } else {
      group->Join(entry);
    }
    if (!group->IsFull()) continue;
    group->Finish(nA, nB);
    group.reset();
  }
  if (group) group->Finish(nA, nB);
}

}  // namespace

void QXStaticGeometry::AssginMutiTexture(int nA, int nB) {
  AssginMutiTextureStaticGeometry(nA, nB, m_vecBuckets32);
  AssginMutiTextureStaticGeometry(nA, nB, m_vecBuckets16);
}

void QXStaticGeometry::AssginMutiTextureStaticGeometry(
    int nA, int nB, std::vector<QXStaticGeometryBucket*> vecBuckets) {
  for (QXStaticGeometryBucket* pBucket : vecBuckets) {
    if (!pBucket || !pBucket->m_pVertexPackage) continue;
    std::vector<PassEntry> singles;
    std::vector<PassEntry> pairs;
    for (PassEntry entry = pBucket->m_mapPasses.begin(); entry != pBucket->m_mapPasses.end(); ++entry) {
      std::uint64_t const nUnits = GetFoldableUnits(entry->second);
      if (nUnits > 0) (nUnits == 1 ? singles : pairs).push_back(entry);
    }
    FoldPasses(*pBucket, SingleKind, singles, nA, nB);
    FoldPasses(*pBucket, PairKind, pairs, nA, nB);
  }
}

}  // namespace QXC
