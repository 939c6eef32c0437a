/// @file
/// Ribbons of the null renderer.
#pragma once

#include <vector>

#include <QxGraphics3D/renderop/QXRibbonTrail3D.h>
#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/testing/QXNullTextureUse.h>

namespace QXC {

/// Keeps the points and the settings of every trail; nothing fades, since nothing is seen.
class QXNullRibbonTrail3D final : public QXRibbonTrail3D, public QXNullObject {
public:
  QXNullRibbonTrail3D(std::shared_ptr<QXCallLog> pLog, std::string strLabel, QdcUnicodeString const& strName);
  ~QXNullRibbonTrail3D() override;

  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetVisible(unsigned char bVisible) override;
  unsigned char IsVisible() const override { return m_bVisible; }
  void SetTexture(QXTexture* pTexture) override;
  void SetTrailCount(unsigned int nCount) override;
  unsigned int GetTrailCount() const override { return static_cast<unsigned int>(m_arrTrails.size()); }
  void SetMaxPointCount(unsigned int nCount) override;
  unsigned int GetMaxPointCount() const override { return m_nMaxPoints; }
  void SetTrailLength(double dLength) override;
  double GetTrailLength() const override { return m_dLength; }
  void AddPoint(unsigned int nTrail, QXVector3d const& vecPoint) override;
  void ClearTrail(unsigned int nTrail) override;
  void ClearAllTrails() override;
  void SetInitialColor(unsigned int nTrail, QXColorValue3D const& color) override;
  QXColorValue3D GetInitialColor(unsigned int nTrail) const override { return Find(nTrail).m_Color; }
  void SetColorChange(unsigned int nTrail, QXColorValue3D const& colorPerSecond) override;
  QXColorValue3D GetColorChange(unsigned int nTrail) const override { return Find(nTrail).m_ColorChange; }
  void SetInitialWidth(unsigned int nTrail, double dWidth) override;
  double GetInitialWidth(unsigned int nTrail) const override { return Find(nTrail).m_dWidth; }
  void SetWidthChange(unsigned int nTrail, double dWidthPerSecond) override;
  double GetWidthChange(unsigned int nTrail) const override { return Find(nTrail).m_dWidthChange; }
  void SetFaceCamera(unsigned char bFaceCamera, QXVector3d const& vecNormal) override;
  void Advance(double dSeconds) override;

  /// Points of a trail, oldest first; none past the last trail.
  std::vector<QXVector3d> const& GetPoints(unsigned int nTrail) const { return Find(nTrail).m_arrPoints; }

private:
  struct Trail {
    std::vector<QXVector3d> m_arrPoints;
    QXColorValue3D m_Color{1.0, 1.0, 1.0, 1.0};
    QXColorValue3D m_ColorChange;
    double m_dWidth = 1.0;
    double m_dWidthChange = 0.0;
  };

  /// Past the last: a trail as new ones are.
  Trail const& Find(unsigned int nTrail) const;

  QdcUnicodeString m_strName;
  unsigned char m_bVisible = 1;
  unsigned int m_nMaxPoints = 20;
  double m_dLength = 0.0;
  std::vector<Trail> m_arrTrails{1};
  QXNullTextureUse m_Texture;
};

}  // namespace QXC
