/// @file
/// Model caches and their holders beside a plain reference that gets the same calls, for random sequences and fuzzing.
#pragma once

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/model/QXModelData.h>
#include <QxGraphics3D/model/QXModelManager.h>

#include <tests/model/QXToyModels.h>

#include <array>
#include <cstddef>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace QXC {

/// The reference: numbers for models, the rules of the cache written down without pointers.
class QXPlainModelCaches {
public:
  struct Model {
    bool m_bInfo = false;
    std::wstring m_strInfoName;
    /// -1: none.
    int m_nManager = -1;
    int m_nUses = 0;
    QXModelData const* m_pReal = nullptr;
  };
  using Dict = std::map<std::wstring, int>;

  explicit QXPlainModelCaches(std::size_t nManagers) : m_arrDicts(nManagers) {}

  int Make(bool bInfo, std::wstring const& strInfoName, int nManager) {
    m_arrModels.push_back(Model{bInfo, strInfoName, nManager, 0, nullptr});
    return static_cast<int>(m_arrModels.size()) - 1;
  }
  Model& At(int nModel) { return m_arrModels[static_cast<std::size_t>(nModel)]; }
  Dict& DictOf(int nManager) { return m_arrDicts[static_cast<std::size_t>(nManager)]; }

  void Hold(int nModel) {
    if (nModel >= 0) ++At(nModel).m_nUses;
  }
  void Drop(int nModel) {
    if (nModel >= 0 && --At(nModel).m_nUses == 0) Release(nModel);
  }
  void Release(int nModel) {
    int const nManager = At(nModel).m_nManager;
    if (nManager >= 0 && At(nModel).m_bInfo) RemoveKey(nManager, std::wstring(At(nModel).m_strInfoName));
    At(nModel).m_nManager = -1;
    At(nModel).m_bInfo = false;
  }
  void RemoveKey(int nManager, std::wstring const& strKey) {
    auto const place = DictOf(nManager).find(strKey);
    if (place == DictOf(nManager).end()) return;
    int const nModel = place->second;
    DictOf(nManager).erase(place);
    Drop(nModel);
  }
  void RemoveAll(int nManager) {
    Dict const before = DictOf(nManager);
    for (auto const& [strKey, nModel] : before) RemoveKey(nManager, strKey);
  }
  void Store(int nManager, std::wstring const& strKey, int nModel) {
    RemoveKey(nManager, strKey);
    DictOf(nManager)[strKey] = nModel;
    Hold(nModel);
  }
  void Die(int nManager) {
    RemoveAll(nManager);
    for (Model& model : m_arrModels) {
      if (model.m_nManager == nManager) model.m_nManager = -1;
    }
  }
  void CopyDict(int nTo, int nFrom) {
    Dict const copy = DictOf(nFrom);
    for (auto const& [strKey, nModel] : copy) Hold(nModel);
    RemoveAll(nTo);
    DictOf(nTo) = copy;
  }

private:
  std::vector<Model> m_arrModels;
  std::vector<Dict> m_arrDicts;
};

/// Plays moves, four bytes each, and asks after each whether the caches agree with the reference.
class QXModelCacheGame {
public:
  static constexpr std::size_t ManagerNum = 3;
  static constexpr std::size_t HolderNum = 8;
  static constexpr unsigned int MoveNum = 19;
  /// Whether managers end in a move, with everything that has grown in them.
  static constexpr bool IsEnd(unsigned int nMove) { return nMove >= 14 && nMove <= 16; }

  QXModelCacheGame() : m_Plain(ManagerNum) {
    for (auto& pManager : m_arrManagers) pManager = std::make_unique<QXModelManager>();
    m_arrHeld.fill(-1);
  }
  QXModelCacheGame(QXModelCacheGame const&) = delete;
  QXModelCacheGame& operator=(QXModelCacheGame const&) = delete;

