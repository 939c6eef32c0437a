/// @file
/// What an importer may open: the model, from memory, and the files of its folder.
#pragma once

#include <assimp/IOSystem.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace QXAssimp {

class QXMtlMaps;

/// File access of one import. A model names companions (materials, buffers) by paths of its own; only those inside
/// the model's folder are opened, after following links, so that a hostile model reads nothing else of the disk.
/// Nothing is ever written.
class QXModelFolder : public Assimp::IOSystem {
public:
  /// @param strFolder    folder of the model, empty for a model without companions
  /// @param strFileName  name that the importer is told, without a folder
  /// @param vecModel     contents of the model; outlives this object and every stream of it
  /// @param maps         gets the options of MTL files, which the importer then no longer sees; outlives this object
  QXModelFolder(
      std::string strFolder, std::string strFileName, std::vector<unsigned char> const& vecModel, QXMtlMaps& maps);

  bool Exists(char const* szFile) const override;
  char getOsSeparator() const override;
  Assimp::IOStream* Open(char const* szFile, char const* szMode) override;
  void Close(Assimp::IOStream* pFile) override;

private:
  /// Path to read for a name that the importer asks for; empty if it lies outside the folder or does not exist.
  std::string Resolve(std::string const& strFile) const;

  std::string m_strFolder;
  std::string m_strFileName;
  std::vector<unsigned char> const& m_vecModel;
  QXMtlMaps& m_Maps;
  /// Bytes of companions that this import may still read.
  std::size_t m_nRemaining;
};

}  // namespace QXAssimp
