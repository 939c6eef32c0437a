/// @file
/// Owners of image records.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base3d/QXImageData.h>

#include <memory>

namespace QXC::detail {

/// Deletes a record and the block that it still has: the record's own destructor leaves the block to whoever took it.
struct QXImageDelete {
  void operator()(QXImageData* pImage) const {
    if (pImage == nullptr) return;
    delete[] static_cast<unsigned char*>(pImage->m_pPixels);
    delete pImage;
  }
};
using QXImageHolder = std::unique_ptr<QXImageData, QXImageDelete>;

/// The list that a parser fills; what is still in it at the end is deleted.
class QXImageList {
public:
  QXImageList() = default;
  QXImageList(QXImageList const&) = delete;
  QXImageList& operator=(QXImageList const&) = delete;
  ~QXImageList() {
    for (QXImageData* pImage : m_arrImages) QXImageDelete()(pImage);
  }

  QdcArray<QXImageData*>& Items() { return m_arrImages; }
  /// The first image, null if there is none; it stays in the list.
  QXImageData* First() { return m_arrImages.GetSize() == 0 ? nullptr : m_arrImages[0]; }
  /// The first image, which is then the caller's.
  QXImageData* TakeFirst() {
    QXImageData* const pImage = First();
    if (pImage != nullptr) m_arrImages[0] = nullptr;
    return pImage;
  }

private:
  QdcArray<QXImageData*> m_arrImages;
};

}  // namespace QXC::detail
