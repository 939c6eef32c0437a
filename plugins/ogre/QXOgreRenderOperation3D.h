/// @file
/// The drawable that hosts hold.
#pragma once

#include <QxGraphics3D/renderop/QXRenderOperation3D.h>

#include <plugins/ogre/QXOgreDrawable.h>

namespace QXC {

class QXOgreRenderOperationManager;

/// The library's drawable on top of a QXOgreDrawable. Where one outlives the renderer, it draws nothing any more.
class QXOgreRenderOperation3D final : public QXRenderOperation3D {
public:
  /// @param pDevice  null: a drawable that draws nothing
  QXOgreRenderOperation3D(QXOgreRenderOperationManager& manager, QXOgreDevice* pDevice);
  ~QXOgreRenderOperation3D() override;
  QXOgreRenderOperation3D(QXOgreRenderOperation3D const&) = delete;
  QXOgreRenderOperation3D& operator=(QXOgreRenderOperation3D const&) = delete;

  QXOgreDrawable& GetDrawable() { return m_Drawable; }
  QXOgreDrawable const& GetDrawable() const { return m_Drawable; }
  /// Multiplies the colour until white is set; the colour itself stays.
  void SetMarkColor(QXColorValue3D const& color);
  /// A bucket of static geometry in place of what it held.
  void SetBucket(QXStaticGeometryBucket const& bucket, QdcArray<double> const& arrLevelDistances);
  /// The renderer goes first.
  void LeaveManager() { m_pManager = nullptr; }
  /// Rises from each drawable of the manager to the next.
  unsigned long long GetNumber() const { return m_nNumber; }

  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetName(QdcUnicodeString const& strName) override { m_strName = strName; }
  void SetBoundingBox(QXBoundingBox const& box) override { m_Drawable.SetBounds(box); }
  QXBoundingBox const& GetBoundingBox() const override { return m_Drawable.GetBounds(); }
  QXBoundingBox GetWorldBoundingBox() const override { return m_Drawable.GetWorldBounds(); }
  void SetModelMatrix(QXMatrix4d const& matModel) override { m_Drawable.SetModelMatrix(matModel); }
  QXMatrix4d const& GetModelMatrix() const override { return m_Drawable.GetModelMatrix(); }
  void SetVisible(unsigned char bVisible) override { m_Drawable.SetVisible(bVisible); }
  unsigned char IsVisible() const override { return m_Drawable.IsVisible(); }
  void SetColor(QXColorValue3D const& color) override;
  QXColorValue3D const& GetColor() const override { return m_Drawable.GetLook().m_Color; }
  void SetOpacity(double dOpacity) override;
  double GetOpacity() const override { return m_Drawable.GetLook().m_dOpacity; }
  void SetSelectionID(unsigned int nID) override { m_Drawable.SetSelectionID(nID); }
  unsigned int GetSelectionID() const override { return m_Drawable.GetSelectionID(); }
  void SetSelected(unsigned char bSelected) override;
  unsigned char IsSelected() const override { return m_Drawable.GetLook().m_bSelected; }
  void SetSelectionColor(QXColorValue3D const& color) override;
  void SetVisibleDistance(double dNear, double dFar) override;
  void SetRenderPriority(int nPriority) override;
  int GetRenderPriority() const override { return m_Drawable.GetLook().m_nPriority; }
  void SetCastShadow(unsigned char) override {}
  void SetReceiveShadow(unsigned char) override {}
  void SetLightEnable(unsigned char bEnable) override;
  void SetWireframe(unsigned char bWireframe) override;
  void SetCullingMode(CullingMode eMode) override;
  /// Indices in threes are triangles; without indices the vertices stand in threes themselves.
  void SetRenderOperation(QXRenderOperation const* pOperation) override;
  void SetRenderOperationMultiIndex(QXRenderOperationMultiIndex* pOperation) override;
  void SetRenderOperationSet(QXRenderOperationSet const& set) override;
  void ClearGeometry() override { m_Drawable.ClearGeometry(); }
  unsigned int GetVertexCount() const override { return m_Drawable.GetGeometry().GetVertexCount(); }
  unsigned int GetTriangleCount() const override { return m_Drawable.GetTriangleCount(); }
  unsigned int GetIndexRangeCount() const override;
  unsigned char UpdatePositions(unsigned int nFirst, unsigned int nCount, float const* pPositions) override;
  unsigned char UpdateColors(unsigned int nFirst, unsigned int nCount, unsigned int const* pColors) override;
  void SetIndexRangeVisible(unsigned int nRange, unsigned char bVisible) override;
  void SetIndexRangeColor(unsigned int nRange, QXColorValue3D const& color) override;
  /// Takes no effect on geometry without texture coordinates.
  void SetTexture(unsigned int nUnit, QXTexture* pTexture) override;
  /// Of all ranges; a range's own transform comes first.
  void SetTextureMatrix(unsigned int nUnit, QXMatrix4d const& matTexture) override;
  /// Takes effect on static geometry alone.
  void SetBatchState(QXBatchSelAndVertexColor const& state) override;
  void SetDepthTest(unsigned char bTest) override;
  void SetDepthWrite(unsigned char bWrite) override;
  void SetDepthBias(double dConstant, double dSlope) override;
  void SetLineWidth(double dPixels) override;
  void SetPointSize(double dPixels) override;
  void SetClipPlanes(QXPlane const*, unsigned int) override {}
  void RemoveRenderStatePass(RenderStateSet) override {}
  void SetPass(QXPass const*) override {}
  /// Programs of labels (QXTextLayout.h) and none are known; with any others the drawable keeps what it had.
  unsigned char SetShaderPrograms(QdcUnicodeString const& strVertex, QdcUnicodeString const& strFragment) override;
  void SetShaderParameter(QdcUnicodeString const&, QXVector4d const&) override {}
  void SetUniformBuffer(QXUniformBuffer*) override {}
  /// Another renderer's skeleton is as good as none.
  void SetSkeletonAnimation(QXSkeletonAnimation* pAnimation) override;
  QXSkeletonAnimation* GetSkeletonAnimation() const override;
  /// Of both sides of the triangles in the visible ranges, of static geometry those of level 0; neither labels nor wide
  /// lines have any in the world. Textures do not count. Reads the vertices back from the device each time.
  unsigned char Intersect(
      QXVector3d const& vecOrigin, QXVector3d const& vecDirection, double& dDistance) const override;
  unsigned int GetDeviceMemory() const override;

private:
  /// Runs work that may make or fill buffers of the device: 1, or 0 with the reason as the renderer's error text.
  template <class Work>
  unsigned char Try(Work&& work);
  void SetGeometry(QXRenderOperationMultiIndex const& source);
  /// Changes the look by a function and hands it to the drawable.
  template <class Change>
  unsigned char ChangeLook(Change&& change);

  QXOgreRenderOperationManager* m_pManager;
  QXOgreDrawable m_Drawable;
  QdcUnicodeString m_strName;
  unsigned long long m_nNumber;
};

}  // namespace QXC
