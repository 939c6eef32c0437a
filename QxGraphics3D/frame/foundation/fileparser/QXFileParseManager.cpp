#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseManager.h>

// The loader of modules stands in a folder behind this one; only the source reaches forward.
#include <QxGraphics3D/frame/QXPluginConfigs.h>
#include <QxGraphics3D/frame/QXPluginInterface.h>
#include <QxGraphics3D/frame/QXPluginModule.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <map>

namespace QXC {

namespace {

struct ParserProcs {
  QXFileParserCreateProc m_pfnCreate = nullptr;
  QXFileParserDestroyProc m_pfnDestroy = nullptr;
};

struct ManagerState {
  std::map<int, ParserProcs> m_mapRegistered;
  /// The model reader once it is loaded.
  QXPluginModule* m_pModelReader = nullptr;
  /// Where each living parser goes back to; a null procedure means the model reader.
  std::map<QXFileParser*, QXFileParserDestroyProc> m_mapParsers;
  QdcUnicodeString m_strError;
};

/// Never destroyed: parsers may be given back while other statics die.
ManagerState& State() {
  static ManagerState* pState = new ManagerState;
  return *pState;
}

QXFileParser* CreateRegistered(ManagerState& state, int nType, ParserProcs const& procs) {
  QXFileParser* pParser = procs.m_pfnCreate();
  if (pParser == nullptr) {
    state.m_strError.Format(L"the parser registered for file type %d could not be made", nType);
    return nullptr;
  }
  state.m_mapParsers[pParser] = procs.m_pfnDestroy;
  return pParser;
}

QXFileParser* CreateFromModule(ManagerState& state) {
  if (state.m_pModelReader == nullptr) {
    QXPluginConfigs const configs;
    state.m_pModelReader = QXPluginModule::Load(configs, QX_PLUGIN_KIND_MODEL_READER, L"", state.m_strError);
    if (state.m_pModelReader == nullptr) return nullptr;
  }
  // The module gives the address of a QXFileParseModel, so that is what it must be turned back into first.
  auto* pParser = static_cast<QXFileParseModel*>(state.m_pModelReader->Create(state.m_strError));
  if (pParser != nullptr) state.m_mapParsers[pParser] = nullptr;
  return pParser;
}

}  // namespace

QXFileParser* QXFileParseManager::CreateFileParser(int nType, unsigned char /*bFlag*/) {
  ManagerState& state = State();
  state.m_strError = L"";
  auto const itRegistered = state.m_mapRegistered.find(nType);
  if (itRegistered != state.m_mapRegistered.end()) return CreateRegistered(state, nType, itRegistered->second);
  if (QXFileType::IsModelType(nType)) return CreateFromModule(state);
  state.m_strError.Format(L"there is no parser for file type %d", nType);
  return nullptr;
}

void QXFileParseManager::DestroyFileParser(QXFileParser* pParser) {
  ManagerState& state = State();
  auto const it = state.m_mapParsers.find(pParser);
  if (it == state.m_mapParsers.end()) return;
  QXFileParserDestroyProc const pfnDestroy = it->second;
  state.m_mapParsers.erase(it);
  if (pfnDestroy != nullptr) {
    pfnDestroy(pParser);
  } else {
    state.m_pModelReader->Destroy(static_cast<QXFileParseModel*>(pParser));
  }
}

QdcUnicodeString const& QXFileParseManager::GetErrorText() {
  return State().m_strError;
}

void QXFileParseManager::RegisterFileParser(
    int nType, QXFileParserCreateProc pfnCreate, QXFileParserDestroyProc pfnDestroy) {
  ManagerState& state = State();
  if (pfnCreate == nullptr || pfnDestroy == nullptr) {
    state.m_mapRegistered.erase(nType);
  } else {
    state.m_mapRegistered[nType] = ParserProcs{pfnCreate, pfnDestroy};
  }
}

}  // namespace QXC