  /// @param nWhere,nWhat,nOther  which manager, holder or name; any value
  void Move(unsigned char nMove, unsigned char nWhere, unsigned char nWhat, unsigned char nOther) {
    m_nManager = nWhere % static_cast<int>(ManagerNum);
    m_nHolder = static_cast<std::size_t>(nWhat) % HolderNum;
    m_nOther = static_cast<std::size_t>(nOther) % HolderNum;
    m_nFrom = nOther % static_cast<int>(ManagerNum);
    m_strName = NameOf(nOther);
    using Step = void (QXModelCacheGame::*)();
    static constexpr Step Steps[] = {&QXModelCacheGame::Load, &QXModelCacheGame::Get, &QXModelCacheGame::Create,
        &QXModelCacheGame::CreateFromHeld, &QXModelCacheGame::Drop, &QXModelCacheGame::Share, &QXModelCacheGame::Remove,
        &QXModelCacheGame::RemoveAll, &QXModelCacheGame::ReleaseHeld, &QXModelCacheGame::ReleaseByAddress,
        &QXModelCacheGame::Notify, &QXModelCacheGame::BindAgain, &QXModelCacheGame::CopyModel,
        &QXModelCacheGame::AssignModel, &QXModelCacheGame::EndManager, &QXModelCacheGame::CopyManager,
        &QXModelCacheGame::AssignManager, &QXModelCacheGame::Rename, &QXModelCacheGame::GiveInfo};
    static_assert(std::size(Steps) == MoveNum);
    (this->*Steps[nMove % MoveNum])();
  }

  /// Empty if everything agrees, else what does not.
  std::string Compare() {
    for (int nManager = 0; nManager < static_cast<int>(ManagerNum); ++nManager) {
      for (unsigned char nName = 0; nName < NameNum; ++nName) {
        std::string const strError = CompareEntry(nManager, NameOf(nName));
        if (!strError.empty()) return strError;
      }
    }
    for (std::size_t i = 0; i < HolderNum; ++i) {
      if (m_arrPointers[i].IsNull() != static_cast<unsigned char>(m_arrHeld[i] < 0)) return "a holder is null";
      if (m_arrHeld[i] >= 0) {
        std::string const strError = CompareModel(m_arrPointers[i], m_arrHeld[i], 0);
        if (!strError.empty()) return strError;
      }
    }
    return std::string();
  }

private:
  static constexpr unsigned char NameNum = 8;

  static std::wstring NameOf(unsigned char nName) {
    static constexpr wchar_t const* Names[NameNum] = {
        L"a.toy", L"b.toy", L"c.toy", L"broken.toy", L"empty.toy", L"nameless.toy", L"", L"unknown"};
    return Names[nName % NameNum];
  }
  QXModelManager& Manager(int nManager) { return *m_arrManagers[static_cast<std::size_t>(nManager)]; }
  QXModelManager& Manager() { return Manager(m_nManager); }
  QdcUnicodeString Name() const { return QdcUnicodeString(m_strName.c_str()); }

  std::string CompareEntry(int nManager, std::wstring const& strName) {
    auto const& dict = m_Plain.DictOf(nManager);
    auto const place = dict.find(strName);
    bool const bExpected = place != dict.end();
    QdcUnicodeString const strKey(strName.c_str());
    if (Manager(nManager).IsExists(strKey) != static_cast<unsigned char>(bExpected)) return "IsExists";
    QXModelDataPtr const pModel = Manager(nManager).GetByFileName(strKey);
    if (pModel.IsNull() == static_cast<unsigned char>(bExpected)) return "GetByFileName";
    return bExpected ? CompareModel(pModel, place->second, 1) : std::string();
  }
  std::string CompareModel(QXModelDataPtr const& pModel, int nModel, int nOwn) {
    QXPlainModelCaches::Model const& expected = m_Plain.At(nModel);
    if (pModel.GetPointer() != expected.m_pReal) return "another model";
    if (static_cast<int>(pModel.UseCount()) - nOwn != expected.m_nUses) return "the count of uses";
    ModelDataInfo const* const pInfo = pModel->GetModelDataInfo();
    if ((pInfo != nullptr) != expected.m_bInfo) return "an info too many or too few";
    if (pInfo && pInfo->GetName() != expected.m_strInfoName.c_str()) return "the name of the info";
    QXModelManager const* const pManager = expected.m_nManager < 0 ? nullptr : &Manager(expected.m_nManager);
    return pModel->GetModelManager() == pManager ? std::string() : "the manager of a model";
  }

