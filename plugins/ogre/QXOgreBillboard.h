/// @file
/// The billboard that hosts hold.
#pragma once

#include <cstddef>
#include <memory>

#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>
#include <QxGraphics3D/renderop/QXBillboard.h>

#include <plugins/ogre/QXOgreTextureSource.h>

namespace QXC {

class QXOgreBillboardSet;

/// A picture that faces the camera of each viewport that draws its scene. Until something else is set it is a square of
/// one world unit, white, and shows the whole of its texture. Without a texture, or once that has died, it is a plain
/// rectangle of its colour. Where it outlives its scene, it draws nothing any more.
class QXOgreBillboard final : public QXBillboard {
public:
  /// Stands in the scene of the set from now on.
  explicit QXOgreBillboard(QXOgreBillboardSet& set);
  ~QXOgreBillboard() override;
  QXOgreBillboard(QXOgreBillboard const&) = delete;
  QXOgreBillboard& operator=(QXOgreBillboard const&) = delete;

  void SetVisible(unsigned char bVisible) override { m_bVisible = bVisible; }
  unsigned char IsVisible() const override { return m_bVisible; }
  void SetPosition(QXVector3d const& vecPosition) override { m_vecPosition = vecPosition; }
  QXVector3d const& GetPosition() const override { return m_vecPosition; }
  /// A size that is not above 0 is not drawn.
  void SetSize(double dWidth, double dHeight, unsigned char bPixels) override;
  /// The part's left and top belong to the upper left corner.
  void SetTexture(QXTexture* pTexture, QdcRect2D const& rcPart) override;
  void SetColor(QXColorValue3D const& color) override { m_Color = color; }
  void SetRotation(double dRadians) override { m_dRotation = dRadians; }
  void SetVisibleDistance(double dNear, double dFar) override;
  void SetSelectionID(unsigned int nID) override { m_nSelectionID = nID; }

private:
  // The set draws what is kept here, and is the only one that may put billboards into an order.
  friend class QXOgreBillboardSet;

  QXOgreBillboardSet* m_pSet;
  QXVector3d m_vecPosition;
  QdcRect2D m_rcPart;
  QXColorValue3D m_Color;
  double m_dWidth;
  double m_dHeight;
  double m_dRotation;
  double m_dNear;
  double m_dFar;
  std::unique_ptr<QXOgreTextureUse> m_pUse;
  /// Place in the set.
  std::size_t m_nIndex;
  /// Rises from each billboard of the set to the next: of two at the same depth the later one is drawn over the other.
  unsigned long long m_nNumber;
  unsigned int m_nSelectionID;
  unsigned char m_bVisible;
  unsigned char m_bSelected;
  unsigned char m_bPixels;
};

}  // namespace QXC
