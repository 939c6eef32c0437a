#include <QxGraphics3D/frame/foundation/toolkit/QXStringEx.h>

#include <QxGraphics3D/frame/foundation/toolkit/QXHash.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXIniFile.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXLibraryPath.h>

namespace QXC {

namespace {

struct ResourceTable {
  QXMutex m_Mutex{0};
  QXHash<QdcUnicodeString> m_Texts;
};

// Kept until the process ends: static destructors may still ask for a text.
ResourceTable& Table() {
  static ResourceTable* const pTable = [] {
    auto* const pResult = new ResourceTable;
    detail::QXIniFile file;
    file.Load(detail::DataFolder() + L"strings.ini");
    for (detail::QXIniEntry const& entry : file.GetEntries()) pResult->m_Texts[entry.m_strKey] = entry.m_strValue;
    return pResult;
  }();
  return *pTable;
}

}  // namespace

QdcUnicodeString QXStringEx::LoadResString(QdcUnicodeString const& strKey) {
  ResourceTable& table = Table();
  QXMutexLock lock(table.m_Mutex);
  lock.lock();
  QdcUnicodeString text;
  table.m_Texts.Lookup(strKey, text);
  return text;
}

void QXStringEx::SetResString(QdcUnicodeString const& strKey, QdcUnicodeString const& strText) {
  ResourceTable& table = Table();
  QXMutexLock lock(table.m_Mutex);
  lock.lock();
  table.m_Texts[strKey] = strText;
}

}  // namespace QXC
