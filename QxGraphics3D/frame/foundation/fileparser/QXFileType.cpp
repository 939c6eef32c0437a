#include <QxGraphics3D/frame/foundation/fileparser/QXFileType.h>

namespace QXC {

namespace {

struct FileTypeRow {
  wchar_t const* m_szExt;
  QXFileType::EmType m_eType;
};

constexpr FileTypeRow FileTypeTable[] = {
    {L".3ds", QXFileType::EM_MODEL_3DS},
    {L".gltf", QXFileType::EM_MODEL_GLTF},
    {L".glb", QXFileType::EM_MODEL_GLB},
    {L".obj", QXFileType::EM_MODEL_OBJ},
    {L".ply", QXFileType::EM_MODEL_PLY},
    {L".stl", QXFileType::EM_MODEL_STL},
    {L".dae", QXFileType::EM_MODEL_COLLADA},
    {L".fbx", QXFileType::EM_MODEL_FBX},
};

}  // namespace

int QXFileType::ExtNameToFileType(QdcUnicodeString const& strExt) {
  for (FileTypeRow const& row : FileTypeTable)
    if (strExt.CompareNoCase(row.m_szExt) == 0) return row.m_eType;
  return EM_UNKNOWN;
}

unsigned char QXFileType::IsModelType(int nType) {
  for (FileTypeRow const& row : FileTypeTable)
    if (row.m_eType == nType) return 1;
  return 0;
}

QdcUnicodeString QXFileType::FileTypeToExtName(int nType) {
  for (FileTypeRow const& row : FileTypeTable)
    if (row.m_eType == nType) return QdcUnicodeString(row.m_szExt);
  return QdcUnicodeString();
}

void QXFileType::GetModelExtNames(QdcArray<QdcUnicodeString>& arrExtNames) {
  for (FileTypeRow const& row : FileTypeTable) arrExtNames.Add(QdcUnicodeString(row.m_szExt));
}

}  // namespace QXC
