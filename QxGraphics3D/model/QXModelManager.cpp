#include <QxGraphics3D/model/QXModelManager.h>

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/detail/QXNameIndexParts.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParamsManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXImportParams.h>
#include <QxGraphics3D/frame/foundation/stream/QXFile.h>
#include <QxGraphics3D/model/QXModelData.h>

#include <memory>
#include <new>
#include <utility>

namespace QXC {

template class QXSingleton<QXModelManager>;

namespace {

struct ParserReturn {
  void operator()(QXFileParser* pParser) const { QXFileParseManager::DestroyFileParser(pParser); }
};

}  // namespace

QXModelManager::QXModelManager() {
  Register();
}

QXModelManager::QXModelManager(QXModelManager const& other)
    : m_dictModels(other.m_dictModels), m_nMemorySize(other.m_nMemorySize) {
  Register();
}

QXModelManager& QXModelManager::operator=(QXModelManager const& other) {
  if (this == &other) return *this;
  QdcDict<QdcUnicodeString, QXModelDataPtr> copy(other.m_dictModels);
  RemoveAll();  // models that die meanwhile come back here and must find a whole dictionary
  m_dictModels = std::move(copy);
  m_nMemorySize = other.m_nMemorySize;
  return *this;
}

QXModelManager::~QXModelManager() {
  RemoveAll();
  while (m_pFirstModel) m_pFirstModel->SetModelManager(nullptr);
  // Whichever object is registered: hosts look the manager up anew after a renderer has gone.
  ms_pSingleton = nullptr;
}

void QXModelManager::Register() {
  if (!ms_pSingleton) ms_pSingleton = this;
}

QXModelManager& QXModelManager::GetSingleton() {
  if (!ms_pSingleton) new QXModelManager;  // registers itself
  return *ms_pSingleton;
}

QXModelManager* QXModelManager::GetSingletonPtr() {
  return ms_pSingleton;
}

// --- Looking up ---

QXModelDataPtr QXModelManager::GetModelData(QdcUnicodeString const& strName) {
  QXModelDataPtr pModel = GetByFileName(strName);
  if (pModel.IsNull()) pModel = Load(strName);
  return pModel;
}

QXModelDataPtr QXModelManager::GetByFileName(QdcUnicodeString const& strName) const {
  QXModelDataPtr const* const pEntry = FindEntry(strName);
  return pEntry ? *pEntry : QXModelDataPtr();
}

unsigned char QXModelManager::IsExists(QdcUnicodeString const& strName) const {
  return static_cast<unsigned char>(FindEntry(strName) != nullptr);
}

QXModelDataPtr const* QXModelManager::FindEntry(QdcUnicodeString const& strName) const {
  if (!IsIndexed() && !UpdateIndex(m_dictModels.GetCount())) {
    Position const place = m_dictModels.Find(strName);
    return m_dictModels.IsEOF(place) ? nullptr : &place->second;
  }
  Position const* const pPlace = m_Index.Find(strName);
  return pPlace ? &(*pPlace)->second : nullptr;
}

bool QXModelManager::UpdateIndex(std::uint64_t nNames) const noexcept {
  try {
    bool const bRight = IsIndexed();
    if (!bRight) m_Index.RemoveAll();
    m_Index.Reserve(nNames);
    if (bRight) return true;
    for (Position place = m_dictModels.GetStartPosition(); !m_dictModels.IsEOF(place); ++place) {
      m_Index.Add(place->first, place);
    }
    m_nIndexedChangeCount = m_dictModels.GetChangeCount();
    return true;
  } catch (std::bad_alloc const&) {
    return false;
  }
}

// --- Entering ---

QXModelDataPtr QXModelManager::Load(QdcUnicodeString const& strPath) {
  int const nType = QXFileType::ExtNameToFileType(QXFile::GetExt(strPath));
  std::unique_ptr<QXImportParams> const pParams(QXExchangeParamsManager::MakeImportParams(nType, QdcUnicodeString()));
  if (!pParams) return QXModelDataPtr();
  pParams->SetFilePathName(strPath);
  std::unique_ptr<QXFileParser, ParserReturn> const pParser(QXFileParseManager::CreateFileParser(nType, 0));
  // A parser of pictures has no model to give.
  auto* const pModelParser = dynamic_cast<QXFileParseModel*>(pParser.get());
  if (!pModelParser || !pModelParser->Open(pParams.get())) return QXModelDataPtr();
  QXModelDataPtr pModel(new QXModelData(this, nullptr));
  pModel->SetModelDataInfo(pModelParser->GetModelDataInfo());
  Store(strPath, pModel);
  return pModel;
}

QXModelDataPtr QXModelManager::CreateManual(QdcUnicodeString const& strName, ModelDataInfo* pInfo) {
  if (!pInfo) return QXModelDataPtr();
  pInfo->SetName(strName);
  auto pCopy = std::make_unique<ModelDataInfo>(*pInfo);
  QXModelDataPtr pModel(new QXModelData(this, nullptr));
  pModel->SetModelDataInfo(pCopy.release());
  Store(strName, pModel);
  return pModel;
}

void QXModelManager::Store(QdcUnicodeString const& strName, QXModelDataPtr const& pModel) {
  // A copy: the name may be a text of the model that goes.
  QdcUnicodeString const strKey(strName);  // NOLINT(performance-unnecessary-copy-initialization)
  // The former model first: it takes the key out while it dies, which must not be that of the new one.
  Remove(strKey);
  bool const bIndexed = UpdateIndex(m_dictModels.GetCount() + 1);
  m_dictModels[strKey] = pModel;
  if (!bIndexed) return;
  Position const place = m_dictModels.Find(strKey);
  m_Index.Add(place->first, place);
  m_nIndexedChangeCount = m_dictModels.GetChangeCount();
}

// --- Removing ---

void QXModelManager::Remove(QdcUnicodeString const& strName) {
  QXModelDataPtr const* const pEntry = FindEntry(strName);
  if (!pEntry) return;
  // Held until dictionary and index agree again: it comes back here while it dies, and would have the index built anew.
  QXModelDataPtr const pDying = *pEntry;
  bool const bIndexed = IsIndexed();
  if (bIndexed) m_Index.Remove(strName);
  m_dictModels.RemoveKey(strName);
  if (bIndexed) m_nIndexedChangeCount = m_dictModels.GetChangeCount();
}

void QXModelManager::RemoveAll() {
  // In two passes: a model that dies takes out the key of its name, which need not be the one it stands under.
  QdcArray<QdcUnicodeString> arrKeys;
  for (Position place = m_dictModels.GetStartPosition(); !m_dictModels.IsEOF(place); ++place) arrKeys.Add(place->first);
  for (QdcUnicodeString const& strKey : arrKeys) Remove(strKey);
}

void QXModelManager::NotifyModelManager(QXModelData* pModelData) {
  if (pModelData && pModelData->GetModelDataInfo()) Remove(pModelData->GetModelDataInfo()->GetName());
}

// --- Models that name this manager ---

void QXModelManager::List(QXModelData& model) {
  model.m_pNext = m_pFirstModel;
  if (m_pFirstModel) m_pFirstModel->m_pPrevious = &model;
  m_pFirstModel = &model;
}

void QXModelManager::Unlist(QXModelData& model) {
  if (model.m_pPrevious) {
    model.m_pPrevious->m_pNext = model.m_pNext;
  } else {
    m_pFirstModel = model.m_pNext;
  }
  if (model.m_pNext) model.m_pNext->m_pPrevious = model.m_pPrevious;
  model.m_pPrevious = nullptr;
  model.m_pNext = nullptr;
}

}  // namespace QXC
