#include <QxGraphics3D/environment/QXSkyGraphics3D.h>

namespace QXC {

QXSkyGraphics3D::QXSkyGraphics3D() = default;
QXSkyGraphics3D::QXSkyGraphics3D(QdcUnicodeString const&, SceneType) {}
QXSkyGraphics3D::QXSkyGraphics3D(QXSkyGraphics3D const&) = default;
QXSkyGraphics3D& QXSkyGraphics3D::operator=(QXSkyGraphics3D const&) = default;
QXSkyGraphics3D::~QXSkyGraphics3D() = default;

// A sky that is not there: hosts call all of this without asking whether the renderer has one.

void QXSkyGraphics3D::SetVisible(unsigned char) {}
void QXSkyGraphics3D::Initialize() {}
void QXSkyGraphics3D::SetRenderGroupID(unsigned int) {}
void QXSkyGraphics3D::SetTime(QdcTime) {}
void QXSkyGraphics3D::SetCondition(QXConditionPresets) {}

QXConditionPresets QXSkyGraphics3D::GetCondition() const {
  return CONDITION_CLEAR;
}

void QXSkyGraphics3D::SetPrecipitationType(QXPrecipitationTypes, double) {}

QXPrecipitationTypes QXSkyGraphics3D::GetPrecipitationType() const {
  return PRECIPITATION_NONE;
}

void QXSkyGraphics3D::SetCloudType(QXCloudTypes) {}

QXCloudTypes QXSkyGraphics3D::GetCloudType() const {
  return CLOUD_NONE;
}

void QXSkyGraphics3D::SetCloudVisibleDistance(double) {}

double QXSkyGraphics3D::GetCloudVisibleDistance() const {
  return 0.0;
}

void QXSkyGraphics3D::SetWindMinAltitude(double) {}

double QXSkyGraphics3D::GetWindMinAltitude() const {
  return 0.0;
}

void QXSkyGraphics3D::SetWindMaxAltitude(double) {}

double QXSkyGraphics3D::GetWindMaxAltitude() const {
  return 0.0;
}

void QXSkyGraphics3D::SetWindDirection(double) {}

double QXSkyGraphics3D::GetWindDirection() const {
  return 0.0;
}

void QXSkyGraphics3D::SetWindSpeed(double) {}

double QXSkyGraphics3D::GetWindSpeed() const {
  return 0.0;
}

void QXSkyGraphics3D::SetCloudAltitude(double) {}

double QXSkyGraphics3D::GetCloudAltitude() const {
  return 0.0;
}

void QXSkyGraphics3D::SetRenderWithTextureBuffer(unsigned char) {}

}  // namespace QXC
