/// @file
/// The abstract renderer: what hosts drive, what the library's managers call and what a plug-in fills.
#pragma once

#include <map>
#include <set>
#include <utility>

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/QXGraphics3DCapabilities.h>
#include <QxGraphics3D/frame/QXResourceHolder.h>
#include <QxGraphics3D/frame/QXSceneOperation.h>
#include <QxGraphics3D/frame/foundation/base/QDCCharset.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcDict.h>
#include <QxGraphics3D/frame/foundation/base/QdcPoint.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXMutex.h>

namespace QXC {

class QXBloomSetting;
class QXBoundingBox;
class QXCamera;
class QXFog;
class QXGeometry;
class QXHwInstancingManager;
class QXLight;
class QXModelManager;
class QXPass;
class QXRenderOperation;
class QXRenderOperation3D;
class QXRenderOperationManager;
class QXRenderOperationOverlay;
class QXRenderTarget;
class QXSkyGraphics3D;
class QXTexture;
class QXTextureManager;
class QXTextureUnitState;
class QXTritonOceanGraphics3D;
class QXUniformBuffer;
class QXViewport;

/// The head-mounted display in use. Any other value survives and counts as none of the named ones.
enum HMDMode : int {
  HMD_OCULUS = 0,
  HMD_HTC = 1,
  HMD_NONE = 2,
};

/// Per-frame update of a manually rendered object: the object, its view matrix, its projection matrix.
using QXROManualUpdateProc = void (*)(void*, QXMatrix4d, QXMatrix4d);
/// Points of a hand-held controller: the context given with the hook, the points, their number.
using QXHtcControllerPointsProc = void (*)(void*, QdcPoint3D*, int);
/// Picking by a controller: the view handle given with the hook, start and end of the picking ray.
using QXVRPickingObjectProc = void (*)(QXInt64, QXVector3d&, QXVector3d&);
/// A controller event: the view handle given with the hook, the event's number.
using QXVRControllerHandleProc = void (*)(QXInt64, int);

/// Near and far distance of a manually rendered object, in world units.
struct QXROManualNearFarDistInfo {
  double m_dNearDist;
  double m_dFarDist;
};

/// The abstract renderer. One object stands for one graphics system; a plug-in derives from it.
///
/// The class keeps the registry of render targets and their update order, the arithmetic between world and
/// window, the registries of manually rendered objects, and the managers that live as long as the renderer.
/// It makes no graphics call of its own.
///
/// What holds for every operation unless its own comment says otherwise:
/// - It is called on the rendering thread. No operation of this class takes a lock.
/// - Arguments given by pointer or reference are read or written during the call only.
/// - A pure operation is the plug-in's, called by hosts and by the plug-in's own classes, between frames or
///   inside RenderScene. It never throws; it answers failure with 0 or null, and GetErrorText gives the reason.
/// - Window coordinates are pixels with the origin at the bottom left, angles radians, distances world units.
/// - The members are public because a plug-in's targets and cameras, which are classes of their own, write them.
///
/// A plug-in that deletes m_pTextureManager, m_pHwInstancingManager or m_pResourceHolder in its destructor sets
/// the member to null there: the base destructor runs afterwards and calls ClearResource.
class QXGRAPHICS3D_API QXGraphics3D {
public:
  /// Creates the model manager. No target exists, all matrices of the view are zero.
  QXGraphics3D();
  QXGraphics3D(QXGraphics3D const&) = delete;
  QXGraphics3D& operator=(QXGraphics3D const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Runs this class's ClearResource. Targets stay alive: a host that wants them deleted calls ShutDown first.
  virtual ~QXGraphics3D();

  /// Starts the graphics device; strResourcePath is the folder of the plug-in's own media, empty for the one
  /// beside its module. Called once by the host before anything else. 0: GetErrorText says why.
  virtual unsigned char Initialize(QdcUnicodeString const& strResourcePath) = 0;
  /// The name under which the plug-in is configured, for example "ogre". Valid before Initialize.
  virtual QdcUnicodeString const& GetName() const = 0;

  /// The kind of graphics system. Base: 0.
  virtual _Graphics3DType GetType() const;

  /// The reason of the last failed call in one line, empty if none failed. The string lives until the next call.
  virtual QdcUnicodeString const& GetErrorText() const = 0;
  /// Makes an empty scene that cameras and drawables name. 0 if the name is taken or empty.
  virtual unsigned char CreateScene(QdcUnicodeString const& strName) = 0;
  /// Deletes a scene with its nodes, lights and cameras. The drawables in it are detached and stay their owners'.
  /// An unknown name is ignored.
  virtual void DestroyScene(QdcUnicodeString const& strName) = 0;
  /// Makes a window target of nWidth x nHeight pixels in the host's window hWindow, or in a window of the
  /// plug-in's own when hWindow is null. The result is not attached: the caller hands it to AttachRenderTarget,
  /// and from then on the renderer owns it. Null on failure.
  virtual QXRenderTarget* CreateRenderWindow(QdcUnicodeString const& strName, HWND hWindow, unsigned int nWidth,
      unsigned int nHeight, unsigned char bFullScreen) = 0;

  /// Deletes an attached target and its registry entry; a target that is not attached is ignored. The active
  /// target pointer is not touched: after deleting the active target, attach another. Linear in the targets.
  virtual void DeleteRenderTarget(QXRenderTarget* pTarget);

  /// Makes a camera that renders the named scene (empty: that of the target that it draws into). It belongs to the
  /// renderer until DestroyCamera or the end of its scene. Null if the scene is unknown or the name taken.
  virtual QXCamera* CreateCamera(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) = 0;
  /// Deletes a camera of this renderer after NotifyCameraRemoved has told the targets. Null is ignored.
  virtual void DestroyCamera(QXCamera* pCamera) = 0;
  /// The camera of that name, null if there is none.
  virtual QXCamera* GetCamera(QdcUnicodeString const& strName) const = 0;

  /// Deletes every attached target, each object once even if it stands under two names, and empties the
  /// registry. The active, reflect and selection pointers keep their values and dangle if they pointed there.
  virtual void ShutDown();

  /// 1 between a successful Initialize and the device's end.
  virtual unsigned char IsInitialized() const = 0;
  /// 1 if a scene of that name exists.
  virtual unsigned char HasScene(QdcUnicodeString const& strName) const = 0;
  /// Makes the viewport current on the device, with its pixel rectangle, and stores it in m_pViewport. Called by
  /// the plug-in's camera at the start of RenderScene. Null unbinds.
  virtual void SetViewport(QXViewport* pViewport) = 0;
  /// Opens drawing into the current viewport: its clear flags are applied. Called by the plug-in's camera.
  virtual void BeginFrame() = 0;
  /// Closes what BeginFrame opened; the device state is the default one again.
  virtual void EndFrame() = 0;
  /// Light that reaches every surface of immediate drawing (Render and the Render... operations below).
  virtual void SetAmbientLight(QXColorValue3D const& color) = 0;
  /// 0: one colour a face, 1: colours blended over the face, 2: lit at every pixel.
  virtual void SetShadingMode(int nMode) = 0;
  /// 0 draws colours as they are, 1 lights them.
  virtual void SetLightingEnable(unsigned char bEnable) = 0;

  /// One frame. For every target in name order: an active one becomes the active target; one with the refresh
  /// flag is updated once, whatever its other flags, and the flag cleared; else an active, auto-updated one is
  /// updated; else an always-active one is updated as if active, with its three companions attached meanwhile.
  /// Allocates nothing. A target must not attach or delete targets while it updates.
  virtual void UpdateAllRenderTargets();

  /// Shows what was drawn on every attached target that has a window. Called by the host after
  /// UpdateAllRenderTargets; bWaitForVerticalBlank as in QXRenderTarget::SwapBuffers.
  virtual void SwapAllRenderTargetBuffers(unsigned char bWaitForVerticalBlank) = 0;
  /// Updates those targets of m_PrioritisedRenderTargets that are active and auto-updated, lowest number first, each
  /// the active target from then on.
  virtual void UpdatePrioritisedRenderTargets() = 0;

  /// Registers the target under its GetName and makes it the active one; the renderer owns it from here on. An
  /// entry of the same name is overwritten: its target is neither deleted nor told.
  virtual void AttachRenderTarget(QXRenderTarget* pTarget);
  /// The target of that name, null if there is none.
  virtual QXRenderTarget* GetRenderTarget(QdcUnicodeString const& strName) const;
  virtual QXRenderTarget* GetActiveRenderTarget() const;
  /// Takes an object that its owner draws by hand out of its scene. Base: nothing.
  virtual void RemoveManualRenderObject(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName);
  /// Puts an object that its owner draws by hand into a scene, or brings it up to date there, and gives the name
  /// under which it stands. Base: ignores both, the empty string.
  virtual QdcUnicodeString UpdateManualRenderObject(
      QXRenderOperation3D* pRenderOperation, QdcUnicodeString const& strSceneName);
  /// Sun of the active target, in world coordinates. The active target must exist.
  virtual void SetSunPosition(QXVector3d const& vecPosition);
  /// Sun of the active target. The active target must exist.
  virtual QXVector3d GetSunPosition() const;
  /// Sun light of the active target. The active target must exist.
  virtual void SetSunLightEnable(unsigned char bEnable);
  /// Base: nothing.
  virtual void SetManualRenderObjectVisible(QdcUnicodeString const& strName, unsigned char bVisible);

  /// Makes a light as a fresh QXLight is, switched on. It lights what stands in its scene and goes with it. Called by
  /// hosts, outside a frame. 0 if the name is empty or taken, by a light of any scene, or the scene unknown.
  virtual unsigned char CreateLight(QdcUnicodeString const& strName, QdcUnicodeString const& strSceneName) = 0;
  /// Deletes a light; an unknown name is ignored.
  virtual void DestroyLight(QdcUnicodeString const& strName) = 0;
  /// Switches a light; an unknown name is ignored.
  virtual void SetLightEnable(QdcUnicodeString const& strName, unsigned char bEnable) = 0;
  /// Gives a light all its values, which are copied; whether it is switched on stays. Called by hosts, outside a frame,
  /// as often as something of it changes. 0 for an unknown name.
  virtual unsigned char SetLight(QdcUnicodeString const& strName, QXLight const& light) = 0;

  /// World position of a light; an unknown name is ignored. Base: nothing.
  virtual void SetLightPos(QdcUnicodeString const& strName, QXVector3d const& vecPosition);
  /// Brings the lights to the current view matrix, after the camera moved. Base: nothing.
  virtual void UpdateLightPos();
  /// Base: nothing.
  virtual void SetMaterialEnabled(unsigned char bEnable);

  /// Material of immediate drawing; dShininess is the exponent of the highlight, 0 for none.
  virtual void SetMaterialColor(QXColorValue3D const& ambient, QXColorValue3D const& diffuse,
      QXColorValue3D const& specular, QXColorValue3D const& emissive, double dShininess) = 0;
  /// Whether a pixel is tested against the depth buffer before it is drawn.
  virtual void SetDepthCheckEnable(unsigned char bEnable) = 0;
  /// Whether a drawn pixel stores its depth.
  virtual void SetDepthWriteEnable(unsigned char bEnable) = 0;
  /// Depth comparison: 0 never, 1 always, 2 less, 3 less or equal (default), 4 equal, 5 not equal,
  /// 6 greater or equal, 7 greater.
  virtual void SetDepthFunction(int nFunction) = 0;
  /// Keeps coplanar faces apart: dConstant in depth steps, dSlope times the face's depth slope; above 0 is farther.
  virtual void SetDepthBias(double dConstant, double dSlope) = 0;

  /// 1 keeps every draw from changing the colour buffer until 0 unlocks it. Base: nothing.
  virtual void SetColourBufferLock(unsigned char bLock);

  /// Which colour channels a draw may change.
  virtual void SetColourBufferWriteEnable(
      unsigned char bRed, unsigned char bGreen, unsigned char bBlue, unsigned char bAlpha) = 0;
  /// How a drawn colour joins the one in the buffer, each factor: 0 one, 1 zero, 2 destination colour, 3 source
  /// colour, 4 to 7 one minus destination colour, source colour, destination alpha, source alpha, 8 destination
  /// alpha, 9 source alpha.
  virtual void SetSceneBlending(int nSourceFactor, int nDestFactor) = 0;
  /// Drops pixels whose alpha (0 to 255) fails the comparison; numbers as in SetDepthFunction.
  virtual void SetAlphaRejectSettings(int nFunction, unsigned char nValue) = 0;
  /// Fog of a scene, copied, in place of the one it has; scenes are made without any. Called by hosts, outside a frame.
  /// An unknown scene is ignored.
  virtual void SetFog(QdcUnicodeString const& strSceneName, QXFog const& fog) = 0;
  /// Stores the view matrix in m_matView and hands it to the device. Called by the plug-in's camera.
  virtual void SetViewMatrix(QXMatrix4d const& matView) = 0;
  /// Stores the projection matrix in m_matProjection and hands it to the device. Called by the plug-in's camera.
  virtual void SetProjectionMatrix(QXMatrix4d const& matProjection) = 0;

  /// Fills the palette m_arrWorldMatrices from index 0 with at most 256 of nCount matrices, then calls
  /// SetWorldMatrix once with the identity.
  virtual void SetWorldMatrices(QXMatrix4d const* pMatrices, unsigned short nCount);

  /// World matrix of what is drawn next. Called by SetWorldMatrices and by the plug-in's drawables.
  virtual void SetWorldMatrix(QXMatrix4d const& matWorld) = 0;
  /// Perspective projection in the row-vector convention, clip space -w..w on all axes; dFovY is the whole
  /// vertical angle, dAspect width by height.
  virtual void MakeProjectionMatrix(double dFovY, double dAspect, double dNear, double dFar, QXMatrix4d& matOut) = 0;
  /// Perspective projection of an off-centre window given on the near plane, as MakeProjectionMatrix.
  virtual void MakeFrustumMatrix(
      double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut) = 0;
  /// Turns a projection matrix of this library into the one the device takes (depth range, handedness).
  virtual void ConvertProjectionMatrix(QXMatrix4d const& matIn, QXMatrix4d& matOut) const = 0;
  /// Makes plane, given in view space, the near plane of matProjection: clips reflections at the water.
  virtual void ApplyObliqueDepthProjection(QXMatrix4d& matProjection, QXPlane const& plane) const = 0;
  /// The depth that the device puts on the near plane, -1 or 0.
  virtual double GetMinimumDepthInputValue() const = 0;
  /// The depth that the device puts on the far plane, 1.
  virtual double GetMaximumDepthInputValue() const = 0;

  /// Parallel projection of the window and depth range given. Base: leaves matOut alone.
  virtual void MakeOrthoMatrix(
      double dLeft, double dRight, double dBottom, double dTop, double dNear, double dFar, QXMatrix4d& matOut);

  /// Switches immediate drawing to one unit a pixel over the current viewport, origin bottom left, no depth test.
  virtual void BeginScreenProjection() = 0;
  /// Returns to the matrices that stood before BeginScreenProjection.
  virtual void EndScreenProjection() = 0;

  /// Narrows the projection to dWidth x dHeight pixels around a window point, for picking. Base: nothing.
  virtual void MakePickRadial(double dX, double dY, double dWidth, double dHeight);
  /// Takes back MakePickRadial. Base: nothing.
  virtual void UnMakePickRadial();
  /// World plane whose negative side is cut away. Base: nothing.
  virtual void SetClipPlane(unsigned short nIndex, QXPlane const& plane);

  /// Switches a clip plane; indexes beyond the device's planes are ignored.
  virtual void SetClipPlaneEnable(unsigned short nIndex, unsigned char bEnable) = 0;

  /// The current viewport, null before the first frame.
  virtual QXViewport* GetViewport() const;
  /// Hands the state's filters of types 0, 1 and 2 to SetTextureUnitFiltering; nothing else of it takes effect.
  virtual void SetTextureUnitSettings(unsigned int nUnit, QXTextureUnitState const& state);
  /// Takes the texture off a unit. Base: nothing.
  virtual void DisableTextureUnit(unsigned int nUnit);
  /// Calls DisableTextureUnit for nUnit and every unit above it that the device has (m_Capabilities).
  virtual void DisableTextureUnitsFrom(unsigned int nUnit);

  /// Binds a texture to a unit; bEnable 0 or a null texture unbinds. The renderer takes no reference: the texture
  /// stays its owner's and must live until it is unbound.
  virtual void SetTexture(unsigned int nUnit, unsigned char bEnable, QXTexture* pTexture) = 0;

  /// Filters of a unit, in the numbering of QXTextureUnitState. Base: nothing.
  virtual void SetTextureUnitFiltering(unsigned int nUnit, int nFilter0, int nFilter1, int nFilter2);

  /// Transform of the texture coordinates of a unit.
  virtual void SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) = 0;
  /// Which of the 8 coordinate sets of a drawable a unit reads.
  virtual void SetTextureCoordSet(unsigned int nUnit, unsigned int nSet) = 0;
  /// How a unit makes its coordinates: 0 from the drawable, 1 spherical map, 2 planar map, 3 reflection map,
  /// 4 projected by SetTextureMatrix.
  virtual void SetTextureCoordCalculation(unsigned int nUnit, int nMode) = 0;
  /// What lies outside 0..1 on each axis: 0 repeat, 1 mirror, 2 clamp, 3 border colour.
  virtual void SetTextureAddressingMode(unsigned int nUnit, int nModeU, int nModeV, int nModeW) = 0;
  /// Colour of addressing mode 3.
  virtual void SetTextureBorderColor(unsigned int nUnit, QXColorValue3D const& color) = 0;
  /// Samples of an oblique view, 1 for none; values above the device's maximum are lowered to it.
  virtual void SetTextureAnisotropy(unsigned int nUnit, unsigned int nMaxAnisotropy) = 0;
  /// Added to the level of detail that the device computes: negative is sharper.
  virtual void SetTextureMipmapBias(unsigned int nUnit, double dBias) = 0;
  /// How a unit joins what the units before it gave: 0 replace, 1 modulate, 2 add, 3 blend by its alpha.
  virtual void SetTextureBlendMode(unsigned int nUnit, int nColorMode, int nAlphaMode) = 0;
  /// Filled faces (0), their edges (1) or their corners (2).
  virtual void SetPolygonMode(int nMode) = 0;
  /// How the size of drawn points falls with the distance d: size / sqrt(constant + linear d + quadratic d d),
  /// held between dMinSize and dMaxSize pixels.
  virtual void SetPointAttenuation(
      double dConstant, double dLinear, double dQuadratic, double dMinSize, double dMaxSize) = 0;

