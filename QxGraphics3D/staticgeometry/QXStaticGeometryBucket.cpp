#include <QxGraphics3D/staticgeometry/QXStaticGeometryBucket.h>

#include <QxGraphics3D/frame/foundation/base3d/QXIndexPackage.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>
#include <QxGraphics3D/frame/foundation/base3d/QXSubObjectInfo.h>

namespace QXC {

QXStaticGeometryBucket::QXStaticGeometryBucket() : m_pVertexPackage(new QXVertexDataPackage) {}

QXStaticGeometryBucket::QXStaticGeometryBucket(QXStaticGeometryBucket const& other) = default;

QXStaticGeometryBucket& QXStaticGeometryBucket::operator=(QXStaticGeometryBucket const& other) = default;

QXStaticGeometryBucket::~QXStaticGeometryBucket() {
  delete m_pVertexPackage;
  for (auto const& [nLevel, packages] : m_mapLevelIndices) {
    for (QXIndexPackage* pPackage : packages) delete pPackage;
  }
  for (auto const& [strKey, pPass] : m_mapPasses) delete pPass;
  for (auto const& [nVertex, pSubObject] : m_mapSubObjects) delete pSubObject;
}

}  // namespace QXC
