#include <QxGraphics3D/atlas/QXTextureImageEx.h>

#include <QxGraphics3D/frame/foundation/base3d/QXTextureData.h>

#include <ctime>

namespace QXC {

QXTextureImageEx::QXTextureImageEx(QXTextureImageManagerEx* pManager)
    : m_pManager(pManager), m_nCreateTime(static_cast<unsigned int>(std::clock())) {}

QXTextureImageEx::~QXTextureImageEx() {
  delete m_pTextureData;
}

}  // namespace QXC
