/// @file
/// A billboard of the null renderer.
#pragma once

#include <QxGraphics3D/renderop/QXBillboard.h>
#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/testing/QXNullTextureUse.h>

namespace QXC {

/// Keeps what can be asked for and counts its texture.
class QXNullBillboard final : public QXBillboard, public QXNullObject {
public:
  QXNullBillboard(std::shared_ptr<QXCallLog> pLog, std::string strLabel)
      : QXNullObject(std::move(pLog), std::move(strLabel)) {}
  ~QXNullBillboard() override { Record("destroyed"); }

  void SetVisible(unsigned char bVisible) override {
    Record("SetVisible", bVisible);
    m_bVisible = bVisible;
  }
  unsigned char IsVisible() const override { return m_bVisible; }
  void SetPosition(QXVector3d const& vecPosition) override {
    Record("SetPosition", vecPosition);
    m_vecPosition = vecPosition;
  }
  QXVector3d const& GetPosition() const override { return m_vecPosition; }
  void SetSize(double dWidth, double dHeight, unsigned char bPixels) override {
    Record("SetSize", dWidth, dHeight, bPixels);
  }
  void SetTexture(QXTexture* pTexture, QdcRect2D const& rcPart) override {
    Record("SetTexture", QXLoggedMemory{pTexture}, rcPart);
    m_Texture.Set(pTexture);
  }
  void SetColor(QXColorValue3D const& color) override { Record("SetColor", color); }
  void SetRotation(double dRadians) override { Record("SetRotation", dRadians); }
  void SetVisibleDistance(double dNear, double dFar) override { Record("SetVisibleDistance", dNear, dFar); }
  void SetSelectionID(unsigned int nID) override { Record("SetSelectionID", nID); }

private:
  unsigned char m_bVisible = 1;
  QXVector3d m_vecPosition;
  QXNullTextureUse m_Texture;
};

}  // namespace QXC
