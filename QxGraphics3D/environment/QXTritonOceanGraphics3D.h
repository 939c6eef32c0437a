/// @file
/// The ocean of a renderer.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXRotorWashParameters;
class QXTidalStreamWakeParameters;
class QXWakeGeneratorParameters;
class QXWaterImpactParameters;

/// Moving water over a scene, and what disturbs it. The plug-in derives from it, the host makes and drives the object:
/// Initialize once, the setters when something changes, MoveDisturbance for each ship and helicopter and Update once
/// before each frame. The library calls none of it.
///
/// Positions are world coordinates, lengths world units, angles radians, directions of wind and swell clockwise from
/// north. Records of parameters are copied during the call. Disturbances are numbered from 1 by the ocean; a number
/// that it does not know changes nothing.
///
/// Threads: the render thread, outside a frame. Failure: 0; a renderer that cannot do something leaves it out.
class QXGRAPHICS3D_API QXTritonOceanGraphics3D {
public:
  QXTritonOceanGraphics3D();
  /// Neither is used here: a plug-in keeps what it needs of its scene's name and shape.
  QXTritonOceanGraphics3D(QdcUnicodeString const& strSceneName, SceneType eSceneType);
  QXTritonOceanGraphics3D(QXTritonOceanGraphics3D const& other);
  QXTritonOceanGraphics3D& operator=(QXTritonOceanGraphics3D const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Frees what the ocean has on the device, and its disturbances.
  virtual ~QXTritonOceanGraphics3D();

  /// Makes what the device needs; nothing is drawn before. 0 if the device cannot draw it.
  virtual unsigned char Initialize() = 0;
  /// 1: drawn (the default).
  virtual void SetVisible(unsigned char bVisible) = 0;
  virtual unsigned char IsVisible() const = 0;
  /// Place of the water among the groups of drawables that a renderer draws one after the other.
  virtual void SetRenderGroupID(unsigned int nID) = 0;
  /// Moment that tides and the light on the water stand for.
  virtual void SetTime(QdcTime time) = 0;
  /// Height of the water at rest, 0 at first.
  virtual void SetSeaLevel(double dHeight) = 0;
  virtual double GetSeaLevel() const = 0;
  /// Where the wind comes from; its waves run away from there.
  virtual void SetWindDirection(double dDirection) = 0;
  virtual double GetWindDirection() const = 0;
  /// World units a second, 0 at first: without wind there are only swells.
  virtual void SetWindSpeed(double dSpeed) = 0;
  virtual double GetWindSpeed() const = 0;
  /// Beaufort number, 0 to 12: sets waves of that force without regard to the wind's speed; below 0 gives the wind its
  /// say again.
  virtual void SetSeaState(double dBeaufort) = 0;
  /// Below 0 while the wind makes the waves, as at first.
  virtual double GetSeaState() const = 0;
  /// How much crests are sharpened: 0 round waves, 1 as the wind makes them (the default).
  virtual void SetChoppiness(double dChoppiness) = 0;
  virtual double GetChoppiness() const = 0;
  /// Colour of deep water; its alpha says how much it hides of what stands in it.
  virtual void SetWaterColor(QXColorValue3D const& color) = 0;
  virtual QXColorValue3D GetWaterColor() const = 0;
  /// How far one sees under water.
  virtual void SetUnderwaterVisibility(double dDistance) = 0;
  /// 1: crests and wakes carry foam (the default).
  virtual void SetFoamEnable(unsigned char bEnable) = 0;
  /// 1: the water mirrors what the target's reflection companion shows; 0: the sky's colour alone.
  virtual void SetReflectionEnable(unsigned char bEnable) = 0;
  /// Light of the sun along vecDirection, and light from everywhere.
  virtual void SetLight(QXVector3d const& vecDirection, QXColorValue3D const& sun, QXColorValue3D const& ambient) = 0;
  /// One long wave from afar, in addition to those of the wind.
  /// @param dPhase  radians at the origin of the scene when the clock of the ocean is 0
  virtual void AddSwell(double dDirection, double dWaveLength, double dWaveHeight, double dPhase) = 0;
  virtual void RemoveAllSwells() = 0;
  /// Height and normal of the moving surface above or below a position, for ships that ride on it.
  /// @return  0 with both outputs unchanged where there is no water
  virtual unsigned char GetHeight(QXVector3d const& vecPosition, double& dHeight, QXVector3d& vecNormal) const = 0;
  /// A ship, at rest until it is moved. @return  its number, 0 on failure
  virtual unsigned int CreateWakeGenerator(QXWakeGeneratorParameters const& parameters) = 0;
  /// A helicopter, away until it is moved. @return  its number, 0 on failure
  virtual unsigned int CreateRotorWash(QXRotorWashParameters const& parameters) = 0;
  /// A pier or buoy in streaming water, away until it is moved. @return  its number, 0 on failure
  virtual unsigned int CreateTidalStreamWake(QXTidalStreamWakeParameters const& parameters) = 0;
  /// Something falls into the water now and is forgotten when its rings are gone.
  /// @param vecDirection  its flight, of any length
  /// @param dSpeed        world units a second
  virtual void AddWaterImpact(QXWaterImpactParameters const& parameters, QXVector3d const& vecPosition,
      QXVector3d const& vecDirection, double dSpeed) = 0;
  /// Where a disturbance is now. Called before each Update.
  /// @param vecDirection  the ship's way, the rotor's axis, or the way of the stream; of any length
  /// @param dSpeed        of ship or stream; of a rotor its downward wind; world units a second
  virtual void MoveDisturbance(
      unsigned int nNumber, QXVector3d const& vecPosition, QXVector3d const& vecDirection, double dSpeed) = 0;
  /// Its wake fades; the number is not given again.
  virtual void RemoveDisturbance(unsigned int nNumber) = 0;
  /// Moves the ocean's clock on. Called once before each frame; a host that plays a recording gives its own steps.
  virtual void Update(double dSeconds) = 0;

  /// 1: the water is drawn into a target with a texture, which a device may want set up in another way than a window.
  /// Base: nothing.
  virtual void SetRenderWithTextureBuffer(unsigned char bTexture);
};

}  // namespace QXC
