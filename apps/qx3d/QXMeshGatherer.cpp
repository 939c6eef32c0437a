#include <apps/qx3d/QXMeshGatherer.h>

#include <apps/qx3d/QXBuckets.h>
#include <apps/qx3d/QXModelColors.h>
#include <apps/qx3d/QXTextureChoice.h>
#include <apps/qx3d/QXVertexCollector.h>

#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>
#include <QxGraphics3D/frame/foundation/fileparser/QXModelMesh.h>
#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXMatrix4d;
using QXC::QXVector3d;

/// So many transparent placements have a drawable of their own, by which the renderer sorts them; a forest of more is
/// not worth as many draw operations.
constexpr int MaxSortedParts = 1000;

/// A geometry takes no more large meshes beyond so many vertices: they share one bucket without a limit, and devices
/// have one.
constexpr unsigned int MaxLargeVertices = 4000000;

/// Type of the meshes in the typed lists, which are not folded and keep their normals as they are.
constexpr int TransparentType = 1;
constexpr int OpaqueType = -1;

/// As the textures themselves, which keep to their edges on both axes or on none.
constexpr unsigned int ClampBoth = QXC::UNIT_WORD_CLAMP_U | QXC::UNIT_WORD_CLAMP_V;

QXMatrix4d MakeShift(QXVector3d const& vec) {
  QXMatrix4d mat;
  mat.SetTrans(vec);
  return mat;
}

QXVector3d GetCenter(QXC::QXBoundingBox const& box, QXMatrix4d const& matWorld) {
  return box.GetCenter().MultiplyMatrix(matWorld);
}

/// Around a placed mesh, relative to the base frame.
QXC::QXBoundingSphere GetSphere(QXC::QXBoundingBox const& box, QXMatrix4d const& matWorld, QXVector3d const& vecBase) {
  QXVector3d const vecCenter = GetCenter(box, matWorld);
  double dRadius = 0.0;
  for (QXVector3d const& vecCorner : box.GetCorners())
    dRadius = std::max(dRadius, (vecCorner.MultiplyMatrix(matWorld) - vecCenter).Length());
  QXC::QXBoundingSphere sphere;
  sphere.SetCenter(vecCenter - vecBase);
  sphere.SetRadius(dRadius);
  return sphere;
}

/// Null without a texture.
std::unique_ptr<QXC::QXTexturePackage> MakeTexturePackage(std::string const& strTexture) {
  if (strTexture.empty()) return nullptr;
  auto pTexture = std::make_unique<QXC::QXTexturePackage>();
  pTexture->m_strTextureName = QXC::QdcUnicodeString::FromUTF8(strTexture.c_str());
  return pTexture;
}

}  // namespace

QXMeshGatherer::QXMeshGatherer(QXScene& scene, QXMergeOptions const& options)
    : m_Scene(scene), m_Options(options), m_dCellSize(GetCellSize(scene.m_Bounds)) {}

QXMeshGatherer::~QXMeshGatherer() {
  for (auto const& [strName, pPass] : m_mapPasses) delete pPass;
}

void QXMeshGatherer::AddModel(QXPlacedModel const& placed, int nModel) {
  QXC::ModelDataInfo const& model = *placed.m_pModel;
  QXModelColors const colors(model, model.GetBoundingBox(), *placed.m_pPictures);
  // Of each mesh the form that all its nodes share; one coloured by its place has a form for each node.
  std::map<int, Form const*> mapForms;
  for (int i = 0; i < model.GetNodeCount(); ++i) {
    QXC::QXModelNode const& node = *model.GetNode(i);
    QXC::QXModelMesh const& mesh = *model.GetMesh(node.m_nMesh);
    if (mesh.GetTriangleCount() == 0) {
      m_Scene.m_nVertices += static_cast<unsigned int>(placed.m_vecPlaces.size()) * mesh.m_pVertexPackage->m_nVertexNum;
      continue;
    }
    Form const*& pForm = mapForms[colors.UsesPlace(mesh) ? -1 - i : node.m_nMesh];
    if (pForm == nullptr) {
      QXTextureChoice const texture(mesh, *placed.m_pPictures);
      m_vecForms.push_back(std::make_unique<Form>());
      Form& form = *m_vecForms.back();
      form.m_Mesh = MakeReadyMesh(mesh, node.m_matWorld, colors, texture);
      form.m_Texture = {nModel, texture.GetKey(), std::string()};
      if (form.m_Texture.m_Key.m_nImage >= 0)
        form.m_Texture.m_strName = m_Options.m_nameTexture ? m_Options.m_nameTexture(form.m_Texture)
                                                           : placed.m_pPictures->GetTextureName(texture.GetKey());
      form.m_bTransparent = colors.IsTransparent(mesh) || texture.IsTransparent();
      form.m_bAnimated = placed.m_pPictures->IsAnimated(form.m_Texture.m_Key.m_nImage);
      form.m_Bounds = mesh.m_Bounds;
      pForm = &form;
    }
    if (m_Scene.m_pNames && !mesh.m_strName.IsEmpty())
      m_Scene.m_pNames->m_mapMeshes[{nModel, i}] = mesh.m_strName.ToMBString().Cstr();
    QXSceneObject object{nModel, i, 0};
    for (QXMatrix4d const& matPlace : placed.m_vecPlaces) {
      AddNode(*pForm, node.m_matWorld * matPlace, *placed.m_pPictures, object);
      ++object.m_nPlace;
    }
  }
  if (m_Options.m_eMerging == QXMerging::None) m_vecForms.clear();
}

