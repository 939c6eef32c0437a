#include <QxGraphics3D/frame/QXPluginModule.h>

#include <QxGraphics3D/frame/QXPluginConfigs.h>
#include <QxGraphics3D/frame/detail/QXModuleFile.h>
#include <QxGraphics3D/frame/detail/QXOneLine.h>

#include <cxxabi.h>
#include <dlfcn.h>

#include <exception>
#include <memory>

namespace QXC {

namespace {

struct ModuleCloser {
  void operator()(void* hModule) const { ::dlclose(hModule); }
};
using ModuleHandle = std::unique_ptr<void, ModuleCloser>;

// "renderer 'ogre': /path/libqx3d_ogre.so "
QdcUnicodeString Subject(
    QdcUnicodeString const& strKind, QdcUnicodeString const& strName, QdcUnicodeString const& strPath) {
  QdcUnicodeString strSubject;
  strSubject.Format(L"%s '%s': %s ", strKind.Cstr(), strName.Cstr(), strPath.Cstr());
  return strSubject;
}

// Runs plug-in code. 0 and the reason if it throws; a thread that is being cancelled passes, since catching that for
// good would end the process.
template <class Call>
unsigned char CallPlugin(Call const& call, QdcUnicodeString& strReason) {
  try {
    call();
    return 1;
  } catch (abi::__forced_unwind&) {
    throw;
  } catch (std::exception const& failure) {
    strReason = QdcUnicodeString::FromUTF8(failure.what());
  } catch (...) {
    strReason = L"an exception that is no std::exception";
  }
  return 0;
}

QdcUnicodeString ConfiguredNames(QXPluginConfigs const& configs, QdcUnicodeString const& strKind) {
  QdcUnicodeString strNames;
  auto const kind = configs.m_dictPlugins.Find(strKind);
  if (configs.m_dictPlugins.IsEOF(kind)) return strNames;
  for (auto position = kind->second.GetStartPosition(); !kind->second.IsEOF(position); ++position) {
    if (!strNames.IsEmpty()) strNames += L", ";
    strNames += position->second.m_strName;
  }
  return strNames;
}

QdcUnicodeString NotConfigured(
    QXPluginConfigs const& configs, QdcUnicodeString const& strKind, QdcUnicodeString const& strName) {
  QdcUnicodeString const strNames = ConfiguredNames(configs, strKind);
  QdcUnicodeString strText;
  if (strNames.IsEmpty()) {
    strText.Format(L"%s '%s': no plug-in of this kind is configured; put its .ini file into %s", strKind.Cstr(),
        strName.Cstr(), QXPluginConfigs::GetDefaultFolder().Cstr());
  } else if (strName.IsEmpty()) {
    strText.Format(L"%s: every plug-in of this kind is disabled; set 'enabled = true' in the .ini file of one of: %s",
        strKind.Cstr(), strNames.Cstr());
  } else {
    strText.Format(L"%s '%s': no plug-in of this name is configured; choose one of: %s", strKind.Cstr(), strName.Cstr(),
        strNames.Cstr());
  }
  QdcArray<QdcUnicodeString> const& arrProblems = configs.GetProblems();
  if (arrProblems.GetSize() != 0) strText += QdcUnicodeString(L" (left out: ") + arrProblems[0] + L")";
  return detail::OneLine(strText);
}

// The three functions of a module and what is wrong with them.
struct Exports {
  QXPluginInterfaceVersionProc m_pfnVersion;
  QXPluginCreateProc m_pfnCreate;
  QXPluginDestroyProc m_pfnDestroy;

  explicit Exports(void* hModule)
      : m_pfnVersion(reinterpret_cast<QXPluginInterfaceVersionProc>(::dlsym(hModule, "QXPluginInterfaceVersion"))),
        m_pfnCreate(reinterpret_cast<QXPluginCreateProc>(::dlsym(hModule, "QXPluginCreate"))),
        m_pfnDestroy(reinterpret_cast<QXPluginDestroyProc>(::dlsym(hModule, "QXPluginDestroy"))) {}

  wchar_t const* GetMissing() const {
    if (!m_pfnVersion) return L"QXPluginInterfaceVersion";
    if (!m_pfnCreate) return L"QXPluginCreate";
    return m_pfnDestroy ? nullptr : L"QXPluginDestroy";
  }

