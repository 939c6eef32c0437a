/// @file
/// The sky of a renderer.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>

namespace QXC {

/// Weather that sets many values at once. Any other value is between a plug-in and its host.
enum QXConditionPresets : int {
  CONDITION_CLEAR = 1,
  CONDITION_FAIR = 2,      ///< a few clouds
  CONDITION_OVERCAST = 3,  ///< a closed layer
  CONDITION_STORM = 4,     ///< dark clouds, rain and wind
};

/// What falls from the sky. Any other value is between a plug-in and its host.
enum QXPrecipitationTypes : int {
  PRECIPITATION_NONE = 0,
  PRECIPITATION_RAIN = 1,
  PRECIPITATION_SNOW = 2,
  PRECIPITATION_SLEET = 3,
};

/// Kind of the clouds. Any other value is between a plug-in and its host.
enum QXCloudTypes : int {
  CLOUD_NONE = 0,
  CLOUD_CUMULUS = 1,
  CLOUD_STRATUS = 2,
  CLOUD_CIRRUS = 3,
  CLOUD_CUMULONIMBUS = 4,
};

/// Sky with clouds, precipitation and wind. A plug-in that has one derives from this class; a host may hold an object
/// of the class itself where there is none: every call is safe, nothing is drawn, and nothing is kept, so that a value
/// set on it cannot be read back.
/// Threads: the render thread, outside a frame.
class QXGRAPHICS3D_API QXSkyGraphics3D {
public:
  QXSkyGraphics3D();
  /// Neither is used here: a plug-in keeps what it needs of its scene's name and shape.
  QXSkyGraphics3D(QdcUnicodeString const& strSceneName, SceneType eSceneType);
  QXSkyGraphics3D(QXSkyGraphics3D const& other);
  QXSkyGraphics3D& operator=(QXSkyGraphics3D const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXSkyGraphics3D();

  /// 1: drawn. Base, as of every setter: nothing.
  virtual void SetVisible(unsigned char bVisible);
  /// Makes what the device needs. Called by the host once, before the first frame with the sky.
  virtual void Initialize();
  /// Place of the sky among the groups of drawables that a renderer draws one after the other.
  virtual void SetRenderGroupID(unsigned int nID);
  /// Moment that sun, moon and stars stand for.
  virtual void SetTime(QdcTime time);
  virtual void SetCondition(QXConditionPresets eCondition);
  /// Base: CONDITION_CLEAR.
  virtual QXConditionPresets GetCondition() const;
  /// @param dRate  how much falls, in millimetres an hour
  virtual void SetPrecipitationType(QXPrecipitationTypes eType, double dRate);
  /// Base: PRECIPITATION_NONE.
  virtual QXPrecipitationTypes GetPrecipitationType() const;
  virtual void SetCloudType(QXCloudTypes eType);
  /// Base: CLOUD_NONE.
  virtual QXCloudTypes GetCloudType() const;
  /// How far clouds are drawn, in world units.
  virtual void SetCloudVisibleDistance(double dDistance);
  /// Base, as of every getter below: 0.
  virtual double GetCloudVisibleDistance() const;
  /// Lower and upper end of the layer in which the wind blows, world units above the surface.
  virtual void SetWindMinAltitude(double dAltitude);
  virtual double GetWindMinAltitude() const;
  virtual void SetWindMaxAltitude(double dAltitude);
  virtual double GetWindMaxAltitude() const;
  /// Where the wind comes from: radians clockwise from north.
  virtual void SetWindDirection(double dDirection);
  virtual double GetWindDirection() const;
  /// World units a second.
  virtual void SetWindSpeed(double dSpeed);
  virtual double GetWindSpeed() const;
  /// Base of the clouds, world units above the surface.
  virtual void SetCloudAltitude(double dAltitude);
  virtual double GetCloudAltitude() const;
  /// 1: the sky is drawn into a target with a texture, which a device may want set up in another way than a window.
  virtual void SetRenderWithTextureBuffer(unsigned char bTexture);
};

}  // namespace QXC
