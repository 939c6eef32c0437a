#include "QXMergeRivals.h"

#include <OgreDefaultHardwareBufferManager.h>
#include <OgreEntity.h>
#include <OgreHardwareBufferManager.h>
#include <OgreLogManager.h>
#include <OgreMaterialManager.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreStaticGeometry.h>
#include <OgreSubMesh.h>

#include <string>
#include <vector>

namespace QXBench {

namespace {

/// Without a renderer: buffers are plain memory. Never destroyed, as OGRE's order of that is delicate.
Ogre::SceneManager& GetScene() {
  static Ogre::SceneManager* const s_pScene = [] {
    (new Ogre::LogManager)->createLog("", true, false, true);
    auto* const pRoot = new Ogre::Root("", "", "");
    new Ogre::DefaultHardwareBufferManager;
    Ogre::MaterialManager::getSingleton().initialise();
    return pRoot->createSceneManager();
  }();
  return *s_pScene;
}

class OgreRival : public MergeRival {
public:
  explicit OgreRival(City& city) : m_pGeometry(GetScene().createStaticGeometry("city")) {
    m_pGeometry->setRegionDimensions(Ogre::Vector3(1e6F));
    m_pGeometry->setOrigin(Ogre::Vector3(-5e5F));
    for (std::size_t i = 0; i < city.m_vecMeshes.size(); ++i) AddMesh(city, i);
  }

  ~OgreRival() override {
    GetScene().destroyStaticGeometry(m_pGeometry);
    for (Ogre::Entity* pEntity : m_vecEntities) GetScene().destroyEntity(pEntity);
    m_vecMeshes.clear();
    Ogre::MeshManager::getSingleton().removeAll();
  }

  void Merge() override { m_pGeometry->build(); }

  std::size_t CountVertices() const override {
    std::size_t vertices = 0;
    for (auto const& [index, pRegion] : m_pGeometry->getRegions()) {
      for (auto* pLod : pRegion->getLODBuckets()) {
        for (auto const& [name, pMaterial] : pLod->getMaterialBuckets()) {
          for (auto* pBucket : pMaterial->getGeometryList()) vertices += pBucket->getVertexData()->vertexCount;
        }
      }
    }
    return vertices;
  }

private:
  void AddMesh(City const& city, std::size_t nMesh) {
    QXC::QXMatrix4d const& matrix = city.m_vecMatrices[nMesh];
    QXC::QXMatrix4d const base = city.GetBase();
    Ogre::Entity* const pEntity = GetScene().createEntity(MakeMesh(city, nMesh));
    pEntity->setMaterialName("BaseWhite");
    m_vecEntities.push_back(pEntity);
    Ogre::Vector3 const place(static_cast<float>(matrix[3][0] - base[3][0]),
        static_cast<float>(matrix[3][1] - base[3][1]), static_cast<float>(matrix[3][2] - base[3][2]));
    Ogre::Quaternion const turn(Ogre::Radian(0.1F * static_cast<float>(nMesh)), Ogre::Vector3::UNIT_Z);
    m_pGeometry->addEntity(pEntity, place, turn);
  }

  Ogre::MeshPtr MakeMesh(City const& city, std::size_t nMesh) {
    QXC::QXVertexDataPackage const& source = city.m_vecMeshes[nMesh];
    Ogre::MeshPtr const mesh = Ogre::MeshManager::getSingleton().createManual(
        "mesh" + std::to_string(nMesh), Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
    m_vecMeshes.push_back(mesh);
    Ogre::SubMesh* const pSubMesh = mesh->createSubMesh();
    pSubMesh->useSharedVertices = false;
    pSubMesh->vertexData = new Ogre::VertexData;
    pSubMesh->vertexData->vertexCount = source.m_nVertexNum;
    Ogre::VertexDeclaration& declaration = *pSubMesh->vertexData->vertexDeclaration;
    declaration.addElement(0, 0, Ogre::VET_FLOAT3, Ogre::VES_POSITION);
    declaration.addElement(0, 12, Ogre::VET_FLOAT3, Ogre::VES_NORMAL);
    declaration.addElement(0, 24, Ogre::VET_FLOAT2, Ogre::VES_TEXTURE_COORDINATES);
    std::vector<float> vertices;
    for (std::size_t i = 0; i < source.m_nVertexNum; ++i) {
      vertices.insert(vertices.end(), source.m_pVertices + 3 * i, source.m_pVertices + 3 * i + 3);
      vertices.insert(vertices.end(), source.m_pNormals + 3 * i, source.m_pNormals + 3 * i + 3);
      vertices.insert(vertices.end(), source.m_pTexCoords[0] + 2 * i, source.m_pTexCoords[0] + 2 * i + 2);
    }
    auto& manager = Ogre::HardwareBufferManager::getSingleton();
    auto const buffer = manager.createVertexBuffer(32, source.m_nVertexNum, Ogre::HardwareBuffer::HBU_STATIC);
    buffer->writeData(0, vertices.size() * sizeof(float), vertices.data());
    pSubMesh->vertexData->vertexBufferBinding->setBinding(0, buffer);
    QXC::QXIndexPackage const& indices = city.m_vecIndices[nMesh];
    auto const num = static_cast<std::size_t>(indices.m_nIndexNum);
    pSubMesh->indexData->indexCount = num;
    pSubMesh->indexData->indexBuffer =
        manager.createIndexBuffer(Ogre::HardwareIndexBuffer::IT_16BIT, num, Ogre::HardwareBuffer::HBU_STATIC);
    pSubMesh->indexData->indexBuffer->writeData(0, num * sizeof(short), indices.m_pIndices);
    mesh->_setBounds(Ogre::AxisAlignedBox(0, 0, 0, 24, 20, 100));
    mesh->load();
    return mesh;
  }

  Ogre::StaticGeometry* m_pGeometry;
  std::vector<Ogre::MeshPtr> m_vecMeshes;
  std::vector<Ogre::Entity*> m_vecEntities;
};

}  // namespace

std::unique_ptr<MergeRival> MakeOgreRival(City& city) {
  return std::make_unique<OgreRival>(city);
}

}  // namespace QXBench