  /// Opacity of what is drawn next, 0 to 1. Base: nothing.
  virtual void SetOpacity(double dOpacity);
  /// Blending by alpha, without depth writes. Base: nothing.
  virtual void EnableBlendAlpha(unsigned char bEnable);
  /// Blending by alpha with depth writes kept. Base: nothing.
  virtual void EnableBlendAlphaUseDepth(unsigned char bEnable);

  /// Starts recording immediate drawing into a list of its own; 0 if the device keeps none. Lists do not nest.
  virtual unsigned int BeginList() = 0;

  /// Frees a list of BeginList. Base: nothing.
  virtual void DeleteList(unsigned int nList);
  /// Draws a list of BeginList. Base: nothing.
  virtual void CallList(unsigned int nList);

  /// Ends the recording that BeginList started; the list belongs to the caller until DeleteList.
  virtual void EndList() = 0;

  virtual CullingMode GetCullingMode() const;

  /// Which faces are left out; stored in m_eCullingMode.
  virtual void SetCullingMode(CullingMode eMode) = 0;
  /// Whether a pixel is tested against the stencil buffer.
  virtual void SetStencilCheckEnable(unsigned char bEnable) = 0;
  /// Stencil test and what it does to the buffer. nFunction as in SetDepthFunction; each operation: 0 keep,
  /// 1 zero, 2 replace by nReference, 3 increment, 4 decrement, 5 invert.
  virtual void SetStencilParameters(int nFunction, unsigned int nReference, unsigned int nMask, int nOnStencilFail,
      int nOnDepthFail, int nOnPass) = 0;

