/// @file
/// A visibility query of the null renderer.
#pragma once

#include <QxGraphics3D/renderop/QXQueryOperation3D.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

/// Nothing is drawn, so a finished query counts no pixel; its result is ready at once.
class QXNullQueryOperation3D final : public QXQueryOperation3D, public QXNullObject {
public:
  QXNullQueryOperation3D(std::shared_ptr<QXCallLog> pLog, std::string strLabel, QdcUnicodeString const& strName)
      : QXNullObject(std::move(pLog), std::move(strLabel)), m_strName(strName) {}
  ~QXNullQueryOperation3D() override { Record("destroyed"); }

  QdcUnicodeString const& GetName() const override { return m_strName; }
  void BeginQuery() override {
    Record("BeginQuery");
    m_bReady = 0;
  }
  void EndQuery() override {
    Record("EndQuery");
    m_bReady = 1;
  }
  unsigned char IsResultReady() const override { return m_bReady; }
  unsigned int GetPixelCount() override { return 0; }

private:
  QdcUnicodeString m_strName;
  unsigned char m_bReady = 0;
};

}  // namespace QXC
