#include <QxGraphics3D/environment/QXTritonOceanGraphics3D.h>

namespace QXC {

QXTritonOceanGraphics3D::QXTritonOceanGraphics3D() = default;
QXTritonOceanGraphics3D::QXTritonOceanGraphics3D(QdcUnicodeString const&, SceneType) {}
QXTritonOceanGraphics3D::QXTritonOceanGraphics3D(QXTritonOceanGraphics3D const&) = default;
QXTritonOceanGraphics3D& QXTritonOceanGraphics3D::operator=(QXTritonOceanGraphics3D const&) = default;
QXTritonOceanGraphics3D::~QXTritonOceanGraphics3D() = default;

void QXTritonOceanGraphics3D::SetRenderWithTextureBuffer(unsigned char) {}

}  // namespace QXC
