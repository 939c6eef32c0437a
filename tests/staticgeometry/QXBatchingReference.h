/// @file
/// Adding meshes and folding passes as they are told, step by step, with no thought of speed.
#pragma once

#include <QxGraphics3D/staticgeometry/QXStaticGeometry.h>

#include <map>
#include <string>
#include <vector>

namespace QXC {

/// What QXStaticGeometry::AddVertexDataAndIndexPackage must do.
void AddByReference(QXStaticGeometry& geometry, QXVertexDataPackage* pMesh,
    std::vector<QXIndexPackage*> const& packages, std::map<QdcUnicodeString, QXPass*> const& mapPasses,
    QXMatrix4d const& matModel, QXSubObjectInfo* pSubObject, int nType);

/// What QXStaticGeometry::AssginMutiTexture must do.
void FoldByReference(QXStaticGeometry& geometry, int nA, int nB);

/// Compares all that adding and folding change and tells the first difference; empty for none. Sub-objects are equal if
/// their spheres are, and the addresses in the names of folded passes are those of either side's bucket.
std::string CompareGathered(QXStaticGeometry const& a, QXStaticGeometry const& b);

}  // namespace QXC
