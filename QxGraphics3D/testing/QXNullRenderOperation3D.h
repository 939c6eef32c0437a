/// @file
/// A drawable of the null renderer.
#pragma once

#include <map>
#include <vector>

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/renderop/QXRenderOperation3D.h>
#include <QxGraphics3D/testing/QXNullGeometry.h>
#include <QxGraphics3D/testing/QXNullObject.h>

namespace QXC {

class QXNullRenderOperationManager;
class QXNullScene;
class QXTextureManager;
struct QXStaticGeometryBucket;

/// Copies the geometry handed in, keeps the state and draws nothing: cameras count what they would draw. Answers that
/// need the geometry alone (bounds, counts, rays) are true ones. References on textures are taken and given back.
/// Made by QXNullRenderOperationManager.
class QXNullRenderOperation3D final : public QXRenderOperation3D, public QXNullObject {
public:
  QXNullRenderOperation3D(
      QXNullRenderOperationManager* pManager, std::shared_ptr<QXCallLog> pLog, std::string const& strLabel);
  /// Leaves scene and manager, and gives the textures back.
  ~QXNullRenderOperation3D() override;

  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetName(QdcUnicodeString const& strName) override;
  void SetBoundingBox(QXBoundingBox const& box) override;
  QXBoundingBox const& GetBoundingBox() const override { return m_Bounds; }
  QXBoundingBox GetWorldBoundingBox() const override;
  void SetModelMatrix(QXMatrix4d const& matModel) override;
  QXMatrix4d const& GetModelMatrix() const override { return m_matModel; }
  void SetVisible(unsigned char bVisible) override;
  unsigned char IsVisible() const override { return m_bVisible; }
  void SetColor(QXColorValue3D const& color) override;
  QXColorValue3D const& GetColor() const override { return m_Color; }
  void SetOpacity(double dOpacity) override;
  double GetOpacity() const override { return m_dOpacity; }
  void SetSelectionID(unsigned int nID) override;
  unsigned int GetSelectionID() const override { return m_nSelectionID; }
  void SetSelected(unsigned char bSelected) override;
  unsigned char IsSelected() const override { return m_bSelected; }
  void SetSelectionColor(QXColorValue3D const& color) override;
  void SetVisibleDistance(double dNear, double dFar) override;
  void SetRenderPriority(int nPriority) override;
  int GetRenderPriority() const override { return m_nPriority; }
  void SetCastShadow(unsigned char bCast) override;
  void SetReceiveShadow(unsigned char bReceive) override;
  void SetLightEnable(unsigned char bEnable) override;
  void SetWireframe(unsigned char bWireframe) override;
  void SetCullingMode(CullingMode eMode) override;
  void SetRenderOperation(QXRenderOperation const* pOperation) override;
  void SetRenderOperationMultiIndex(QXRenderOperationMultiIndex* pOperation) override;
  void SetRenderOperationSet(QXRenderOperationSet const& set) override;
  void ClearGeometry() override;
  unsigned int GetVertexCount() const override { return m_Geometry.GetVertexCount(); }
  unsigned int GetTriangleCount() const override;
  unsigned int GetIndexRangeCount() const override;
  unsigned char UpdatePositions(unsigned int nFirst, unsigned int nCount, float const* pPositions) override;
  unsigned char UpdateColors(unsigned int nFirst, unsigned int nCount, unsigned int const* pColors) override;
  void SetIndexRangeVisible(unsigned int nRange, unsigned char bVisible) override;
  void SetIndexRangeColor(unsigned int nRange, QXColorValue3D const& color) override;
  void SetTexture(unsigned int nUnit, QXTexture* pTexture) override;
  void SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) override;
  void SetBatchState(QXBatchSelAndVertexColor const& state) override;
  void SetDepthTest(unsigned char bTest) override;
  void SetDepthWrite(unsigned char bWrite) override;
  void SetDepthBias(double dConstant, double dSlope) override;
  void SetLineWidth(double dPixels) override;
  void SetPointSize(double dPixels) override;
  void SetClipPlanes(QXPlane const* pPlanes, unsigned int nCount) override;
  void SetRenderStatePass(RenderStateSet eState, QXPass& pass) override;
  void RemoveRenderStatePass(RenderStateSet eState) override;
  void SetPass(QXPass const* pPass) override;
  /// 1 if both names are empty or those of label drawables: there is nothing here that could compile.
  unsigned char SetShaderPrograms(QdcUnicodeString const& strVertex, QdcUnicodeString const& strFragment) override;
  void SetShaderParameter(QdcUnicodeString const& strName, QXVector4d const& vecValue) override;
  void SetUniformBuffer(QXUniformBuffer* pBuffer) override;
  void SetSkeletonAnimation(QXSkeletonAnimation* pAnimation) override;
  QXSkeletonAnimation* GetSkeletonAnimation() const override { return m_pAnimation; }
  unsigned char Intersect(
      QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const override;
  /// Bytes of the copied geometry.
  unsigned int GetDeviceMemory() const override;
  void SetMaterialSystemType(QXMaterialSystemType eType) override;

  /// A bucket of static geometry in place of what it held.
  /// @param pTextures  has the textures of the passes by their names; may be null
  void SetBucket(
      QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances, QXTextureManager* pTextures);

  /// What a camera at that place would draw of it, were it in its frustum.
  unsigned char IsDrawnFrom(QXVector3d const& vecEye, QXBoundingBox const& boxWorld) const;
  /// Index ranges that are drawn while the eye is so far from the bounds, each of which is one draw operation. The
  /// distance matters to levels of static geometry alone.
  unsigned int GetDrawnRangeCount(double dDistance = 0.0) const;
  /// Triangles of the ranges that are drawn.
  unsigned int GetDrawnTriangleCount(double dDistance = 0.0) const;
  QXNullGeometry const& GetGeometry() const { return m_Geometry; }

  /// The scene that it stands in, null for none; QXNullScene::Attach and Detach set it.
  QXNullScene* m_pScene = nullptr;
  /// The node that it hangs under, empty for the root.
  QdcUnicodeString m_strNode;
  /// Null once the manager is gone.
  QXNullRenderOperationManager* m_pManager;

private:
  /// The model matrix with the node's behind it.
  QXMatrix4d GetWorldMatrix() const;
  void TakeGeometryBounds();
  void TakePassTextures(QXStaticGeometryBucket const& bucket, QXTextureManager& textures);
  void TakePackageTextures(QXRenderOperationMultiIndex const& operation);
  void ReleasePackageTextures();

  QXNullGeometry m_Geometry;
  QdcUnicodeString m_strName;
  QXBoundingBox m_Bounds;
  /// 1: m_Bounds was set by the host and stays when positions change.
  unsigned char m_bBoundsGiven = 0;
  QXMatrix4d m_matModel;
  unsigned char m_bVisible = 1;
  QXColorValue3D m_Color{1.0, 1.0, 1.0, 1.0};
  double m_dOpacity = 1.0;
  unsigned int m_nSelectionID = 0;
  unsigned char m_bSelected = 0;
  double m_dNearDist = 0.0;
  double m_dFarDist = 0.0;
  int m_nPriority = 0;
  std::map<unsigned int, QXTexture*> m_mapTextures;
  std::vector<QXTexture*> m_arrPackageTextures;
  QXSkeletonAnimation* m_pAnimation = nullptr;
};

}  // namespace QXC
