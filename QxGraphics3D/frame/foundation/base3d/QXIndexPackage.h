/// @file
/// One index range of a mesh together with the names of the passes that draw it.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXOperationType.h>

namespace QXC {

class QXStream;

/// Index array of one mesh part. Static geometry collects several of them over one vertex package.
/// Ownership: the package owns m_pIndices and frees it as an array of the width that m_nIndexType says.
/// Copying:   deep.
/// Threads:   one at a time.
class QXGRAPHICS3D_API QXIndexPackage {
public:
  QXIndexPackage();
  QXIndexPackage(QXIndexPackage const& other);
  QXIndexPackage& operator=(QXIndexPackage const& other);
  ~QXIndexPackage();

  /// Frees the old array and makes a zero-filled one of 16-bit entries (m_nIndexType 0).
  /// @param nNum  entries; 0 gives an empty array that is not null, a negative count is taken as 0
  /// Failure: the allocator's exception; the array is then null and the count 0.
  void SetIndexNum(int nNum);

  /// The same with 32-bit entries (m_nIndexType 1), for a mesh of more than 65,535 vertices.
  void SetIndexNum32(int nNum);

  /// The array as its true type; null where m_nIndexType says the other.
  unsigned short* GetIndices16() const;
  unsigned int* GetIndices32() const;

  /// Replaces the package by what Save wrote. Entries past the vertices of the mesh are loaded like any others; a
  /// package of 0 entries gets no array.
  /// @param nOption  0; any other value does the same
  /// @return  0 if the stream ended early or makes no sense, or if there is no memory for the entries; the package is
  ///          then as it was
  /// Failure: the allocator's exception for the names; memory only as far as the bytes that remain could fill it.
  unsigned char Load(QXStream& stream, int nOption);
  /// Writes GetDataSize bytes, the entries in their own width and with one call; none if there is no array. nOption as
  /// in Load.
  void Save(QXStream& stream, int nOption) const;
  /// Bytes that Save writes.
  int GetDataSize() const;

  /// Entries in m_pIndices.
  int m_nIndexNum = 0;
  /// `new unsigned short[]` or `new unsigned int[]`, owned.
  void* m_pIndices = nullptr;
  /// 0: 16-bit entries, 1: 32-bit entries.
  int m_nIndexType = 0;
  /// For the reader and the writer of the mesh; nothing here looks at it.
  unsigned char m_bFlag = 0;
  /// Keys of the passes that draw this range, in drawing order.
  QdcArray<QdcUnicodeString> m_arrPassNames;
  /// A QXOperationType; other values are kept.
  int m_eOperationType = QX_OPERATION_TRIANGLE_LIST;

private:
  int GetSavedNum() const;
  unsigned char LoadIndices(QXStream& stream);
  void Free();
  void Allocate(int nNum, int nIndexType);
};

}  // namespace QXC
