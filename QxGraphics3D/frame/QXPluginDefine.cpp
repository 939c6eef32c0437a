#include <QxGraphics3D/frame/QXPluginDefine.h>

namespace QXC {

QXPluginDefine::QXPluginDefine(int nType, void* pfnCreate, void* hModule)
    : m_nType(nType), m_hModule(hModule), m_pfnCreate(pfnCreate) {}

int QXPluginDefine::GetType() const {
  return m_nType;
}

void* QXPluginDefine::GetHandle() const {
  return m_hModule;
}

void* QXPluginDefine::GetCreateFunc() const {
  return m_pfnCreate;
}

}  // namespace QXC