  /// Movable origin of the scene in world coordinates: before double matrices and camera positions become the
  /// device's floats they are made relative to it, so that large coordinates keep their detail. Base: nothing.
  virtual void SetRelativeOrigin(QXVector3d const& vecOrigin);

  /// The origin last given to SetRelativeOrigin, zero at start.
  virtual QXVector3d const& GetRelativeOrigin() const = 0;
  /// Draw operations handed to the device since BeginGeometryCount.
  virtual unsigned int GetDrawOperationCount() const = 0;

  /// Zeroes the face and vertex counters, which the plug-in adds to while it draws.
  virtual void BeginGeometryCount();
  /// Faces drawn since BeginGeometryCount.
  virtual unsigned int GetFaceCount() const;
  /// Vertices drawn since BeginGeometryCount.
  virtual unsigned int GetVertexCount() const;
  /// Packs a colour into the word order of the device. Base: leaves *pDest alone.
  virtual void ConvertColourValue(QXColorValue3D const& color, unsigned int* pDest);
  /// 1 swaps front and back of every face, as a mirrored view needs it.
  virtual void SetInvertVertexWinding(unsigned char bInvert);

  /// Draws one set of buffers at once with the current state and adds to the geometry counters.
  virtual void Render(QXRenderOperation const& operation) = 0;

