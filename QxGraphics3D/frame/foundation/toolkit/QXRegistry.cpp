#include <QxGraphics3D/frame/foundation/toolkit/QXRegistry.h>

#include <QxGraphics3D/frame/foundation/toolkit/detail/QXIniFile.h>
#include <QxGraphics3D/frame/foundation/toolkit/detail/QXLibraryPath.h>

namespace QXC {

QXRegistry::QXRegistry() = default;
QXRegistry::~QXRegistry() = default;

QXRegistry& QXRegistry::Root() {
  static QXRegistry* const pRoot = [] {
    auto* const pRegistry = new QXRegistry;
    pRegistry->Load(detail::DataFolder() + L"registry.ini");
    return pRegistry;
  }();
  return *pRoot;
}

QXRegistry& QXRegistry::SubFile(QdcUnicodeString const& strName) {
  std::unique_ptr<QXRegistry>& pSection = m_mapSections[strName];
  if (!pSection) pSection = std::make_unique<QXRegistry>();
  return *pSection;
}

unsigned char QXRegistry::Load(QdcUnicodeString const& strPath) {
  detail::QXIniFile file;
  if (!file.Load(strPath)) return 0;
  for (detail::QXIniEntry const& entry : file.GetEntries()) {
    QXRegistry& section = entry.m_strSection.IsEmpty() ? *this : SubFile(entry.m_strSection);
    section[entry.m_strKey] = entry.m_strValue;
  }
  return 1;
}

}  // namespace QXC
