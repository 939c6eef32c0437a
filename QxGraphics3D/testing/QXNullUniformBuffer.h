/// @file
/// A block of shader parameters of the null renderer.
#pragma once

#include <cstddef>

#include <QxGraphics3D/frame/QXUniformBuffer.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

/// Adds up the size of its definitions.
class QXNullUniformBuffer final : public QXUniformBuffer, public QXNullObject {
public:
  QXNullUniformBuffer(std::shared_ptr<QXCallLog> pLog, QdcUnicodeString const& strName)
      : QXNullObject(std::move(pLog), "uniform buffer " + QXCallLog::Quote(strName)) {}
  ~QXNullUniformBuffer() override { Record("destroyed"); }

  void AddUniformDefinition(QdcUnicodeString const& strName, unsigned int nElementSize, unsigned int nCount) override {
    Record("AddUniformDefinition", strName, nElementSize, nCount);
    m_nByteCount += std::size_t{nElementSize} * nCount;
  }
  void Initialize() override { Record("Initialize"); }

  std::size_t GetByteCount() const { return m_nByteCount; }

private:
  std::size_t m_nByteCount = 0;
};

}  // namespace QXC
