#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

#include <QxGraphics3D/frame/foundation/fileparser/detail/QXFileTypeTable.h>

namespace QXC {

namespace {

/// Appends the words of a row's list.
void AddExtensions(QXFileTypeRow const& row, QdcArray<QdcUnicodeString>& arrExtNames) {
  QdcUnicodeString const& strList = row.m_strExtensions;
  int nBegin = 0;
  for (int i = 0; i <= strList.GetLength(); ++i) {
    if (strList.GetAt(i) != L' ' && strList.GetAt(i) != 0) continue;
    if (i > nBegin) arrExtNames.Add(QdcUnicodeString(strList.Cstr() + nBegin, i - nBegin));
    nBegin = i + 1;
  }
}

void AddExtensionsOfKind(QXFileKind eKind, QdcArray<QdcUnicodeString>& arrExtNames) {
  for (QXFileTypeRow const& row : detail::QXFileTypeTable::Instance().FindKind(eKind)) AddExtensions(row, arrExtNames);
}

bool IsOfKind(int nType, QXFileKind eKind) {
  QXFileTypeRow const row = detail::QXFileTypeTable::Instance().FindType(nType);
  return row.m_nType >= 0 && row.m_eKind == eKind;
}

}  // namespace

int QXFileType::ExtNameToFileType(QdcUnicodeString const& strExt) {
  return detail::QXFileTypeTable::Instance().FindExtension(strExt).m_nType;
}

unsigned char QXFileType::IsModelType(int nType) {
  return static_cast<unsigned char>(IsOfKind(nType, EM_FILE_MODEL));
}

unsigned char QXFileType::IsImageType(int nType) {
  return static_cast<unsigned char>(IsOfKind(nType, EM_FILE_IMAGE));
}

QdcUnicodeString QXFileType::FileTypeToExtName(int nType) {
  QdcArray<QdcUnicodeString> arrExtNames;
  AddExtensions(detail::QXFileTypeTable::Instance().FindType(nType), arrExtNames);
  return arrExtNames.GetSize() == 0 ? QdcUnicodeString() : arrExtNames[0];
}

void QXFileType::GetModelExtNames(QdcArray<QdcUnicodeString>& arrExtNames) {
  AddExtensionsOfKind(EM_FILE_MODEL, arrExtNames);
}

void QXFileType::GetImageExtNames(QdcArray<QdcUnicodeString>& arrExtNames) {
  AddExtensionsOfKind(EM_FILE_IMAGE, arrExtNames);
}

}  // namespace QXC
