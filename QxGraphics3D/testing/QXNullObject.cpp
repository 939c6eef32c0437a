#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {
namespace {

int g_nLiveCount = 0;

}  // namespace

int QXNullObject::GetLiveCount() {
  return g_nLiveCount;
}

QXNullObject::QXNullObject(std::shared_ptr<QXCallLog> pLog, std::string strLabel)
    : m_pLog(std::move(pLog)), m_strLabel(std::move(strLabel)) {
  ++g_nLiveCount;
}

QXNullObject::~QXNullObject() {
  --g_nLiveCount;
}

}  // namespace QXC
