#include <QxGraphics3D/frame/foundation/fileparser/QXFileParseImage.h>

namespace QXC {

QXFileParseImage::~QXFileParseImage() = default;

unsigned char QXFileParseImage::GetDynamicIMGData(QdcArray<QXGeoPicture*>& /*arrPictures*/, unsigned char /*bFlip*/) {
  return 0;
}

unsigned char QXFileParseImage::OpenBytes(unsigned char const* /*pBytes*/, QXUInt64 /*nSize*/) {
  return 0;
}

}  // namespace QXC