void QXMeshGatherer::AddNode(
    Form const& form, QXMatrix4d const& matWorld, QXModelPictures const& pictures, QXSceneObject const& object) {
  m_Scene.m_nVertices += form.m_Mesh.m_pVertices->m_nVertexNum;
  m_Scene.m_nTriangles += form.m_Mesh.GetTriangleCount();
  ++m_Scene.m_nMeshes;
  bool const bSorted =
      form.m_bTransparent && m_Options.m_eMerging == QXMerging::Cells && m_nSortedParts < MaxSortedParts;
  if (bSorted) ++m_nSortedParts;
  if (bSorted || m_Options.m_eMerging == QXMerging::None)
    AddDrawable(form, matWorld, pictures, object);
  else
    m_vecEntries.push_back({FindFrame(GetCenter(form.m_Bounds, matWorld)), &form, matWorld, object});
}

void QXMeshGatherer::AddDrawable(
    Form const& form, QXMatrix4d const& matWorld, QXModelPictures const& pictures, QXSceneObject const& object) {
  QXTextureKey const& key = form.m_Texture.m_Key;
  std::string const strTexture = key.m_nImage >= 0 ? pictures.GetTextureName(key) : std::string();
  m_Scene.m_vecParts.push_back(
      {MakeOperation(form.m_Mesh, matWorld, GetCenter(form.m_Bounds, matWorld), MakeTexturePackage(strTexture)),
          form.m_bTransparent, form.m_Texture.m_nModel, key, object});
}

QXMeshGatherer::Frame QXMeshGatherer::FindFrame(QXVector3d const& vecCenter) const {
  if (m_Options.m_eMerging == QXMerging::OneGeometry || m_Options.m_eMerging == QXMerging::Textures) return Frame();
  QXVector3d const vec = vecCenter - m_Scene.m_vecOrigin;
  return {static_cast<int>(std::lround(vec.x / m_dCellSize)), static_cast<int>(std::lround(vec.y / m_dCellSize))};
}

QXVector3d QXMeshGatherer::GetBase(Frame const& frame) const {
  return m_Scene.m_vecOrigin +
         QXVector3d(std::round(frame.m_nCellX * m_dCellSize), std::round(frame.m_nCellY * m_dCellSize), 0.0);
}

void QXMeshGatherer::Merge() {
  // Meshes of one texture one after the other, so that each bucket has few of them.
  std::stable_sort(m_vecEntries.begin(), m_vecEntries.end(), [](Entry const& a, Entry const& b) {
    return std::tie(a.m_Frame, a.m_pForm->m_bTransparent, a.m_pForm->m_Texture) <
           std::tie(b.m_Frame, b.m_pForm->m_bTransparent, b.m_pForm->m_Texture);
  });
  if (m_Options.m_eMerging == QXMerging::Textures) {
    JoinParts();
    return;
  }
  for (auto itBegin = m_vecEntries.begin(); itBegin != m_vecEntries.end();) {
    unsigned int nLarge = 0;
    auto itEnd = itBegin;
    for (; itEnd != m_vecEntries.end() && itEnd->m_Frame == itBegin->m_Frame; ++itEnd) {
      unsigned int const nVertices = itEnd->m_pForm->m_Mesh.m_pVertices->m_nVertexNum;
      if (nVertices <= 65535 || m_Options.m_eMerging == QXMerging::OneGeometry) continue;
      if (nLarge > 0 && nLarge + nVertices > MaxLargeVertices) break;
      nLarge += nVertices;
    }
    MergeFrame(itBegin, itEnd);
    itBegin = itEnd;
  }
  m_Scene.m_vecTextures.assign(m_setTextures.begin(), m_setTextures.end());
}

void QXMeshGatherer::JoinParts() {
  for (auto itBegin = m_vecEntries.begin(); itBegin != m_vecEntries.end();) {
    Form const& form = *itBegin->m_pForm;
    auto const isOther = [&form](Entry const& entry) {
      return entry.m_pForm->m_bTransparent != form.m_bTransparent || form.m_Texture < entry.m_pForm->m_Texture ||
             entry.m_pForm->m_Texture < form.m_Texture;
    };
    auto const itEnd = std::find_if(itBegin, m_vecEntries.end(), isOther);
    JoinPart(itBegin, itEnd);
    itBegin = itEnd;
  }
}

