#include <apps/qx3d/QXPickTable.h>

#include <iterator>
#include <utility>

namespace QXApp {

namespace {

constexpr int MaxLayer = 255;
constexpr unsigned int MaxObject = 0xFFFFFF;

}  // namespace

unsigned int QXPickTable::Take(QXPickKind eKind, unsigned int nCount, Describe describe) {
  if (nCount == 0 || nCount > MaxObject) return 0;
  Layer& layer = m_mapLayers[eKind];
  if (layer.m_nLayer == 0 || MaxObject - layer.m_nNext + 1 < nCount) {
    if (m_nLastLayer == MaxLayer) return 0;
    // People count from 1.
    layer = {++m_nLastLayer, 1};
  }
  unsigned int const nFirst = m_Numbering.GetID(layer.m_nLayer, static_cast<int>(layer.m_nNext));
  layer.m_nNext += nCount;
  m_mapRuns[nFirst] = {eKind, nCount, std::move(describe)};
  return nFirst;
}

bool QXPickTable::Find(unsigned int nID, QXPickedThing& thing) const {
  auto const it = m_mapRuns.upper_bound(nID);
  if (it == m_mapRuns.begin()) return false;
  auto const& [nFirst, run] = *std::prev(it);
  if (nID - nFirst >= run.m_nCount) return false;
  m_Numbering.GetID(nID, thing.m_nLayer, thing.m_nObject);
  thing.m_eKind = run.m_eKind;
  thing.m_nIndex = nID - nFirst;
  thing.m_strText = run.m_describe(thing.m_nIndex);
  return true;
}

char const* QXPickTable::GetKindName(QXPickKind eKind) {
  switch (eKind) {
  case QXPickKind::Model: return "models";
  case QXPickKind::Static: return "static geometry";
  case QXPickKind::Instance: return "instances";
  case QXPickKind::Icon: return "icons";
  case QXPickKind::Label: return "labels";
  default: return "ground";
  }
}

}  // namespace QXApp