  /// Text at a window position, in the font of SetRenderFont. Base: nothing.
  virtual void TextOut2DText(QdcUnicodeString const& strText, double dX, double dY, unsigned int nColor);
  /// Dashes of lines: each bit of nPattern is nFactor pixels. Base: nothing.
  virtual void SetStippleLine(unsigned char bEnable, int nFactor, unsigned short nPattern);
  /// Text at a world position, facing the viewer. Base: nothing.
  virtual void TextOut3DText(QdcUnicodeString const& strText, double dX, double dY, double dZ, unsigned int nColor);
  /// Font of the two operations above; dSize in pixels. Base: nothing.
  virtual void SetRenderFont(QdcUnicodeString const& strFaceName, double dSize);
  /// nCount textured points, three doubles each; bFixedSize 1 keeps their size on the screen, pColor is four
  /// floats or null for white, nSize the edge in pixels. Base: nothing.
  virtual void RenderSpritePoint(double* pPoints, int nCount, unsigned char bFixedSize, float* pColor, int nSize);
  /// One textured point. Base: nothing.
  virtual void RenderSpritePoint(double dX, double dY, double dZ, unsigned char bFixedSize, float* pColor);
  /// nCount plain points, three doubles each, nSize pixels wide. Base: nothing.
  virtual void RenderSimplePoint(double* pPoints, int nCount, unsigned char bFixedSize, int nSize);
  /// One plain point. Base: nothing.
  virtual void RenderSimplePoint(double dX, double dY, double dZ, unsigned char bFixedSize);

  /// A line through nCount points, three doubles each; bClosed 1 joins the last with the first.
  virtual void RenderSimpleLine(double const* pPoints, int nCount, unsigned char bClosed, float const* pColor) = 0;
  /// A convex polygon of nCount points, three doubles each, seen from the side on which they turn left.
  virtual void RenderSimplePolygon(double const* pPoints, int nCount, float const* pColor) = 0;
  /// Size of plain points in pixels.
  virtual void SetPointSize(double dSize) = 0;
  /// Width of lines in pixels.
  virtual void SetLineWidth(double dWidth) = 0;

  /// Base: nothing.
  virtual void SetPointSmoothEnable(unsigned char bEnable);
  /// Base: nothing.
  virtual void SetPolygonSmoothEnable(unsigned char bEnable);

  /// Smooth edges of lines.
  virtual void SetLineSmoothEnable(unsigned char bEnable) = 0;
  /// Several samples a pixel, where the target has them.
  virtual void SetMultiSampleEnable(unsigned char bEnable) = 0;

  /// Handles of the edited model: nMode as the editor numbers them. Base: nothing.
  virtual void DrawEditModelTool(QXVector3d const& vecCenter, double dRadius, int nMode);
  /// Handles of the edited overlay, window rectangle. Base: nothing.
  virtual void DrawEditOverlayTool(QdcRect2D const& rcWindow, int nMode);
  /// Handles of a turned overlay, window rectangle and angle. Base: nothing.
  virtual void DrawEditOverlayToolEx(QdcRect2D const& rcWindow, double dAngle, int nMode);

  /// Clears parts of the current target: bit 0 colour, bit 1 depth, bit 2 stencil.
  virtual void ClearFrameBuffer(
      unsigned int nBuffers, QXColorValue3D const& color, double dDepth, unsigned int nStencil) = 0;
  /// Confines drawing to a pixel rectangle of the current target.
  virtual void SetScissorTest(unsigned char bEnable, int nLeft, int nBottom, int nWidth, int nHeight) = 0;
  /// Colour of immediate drawing that brings none of its own.
  virtual void SetCurrentColor(QXColorValue3D const& color) = 0;
  /// Draws with the shader files of these names, found in the resource folders. 0 if one is missing or does not
  /// compile; the former pair stays bound then.
  virtual unsigned char BindGpuProgram(
      QdcUnicodeString const& strVertexProgram, QdcUnicodeString const& strFragmentProgram) = 0;
  /// Returns to the plug-in's own shaders.
  virtual void UnbindGpuProgram() = 0;
  /// Sets nCount floats of a named parameter of the bound shaders. 0 if they have none of that name.
  virtual unsigned char SetGpuProgramParameter(
      QdcUnicodeString const& strName, float const* pValues, unsigned int nCount) = 0;
  /// Hands everything drawn so far to the device; bWait 1 returns when the device has finished it.
  virtual void Flush(unsigned char bWait) = 0;

  /// Base: nothing.
  virtual void SetNormalizeEnable(unsigned char bEnable);
  /// Prepares the device for a new target's window. Base: nothing.
  virtual void InitTargetEnvi(QXRenderTarget* pTarget);
  /// Frees what lives as long as the renderer: the model manager, the plug-in's resource holder's content, the
  /// textures, what the font manager and, if there is a texture manager, the image manager hold, and the
  /// registries of manually rendered objects. Two other managers keep pointers past this call and are the host's
  /// to clear beforehand: the render texture manager and the first image manager.
  virtual void ClearResource();
  /// Prints the frame of the active target. Base: nothing.
  virtual void PrintFrame();
  /// Base: nothing.
  virtual void SetDepthBuffer(unsigned char* pDepthBuffer);
  /// Base: null.
  virtual unsigned char* GetDepthBuffer() const;
  /// Base: nothing.
  virtual void UpdateScreenTexSize(unsigned int nWidth, unsigned int nHeight);
  /// Draws a target's picture onto the screen. Base: nothing.
  virtual void RenderToScreen(QXRenderTarget* pTarget);

  /// The texture that a texture target draws into, null for a window. The target keeps it, and the texture manager's
  /// GetTexture finds it under the target's name.
  virtual QXTexture* GetRenderTargetTexture(QXRenderTarget* pTarget) const = 0;

  /// Draws the scene of a texture target with a parallel view of the half extents given. Base: nothing.
  virtual void RenderToTexture(double dHalfWidth, double dHalfHeight, QXRenderTarget* pTarget);

  /// Redraws the patch rcPatch (fractions of the target, 0..1, from its lower left corner) of a texture target with a
  /// parallel view from above, x to the right and y up, centred at (dHalfWidth, dHalfHeight) and dWidth x dHeight units
  /// wide, on a transparent background. The rest of the target stays. Where the target's scene has a node of the target's
  /// name, what hangs under it is drawn and nothing else. Called by the render texture manager for every big texture that
  /// is marked: with (1024, 1024, 2048, 2048), so that the page's pixel (x, y), counted from the upper left corner, shows
  /// the world at (x, 2048 - y).
  virtual void RenderPatchToTexture(double dHalfWidth, double dHalfHeight, double dWidth, double dHeight,
      QXRenderTarget* pTarget, QdcRect2D const& rcPatch) = 0;
  /// Opens a selection pass of a target: until EndSelection objects are drawn as their selection identifiers
  /// into a rectangle of pixels. 0 if the target cannot.
  virtual unsigned char BeginSelection(QXRenderTarget* pTarget, int nLeft, int nBottom, int nWidth, int nHeight) = 0;
  /// Ends the selection pass and keeps its identifiers for the two Read operations.
  virtual void EndSelection() = 0;
  /// The identifier at a pixel of the last selection pass, 0 for none. Pixels count from the target's lower left corner.
  virtual unsigned int ReadSelectionID(int nX, int nY) const = 0;
  /// Adds each identifier that stands in a pixel rectangle of the last selection pass to arrIDs, once, ascending.
  virtual void ReadSelectionIDs(QdcRect const& rcPixels, QdcArray<unsigned int>& arrIDs) const = 0;
  /// Whether objects of a scene can be selected at all.
  virtual void SetSelectionEnable(QdcUnicodeString const& strSceneName, unsigned char bEnable) = 0;
  /// Pixels around the pointer within which GetSelInfo and PickObject still hit, 0 at first: only the pixel itself.
  virtual void SetSelectionTolerance(double dPixels) = 0;
  /// 0 selects whole objects, 1 single vertices (SetVertexSelectionRenderTarget of the target).
  virtual void SetSelectionMode(int nMode) = 0;

