#include <examples/gallery/QXGalleryPictures.h>

namespace QXGallery {

std::vector<QXGalleryPicture> GetAllPictures() {
  std::vector<QXGalleryPicture> arrAll;
  for (auto const pfnGetPictures : {
           GetScenePictures,
           GetLightPictures,
           GetSkyPictures,
           GetPickPictures,
           GetOverlayPictures,
           GetTrailPictures,
           GetParticlePictures,
           GetInstancePictures,
       })
    for (QXGalleryPicture const& picture : pfnGetPictures()) arrAll.push_back(picture);
  return arrAll;
}

}  // namespace QXGallery
