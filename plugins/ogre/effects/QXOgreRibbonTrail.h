/// @file
/// The ribbons that hosts hold.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <QxGraphics3D/renderop/QXRibbonTrail3D.h>

#include <plugins/ogre/QXOgreSceneItem.h>
#include <plugins/ogre/QXOgreTextureSource.h>
#include <plugins/ogre/effects/QXOgreQuads.h>
#include <plugins/ogre/effects/QXOgreRibbon.h>

namespace QXC {

class QXOgreDevice;
class QXOgreScene;

/// Ribbons of one scene, computed anew for each view in the coordinates of the eye, in double. At first it is one ribbon
/// of up to 20 points, which are white and one unit wide and lose nothing. Where two parts of a ribbon meet, they share
/// the edge that halves their angle. Heights of points are exaggerated, widths and lengths are not. A ribbon is one draw
/// operation; it takes no light. Along a ribbon u runs from 0 at its head to 1 at its end, across it v from its left
/// side to its right one, as seen by what moves ahead.
/// Points that are no numbers are ignored. Where it outlives its scene, it draws nothing any more.
/// Cost:   a view is linear in the points. Allocates only while there are more than ever before.
class QXOgreRibbonTrail final : public QXRibbonTrail3D, private QXOgreSceneItem {
public:
  QXOgreRibbonTrail(QXOgreDevice& device, QXOgreScene& scene, QdcUnicodeString const& strName);
  ~QXOgreRibbonTrail() override;
  QXOgreRibbonTrail(QXOgreRibbonTrail const&) = delete;
  QXOgreRibbonTrail& operator=(QXOgreRibbonTrail const&) = delete;

  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetVisible(unsigned char bVisible) override { m_bVisible = bVisible; }
  unsigned char IsVisible() const override { return m_bVisible; }
  void SetTexture(QXTexture* pTexture) override;
  void SetTrailCount(unsigned int nCount) override { m_arrRibbons.resize(nCount); }
  unsigned int GetTrailCount() const override { return static_cast<unsigned int>(m_arrRibbons.size()); }
  void SetMaxPointCount(unsigned int nCount) override;
  unsigned int GetMaxPointCount() const override { return m_nMaxPoints; }
  void SetTrailLength(double dLength) override { m_dLength = dLength; }
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
  /// Time does not run backwards: what is not above 0 changes nothing.
  void Advance(double dSeconds) override;

private:
  /// A point in the coordinates of the eye.
  struct Station {
    QXVector3d m_vecPosition;
    /// Half the width along the edge that the parts before and behind share.
    QXVector3d m_vecRight;
    QXColorValue3D m_Color;
    /// From the head along the ribbon.
    double m_dDistance;
  };

  void Queue(QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths,
      QXOgreCounts& counts) override;
  QXBoundingBox GetVisibleBounds() const override;
  void LeaveScene() override;

  /// Past the last: one as new ones are.
  QXOgreRibbon const& Find(unsigned int nTrail) const;
  /// False if the view sees nothing of the ribbon.
  bool FindStations(QXOgreRibbon const& ribbon, QXOgreView const& view);
  void TurnStations(QXOgreView const& view);
  void AddQuads();
  void NoteRun(std::size_t nFirst, QXOgreTextureSource const* pSource);

  QdcUnicodeString m_strName;
  /// Null once the scene has gone.
  QXOgreScene* m_pScene;
  QXOgreDevice& m_Device;
  std::unique_ptr<QXOgreQuads> m_pQuads;
  std::unique_ptr<QXOgreTextureUse> m_pUse;
  std::vector<QXOgreRibbon> m_arrRibbons;
  QXVector3d m_vecNormal;
  double m_dLength;
  unsigned int m_nMaxPoints;
  unsigned char m_bVisible;
  unsigned char m_bFaceCamera;
  // Of the ribbon and the view that are being drawn.
  std::vector<QXOgreRibbonPoint> m_arrPoints;
  std::vector<Station> m_arrStations;
  std::vector<QXOgreQuads::Run> m_arrRuns;
};

}  // namespace QXC
