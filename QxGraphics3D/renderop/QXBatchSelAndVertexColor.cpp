#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>

namespace QXC {

QXBatchSelAndVertexColor::QXBatchSelAndVertexColor() = default;
QXBatchSelAndVertexColor::QXBatchSelAndVertexColor(QXBatchSelAndVertexColor const& other) = default;
QXBatchSelAndVertexColor::QXBatchSelAndVertexColor(QXBatchSelAndVertexColor&& other) noexcept = default;
QXBatchSelAndVertexColor& QXBatchSelAndVertexColor::operator=(QXBatchSelAndVertexColor const& other) = default;
QXBatchSelAndVertexColor& QXBatchSelAndVertexColor::operator=(QXBatchSelAndVertexColor&& other) noexcept = default;
QXBatchSelAndVertexColor::~QXBatchSelAndVertexColor() = default;

}  // namespace QXC
