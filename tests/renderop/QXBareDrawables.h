/// @file
/// The least that each drawable interface lets a renderer get away with: every pure operation filled, nothing done.
#pragma once

#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/renderop/QXParticleSystem3D.h>
#include <QxGraphics3D/renderop/QXQueryOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/renderop/QXRenderOperationManager.h>
#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>
#include <QxGraphics3D/renderop/QXRibbonTrail3D.h>
#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>

namespace QXC {

class QXBareBillboard : public QXBillboard {
public:
  using QXBillboard::QXBillboard;
  void SetVisible(unsigned char) override {}
  unsigned char IsVisible() const override { return {}; }
  void SetPosition(QXVector3d const&) override {}
  QXVector3d const& GetPosition() const override { return m_vecPosition; }
  void SetSize(double, double, unsigned char) override {}
  void SetTexture(QXTexture*, QdcRect2D const&) override {}
  void SetColor(QXColorValue3D const&) override {}
  void SetRotation(double) override {}
  void SetVisibleDistance(double, double) override {}
  void SetSelectionID(unsigned int) override {}

  QXVector3d m_vecPosition;
};

class QXBareParticleSystem3D : public QXParticleSystem3D {
public:
  using QXParticleSystem3D::QXParticleSystem3D;
  void SetVisible(unsigned char) override {}
  void SetModelMatrix(QXMatrix4d const&) override {}
  void SetEmitting(unsigned char) override {}
  void SetEmissionRate(double) override {}
  void SetTexture(QXTexture*) override {}
  void Advance(double) override {}
  unsigned int GetParticleCount() const override { return {}; }
};

class QXBareQueryOperation3D : public QXQueryOperation3D {
public:
  using QXQueryOperation3D::QXQueryOperation3D;
  QdcUnicodeString const& GetName() const override { return m_strName; }
  void BeginQuery() override {}
  void EndQuery() override {}
  unsigned char IsResultReady() const override { return {}; }
  unsigned int GetPixelCount() override { return {}; }

  QdcUnicodeString m_strName;
};

class QXBareRenderOperation3D : public QXRenderOperation3D {
public:
  using QXRenderOperation3D::QXRenderOperation3D;
  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetName(QdcUnicodeString const&) override {}
  void SetBoundingBox(QXBoundingBox const&) override {}
  QXBoundingBox const& GetBoundingBox() const override { return m_Bounds; }
  QXBoundingBox GetWorldBoundingBox() const override { return {}; }
  void SetModelMatrix(QXMatrix4d const&) override {}
  QXMatrix4d const& GetModelMatrix() const override { return m_matModel; }
  void SetVisible(unsigned char) override {}
  unsigned char IsVisible() const override { return {}; }
  void SetColor(QXColorValue3D const&) override {}
  QXColorValue3D const& GetColor() const override { return m_Color; }
  void SetOpacity(double) override {}
  double GetOpacity() const override { return {}; }
  void SetSelectionID(unsigned int) override {}
  unsigned int GetSelectionID() const override { return {}; }
  void SetSelected(unsigned char) override {}
  unsigned char IsSelected() const override { return {}; }
  void SetSelectionColor(QXColorValue3D const&) override {}
  void SetVisibleDistance(double, double) override {}
  void SetRenderPriority(int) override {}
  int GetRenderPriority() const override { return {}; }
  void SetCastShadow(unsigned char) override {}
  void SetReceiveShadow(unsigned char) override {}
  void SetLightEnable(unsigned char) override {}
  void SetWireframe(unsigned char) override {}
  void SetCullingMode(CullingMode) override {}
  void SetRenderOperation(QXRenderOperation const*) override {}
  void SetRenderOperationMultiIndex(QXRenderOperationMultiIndex*) override {}
  void SetRenderOperationSet(QXRenderOperationSet const&) override {}
  void ClearGeometry() override {}
  unsigned int GetVertexCount() const override { return {}; }
  unsigned int GetTriangleCount() const override { return {}; }
  unsigned int GetIndexRangeCount() const override { return {}; }
  unsigned char UpdatePositions(unsigned int, unsigned int, float const*) override { return {}; }
  unsigned char UpdateColors(unsigned int, unsigned int, unsigned int const*) override { return {}; }
  void SetIndexRangeVisible(unsigned int, unsigned char) override {}
  void SetIndexRangeColor(unsigned int, QXColorValue3D const&) override {}
  void SetTexture(unsigned int, QXTexture*) override {}
  void SetTextureMatrix(unsigned int, QXMatrix4d const&) override {}
  void SetBatchState(QXBatchSelAndVertexColor const&) override {}
  void SetDepthTest(unsigned char) override {}
  void SetDepthWrite(unsigned char) override {}
  void SetDepthBias(double, double) override {}
  void SetLineWidth(double) override {}
  void SetPointSize(double) override {}
  void SetClipPlanes(QXPlane const*, unsigned int) override {}
  void RemoveRenderStatePass(RenderStateSet) override {}
  void SetPass(QXPass const*) override {}
  unsigned char SetShaderPrograms(QdcUnicodeString const&, QdcUnicodeString const&) override { return {}; }
  void SetShaderParameter(QdcUnicodeString const&, QXVector4d const&) override {}
  void SetUniformBuffer(QXUniformBuffer*) override {}
  void SetSkeletonAnimation(QXSkeletonAnimation*) override {}
  QXSkeletonAnimation* GetSkeletonAnimation() const override { return {}; }
  unsigned char Intersect(QXVector3d const&, QXVector3d const&, double&) const override { return {}; }
  unsigned int GetDeviceMemory() const override { return {}; }

