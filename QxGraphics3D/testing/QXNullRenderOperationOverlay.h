/// @file
/// An overlay of the null renderer.
#pragma once

#include <QxGraphics3D/renderop/QXRenderOperationOverlay.h>
#include <QxGraphics3D/testing/QXNullObject.h>
#include <QxGraphics3D/testing/QXNullTextureUse.h>

namespace QXC {

/// Keeps what can be asked for and counts its texture.
class QXNullRenderOperationOverlay final : public QXRenderOperationOverlay, public QXNullObject {
public:
  QXNullRenderOperationOverlay(std::shared_ptr<QXCallLog> pLog, std::string strLabel, QdcUnicodeString const& strName)
      : QXNullObject(std::move(pLog), std::move(strLabel)), m_strName(strName) {}
  ~QXNullRenderOperationOverlay() override { Record("destroyed"); }

  QdcUnicodeString const& GetName() const override { return m_strName; }
  void SetVisible(unsigned char bVisible) override {
    Record("SetVisible", bVisible);
    m_bVisible = bVisible;
  }
  unsigned char IsVisible() const override { return m_bVisible; }
  void SetRect(QdcRect2D const& rcArea) override { Record("SetRect", rcArea); }
  void SetZOrder(int nZOrder) override { Record("SetZOrder", nZOrder); }
  void SetTexture(QXTexture* pTexture, QdcRect2D const& rcPart) override {
    Record("SetTexture", QXLoggedMemory{pTexture}, rcPart);
    m_Texture.Set(pTexture);
  }
  void SetColor(QXColorValue3D const& color) override { Record("SetColor", color); }

private:
  QdcUnicodeString m_strName;
  unsigned char m_bVisible = 1;
  QXNullTextureUse m_Texture;
};

}  // namespace QXC
