/// @file
/// Parameters of reading one file.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXExchangeParams.h>

namespace QXC {

/// Parameters of reading one file. A value.
class QXGRAPHICS3D_API QXImportParams : public QXExchangeParams {
public:
  QXImportParams() = default;
  QXImportParams(QXImportParams const&) = default;
  QXImportParams& operator=(QXImportParams const&) = default;
  ~QXImportParams() override;

  /// Text for the parser of the type, as the maker of the parameters was given it; model readers take none.
  void SetText(QdcUnicodeString const& strText) { m_strText = strText; }
  QdcUnicodeString const& GetText() const { return m_strText; }

private:
  QdcUnicodeString m_strText;
};

}  // namespace QXC
