/// @file
/// Parameters of one exchange with a file, in either direction.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

namespace QXC {

/// What every exchange with a file needs to know. A value: copies are independent.
class QXGRAPHICS3D_API QXExchangeParams {
public:
  QXExchangeParams() = default;
  QXExchangeParams(QXExchangeParams const&) = default;
  QXExchangeParams& operator=(QXExchangeParams const&) = default;
  virtual ~QXExchangeParams();

  void SetFilePathName(QdcUnicodeString const& strFilePathName) { m_strFilePathName = strFilePathName; }
  QdcUnicodeString const& GetFilePathName() const { return m_strFilePathName; }

  /// A number of QXFileType::EmType, or of the host's own; -1: unknown.
  void SetFileType(int nFileType) { m_nFileType = nFileType; }
  int GetFileType() const { return m_nFileType; }

private:
  QdcUnicodeString m_strFilePathName;
  int m_nFileType = -1;
};

}  // namespace QXC