  QXBoundingBox m_Bounds;
  QXColorValue3D m_Color;
  QXMatrix4d m_matModel;
  QdcUnicodeString m_strName;
};

class QXBareRenderOperationManager : public QXRenderOperationManager {
public:
  using QXRenderOperationManager::QXRenderOperationManager;
  unsigned int GetRenderOperationCount() const override { return {}; }
  QXRenderOperation3D* CreateRenderOperation3D(QdcUnicodeString const&, unsigned char) override { return {}; }
  void DestroyRenderOperation3D(QXRenderOperation3D*) override {}
  unsigned char AttachRenderOperation3D(QXRenderOperation3D*, QdcUnicodeString const&) override { return {}; }
  void DetachRenderOperation3D(QXRenderOperation3D*) override {}
  QXBillboard* CreateBillboard(QdcUnicodeString const&) override { return {}; }
  QXRenderOperation3D* CreateStaticGeometry3D(
      QdcUnicodeString const&, QXStaticGeometryBucket const&, QdcArray<double> const&) override {
    return {};
  }
  QXParticleSystem3D* CreateParticleSystem(QdcUnicodeString const&, QdcUnicodeString const&) override { return {}; }
  QXRibbonTrail3D* CreateRibbonTrail(
      QdcUnicodeString const&, QdcUnicodeString const&, QdcUnicodeString const&) override {
    return {};
  }
  QXQueryOperation3D* CreateQueryOperation(QdcUnicodeString const&) override { return {}; }
  QXSkeletonAnimation* CreateSkeletonAnimation(QdcUnicodeString const&) override { return {}; }
};

class QXBareRenderOperationOverlay : public QXRenderOperationOverlay {
public:
  using QXRenderOperationOverlay::QXRenderOperationOverlay;
  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetVisible(unsigned char) override {}
  unsigned char IsVisible() const override { return {}; }
  void SetRect(QdcRect2D const&) override {}
  void SetZOrder(int) override {}
  void SetTexture(QXTexture*, QdcRect2D const&) override {}
  void SetColor(QXColorValue3D const&) override {}

  QdcUnicodeString m_strName;
};

class QXBareRibbonTrail3D : public QXRibbonTrail3D {
public:
  using QXRibbonTrail3D::QXRibbonTrail3D;
  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetVisible(unsigned char) override {}
  unsigned char IsVisible() const override { return {}; }
  void SetTexture(QXTexture*) override {}
  void SetTrailCount(unsigned int) override {}
  unsigned int GetTrailCount() const override { return {}; }
  void SetMaxPointCount(unsigned int) override {}
  unsigned int GetMaxPointCount() const override { return {}; }
  void SetTrailLength(double) override {}
  double GetTrailLength() const override { return {}; }
  void AddPoint(unsigned int, QXVector3d const&) override {}
  void ClearTrail(unsigned int) override {}
  void ClearAllTrails() override {}
  void SetInitialColor(unsigned int, QXColorValue3D const&) override {}
  QXColorValue3D GetInitialColor(unsigned int) const override { return {}; }
  void SetColorChange(unsigned int, QXColorValue3D const&) override {}
  QXColorValue3D GetColorChange(unsigned int) const override { return {}; }
  void SetInitialWidth(unsigned int, double) override {}
  double GetInitialWidth(unsigned int) const override { return {}; }
  void SetWidthChange(unsigned int, double) override {}
  double GetWidthChange(unsigned int) const override { return {}; }
  void SetFaceCamera(unsigned char, QXVector3d const&) override {}
  void Advance(double) override {}

  QdcUnicodeString m_strName;
};

class QXBareSkeletonAnimation : public QXSkeletonAnimation {
public:
  using QXSkeletonAnimation::QXSkeletonAnimation;
  QdcUnicodeString const& GetName() const override { return m_strName; }
  int AddBone(QdcUnicodeString const&, int, QXMatrix4d const&) override { return {}; }
  int GetBoneCount() const override { return {}; }
  unsigned char SetKeys(int, QdcArray<QXAnimationKey*> const&) override { return {}; }
  double GetLength() const override { return {}; }
  void SetLoop(unsigned char) override {}
  void SetPlaying(unsigned char) override {}
  void SetTime(double) override {}
  double GetTime() const override { return {}; }
  void Advance(double) override {}

  QdcUnicodeString m_strName;
};

}  // namespace QXC