  /// What lies under a window point of the active target, counted from its lower left corner. nLayerID and nObjectID
  /// receive the identifier's parts as m_SceneOperation divides it, 0 where nothing is hit, and arrGeometries the
  /// geometries hit, as far as the plug-in knows of any. setLayerIDs confines the search unless it is empty: what is of
  /// other layers, or of none, is seen through. pMapBounds (may be null) gives bounds in x and y of the world by layer,
  /// outside of which nothing of it is hit. With bAll 1 the pixels within the tolerance are kept as by a selection pass,
  /// so that ReadSelectionIDs tells everything that is there.
  /// Gives the world position of the hit, that of what is under the point where nothing is hit, or the zero vector
  /// where nothing was drawn. Base: both numbers 0, the zero vector.
  virtual QXVector3d GetSelInfo(float fX, float fY, int& nLayerID, int& nObjectID, QdcArray<QXGeometry*>& arrGeometries,
      std::set<int>& setLayerIDs, unsigned char bAll, std::map<int, QdcRect2D> const* pMapBounds);
  /// As above without geometries. Base: both numbers 0, the zero vector.
  virtual QXVector3d GetSelInfo(float fX, float fY, int& nLayerID, int& nObjectID, unsigned char bAll);

  /// Shows these objects, by selection identifier, as selected, and no others.
  virtual void SetSelectedObjects(QdcArray<unsigned int> const& arrIDs) = 0;
  /// Shows no object as selected.
  virtual void ClearSelectedObjects() = 0;
  /// Colour of selected objects.
  virtual void SetSelectionColor(QXColorValue3D const& color) = 0;
  /// Identifier of the object under a window point of the active target, 0 for none; vecHit receives the world
  /// position if there is one.
  virtual unsigned int PickObject(double dX, double dY, QXVector3d& vecHit) const = 0;
  /// As PickObject along a world ray in a scene; vecDirection has length 1.
  virtual unsigned int PickObjectByRay(QdcUnicodeString const& strSceneName, QXVector3d const& vecOrigin,
      QXVector3d const& vecDirection, QXVector3d& vecHit) const = 0;
  /// World bounds of the object with that identifier. 0 if there is none.
  virtual unsigned char GetObjectBoundingBox(unsigned int nID, QXBoundingBox& box) const = 0;
  /// Shows or hides the object with that identifier.
  virtual void SetObjectVisible(unsigned int nID, unsigned char bVisible) = 0;
  /// 1 if the object with that identifier exists and is shown.
  virtual unsigned char IsObjectVisible(unsigned int nID) const = 0;
  /// Multiplies the colours of the object with that identifier, until ResetObjectColor.
  virtual void SetObjectColor(unsigned int nID, QXColorValue3D const& color) = 0;
  /// Takes back SetObjectColor.
  virtual void ResetObjectColor(unsigned int nID) = 0;
  /// Appends the names of the graphics systems that the plug-in can drive here.
  virtual void GetRenderSystems(QdcArray<QdcUnicodeString>& arrNames) const = 0;
  /// Chooses one of GetRenderSystems for the next Initialize. 0 if the name is none of them.
  virtual unsigned char SelectRenderSystem(QdcUnicodeString const& strName) = 0;
  /// The graphics system in use, empty before Initialize.
  virtual QdcUnicodeString GetRenderSystemName() const = 0;
  /// Version text of the graphics system in use, empty before Initialize.
  virtual QdcUnicodeString GetRenderSystemVersion() const = 0;

  /// 1 if the machine has what the graphics system needs. Base: 0.
  virtual unsigned char IsRenderSystemSupported(QdcUnicodeString const& strName) const;

  /// 0 one picture, 1 anaglyph, 2 side by side, 3 active shutters.
  virtual void SetStereoMode(int nMode) = 0;
  /// The mode last given to SetStereoMode, 0 at start.
  virtual int GetStereoMode() const = 0;

  /// Base: 0.
  virtual unsigned char IsActiveStereoSupported() const;
  /// Draws the texts gathered since the last frame. Base: nothing.
  virtual void RenderTexts();
  /// Draws a list of ToDisplayList. Base: nothing.
  virtual void RenderDisplayList(unsigned int nList);
  /// Keeps a set of buffers on the device for repeated drawing and gives its number. Base: 0.
  virtual unsigned int ToDisplayList(QXRenderOperation const& operation);
  /// Frees a list of ToDisplayList; 1 if it existed. Base: 0.
  virtual unsigned char DeleteDisplayList(unsigned int nList);
  /// Keeps the world matrix. Base: nothing.
  virtual void PushMatrix();
  /// Returns to the world matrix of the last PushMatrix. Base: nothing.
  virtual void PopMatrix();
  /// Multiplies the world matrix. Base: nothing.
  virtual void MultiMatrix(QXMatrix4d const& matrix);
  /// Makes a node under strParentName (empty: the root) of a scene. The empty scene name, here and in the other node
  /// operations, is a scene of the renderer's own that no camera shows, for what is drawn into textures. Base: 1, nothing
  /// done.
  virtual unsigned char CreateSceneNode(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strParentName, QdcUnicodeString const& strNodeName);
  /// Makes a node under the root of the 3D scene and gives the name found for it. Base: the empty string.
  virtual QdcUnicodeString CreateSceneNode();
  /// Deletes a node and the nodes under it. Base: 1, nothing done.
  virtual unsigned char DestroySceneNode(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName);
  /// Deletes a node of CreateSceneNode without arguments. Base: nothing.
  virtual void DestroySceneNode(QdcUnicodeString strNodeName);
  /// Name of the scene of a scene manager type; 0 is the 3D scene. Base: the empty string.
  virtual QdcUnicodeString GetSceneName(int nSceneManagerType) const;
  /// Name of a texture that all scenes share. Base: the empty string.
  virtual QdcUnicodeString GetGlobalTextureName(int nTextureType) const;
  /// Makes a flat drawing above the scene. The plug-in keeps it. Base: null.
  virtual QXRenderOperationOverlay* CreateOverlay(QdcUnicodeString const& strName);
  /// Draws an image file into a window rectangle. Base: nothing.
  virtual void RenderImage(QdcUnicodeString const& strPath, QdcRect2D const& rcWindow);
  /// Base: nothing.
  virtual void SetOverlayVisible(QdcUnicodeString const& strName, unsigned char bVisible);

