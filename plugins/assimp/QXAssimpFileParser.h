/// @file
/// The model reader.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseModel.h>

#include <string>
#include <vector>

namespace QXAssimp {

/// Reads 3DS, glTF 2, OBJ, PLY, STL, COLLADA and FBX.
class QXAssimpFileParser : public QXC::QXFileParseModel {
public:
  unsigned char Open(QXC::QXImportParams* pParams) override;
  QXC::QdcUnicodeString const& GetErrorText() const override { return m_strError; }

  /// Reads a model from memory, as Open does from a file; std::bad_alloc alone passes. The importer runs in a process
  /// of its own, since some broken files end it.
  /// @param strFolder  where companions of the model lie, empty if none may be read
  /// @param vecBytes   contents; moved into and changed
  /// @return  an empty string, or the reason of the failure
  std::string OpenBytes(int nType, std::string const& strFolder, std::vector<unsigned char>&& vecBytes);

private:
  void NameModel(QXC::QdcUnicodeString const& strPath);

  QXC::QdcUnicodeString m_strError;
};

}  // namespace QXAssimp