  QdcUnicodeString GetFault() const {
    QdcUnicodeString strFault;
    if (m_pfnVersion) {
      unsigned int nVersion = 0;
      QdcUnicodeString strReason;
      if (CallPlugin([&] { nVersion = m_pfnVersion(); }, strReason) == 0) {
        strFault.Format(L"fails to tell its interface version (%s); install a whole plug-in", strReason.Cstr());
        return strFault;
      }
      if (nVersion != QX_PLUGIN_INTERFACE_VERSION) {
        strFault.Format(L"has interface version %u, this library needs %u; install the plug-in of the same release",
            nVersion, QX_PLUGIN_INTERFACE_VERSION);
        return strFault;
      }
    }
    if (wchar_t const* const szMissing = GetMissing()) {
      strFault.Format(L"does not export %s, so it is no plug-in; correct 'module' in its .ini file", szMissing);
    }
    return strFault;
  }
};

ModuleHandle OpenModule(QdcUnicodeString const& strPath, QdcUnicodeString& strFault) {
  if (wchar_t const* const szFault = detail::FaultOfModuleFile(strPath)) {
    strFault = QdcUnicodeString(szFault) + L"; install the plug-in or correct 'module' in its .ini file";
    return nullptr;
  }
  // A bare name would be looked for among the system's libraries.
  QdcUnicodeString const strFile = strPath.Find(L'/', 0) < 0 ? QdcUnicodeString(L"./") + strPath : strPath;
  ModuleHandle hModule(::dlopen(strFile.ToMBString().Cstr(), RTLD_NOW | RTLD_LOCAL));
  if (!hModule) {
    strFault = QdcUnicodeString(L"cannot be loaded: ") + QdcUnicodeString::FromUTF8(::dlerror()) +
               L"; install what it needs or a plug-in of the same release";
  }
  return hModule;
}

}  // namespace

QXPluginModule::QXPluginModule(QXPluginDefine const& define, QXPluginDestroyProc pfnDestroy,
    QdcUnicodeString const& strKind, QdcUnicodeString const& strName, QdcUnicodeString const& strPath)
    : m_Define(define), m_pfnDestroy(pfnDestroy), m_strKind(strKind), m_strName(strName), m_strPath(strPath) {}

QXPluginModule::~QXPluginModule() = default;

QXPluginModule* QXPluginModule::Load(QXPluginConfigs const& configs, QdcUnicodeString const& strKind,
    QdcUnicodeString const& strName, QdcUnicodeString& strError) {
  QdcUnicodeString const strWanted = strName.IsEmpty() ? configs.GetDefaultName(strKind) : strName;
  QXPluginConfig config;
  QdcUnicodeString strPath;
  if (configs.Find(strKind, strWanted, config, strPath) == 0) {
    strError = NotConfigured(configs, strKind, strWanted);
    return nullptr;
  }
  if (config.m_bEnabled == 0) {
    strError =
        detail::OneLine(Subject(strKind, strWanted, strPath) + L"is disabled; set 'enabled = true' in its .ini file");
    return nullptr;
  }
  return LoadFile(strPath, strKind, strWanted, strError);
}

QXPluginModule* QXPluginModule::LoadFile(QdcUnicodeString const& strPath, QdcUnicodeString const& strKind,
    QdcUnicodeString const& strName, QdcUnicodeString& strError) {
  QdcUnicodeString strFault;
  ModuleHandle hModule = OpenModule(strPath, strFault);
  if (!hModule) {
    strError = detail::OneLine(Subject(strKind, strName, strPath) + strFault);
    return nullptr;
  }
  Exports const exports(hModule.get());
  strFault = exports.GetFault();
  if (!strFault.IsEmpty()) {
    strError = detail::OneLine(Subject(strKind, strName, strPath) + strFault);
    return nullptr;
  }
  strError = L"";
  QXPluginDefine const define(0, reinterpret_cast<void*>(exports.m_pfnCreate), hModule.release());
  return new QXPluginModule(define, exports.m_pfnDestroy, strKind, strName, strPath);
}

void* QXPluginModule::Create(QdcUnicodeString& strError) {
  auto const pfnCreate = reinterpret_cast<QXPluginCreateProc>(m_Define.GetCreateFunc());
  QdcMBString const strKind = m_strKind.ToMBString();
  void* pObject = nullptr;
  QdcUnicodeString strReason;
  unsigned char const bDone = CallPlugin([&] { pObject = pfnCreate(strKind.Cstr()); }, strReason);
  if (pObject) {
    strError = L"";
    return pObject;
  }
  QdcUnicodeString strFault;
  if (bDone) {
    strFault.Format(L"makes no %s; correct the section of 'module' in its .ini file", m_strKind.Cstr());
  } else {
    strFault.Format(L"failed to start: %s; check what the plug-in needs on this machine", strReason.Cstr());
  }
  strError = detail::OneLine(Subject(m_strKind, m_strName, m_strPath) + strFault);
  return nullptr;
}

void QXPluginModule::Destroy(void* pObject) {
  if (pObject) m_pfnDestroy(pObject);
}

QdcUnicodeString const& QXPluginModule::GetKind() const {
  return m_strKind;
}

QdcUnicodeString const& QXPluginModule::GetName() const {
  return m_strName;
}

QdcUnicodeString const& QXPluginModule::GetPath() const {
  return m_strPath;
}

}  // namespace QXC