void QXMeshGatherer::JoinPart(std::vector<Entry>::iterator itBegin, std::vector<Entry>::iterator itEnd) {
  Form const& form = *itBegin->m_pForm;
  QXVertexCollector collector;
  for (auto it = itBegin; it != itEnd; ++it)
    AppendReadyMesh(PlaceReadyMesh(it->m_pForm->m_Mesh, it->m_matWorld, m_Scene.m_vecOrigin), collector);
  m_Scene.m_vecParts.push_back({collector.Finish(m_Scene.m_vecOrigin, MakeTexturePackage(form.m_Texture.m_strName)),
      form.m_bTransparent, form.m_Texture.m_nModel, form.m_Texture.m_Key, itBegin->m_Object});
}

void QXMeshGatherer::MergeFrame(std::vector<Entry>::iterator itBegin, std::vector<Entry>::iterator itEnd) {
  auto pGeometry = std::make_unique<QXC::QXStaticGeometry>();
  QXVector3d const vecBase = GetBase(itBegin->m_Frame);
  QXMatrix4d matBase = MakeShift(vecBase);
  for (auto it = itBegin; it != itEnd; ++it) AddToGeometry(*it, vecBase, *pGeometry);
  pGeometry->AssginMutiTexture(0, 0);
  // Folding writes an address into the name, which would make each run's file another one.
  for (QXC::QXStaticGeometryBucket const* pBucket : GetBuckets(*pGeometry))
    for (auto const& [strKey, pPass] : pBucket->m_mapPasses) pPass->SetName(strKey);
  pGeometry->AssignStaticGeometry(matBase, 0);
  pGeometry->SetLocalViewMatrix(matBase);
  m_Scene.m_vecGeometries.push_back(std::move(pGeometry));
  m_vecCopies.clear();
}

void QXMeshGatherer::AddToGeometry(Entry const& entry, QXVector3d const& vecBase, QXC::QXStaticGeometry& geometry) {
  Form const& form = *entry.m_pForm;
  QXReadyMesh const* pMesh = &form.m_Mesh;
  QXMatrix4d matModel = entry.m_matWorld;
  // Merging turns normals as positions, and those of typed meshes not at all.
  if (form.m_bTransparent || !IsSimilarity(matModel)) {
    QXVector3d const vecCenter = GetCenter(form.m_Bounds, matModel);
    m_vecCopies.push_back(PlaceReadyMesh(form.m_Mesh, matModel, vecCenter));
    pMesh = &m_vecCopies.back();
    matModel = MakeShift(vecCenter);
  }
  QXC::QdcUnicodeString const strPass = MakePass(form);
  if (pMesh->m_pIndices->m_arrPassNames.GetSize() == 0) pMesh->m_pIndices->m_arrPassNames.Add(strPass);
  auto pSubObject = std::make_unique<QXC::QXSubObjectInfo>();
  pSubObject->m_BoundingSphere = GetSphere(form.m_Bounds, entry.m_matWorld, vecBase);
  if (m_Scene.m_pNames) m_Scene.m_mapObjects[pSubObject.get()] = entry.m_Object;
  QXC::QdcArray<QXC::QXIndexPackage*> arrIndices;
  arrIndices.Add(pMesh->m_pIndices.get());
  geometry.AddVertexDataAndIndexPackage(pMesh->m_pVertices.get(), arrIndices, m_mapPasses, matModel,
      pSubObject.release(), form.m_bTransparent ? TransparentType : OpaqueType);
}

/// @return  the name of the pass, empty for opaque meshes in plain colours, which need none
QXC::QdcUnicodeString QXMeshGatherer::MakePass(Form const& form) {
  bool const bTexture = form.m_Texture.m_Key.m_nImage >= 0;
  if (!bTexture && !form.m_bTransparent) return QXC::QdcUnicodeString();
  std::string const& strTexture = form.m_Texture.m_strName;
  if (bTexture) m_setTextures.insert(form.m_Texture);
  QXC::QdcUnicodeString strName =
      QXC::QdcUnicodeString::FromUTF8((strTexture + (form.m_bTransparent ? "|blend" : "")).c_str());
  QXC::QXPass*& pPass = m_mapPasses[strName];
  if (pPass != nullptr) return strName;
  pPass = new QXC::QXPass;
  pPass->SetName(strName);
  if (bTexture) {
    pPass->CreateTextureUnitState()->SetTextureName(QXC::QdcUnicodeString::FromUTF8(strTexture.c_str()));
    if (form.m_bAnimated) pPass->SetPFFMode(QXC::PASS_FUNCTION_FIXED);
    pPass->m_nUnitWords[0] = form.m_Texture.m_Key.m_bRepeat ? 0U : ClampBoth;
  }
  if (form.m_bTransparent) {
    pPass->m_eSourceFactor = QXC::BLEND_SOURCE_ALPHA;
    pPass->m_eDestFactor = QXC::BLEND_ONE_MINUS_SOURCE_ALPHA;
    pPass->m_bDepthWrite = 0;
  }
  return strName;
}

}  // namespace QXApp