  /// The real pointer moves into its slot last, as the reference's does: what it held may die and call back.
  void Keep(QXModelDataPtr const& pModel, int nModel) {
    if (nModel >= 0) m_Plain.At(nModel).m_pReal = pModel.GetPointer();
    m_Plain.Hold(nModel);
    int const nFormer = m_arrHeld[m_nHolder];
    m_arrHeld[m_nHolder] = nModel;
    m_Plain.Drop(nFormer);
    m_arrPointers[m_nHolder] = pModel;
  }
  int PlainLoad() {
    bool const bToy = m_strName.size() > 4 && m_strName.substr(m_strName.size() - 4) == L".toy";
    if (!bToy || m_strName == L"broken.toy") return -1;
    std::wstring const strInfoName = m_strName == L"nameless.toy" ? std::wstring() : m_strName;
    int const nModel = m_Plain.Make(m_strName != L"empty.toy", strInfoName, m_nManager);
    m_Plain.Store(m_nManager, m_strName, nModel);
    return nModel;
  }

  void Load() {
    int const nModel = PlainLoad();
    Keep(Manager().Load(Name()), nModel);
  }
  void Get() {
    auto const place = m_Plain.DictOf(m_nManager).find(m_strName);
    int const nModel = place != m_Plain.DictOf(m_nManager).end() ? place->second : PlainLoad();
    Keep(Manager().GetModelData(Name()), nModel);
  }
  void Create() {
    ModelDataInfo info;
    int const nModel = m_Plain.Make(true, m_strName, m_nManager);
    m_Plain.Store(m_nManager, m_strName, nModel);
    Keep(Manager().CreateManual(Name(), &info), nModel);
  }
  /// The info given may be that of the entry which it replaces.
  void CreateFromHeld() {
    int const nSource = m_arrHeld[m_nHolder];
    ModelDataInfo* const pInfo = nSource < 0 ? nullptr : m_arrPointers[m_nHolder]->GetModelDataInfo();
    int nModel = -1;
    if (nSource >= 0 && m_Plain.At(nSource).m_bInfo) {
      m_Plain.At(nSource).m_strInfoName = m_strName;
      nModel = m_Plain.Make(true, m_strName, m_nManager);
      m_Plain.Store(m_nManager, m_strName, nModel);
    }
    Keep(Manager().CreateManual(Name(), pInfo), nModel);
  }
  void Drop() { Keep(QXModelDataPtr(), -1); }
  void Share() { Keep(m_arrPointers[m_nOther], m_arrHeld[m_nOther]); }
  void Remove() {
    m_Plain.RemoveKey(m_nManager, m_strName);
    Manager().Remove(Name());
  }
  void RemoveAll() {
    m_Plain.RemoveAll(m_nManager);
    Manager().RemoveAll();
  }
  void ReleaseHeld() {
    if (m_arrHeld[m_nHolder] < 0) return;
    m_Plain.Release(m_arrHeld[m_nHolder]);
    m_arrPointers[m_nHolder]->Release();
  }
  /// Nobody but the cache may hold it.
  void ReleaseByAddress() {
    auto const place = m_Plain.DictOf(m_nManager).find(m_strName);
    if (place == m_Plain.DictOf(m_nManager).end()) return;
    QXModelData* const pModel = Manager().GetByFileName(Name()).GetPointer();
    m_Plain.Release(place->second);
    pModel->Release();
  }
  void Notify() {
    int const nModel = m_arrHeld[m_nHolder];
    if (nModel >= 0 && m_Plain.At(nModel).m_bInfo) {
      m_Plain.RemoveKey(m_nManager, std::wstring(m_Plain.At(nModel).m_strInfoName));
    }
    Manager().NotifyModelManager(m_arrPointers[m_nHolder].GetPointer());
  }
  void BindAgain() { Keep(QXModelDataPtr(m_arrPointers[m_nOther].GetPointer()), m_arrHeld[m_nOther]); }
  void CopyModel() {
    int const nSource = m_arrHeld[m_nOther];
    if (nSource < 0) return;
    QXPlainModelCaches::Model const source = m_Plain.At(nSource);
    int const nModel = m_Plain.Make(source.m_bInfo, source.m_strInfoName, source.m_nManager);
    Keep(QXModelDataPtr(new QXModelData(*m_arrPointers[m_nOther])), nModel);
  }
  void AssignModel() {
    int const nTo = m_arrHeld[m_nHolder];
    int const nFrom = m_arrHeld[m_nOther];
    if (nTo < 0 || nFrom < 0) return;
    QXPlainModelCaches::Model const source = m_Plain.At(nFrom);
    m_Plain.At(nTo).m_nManager = source.m_nManager;
    if (source.m_bInfo) {
      m_Plain.At(nTo).m_bInfo = true;
      m_Plain.At(nTo).m_strInfoName = source.m_strInfoName;
    }
    *m_arrPointers[m_nHolder] = *m_arrPointers[m_nOther];
  }
  /// From then on the model takes another's key out when it goes.
  void Rename() {
    int const nModel = m_arrHeld[m_nHolder];
    if (nModel < 0 || !m_Plain.At(nModel).m_bInfo) return;
    m_Plain.At(nModel).m_strInfoName = m_strName;
    m_arrPointers[m_nHolder]->GetModelDataInfo()->SetName(Name());
  }
  void GiveInfo() {
    int const nModel = m_arrHeld[m_nHolder];
    if (nModel < 0) return;
    m_Plain.At(nModel).m_bInfo = true;
    m_Plain.At(nModel).m_strInfoName = m_strName;
    auto pInfo = std::make_unique<ModelDataInfo>();
    pInfo->SetName(Name());
    m_arrPointers[m_nHolder]->SetModelDataInfo(pInfo.release());
  }
  void EndManager() {
    m_Plain.Die(m_nManager);
    m_arrManagers[static_cast<std::size_t>(m_nManager)].reset();
    m_arrManagers[static_cast<std::size_t>(m_nManager)] = std::make_unique<QXModelManager>();
  }
  void CopyManager() {
    if (m_nManager == m_nFrom) return;
    // The copy first, so that it holds the models while the former manager dies.
    auto pCopy = std::make_unique<QXModelManager>(Manager(m_nFrom));
    QXPlainModelCaches::Dict const copy = m_Plain.DictOf(m_nFrom);
    for (auto const& [strKey, nModel] : copy) m_Plain.Hold(nModel);
    m_Plain.Die(m_nManager);
    m_Plain.DictOf(m_nManager) = copy;
    m_arrManagers[static_cast<std::size_t>(m_nManager)] = std::move(pCopy);
  }
  void AssignManager() {
    if (m_nManager != m_nFrom) m_Plain.CopyDict(m_nManager, m_nFrom);
    Manager() = Manager(m_nFrom);
  }

  QXToyModels m_Toys;
  QXPlainModelCaches m_Plain;
  std::array<std::unique_ptr<QXModelManager>, ManagerNum> m_arrManagers;
  std::array<QXModelDataPtr, HolderNum> m_arrPointers;
  std::array<int, HolderNum> m_arrHeld;
  int m_nManager = 0;
  int m_nFrom = 0;
  std::size_t m_nHolder = 0;
  std::size_t m_nOther = 0;
  std::wstring m_strName;
};

}  // namespace QXC
