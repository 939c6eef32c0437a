/// @file
/// The overlay that hosts hold.
#pragma once

#include <memory>

#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>

#include <plugins/ogre/QXOgreTextureSource.h>

namespace QXC {

/// A rectangle over the pictures of targets. Until it is given a place it has none and is not drawn; it is white, and
/// shows the whole of its texture. Its edges go to the nearest whole pixels, so that a picture of its size is sharp.
class QXOgreOverlay final : public QXRenderOperationOverlay {
public:
  explicit QXOgreOverlay(QdcUnicodeString const& strName);
  ~QXOgreOverlay() override = default;
  QXOgreOverlay(QXOgreOverlay const&) = delete;
  QXOgreOverlay& operator=(QXOgreOverlay const&) = delete;

  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetVisible(unsigned char bVisible) override { m_bVisible = bVisible; }
  unsigned char IsVisible() const override { return m_bVisible; }
  /// From now on it keeps its distance from the upper left corner where the target changes its size. What is not wider
  /// and higher than nothing is not drawn.
  void SetRect(QdcRect2D const& rcArea) override;
  void SetZOrder(int nZOrder) override { m_nZOrder = nZOrder; }
  /// Its left and top belong to the upper left corner.
  void SetTexture(QXTexture* pTexture, QdcRect2D const& rcPart) override;
  void SetColor(QXColorValue3D const& color) override { m_Color = color; }

  /// Moves the lower left corner to these pixels, counted from that of the target, and keeps it there where the target
  /// changes its size. Width and height stay.
  void SetPosition(double dLeft, double dBottom);
  int GetZOrder() const { return m_nZOrder; }
  QXColorValue3D const& GetColor() const { return m_Color; }
  /// Null without a texture.
  QXOgreTextureUse const* GetUse() const { return m_pUse.get(); }
  /// Whole pixels of a target of that size, counted from its upper left corner, as far as they lie in it, and the part of
  /// the texture that lies there. False if nothing does.
  bool Place(int nWidth, int nHeight, QdcRect2D& rcPixels, QdcRect2D& rcPart) const;

private:
  QdcUnicodeString m_strName;
  /// Counted from the edge that m_bFromBottom names, up or down to the nearer side of the rectangle.
  double m_dLeft;
  double m_dDistance;
  double m_dWidth;
  double m_dHeight;
  QdcRect2D m_rcPart;
  QXColorValue3D m_Color;
  std::unique_ptr<QXOgreTextureUse> m_pUse;
  int m_nZOrder;
  unsigned char m_bVisible;
  bool m_bFromBottom;
};

}  // namespace QXC
