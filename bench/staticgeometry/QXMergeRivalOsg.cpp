#include "QXMergeRivals.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/MatrixTransform>
#include <osg/NodeVisitor>
#include <osgUtil/Optimizer>

namespace QXBench {

namespace {

class VertexCounter : public osg::NodeVisitor {
public:
  VertexCounter() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
  void apply(osg::Geometry& geometry) override {
    m_nVertices += geometry.getVertexArray()->getNumElements();
    ++m_nGeometries;
  }
  std::size_t m_nVertices = 0;
  std::size_t m_nGeometries = 0;
};

class OsgRival : public MergeRival {
public:
  explicit OsgRival(City& city) : m_root(new osg::Group), m_nMeshes(city.m_vecMeshes.size()) {
    QXC::QXMatrix4d const inverse = city.GetBase().Invert();
    osg::ref_ptr<osg::Geode> geode;
    for (std::size_t i = 0; i < m_nMeshes; ++i) {
      QXC::QXMatrix4d const matrix = city.m_vecMatrices[i] * inverse;
      osg::ref_ptr<osg::MatrixTransform> transform = new osg::MatrixTransform(osg::Matrixd(&matrix.m[0][0]));
      transform->setDataVariance(osg::Object::STATIC);
      geode = new osg::Geode;
      geode->addDrawable(MakeGeometry(city, i));
      transform->addChild(geode);
      m_root->addChild(transform);
    }
  }

  void Merge() override {
    osgUtil::Optimizer optimizer;
    optimizer.optimize(m_root, osgUtil::Optimizer::FLATTEN_STATIC_TRANSFORMS |
                                   osgUtil::Optimizer::REMOVE_REDUNDANT_NODES | osgUtil::Optimizer::MERGE_GEODES |
                                   osgUtil::Optimizer::MERGE_GEOMETRY);
  }

  /// 0 if nothing was merged.
  std::size_t CountVertices() const override {
    VertexCounter counter;
    m_root->accept(counter);
    return counter.m_nGeometries * 10 < m_nMeshes ? counter.m_nVertices : 0;
  }

private:
  static osg::ref_ptr<osg::Geometry> MakeGeometry(City const& city, std::size_t nMesh) {
    QXC::QXVertexDataPackage const& source = city.m_vecMeshes[nMesh];
    QXC::QXIndexPackage const& indices = city.m_vecIndices[nMesh];
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    auto const* const pPositions = reinterpret_cast<osg::Vec3f const*>(source.m_pVertices);
    auto const* const pNormals = reinterpret_cast<osg::Vec3f const*>(source.m_pNormals);
    auto const* const pCoords = reinterpret_cast<osg::Vec2f const*>(source.m_pTexCoords[0]);
    geometry->setVertexArray(new osg::Vec3Array(pPositions, pPositions + source.m_nVertexNum));
    geometry->setNormalArray(new osg::Vec3Array(pNormals, pNormals + source.m_nVertexNum), osg::Array::BIND_PER_VERTEX);
    geometry->setTexCoordArray(0, new osg::Vec2Array(pCoords, pCoords + source.m_nVertexNum));
    geometry->addPrimitiveSet(new osg::DrawElementsUShort(
        osg::PrimitiveSet::TRIANGLES, static_cast<unsigned int>(indices.m_nIndexNum), indices.GetIndices16()));
    geometry->setDataVariance(osg::Object::STATIC);
    return geometry;
  }

  osg::ref_ptr<osg::Group> m_root;
  std::size_t m_nMeshes;
};

}  // namespace

std::unique_ptr<MergeRival> MakeOsgRival(City& city) {
  return std::make_unique<OsgRival>(city);
}

}  // namespace QXBench
