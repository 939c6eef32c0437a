// The smallest renderer plug-in: instead of drawing, it writes a line for each frame. It starts from the null renderer,
// which fills every pure operation, so a plug-in on a real device can replace one operation after the other.
#include <cstdio>
#include <cstring>

#include <QxGraphics3D/frame/QXPluginInterface.h>
#include <QxGraphics3D/testing/QXNullGraphics3D.h>

namespace {

class QXWritingGraphics3D : public QXC::QXNullGraphics3D {
public:
  QXC::QdcUnicodeString const& GetName() const override { return m_strWriterName; }

  void UpdateAllRenderTargets() override {
    QXNullGraphics3D::UpdateAllRenderTargets();
    std::printf("frame %u: %u draw operations\n", ++m_nFrameNumber, GetDrawOperationCount());
  }

private:
  QXC::QdcUnicodeString m_strWriterName{L"writer"};
  unsigned int m_nFrameNumber = 0;
};

}  // namespace

extern "C" QX_PLUGIN_EXPORT unsigned int QXPluginInterfaceVersion() {
  return QXC::QX_PLUGIN_INTERFACE_VERSION;
}

extern "C" QX_PLUGIN_EXPORT void* QXPluginCreate(char const* szKind) {
  if (std::strcmp(szKind, "renderer") != 0) return nullptr;
  // The host casts the pointer to QXGraphics3D, so it must be one before it becomes void*.
  return static_cast<QXC::QXGraphics3D*>(new QXWritingGraphics3D);
}

extern "C" QX_PLUGIN_EXPORT void QXPluginDestroy(void* pObject) {
  delete static_cast<QXC::QXGraphics3D*>(pObject);
}
