/// @file
/// A drawable of the renderer.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QX3DEnums.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXPass;
class QXPlane;
class QXRenderOperation;
class QXRenderOperationMultiIndex;
class QXRenderOperationSet;
class QXSkeletonAnimation;
class QXTexture;
class QXUniformBuffer;
class QXVector4d;
struct QXBatchSelAndVertexColor;

/// One drawable of a renderer plug-in, drawn by every camera whose viewport shows its scene. A host makes it by
/// QXRenderOperationManager::CreateRenderOperation3D, fills it and changes it between frames; the camera of the
/// plug-in reads it while QXCamera::RenderScene runs.
///
/// Ownership: the object belongs to the host, which destroys it before the renderer shuts down. What is handed in
///            by pointer or reference is copied before the operation returns, textures aside: the drawable takes
///            a reference on a texture and gives it back.
/// Threads:   the render thread, outside RenderScene.
/// Failure:   an operation that a renderer cannot carry out does nothing, or returns 0.
class QXGRAPHICS3D_API QXRenderOperation3D {
public:
  QXRenderOperation3D();
  /// @param strName  not stored here: a plug-in that keeps a name stores it itself
  explicit QXRenderOperation3D(QdcUnicodeString const& strName);
  QXRenderOperation3D(QXRenderOperation3D const& other);
  QXRenderOperation3D& operator=(QXRenderOperation3D const& other);

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// Takes the drawable out of its scene and frees its buffers.
  virtual ~QXRenderOperation3D();

  /// Name for the host's use, empty at first; need not be unique.
  virtual QdcUnicodeString const& GetName() const = 0;
  virtual void SetName(QdcUnicodeString const& strName) = 0;

  /// Bounds in the coordinates of the vertices, for culling. Called after the geometry was set, by
  /// QXRenderObjectInstance among others; a drawable that was told none takes the bounds of its positions.
  virtual void SetBoundingBox(QXBoundingBox const& box) = 0;

  /// The box that SetBoundingBox gave, or that of the positions.
  virtual QXBoundingBox const& GetBoundingBox() const = 0;
  /// The same box under the model matrix, in world coordinates.
  virtual QXBoundingBox GetWorldBoundingBox() const = 0;
  /// Model matrix in double precision, row vectors, translation in row 3. The plug-in narrows it only after it
  /// was made relative to the scene's origin (QXGraphics3D::SetRelativeOrigin). Cheap: no buffer is rebuilt.
  virtual void SetModelMatrix(QXMatrix4d const& matModel) = 0;
  /// Identity at first.
  virtual QXMatrix4d const& GetModelMatrix() const = 0;
  /// 1: drawn (the default), 0: skipped by every camera.
  virtual void SetVisible(unsigned char bVisible) = 0;
  virtual unsigned char IsVisible() const = 0;
  /// Colour multiplied with the colours of vertices and index ranges; white at first. An alpha below 1 blends.
  virtual void SetColor(QXColorValue3D const& color) = 0;
  virtual QXColorValue3D const& GetColor() const = 0;
  /// Factor on the alpha of everything that the drawable draws, 0 to 1, 1 at first.
  virtual void SetOpacity(double dOpacity) = 0;
  virtual double GetOpacity() const = 0;
  /// Identifier drawn into a selection target, 0: cannot be picked (the default). Objects of static geometry have this
  /// plus their key in QXStaticGeometryBucket::m_mapSubObjects, so the host leaves as many numbers behind it as the
  /// bucket has vertices; vertices of no object then have none. Keys from 16,777,215 on cannot be picked.
  virtual void SetSelectionID(unsigned int nID) = 0;
  virtual unsigned int GetSelectionID() const = 0;
  /// 1: shown in the selection colour.
  virtual void SetSelected(unsigned char bSelected) = 0;
  virtual unsigned char IsSelected() const = 0;
  /// Colour of a selected drawable; its alpha says how much of the own colour it covers.
  virtual void SetSelectionColor(QXColorValue3D const& color) = 0;
  /// Drawn only while the camera is this far from the centre of the bounds, in world units. A far distance of 0
  /// means without limit.
  virtual void SetVisibleDistance(double dNear, double dFar) = 0;
  /// Lower numbers draw first; 0 at first. Blended drawables come after all opaque ones of their number.
  virtual void SetRenderPriority(int nPriority) = 0;
  virtual int GetRenderPriority() const = 0;
  /// 1: drawn into shadow maps.
  virtual void SetCastShadow(unsigned char bCast) = 0;
  /// 1: darkened by shadow maps.
  virtual void SetReceiveShadow(unsigned char bReceive) = 0;
  /// 0: drawn in its plain colour, 1: lit by the sun of the target (the default).
  virtual void SetLightEnable(unsigned char bEnable) = 0;
  /// 1: only the edges of the triangles.
  virtual void SetWireframe(unsigned char bWireframe) = 0;
  /// Which side of the triangles is left out.
  virtual void SetCullingMode(CullingMode eMode) = 0;
  /// Geometry of one self-contained operation in place of what the drawable held; copied, null clears.
  virtual void SetRenderOperation(QXRenderOperation const* pOperation) = 0;

