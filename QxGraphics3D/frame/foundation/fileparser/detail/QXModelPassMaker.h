/// @file
/// From what a mesh says about its material to a pass.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <memory>
#include <string>

namespace QXC {

class ModelDataInfo;
class QXModelMesh;
class QXPass;

namespace detail {

/// Name under which textures of a model's picture are kept: the path of its file, so that models share it, or the name
/// of the model that carries it with the picture's number.
QdcUnicodeString MakeModelTextureName(ModelDataInfo const& model, int nImage);

/// A pass without a name.
std::unique_ptr<QXPass> MakeModelPass(ModelDataInfo const& model, QXModelMesh const& mesh);

/// What a pass is written as: equal for passes that draw the same.
std::string GetPassBytes(QXPass const& pass);

}  // namespace detail

}  // namespace QXC