  /// Deletes an overlay of CreateOverlay; an unknown name is ignored.
  virtual void DestroyOverlay(QdcUnicodeString const& strName) = 0;
  /// Places an overlay: its lower left corner in window pixels.
  virtual void SetOverlayPosition(QdcUnicodeString const& strName, double dLeft, double dBottom) = 0;
  /// Overlays are drawn with rising order, equal ones by name.
  virtual void SetOverlayZOrder(QdcUnicodeString const& strName, int nZOrder) = 0;
  /// Place of a node relative to its parent; an unknown scene or node is ignored, here and below.
  virtual void SetSceneNodePosition(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXVector3d const& vecPosition) = 0;
  /// Turn of a node relative to its parent.
  virtual void SetSceneNodeOrientation(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXQuaternion4d const& orientation) = 0;
  /// Scale of a node relative to its parent.
  virtual void SetSceneNodeScale(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXVector3d const& vecScale) = 0;
  /// Hangs a drawable of the same scene under a node; the drawable stays its owner's. 0 if either is unknown.
  virtual unsigned char AttachToSceneNode(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName,
      QXRenderOperation3D* pRenderOperation) = 0;
  /// Takes a drawable off its node; it hangs under the root again.
  virtual void DetachFromSceneNode(QdcUnicodeString const& strSceneName, QXRenderOperation3D* pRenderOperation) = 0;
  /// World bounds of a node with everything under it; a null box if there is nothing.
  virtual void GetSceneNodeBoundingBox(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName, QXBoundingBox& box) const = 0;
  /// Adds a folder in which media (shaders, images) are looked for, before those added earlier. 0 if it cannot be
  /// read.
  virtual unsigned char AddResourceFolder(QdcUnicodeString const& strPath) = 0;
  /// Takes back AddResourceFolder.
  virtual void RemoveResourceFolder(QdcUnicodeString const& strPath) = 0;
  /// Reads a pixel rectangle of a target, whose top is its lower edge since window coordinates count from the bottom:
  /// width x height x 4 bytes, rows top down, blue, green, red, alpha. 0 if the rectangle leaves the target,
  /// nByteCount is too small or the device fails.
  virtual unsigned char ReadPixels(
      QXRenderTarget* pTarget, QdcRect const& rcPixels, unsigned char* pPixels, unsigned int nByteCount) = 0;
  /// Window depth (0 near, 1 far or nothing drawn) at a pixel of a target. 1 outside of it.
  virtual double ReadDepth(QXRenderTarget* pTarget, int nX, int nY) const = 0;
  /// Window position and depth of a world point in the current viewport. 0 if it lies behind the eye.
  virtual unsigned char GetScreenPosition(QXVector3d const& vecWorld, QXVector3d& vecWindow) const = 0;

  /// World point under a pixel of the active target. Base: (0, 0, 0).
  virtual QXVector3d ScreenToCartesian(int nX, int nY) const;
  /// World point that was drawn at a pixel of a target. Base: (0, 0, 0).
  virtual QXVector3d GetPixelPosition(QXRenderTarget* pTarget, int nX, int nY) const;
  /// Colour at a pixel of the active target. Base: (1, 1, 1, 1).
  virtual QXColorValue3D ScreenToColor(int nX, int nY) const;
  /// Draws one texture over another, each by its name. Base: nothing.
  virtual void RemappingTexture(QdcUnicodeString const& strSource, QdcUnicodeString const& strDest);

  /// 1 if a display of that kind is connected.
  virtual unsigned char IsHMDAvailable(HMDMode eMode) const = 0;
  /// Pixels of one eye of the display in use. 0 and both outputs 0 without one.
  virtual unsigned char GetHMDRenderSize(unsigned int& nWidth, unsigned int& nHeight) const = 0;

  /// Chooses the display; the plug-in writes m_eHMDMode. Base: nothing.
  virtual void SetHMDMode(HMDMode eMode);

  /// Starts the display of m_eHMDMode. 0 if it cannot.
  virtual unsigned char InitializeVR() = 0;
  /// Reads head and controllers. Called once a frame before UpdateAllRenderTargets.
  virtual void UpdateHMDPose() = 0;
  /// View and projection of an eye (0 left, 1 right) as UpdateHMDPose read them. 0 without a display.
  virtual unsigned char GetHMDPose(int nEye, QXMatrix4d& matView, QXMatrix4d& matProjection) const = 0;
  /// Hands the pictures of both eyes to the display. Called once a frame after UpdateAllRenderTargets.
  virtual void SubmitHMDFrame(QXRenderTarget* pLeft, QXRenderTarget* pRight) = 0;

  /// Handles the events of the display and calls the hooks that are set. Base: nothing.
  virtual void ProcessHTCVREvent();
  /// The camera that follows the display. Base: null.
  virtual QXCamera* GetCamera4QX() const;

  /// Chooses the camera that follows the display; null for none. It stays its owner's.
  virtual void SetCamera4QX(QXCamera* pCamera) = 0;

  /// View matrix that the display's own is applied to. Base: nothing.
  virtual void SetOgreOriCameraView(QXMatrix4d const& matView);
  /// World units a second at full deflection of the controller. Base: nothing.
  virtual void SetHTCMoveSpeed(double dSpeed);
  /// How far below the surface the eye may go. Base: nothing.
  virtual void SetUnderGlobalDepth(double dDepth);

  /// Adds an effect on the finished picture to a target, after those added earlier. 0 if the plug-in has none of
  /// that name.
  virtual unsigned char AddCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) = 0;
  /// Takes back AddCompositor.
  virtual void RemoveCompositor(QXRenderTarget* pTarget, QdcUnicodeString const& strName) = 0;
  /// Sets a number of an effect on every target that has it. 0 if there is none of that name.
  virtual unsigned char SetCompositorParameter(
      QdcUnicodeString const& strName, QdcUnicodeString const& strParameter, double dValue) = 0;

  /// 0 takes an effect out of all pictures until 1 brings it back, on every target that has it. Base: nothing.
  virtual void SetCompositorEnable(QdcUnicodeString const& strName, unsigned char bEnable);
  /// 1 for an effect that the plug-in has, unless it was taken out. Base: 0.
  virtual unsigned char IsCompositorEnable(QdcUnicodeString const& strName) const;
  /// All numbers of the effect "bloom" at once. Base: nothing.
  virtual void SetBloomSetting(QXBloomSetting const& setting);

  /// Colours beyond white until the end of the frame.
  virtual void SetHDREnable(unsigned char bEnable) = 0;
  /// Factor on all light before it is shown, 1 at start.
  virtual void SetExposure(double dExposure) = 0;
  /// Darkening where surfaces meet, within dRadius world units.
  virtual void SetAmbientOcclusion(unsigned char bEnable, double dRadius) = 0;
  /// Blur away from dFocus within dRange, both distances from the eye.
  virtual void SetDepthOfField(unsigned char bEnable, double dFocus, double dRange) = 0;
  /// Added brightness (0 leaves it), factors of contrast and saturation (1 leaves them).
  virtual void SetColorCorrection(double dBrightness, double dContrast, double dSaturation) = 0;

  /// Ends what InitializeVR started. Base: nothing.
  virtual void ReleaseVR();
  /// View times projection of the display. Base: the identity.
  virtual QXMatrix4d GetGameViewProjMatrix() const;

