#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>

// The loader of modules stands in a folder behind this one; only the source reaches forward.
#include <QxGraphics3D/frame/QXPluginConfigs.h>
#include <QxGraphics3D/frame/QXPluginInterface.h>
#include <QxGraphics3D/frame/QXPluginModule.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/detail/QXFileTypeTable.h>

#include <map>
#include <mutex>
#include <utility>

namespace QXC {

namespace {

struct ParserProcs {
  QXFileParserCreateProc m_pfnCreate = nullptr;
  QXFileParserDestroyProc m_pfnDestroy = nullptr;
};

struct ManagerState {
  /// For the two maps. Never held while a procedure or a module runs: it may come back here.
  std::mutex m_Mutex;
  std::map<int, ParserProcs> m_mapRegistered;
  /// Where each living parser goes back to; a null procedure means the model reader.
  std::map<QXFileParser*, QXFileParserDestroyProc> m_mapParsers;
  /// For the model reader: one thread loads it, and its module is asked by one thread at a time.
  std::mutex m_ModuleMutex;
  /// The model reader once it is loaded.
  QXPluginModule* m_pModelReader = nullptr;
};

/// Never destroyed: parsers may be given back while other statics die.
ManagerState& State() {
  static ManagerState* pState = new ManagerState;
  return *pState;
}

QdcUnicodeString& ErrorText() {
  thread_local QdcUnicodeString strError;
  return strError;
}

/// What is remembered of a parser, made before the parser is: if memory ran out afterwards, nobody would have it to give
/// it back.
class ParserRecord {
public:
  explicit ParserRecord(QXFileParserDestroyProc pfnDestroy) {
    std::map<QXFileParser*, QXFileParserDestroyProc> mapOne{{nullptr, pfnDestroy}};
    m_Node = mapOne.extract(mapOne.begin());
  }

  void Enter(ManagerState& state, QXFileParser* pParser) {
    m_Node.key() = pParser;
    std::lock_guard const lock(state.m_Mutex);
    auto const result = state.m_mapParsers.insert(std::move(m_Node));
    if (!result.inserted) result.position->second = result.node.mapped();
  }

private:
  std::map<QXFileParser*, QXFileParserDestroyProc>::node_type m_Node;
};

/// The procedures of a type; null ones if there are none. What was registered for the type alone stands before its row.
ParserProcs FindProcs(ManagerState& state, int nType, QXFileTypeRow const& row) {
  std::lock_guard const lock(state.m_Mutex);
  auto const it = state.m_mapRegistered.find(nType);
  return it != state.m_mapRegistered.end() ? it->second : ParserProcs{row.m_pfnCreate, row.m_pfnDestroy};
}

QXFileParser* CreateByProcs(ManagerState& state, int nType, ParserProcs const& procs) {
  ParserRecord record(procs.m_pfnDestroy);
  QXFileParser* pParser = procs.m_pfnCreate();
  if (pParser == nullptr) {
    ErrorText().Format(L"the parser registered for file type %d could not be made", nType);
    return nullptr;
  }
  record.Enter(state, pParser);
  return pParser;
}

QXFileParser* CreateFromModule(ManagerState& state) {
  std::lock_guard const lock(state.m_ModuleMutex);
  if (state.m_pModelReader == nullptr) {
    QXPluginConfigs const configs;
    state.m_pModelReader = QXPluginModule::Load(configs, QX_PLUGIN_KIND_MODEL_READER, L"", ErrorText());
    if (state.m_pModelReader == nullptr) return nullptr;
  }
  ParserRecord record(nullptr);
  // The module gives the address of a QXFileParseModel, so that is what it must be turned back into first.
  auto* pParser = static_cast<QXFileParseModel*>(state.m_pModelReader->Create(ErrorText()));
  if (pParser != nullptr) record.Enter(state, pParser);
  return pParser;
}

}  // namespace

QXFileParser* QXFileParseManager::CreateFileParser(int nType, unsigned char /*bFlag*/) {
  ManagerState& state = State();
  ErrorText() = L"";
  QXFileTypeRow const row = detail::QXFileTypeTable::Instance().FindType(nType);
  ParserProcs const procs = FindProcs(state, nType, row);
  if (procs.m_pfnCreate != nullptr) return CreateByProcs(state, nType, procs);
  if (row.m_nType >= 0 && row.m_eKind == EM_FILE_MODEL) return CreateFromModule(state);
  ErrorText().Format(L"there is no parser for file type %d", nType);
  return nullptr;
}

void QXFileParseManager::DestroyFileParser(QXFileParser* pParser) {
  ManagerState& state = State();
  QXFileParserDestroyProc pfnDestroy = nullptr;
  {
    std::lock_guard const lock(state.m_Mutex);
    auto const it = state.m_mapParsers.find(pParser);
    if (it == state.m_mapParsers.end()) return;
    pfnDestroy = it->second;
    state.m_mapParsers.erase(it);
  }
  if (pfnDestroy != nullptr) {
    pfnDestroy(pParser);
  } else {
    std::lock_guard const lock(state.m_ModuleMutex);
    state.m_pModelReader->Destroy(static_cast<QXFileParseModel*>(pParser));
  }
}

QdcUnicodeString const& QXFileParseManager::GetErrorText() {
  return ErrorText();
}

void QXFileParseManager::RegisterFileParser(
    int nType, QXFileParserCreateProc pfnCreate, QXFileParserDestroyProc pfnDestroy) {
  ManagerState& state = State();
  std::lock_guard const lock(state.m_Mutex);
  if (pfnCreate == nullptr || pfnDestroy == nullptr) {
    state.m_mapRegistered.erase(nType);
  } else {
    state.m_mapRegistered[nType] = ParserProcs{pfnCreate, pfnDestroy};
  }
}

unsigned char QXFileParseManager::RegisterFileType(QXFileTypeRow const& row) {
  return static_cast<unsigned char>(detail::QXFileTypeTable::Instance().Register(row));
}

void QXFileParseManager::UnregisterFileType(int nType) {
  detail::QXFileTypeTable::Instance().Unregister(nType);
}

}  // namespace QXC
