#include <plugins/assimp/QXModelStream.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelImage.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

namespace QXAssimp {

namespace {

class Writer {
public:
  explicit Writer(std::vector<unsigned char>& vecBytes) : m_vecBytes(vecBytes) {}
  template <class T>
  void Value(T value) {
    Array(&value, 1);
  }
  template <class T>
  void Array(T const* pValues, std::size_t nCount) {
    static_assert(std::is_trivially_copyable_v<T>);
    auto const* pBytes = reinterpret_cast<unsigned char const*>(pValues);
    m_vecBytes.insert(m_vecBytes.end(), pBytes, pBytes + nCount * sizeof(T));
  }
  void Text(QXC::QdcUnicodeString const& strText) {
    QXC::QdcMBString const strBytes = strText.ToMBString();
    Value(static_cast<std::uint32_t>(strBytes.GetLength()));
    Array(strBytes.Cstr(), static_cast<std::size_t>(strBytes.GetLength()));
  }

private:
  std::vector<unsigned char>& m_vecBytes;
};

/// Every operation answers false once the bytes have run out, and then for good.
class Reader {
public:
  explicit Reader(std::span<unsigned char const> bytes) : m_pNext(bytes.data()), m_nRemaining(bytes.size()) {}
  template <class T>
  bool Value(T& value) {
    return Array(&value, 1);
  }
  template <class T>
  bool Array(T* pValues, std::size_t nCount) {
    if (!Has<T>(nCount)) return false;
    // Arrays without items have no address.
    if (nCount > 0) std::memcpy(static_cast<void*>(pValues), m_pNext, nCount * sizeof(T));
    m_pNext += nCount * sizeof(T);
    m_nRemaining -= nCount * sizeof(T);
    return true;
  }
  bool Text(QXC::QdcUnicodeString& strText) {
    std::uint32_t nLength = 0;
    if (!Value(nLength) || !Has<char>(nLength)) return false;
    std::string strBytes(nLength, '\0');
    Array(strBytes.data(), nLength);
    strText = QXC::QdcUnicodeString::FromUTF8(strBytes.c_str());
    return true;
  }
  /// Whether that many values can still come: asked before anything is allocated for them.
  template <class T>
  bool Has(std::size_t nCount) {
    if (nCount <= m_nRemaining / sizeof(T)) return true;
    m_nRemaining = 0;
    return false;
  }
  bool IsAtEnd() const { return m_nRemaining == 0; }

private:
  unsigned char const* m_pNext;
  std::size_t m_nRemaining;
};

void WriteColor(QXC::QXColorValue3D const& color, Writer& writer) {
  for (double d : {color.r, color.g, color.b, color.a}) writer.Value(d);
}

void WriteTexture(QXC::QXModelTexture const& texture, Writer& writer) {
  writer.Value(texture.m_nImage);
  writer.Value(static_cast<int>(texture.m_eWrapU));
  writer.Value(static_cast<int>(texture.m_eWrapV));
  writer.Array(&texture.m_matTransform[0][0], 16);
  writer.Value(texture.m_bReplacesColor);
  writer.Value(static_cast<int>(texture.m_eAlpha));
  writer.Value(texture.m_dAlphaCutoff);
}

void WriteImage(QXC::QXModelImage const& image, Writer& writer) {
  writer.Text(image.m_strName);
  writer.Text(image.m_strFilePath);
  writer.Value(image.m_arrBytes.GetSize());
  writer.Array(image.m_arrBytes.GetData(), static_cast<std::size_t>(image.m_arrBytes.GetSize()));
}

void WriteMesh(QXC::QXModelMesh const& mesh, Writer& writer) {
  QXC::QXVertexDataPackage const& package = *mesh.m_pVertexPackage;
  std::size_t const nCount = package.m_nVertexNum;
  writer.Text(mesh.m_strName);
  writer.Text(mesh.m_strMaterialName);
  writer.Value(mesh.m_bBaseColorSet);
  WriteColor(mesh.m_BaseColor, writer);
  WriteColor(mesh.m_EmissiveColor, writer);
  WriteColor(mesh.m_SpecularColor, writer);
  writer.Value(mesh.m_dShininess);
  WriteTexture(mesh.m_Texture, writer);
  writer.Value(package.m_nVertexNum);
  writer.Array(package.m_pVertices, 3 * nCount);
  writer.Array(package.m_pNormals, 3 * nCount);
  writer.Value(static_cast<unsigned char>(package.m_pTexCoords[0] != nullptr));
  if (package.m_pTexCoords[0] != nullptr) writer.Array(package.m_pTexCoords[0], 2 * nCount);
  writer.Value(static_cast<unsigned char>(package.m_pColors != nullptr));
  if (package.m_pColors != nullptr) writer.Array(package.m_pColors, nCount);
  writer.Value(package.m_bTransparent);
  writer.Value(static_cast<std::uint32_t>(mesh.m_arrIndexPackages.GetSize()));
  for (QXC::QXIndexPackage const* pIndices : mesh.m_arrIndexPackages) {
    writer.Value(pIndices->m_nIndexType);
    writer.Value(pIndices->m_nIndexNum);
    std::size_t const nNum = static_cast<std::size_t>(pIndices->m_nIndexNum);
    if (pIndices->m_nIndexType == 1)
      writer.Array(pIndices->GetIndices32(), nNum);
    else
      writer.Array(pIndices->GetIndices16(), nNum);
  }
}

/// A number of an enumeration whose last one is given.
template <class Enum>
bool ReadEnum(Reader& reader, Enum eLast, Enum& eValue) {
  int nValue = 0;
  if (!reader.Value(nValue) || nValue < 0 || nValue > eLast) return false;
  eValue = static_cast<Enum>(nValue);
  return true;
}

bool ReadColor(Reader& reader, QXC::QXColorValue3D& color) {
  for (double* p : {&color.r, &color.g, &color.b, &color.a})
    if (!reader.Value(*p)) return false;
  return true;
}

bool ReadTexture(Reader& reader, int nImages, QXC::QXModelTexture& texture) {
  if (!reader.Value(texture.m_nImage) || texture.m_nImage < -1 || texture.m_nImage >= nImages) return false;
  if (!ReadEnum(reader, QXC::QX_WRAP_MIRROR, texture.m_eWrapU)) return false;
  if (!ReadEnum(reader, QXC::QX_WRAP_MIRROR, texture.m_eWrapV)) return false;
  if (!reader.Array(&texture.m_matTransform[0][0], 16)) return false;
  for (int i = 0; i < 16; ++i)
    if (!std::isfinite(texture.m_matTransform[i / 4][i % 4])) return false;
  return reader.Value(texture.m_bReplacesColor) && ReadEnum(reader, QXC::QX_ALPHA_BLEND, texture.m_eAlpha) &&
         reader.Value(texture.m_dAlphaCutoff) && std::isfinite(texture.m_dAlphaCutoff);
}

bool ReadImage(Reader& reader, QXC::QXModelImage& image) {
  std::uint64_t nSize = 0;
  if (!reader.Text(image.m_strName) || !reader.Text(image.m_strFilePath) || !reader.Value(nSize)) return false;
  if (!reader.Has<unsigned char>(nSize)) return false;
  image.m_arrBytes.SetSize(nSize);
  return reader.Array(image.m_arrBytes.GetData(), nSize);
}

bool ReadVertices(Reader& reader, QXC::QXVertexDataPackage& package) {
  std::uint32_t nCount = 0;
  if (!reader.Value(nCount) || nCount == 0 || !reader.Has<float>(6 * std::size_t{nCount})) return false;
  package.SetVertexNum(nCount, 0);
  package.SetNormalNum(nCount, 0);
  reader.Array(package.m_pVertices, 3 * std::size_t{nCount});
  reader.Array(package.m_pNormals, 3 * std::size_t{nCount});
  unsigned char bPresent = 0;
  if (!reader.Value(bPresent)) return false;
  if (bPresent != 0) {
    if (!reader.Has<float>(2 * std::size_t{nCount})) return false;
    package.SetTexCoordNum(0, nCount, 0);
    reader.Array(package.m_pTexCoords[0], 2 * std::size_t{nCount});
  }
  if (!reader.Value(bPresent)) return false;
  if (bPresent != 0) {
    if (!reader.Has<unsigned int>(nCount)) return false;
    package.SetColorNum(nCount, 0);
    reader.Array(package.m_pColors, nCount);
  }
  return reader.Value(package.m_bTransparent);
}

template <class T>
bool ReadIndices(Reader& reader, T* pIndices, std::size_t nCount, std::uint32_t nVertexNum) {
  return reader.Array(pIndices, nCount) &&
         std::all_of(pIndices, pIndices + nCount, [nVertexNum](T nIndex) { return nIndex < nVertexNum; });
}

bool ReadRange(Reader& reader, std::uint32_t nVertexNum, QXC::QXIndexPackage& package) {
  int nType = 0;
  int nNum = 0;
  if (!reader.Value(nType) || !reader.Value(nNum) || nType < 0 || nType > 1 || nNum <= 0 || nNum % 3 != 0) return false;
  std::size_t const nCount = static_cast<std::size_t>(nNum);
  if (nType == 1) {
    if (!reader.Has<unsigned int>(nCount)) return false;
    package.SetIndexNum32(nNum);
    return ReadIndices(reader, package.GetIndices32(), nCount, nVertexNum);
  }
  if (!reader.Has<unsigned short>(nCount)) return false;
  package.SetIndexNum(nNum);
  return ReadIndices(reader, package.GetIndices16(), nCount, nVertexNum);
}

bool ReadMesh(Reader& reader, int nImages, QXC::QXModelMesh& mesh) {
  if (!reader.Text(mesh.m_strName) || !reader.Text(mesh.m_strMaterialName) || !reader.Value(mesh.m_bBaseColorSet))
    return false;
  for (QXC::QXColorValue3D* p : {&mesh.m_BaseColor, &mesh.m_EmissiveColor, &mesh.m_SpecularColor})
    if (!ReadColor(reader, *p)) return false;
  if (!reader.Value(mesh.m_dShininess) || !std::isfinite(mesh.m_dShininess)) return false;
  if (!ReadTexture(reader, nImages, mesh.m_Texture)) return false;
  mesh.m_pVertexPackage = new QXC::QXVertexDataPackage;
  std::uint32_t nRanges = 0;
  if (!ReadVertices(reader, *mesh.m_pVertexPackage) || !reader.Value(nRanges)) return false;
  if (mesh.m_Texture.m_nImage >= 0 && mesh.m_pVertexPackage->m_pTexCoords[0] == nullptr) return false;
  for (std::uint32_t i = 0; i < nRanges; ++i) {
    auto pPackage = std::make_unique<QXC::QXIndexPackage>();
    if (!ReadRange(reader, mesh.m_pVertexPackage->m_nVertexNum, *pPackage)) return false;
    mesh.m_arrIndexPackages.Add(pPackage.get());
    pPackage.release();
  }
  mesh.UpdateBounds();
  return true;
}

bool ReadNode(Reader& reader, QXC::ModelDataInfo& model) {
  QXC::QXModelNode node;
  if (!reader.Text(node.m_strName) || !reader.Value(node.m_nMesh)) return false;
  return reader.Array(&node.m_matWorld[0][0], 16) && model.AddNode(node) >= 0;
}

/// About the bytes that a model takes, so that they need not be moved while they are written.
std::size_t EstimateSize(QXC::ModelDataInfo const& model) {
  std::size_t nSize = 1024 + 256 * static_cast<std::size_t>(model.GetNodeCount());
  for (int i = 0; i < model.GetImageCount(); ++i) nSize += 256 + model.GetImage(i)->m_arrBytes.GetSize();
  for (int i = 0; i < model.GetMeshCount(); ++i) {
    QXC::QXModelMesh const& mesh = *model.GetMesh(i);
    // Nine words a vertex at most, one an index.
    nSize += 1024 + 36 * std::size_t{mesh.m_pVertexPackage->m_nVertexNum} + 12 * std::size_t{mesh.GetTriangleCount()};
  }
  return nSize;
}

}  // namespace

void WriteModel(QXC::ModelDataInfo const& model, std::vector<unsigned char>& vecBytes) {
  vecBytes.reserve(vecBytes.size() + EstimateSize(model));
  Writer writer(vecBytes);
  writer.Value(static_cast<int>(model.GetUpAxis()));
  writer.Value(model.GetImageCount());
  for (int i = 0; i < model.GetImageCount(); ++i) WriteImage(*model.GetImage(i), writer);
  writer.Value(model.GetMeshCount());
  for (int i = 0; i < model.GetMeshCount(); ++i) WriteMesh(*model.GetMesh(i), writer);
  writer.Value(model.GetNodeCount());
  for (int i = 0; i < model.GetNodeCount(); ++i) {
    QXC::QXModelNode const& node = *model.GetNode(i);
    writer.Text(node.m_strName);
    writer.Value(node.m_nMesh);
    writer.Array(&node.m_matWorld[0][0], 16);
  }
}

std::unique_ptr<QXC::ModelDataInfo> ReadModel(std::span<unsigned char const> bytes) {
  Reader reader(bytes);
  auto pModel = std::make_unique<QXC::ModelDataInfo>();
  int nUpAxis = 0;
  int nCount = 0;
  if (!reader.Value(nUpAxis) || !reader.Value(nCount)) return nullptr;
  pModel->SetUpAxis(nUpAxis == QXC::QX_UP_Z ? QXC::QX_UP_Z : QXC::QX_UP_UNKNOWN);
  for (int i = 0; i < nCount; ++i) {
    auto pImage = std::make_unique<QXC::QXModelImage>();
    if (!ReadImage(reader, *pImage)) return nullptr;
    pModel->AddImage(pImage.get());
    pImage.release();
  }
  if (!reader.Value(nCount)) return nullptr;
  for (int i = 0; i < nCount; ++i) {
    auto pMesh = std::make_unique<QXC::QXModelMesh>();
    if (!ReadMesh(reader, pModel->GetImageCount(), *pMesh)) return nullptr;
    pModel->AddMesh(pMesh.get());
    pMesh.release();
  }
  if (!reader.Value(nCount)) return nullptr;
  for (int i = 0; i < nCount; ++i)
    if (!ReadNode(reader, *pModel)) return nullptr;
  return reader.IsAtEnd() && pModel->GetNodeCount() > 0 ? std::move(pModel) : nullptr;
}

}  // namespace QXAssimp
