/// @file
/// The eye of a viewport.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/view/QXFrustum.h>

namespace QXC {

class QXCamera;
class QXViewport;

/// A render function that a host installs: the handle given with it, the camera, the viewport, and a flag of the
/// viewport that says whether the scene is to be drawn.
using QXSceneRenderProc = void (*)(QXInt64, QXCamera*, QXViewport*, unsigned char);

/// A frustum with position, orientation and name, which a viewport asks to render. A plug-in derives from it and fills
/// RenderScene, UpdateViewMatrix and UpdateProMatrix, which are empty here.
/// The position is kept twice, absolute and relative to a movable origin, so that view matrices stay accurate at
/// Earth-centred coordinates. In its own axes the camera looks along -z, with x to the right and y up.
/// Threads: the render thread only.
class QXGRAPHICS3D_API QXCamera : public QXFrustum {
public:
  QXCamera();
  QXCamera(QXCamera const& other);
  QXCamera& operator=(QXCamera const& other);

  /// A camera with an orthographic projection onto -1..1, near 1, far 20000, at a position.
  /// @param eType     SCENE_PLANE keeps the default orientation, looking along -z; for any other value the view looks
  ///                  from the position to the origin, with world z upwards. There the position must not lie on the
  ///                  z axis, and the orientation keeps its default nevertheless.
  /// @param dWidth    of the window in world units; dHeight likewise
  static QXCamera CreateNormalCamera(SceneType eType, double dWidth, double dHeight, QXVector3d const& position);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  ~QXCamera() override;
  /// The view matrix of the absolute position and the orientation; clears the mark of InvalidateView.
  void UpdateViewImpl() override;
  /// The view matrix of the relative position, for coordinates relative to the origin. The stored view stays.
  virtual QXMatrix4d GetViewMatrixInECEF();
  /// Draws the viewport's scene. Called by QXViewport::Update once a frame; empty here.
  /// @param bRenderScene  the viewport's flag: 0 asks for everything but the scene itself
  virtual void RenderScene(QXViewport* pViewport, unsigned char bRenderScene);
  /// Hands the view to the device. Called by NotifyViewport; empty here.
  virtual void UpdateViewMatrix(QXViewport* pViewport);
  /// Computes the projection and hands it to the device. Called by NotifyViewport after UpdateViewMatrix; empty here.
  virtual void UpdateProMatrix();
  /// Asks the plug-in to draw anew, by setting m_bRefresh.
  virtual void Refresh();
  virtual unsigned char IsCameraStateChanged() const;
  virtual void SetCameraStateChanged(unsigned char bChanged);

  /// Stores the viewport, not owned, and calls UpdateViewMatrix and UpdateProMatrix.
  void NotifyViewport(QXViewport* pViewport);
  QXViewport* GetViewport() const;
  QdcUnicodeString GetName() const;
  void SetName(QdcUnicodeString const& strName);
  /// Stores a function for the plug-in's RenderScene; the library never calls it.
  void SetSceneRenderFunc(QXSceneRenderProc pfnRender, QXInt64 nHandle);

  QXVector3d const& GetPosition() const;
  /// Position minus the origin that was set at the last SetPosition.
  QXVector3d const& GetRelativePosition() const;
  QXVector3d const& GetRelativeOrigin() const;
  /// Stores the origin. The relative position follows at the next SetPosition.
  void SetRelativeOrigin(QXVector3d const& origin);
  void SetPosition(QXVector3d const& position);
  void SetPosition(double dX, double dY, double dZ);
  /// Moves by a vector in world axes.
  void Move(QXVector3d const& vector);
  /// Moves by a vector in the camera's axes.
  void MoveRelative(QXVector3d const& vector);

  QXQuaternion4d const& GetOrientation() const;
  void SetOrientation(QXQuaternion4d const& orientation);
  QXVector3d GetDirection() const;
  QXVector3d GetRight() const;
  QXVector3d GetUp() const;
  /// Turns by the shortest way to look along a vector, which need not be a unit vector; the exact reverse turns about
  /// the camera's up axis. The zero vector changes nothing. The fixed yaw axis plays no part.
  void SetDirection(QXVector3d const& direction);
  void SetDirection(double dX, double dY, double dZ);
  /// Turns to look at a point, as SetDirection does.
  void LookAt(QXVector3d const& target);
  void LookAt(double dX, double dY, double dZ);
  /// Turns by a rotation in world axes; the quaternion is normalised first.
  void Rotate(QXQuaternion4d const& rotation);
  /// Turns about a unit axis in world coordinates, angle in radians.
  void Rotate(QXVector3d const& axis, double dAngle);
  /// Turns about the camera's x axis, radians.
  void Pitch(double dAngle);
  /// Turns about the fixed yaw axis if it is in use, as it is by default (world z), else about the camera's y axis.
  void Yaw(double dAngle);
  /// Turns about the camera's z axis, radians.
  void Roll(double dAngle);

  /// Length of the point in view coordinates, with the view brought up to date.
  double GetDistFromEye(QXVector3d const& point);
  /// The same for a point of an object with a model matrix.
  double GetDistFromEye(QXVector3d const& point, QXMatrix4d const& matrix);
  /// Distance of the point from the position.
  double GetDistFromEyeEx(QXVector3d const& point) const;

  /// Pixels that a length covers on the screen, rounded up.
  /// @param dLength    world units
  /// @param dDistance  from the eye, world units
  /// @param dLimit     beyond this distance, or beyond the length if that is more, the result shrinks faster than the
  ///                   perspective asks for, so that far symbols fade
  /// @return  saturated at the range of int. The viewport must be set.
  int ComputerLength2Pix(double dLength, double dDistance, double dLimit) const;

  /// Set by Refresh; the plug-in clears it.
  unsigned char m_bRefresh;
  /// For the plug-in.
  unsigned char m_bCameraFlagA;
  unsigned char m_bCameraFlagB;
  /// Read and cleared by QXRenderTarget::Update, which then tells the target.
  unsigned char m_bTargetNotifyPending;
  /// For the plug-in.
  unsigned char m_bCameraFlagC;
  QXInt64 m_nSceneRenderHandle;
  QXSceneRenderProc m_pfnSceneRender;
  /// The viewport of the last NotifyViewport. Not owned.
  QXViewport* m_pViewport;
  /// For the plug-in.
  float m_fCameraValue;
  QXVector3d m_vecReserved;

protected:
  /// The projection that the camera's own settings describe: perspective by the field of view, the second one being
  /// the horizontal angle, or parallel by the height of the window, 2 where none is set; the width follows by the
  /// aspect. For a renderer's camera whose host has set no matrix.
  /// @return the zero matrix where the settings give one that is not finite: what is no number equals nothing, itself
  ///         included, and would pass for a matrix of the host's for ever
  QXMatrix4d MakeOwnProjection(double dNear, double dFar) const;

  QXVector3d m_vecPosition;
  QXVector3d m_vecRelativeOrigin;
  QXVector3d m_vecRelativePosition;
  QXQuaternion4d m_qOrientation;
  unsigned char m_bFixedYawAxis;
  QXVector3d m_vecFixedYawAxis;
  unsigned char m_bCameraStateChanged;
  QdcUnicodeString m_strName;
};

}  // namespace QXC
