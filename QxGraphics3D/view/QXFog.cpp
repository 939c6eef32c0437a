#include <QxGraphics3D/view/QXFog.h>

namespace QXC {

QXFog::~QXFog() = default;

void QXFog::operator=(QXFog other) {  // NOLINT(misc-unconventional-assign-operator)
  m_eMode = other.m_eMode;
  m_Color = other.m_Color;
  m_dStart = other.m_dStart;
  m_dEnd = other.m_dEnd;
  m_dDensity = other.m_dDensity;
}

void QXFog::Reset() {
  *this = QXFog();
}

}  // namespace QXC
