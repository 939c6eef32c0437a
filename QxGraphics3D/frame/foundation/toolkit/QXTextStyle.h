/// @file
/// Style of a text.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// Font, size and cut of a text. A value: copies share nothing.
class QXGRAPHICS3D_API QXTextStyle {
public:
  QXTextStyle();
  QXTextStyle(QXTextStyle const& other);
  QXTextStyle& operator=(QXTextStyle const& other);
  ~QXTextStyle();

  /// Family name of the font; empty, as at first, means the default font.
  QdcUnicodeString GetFaceName() const { return m_strFaceName; }
  void SetFaceName(QdcUnicodeString const& strFaceName) { m_strFaceName = strFaceName; }

  /// Size in points at 96 dpi, 12 at first. Any value is kept.
  double GetSize() const { return m_dSize; }
  void SetSize(double dSize) { m_dSize = dSize; }
  /// What the size is multiplied by for texts that stand in the scene, 1 at first.
  double GetText3DScale() const { return m_dText3DScale; }
  void SetText3DScale(double dScale) { m_dText3DScale = dScale; }

  unsigned char IsBold() const { return m_bBold; }
  void SetBold(unsigned char bBold) { m_bBold = bBold; }
  unsigned char IsItalic() const { return m_bItalic; }
  void SetItalic(unsigned char bItalic) { m_bItalic = bItalic; }

private:
  QdcUnicodeString m_strFaceName;
  double m_dSize = 12;
  double m_dText3DScale = 1;
  unsigned char m_bBold = 0;
  unsigned char m_bItalic = 0;
};

}  // namespace QXC