  /// Geometry of one vertex block with several index ranges in place of what the drawable held. The caller
  /// destroys the operation straight after, so everything needed is copied before this returns. Called by
  /// QXRenderObjectInstance and by hosts; a matrix of the operation and a colour other than its white become
  /// the drawable's.
  virtual void SetRenderOperationMultiIndex(QXRenderOperationMultiIndex* pOperation) = 0;

  /// Geometry of several self-contained operations in place of what the drawable held, one index range each.
  virtual void SetRenderOperationSet(QXRenderOperationSet const& set) = 0;
  /// Frees the geometry; matrix, colour and state stay.
  virtual void ClearGeometry() = 0;
  /// What the drawable sends to the device when it is drawn once.
  virtual unsigned int GetVertexCount() const = 0;
  virtual unsigned int GetTriangleCount() const = 0;
  virtual unsigned int GetIndexRangeCount() const = 0;
  /// Overwrites positions in place, without new buffers.
  /// @param pPositions  3 floats a vertex
  /// @return  0 with no effect if the vertices are not all there
  virtual unsigned char UpdatePositions(unsigned int nFirst, unsigned int nCount, float const* pPositions) = 0;
  /// Overwrites vertex colours in place.
  /// @param pColors  one QDCRGBA word a vertex
  /// @return  0 with no effect if the vertices are not all there or have no colours
  virtual unsigned char UpdateColors(unsigned int nFirst, unsigned int nCount, unsigned int const* pColors) = 0;
  /// Index ranges are numbered as the operation listed them; a number past the last changes nothing.
  virtual void SetIndexRangeVisible(unsigned int nRange, unsigned char bVisible) = 0;
  virtual void SetIndexRangeColor(unsigned int nRange, QXColorValue3D const& color) = 0;
  /// Texture of a unit for the ranges that bring none; null takes it away.
  virtual void SetTexture(unsigned int nUnit, QXTexture* pTexture) = 0;
  /// Transform of a unit's coordinates, row vectors.
  virtual void SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) = 0;
  /// Selection and colour of single objects of a batched drawable, by the identifiers of its vertices; those of static
  /// geometry are the keys of QXStaticGeometryBucket::m_mapSubObjects.
  virtual void SetBatchState(QXBatchSelAndVertexColor const& state) = 0;
  /// 0: drawn over what stands in front of it.
  virtual void SetDepthTest(unsigned char bTest) = 0;
  /// 0: hides nothing that is drawn later.
  virtual void SetDepthWrite(unsigned char bWrite) = 0;
  /// The device's polygon offset: dConstant in depth steps, dSlope times the face's depth slope; above 0 is farther.
  virtual void SetDepthBias(double dConstant, double dSlope) = 0;
  /// Width of lines in pixels, 1 at first.
  virtual void SetLineWidth(double dPixels) = 0;
  /// Size of points in pixels, 1 at first.
  virtual void SetPointSize(double dPixels) = 0;
  /// Cuts away what lies behind any of the planes, in world coordinates; a count of 0 cuts nothing.
  virtual void SetClipPlanes(QXPlane const* pPlanes, unsigned int nCount) = 0;

  /// Pass that draws the object while its target is in the given state. Does nothing here.
  virtual void SetRenderStatePass(RenderStateSet eState, QXPass& pass);

  /// Takes a pass of SetRenderStatePass away again.
  virtual void RemoveRenderStatePass(RenderStateSet eState) = 0;
  /// Pass for the states that have none of their own, copied; null: the renderer's standard material.
  virtual void SetPass(QXPass const* pPass) = 0;
  /// Shader file names for vertices and fragments; empty: the renderer's own. 0 if they do not compile.
  virtual unsigned char SetShaderPrograms(QdcUnicodeString const& strVertex, QdcUnicodeString const& strFragment) = 0;
  /// Value of a uniform of the drawable's shaders; a name that they do not have is forgotten.
  virtual void SetShaderParameter(QdcUnicodeString const& strName, QXVector4d const& vecValue) = 0;
  /// Block of uniforms bound while the drawable is drawn, not owned; null unbinds it.
  virtual void SetUniformBuffer(QXUniformBuffer* pBuffer) = 0;
  /// Animation that moves the vertices, not owned; null leaves them at rest.
  virtual void SetSkeletonAnimation(QXSkeletonAnimation* pAnimation) = 0;
  virtual QXSkeletonAnimation* GetSkeletonAnimation() const = 0;
  /// Nearest hit of a ray with the triangles, in world coordinates.
  /// @param dDistance  set on a hit, in lengths of vecDirection
  /// @return  1 on a hit
  virtual unsigned char Intersect(
      QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const = 0;
  /// Bytes that the drawable holds on the device.
  virtual unsigned int GetDeviceMemory() const = 0;

  /// How the drawable's material is described from now on. Does nothing here.
  virtual void SetMaterialSystemType(QXMaterialSystemType eType);
};

}  // namespace QXC