  /// Makes the companion target in which a target's reflection is drawn. Not attached; the caller owns it.
  virtual QXRenderTarget* CreateReflectRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth,
      unsigned int nHeight, QdcUnicodeString const& strSceneName) = 0;
  /// Makes the companion target of a selection pass. Not attached; the caller owns it.
  virtual QXRenderTarget* CreateSelectionRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth,
      unsigned int nHeight, QdcUnicodeString const& strSceneName) = 0;
  /// Makes the companion target of a vertex selection pass. Not attached; the caller owns it.
  virtual QXRenderTarget* CreateVertexSelectionRenderTarget(QdcUnicodeString const& strName, unsigned int nWidth,
      unsigned int nHeight, QdcUnicodeString const& strSceneName) = 0;
  /// Makes a target that draws into nCount textures at once. Not attached; the caller owns it.
  virtual QXRenderTarget* CreateMultiRenderTarget(
      QdcUnicodeString const& strName, unsigned int nWidth, unsigned int nHeight, unsigned int nCount) = 0;
  /// Makes a target that draws the named scene into a texture of nWidth x nHeight pixels with nMipmaps further levels;
  /// nColourDepth in bits a pixel. Without a scene RenderPatchToTexture draws what hangs under the node of its name in
  /// the scene of the empty name, and a camera draws the 3D scene. Called by the render texture manager. Not attached;
  /// the caller owns it. Null on failure.
  virtual QXRenderTarget* CreateRenderTexture(QdcUnicodeString const& strName, QX3DPixelFormat eFormat,
      unsigned int nWidth, unsigned int nHeight, int nMipmaps, unsigned int nColourDepth,
      QdcUnicodeString const& strSceneName) = 0;

  /// Companion targets of what is drawn next; the renderer does not own them. Null detaches.
  virtual void AttachReflectRenderTarget(QXRenderTarget* pTarget);
  virtual QXRenderTarget* GetReflectRenderTarget() const;
  virtual void AttachSelectionRenderTarget(QXRenderTarget* pTarget);
  virtual void AttachVertexSelectionRenderTarget(QXRenderTarget* pTarget);
  virtual void AttachMultiRenderTarget(QXRenderTarget* pTarget);

  /// Makes a new sky for a scene, whose shape eSceneType tells: which way is up, and what the horizon is. The caller
  /// owns it and deletes it before the renderer shuts down; one that outlives it draws nothing and is deleted as usual.
  /// Null if the scene is unknown or the renderer has no sky.
  virtual QXSkyGraphics3D* CreateSky(QdcUnicodeString const& strSceneName, SceneType eSceneType) = 0;
  /// Makes a new ocean for a scene, as CreateSky does a sky.
  virtual QXTritonOceanGraphics3D* CreateOcean(QdcUnicodeString const& strSceneName, SceneType eSceneType) = 0;

  /// Base: nothing.
  virtual void SetSkyDome(
      QdcUnicodeString const& strSceneName, QdcUnicodeString const& strMaterial, unsigned char bVisible);
  /// Base: 0.
  virtual unsigned char IsSkyDomeVisible() const;
  /// Shows a node; bCascade 1 takes the nodes under it along. Base: nothing.
  virtual void SetSceneNodeVisible(QdcUnicodeString const& strSceneName, QdcUnicodeString const& strNodeName,
      unsigned char bVisible, unsigned char bCascade);
  /// Shows a node of the 3D scene. Base: nothing.
  virtual void SetSceneNodeVisible(QdcUnicodeString const& strNodeName, unsigned char bVisible);
  /// Adds a material pass to everything under a node; the pass is copied. Base: nothing.
  virtual void AddPass(QdcUnicodeString const& strNodeName, QXPass const& pass);
  /// Base: nothing.
  virtual void RemovePass(QdcUnicodeString const& strNodeName, QdcUnicodeString const& strPassName);
  /// Base: nothing.
  virtual void RemoveAllPasses(QdcUnicodeString const& strNodeName);
  /// Distances from the eye between which a node is drawn. Base: nothing.
  virtual void SetSceneNodeVisibleDistance(QdcUnicodeString const& strNodeName, double dNear, double dFar);
  /// Leaves a node out when it is smaller on the screen. Base: nothing.
  virtual void SetSceneNodeFiltratePixSize(QdcUnicodeString const& strNodeName, double dPixels);
  /// 1 if a scene holds anything to draw. Base: 0.
  virtual unsigned char HasRenderableObjects(QdcUnicodeString const& strSceneName) const;
  /// Base: nothing.
  virtual void SetSceneType(SceneType eType);
  /// Makes a block of shader parameters; the plug-in owns it until DestroyUniformBuffer. Base: null.
  virtual QXUniformBuffer* CreateUniformBuffer(QdcUnicodeString const& strName);
  /// Base: null.
  virtual QXUniformBuffer* GetUniformBuffer(QdcUnicodeString const& strName) const;
  /// Base: nothing.
  virtual void DestroyUniformBuffer(QdcUnicodeString const& strName);

  // Not virtual from here on.

  /// Always 0: buffers are chosen by the target, the names stay for callers of old.
  unsigned char setDrawBuffer(int nBuffer);
  unsigned char setReadBuffer(int nBuffer);

  /// out[4 * i + j] = m[j][i]: sixteen doubles, column by column.
  static void MakeColGLMatrix(double* pOut, QXMatrix4d const& matrix);
  /// out[4 * i + j] = m[i][j]: sixteen doubles, row by row.
  static void MakeRowGLMatrix(double* pOut, QXMatrix4d const& matrix);

  /// World to window: (x, y, z, 1) times model times projection (16 doubles each, row by row), divided by w, mapped
  /// to the viewport (left, bottom, width, height in pixels); z comes out in 0..1. Returns 1, or 0 with the outputs
  /// untouched when |w| is below 1e-10.
  static int Project(double dX, double dY, double dZ, double const* pModel, double const* pProjection,
      int const* pViewport, double* pWinX, double* pWinY, double* pWinZ);
  /// Project with the current viewport, m_matView and m_matProjection. Does nothing without a viewport; after a
  /// degenerate w the output is unspecified.
  void Project(QXVector3d const& vecWorld, QXVector3d& vecWindow) const;
  /// Window to world, the reverse of Project. Returns 1, or 0 with the outputs untouched when model times projection
  /// is singular or |w| is below 1e-10.
  static int UnProject(double dWinX, double dWinY, double dWinZ, double const* pModel, double const* pProjection,
      int const* pViewport, double* pObjX, double* pObjY, double* pObjZ);
  /// UnProject with the viewport of the active target under the window point, else the current one; does nothing
  /// with neither. After a singular matrix the output is unspecified. Project does no such lookup: a world point
  /// has no pixel before it is projected.
  void UnProject(QXVector3d const& vecWindow, QXVector3d& vecWorld) const;
  /// World size of one pixel at the depth of a world point, measured downwards on the screen. Meaningless without a
  /// current viewport, and on the lowest row of a viewport that stands on another one of the active target, which the
  /// pixel below belongs to.
  double ComputerOnePix2RealLength(QXVector3d const& vecPoint) const;

  /// First viewport of the active target, by number from 0, whose pixel rectangle holds the point (origin bottom
  /// left); left and bottom edges belong to it, right and top ones do not. Null if none. The active target must
  /// exist.
  QXViewport* GetViewportByLogicalPosition(QdcPoint const& pntLogical) const;
  /// As above for a mouse point, whose origin is the top left. The active target must exist.
  QXViewport* GetViewportByMousePosition(QdcPoint const& pntMouse) const;

  /// Redraws every attached target now, whatever its flags.
  void InvalidateAllRenderTargets();
  /// Tells every attached target that a camera is about to go.
  void NotifyCameraRemoved(QXCamera const* pCamera);

  // Registries of manually rendered objects. All of them do nothing unless m_eHMDMode is HMD_HTC. An object that
  // is already registered keeps its first entry.

  void AddROManualUpdateProc(void* pObject, QXROManualUpdateProc pfnProc);
  void AddROManualNearFarDist(void* pObject, double dNear, double dFar);
  void AddROManualSceneName(void* pObject, QdcUnicodeString const& strSceneName);
  /// Registers an object that is set up again with the render queue, in the order of registration.
  void AddReInitRenderQueueProc(void* pObject, QXROManualUpdateProc pfnProc);
  void AddReInitObjectSceneName(void* pObject, QdcUnicodeString const& strSceneName);
  /// Removes the object from the update, near/far and scene name maps, but only if none of the three is empty.
  void RemoveROManualMapAt(void* pObject);
  /// Removes the object from the re-initialise queue, but only if none of its three containers is empty. Throws
  /// std::out_of_range unless the object stands last in the queue, leaving its scene name behind; never call it
  /// from a destructor.
  void RemoveReInitRenderQueueAt(void* pObject);

  /// Copies of the registries.
  std::map<void*, QXROManualUpdateProc> GetMapUpdateROViewProjCallBackProc() const;
  std::map<void*, QXROManualNearFarDistInfo> GetROManualNearFarDistMap() const;
  std::map<void*, QdcUnicodeString> GetROManualSceneNameMap() const;
  std::map<void*, QdcUnicodeString> GetReInitObjectSceneNameMap() const;
  QdcArray<std::pair<void*, QXROManualUpdateProc>> GetArrayReInitRenderQueue() const;

  // Hooks of the head-mounted display. The library stores them; the plug-in calls them.

  /// Stores both, but only while m_eHMDMode is HMD_HTC.
  void SetHtcControllerPointsProc(void* pRenderRay3D, QXHtcControllerPointsProc pfnProc);
  QXHtcControllerPointsProc GetHtcControllerPointsFunc() const;
  void* GetRenderRay3D() const;
  void SetVRPickingObjectProc(QXInt64 nView, QXVRPickingObjectProc pfnProc);
  QXVRPickingObjectProc GetVRPickingObjectProc() const;
  QXInt64 GetVREventView() const;
  void SetVRControllerHandleProc(QXInt64 nView, QXVRControllerHandleProc pfnProc);
  QXVRControllerHandleProc GetVRControllerHandleProc() const;
  QXInt64 GetObjectsEventView() const;
  /// 1 while m_eHMDMode is HMD_HTC.
  unsigned char GetHTCEnable() const;
  /// 1 while m_eHMDMode is HMD_OCULUS.
  unsigned char GetOculusEnable() const;
  /// Asks the plug-in to place the display's camera anew.
  void ResetQXCameraForVR();

  QXRenderTarget* GetSelectionRenderTarget() const;
  QXRenderTarget* GetVertexSelectionRenderTarget() const;
  QXTextureManager* GetTextureManager() const;
  QXHwInstancingManager* GetHwInstancingManager() const;
  QXRenderOperationManager* GetRenderOperationManager() const;
  QDCCharset::Charset GetTextCharset() const;
  void SetTextCharset(QDCCharset::Charset const& eCharset);
  unsigned int GetRenderBufferTarget() const;
  /// Stores the value and gives the former one.
  unsigned int SetRenderBufferTarget(unsigned int nTarget);
  unsigned char GetWaitForVerticalBlank() const;
  void SetWaitForVerticalBlank(unsigned char bWait);
  void SetCurrentPassIterationCount(unsigned int nCount);
  /// Sun-light flag of the active target, which must exist.
  unsigned char GetSunLightEnalble() const;

  /// What the device offers; the plug-in fills it at start.
  static QXGraphics3DCapabilities m_Capabilities;
  /// Near and far distance of cameras with logarithmic depth, for plug-in and host.
  static double LogDepthCameraNearDist;
  static double LogDepthCameraFarDist;
  /// Shift of the stereo picture on the screen in pixels, for plug-in and host.
  static QdcPoint m_pntScreenStereoOffset;

  /// All attached targets by name, owned; the key order is the update order.
  QdcDict<QdcUnicodeString, QXRenderTarget*, std::less<QdcUnicodeString>> m_RenderTargets;
  /// Targets by priority, the plug-in's.
  QdcDict<unsigned char, QXRenderTarget*, std::less<unsigned char>> m_PrioritisedRenderTargets;
  /// Target of the sun, viewport lookup and attachment operations.
  QXRenderTarget* m_pActiveRenderTarget = nullptr;
  /// A plug-in attaches or clears it before it relies on the value.
  QXRenderTarget* m_pReflectRenderTarget = nullptr;
  QXRenderTarget* m_pSelectionRenderTarget = nullptr;
  QXRenderTarget* m_pVertexSelectionRenderTarget = nullptr;
  QXRenderTarget* m_pMultiRenderTarget = nullptr;
  /// Set by the plug-in, not deleted here: ClearResource releases its textures.
  QXTextureManager* m_pTextureManager = nullptr;
  unsigned int m_nCurrentPassIterationCount = 0;
  unsigned char m_bInvertVertexWinding = 0;
  /// Counters of the frame; the plug-in adds to them.
  unsigned int m_nVertexCount = 0;
  unsigned int m_nFaceCount = 0;
  CullingMode m_eCullingMode = static_cast<CullingMode>(1);
  unsigned char m_bWaitForVerticalBlank = 1;
  /// Current viewport, set by the plug-in: Project uses it, UnProject falls back on it. Not owned.
  QXViewport* m_pViewport = nullptr;
  QXMatrix4d m_matWorld;
  /// View and projection of the current viewport, set by the plug-in.
  QXMatrix4d m_matView;
  QXMatrix4d m_matProjection;
  /// Palette of SetWorldMatrices. Not a stack: PushMatrix, PopMatrix and MultiMatrix leave it alone.
  QXMatrix4d m_arrWorldMatrices[256];
  int m_nWorldMatrixCount = 0;
  /// Owned, deleted by ClearResource.
  QXModelManager* m_pModelManager = nullptr;
  unsigned int m_nRenderBufferTarget = 0;
  /// Set by the plug-in, not owned.
  QXHwInstancingManager* m_pHwInstancingManager = nullptr;
  HMDMode m_eHMDMode = HMD_NONE;
  /// Set by ResetQXCameraForVR, cleared by the plug-in when it has placed the camera.
  unsigned char m_bResetQXCameraForVR = 1;
  std::map<void*, QXROManualUpdateProc> m_mapUpdateROViewProjCallBackProc;
  std::map<void*, QXROManualNearFarDistInfo> m_mapROManualNearFarDist;
  std::map<void*, QdcUnicodeString> m_mapROManualSceneName;
  std::map<void*, QXROManualUpdateProc> m_mapReInitRenderQueueProc;
  /// The pairs of the map above in the order of registration: what a plug-in walks.
  QdcArray<std::pair<void*, QXROManualUpdateProc>> m_arrReInitRenderQueue;
  std::map<void*, QdcUnicodeString> m_mapReInitObjectSceneName;
  QXHtcControllerPointsProc m_pfnHtcControllerPoints = nullptr;
  void* m_pRenderRay3D = nullptr;
  QXInt64 m_nVREventView = 0;
  QXVRPickingObjectProc m_pfnVRPickingObject = nullptr;
  QXInt64 m_nObjectsEventView = 0;
  QXVRControllerHandleProc m_pfnVRControllerHandle = nullptr;
  /// Left for the plug-in, like the flags, the mutex and the pointer below.
  QdcArray<QdcUnicodeString> m_arrStrings;
  unsigned char m_bFlagA = 0;
  unsigned char m_bFlagB = 0;
  QXMutex m_Mutex;
  void* m_pReservedA = nullptr;
  unsigned char m_bFlagC = 0;
  QXSceneOperation m_SceneOperation;
  /// Belongs to the plug-in; ClearResource calls its third virtual operation.
  QXResourceHolder* m_pResourceHolder = nullptr;
  QDCCharset::Charset m_eTextCharset = static_cast<QDCCharset::Charset>(0);
  unsigned char m_bFlagD = 0;
  /// Set by the plug-in, not owned.
  QXRenderOperationManager* m_pRenderOperationManager = nullptr;
};

}  // namespace QXC
