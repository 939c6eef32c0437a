/// @file
/// The table of the pictures.
#pragma once

#include <span>
#include <vector>

namespace QXGallery {

class QXGalleryStage;

/// One picture of one feature.
struct QXGalleryPicture {
  /// Of the file, without its ending: small letters, digits and hyphens.
  char const* m_szName;
  /// One line, as doc/gallery.md has it.
  char const* m_szDescription;
  /// Puts things on the stage, and draws frames where the last one needs others before it; the last one is drawn by the
  /// caller. False if the renderer has not given what the picture needs.
  bool (*m_pfnDraw)(QXGalleryStage& stage);
};

// One function a family, in the order in which doc/gallery.md shows them; QXGalleryPictures.cpp lists them again.
std::span<QXGalleryPicture const> GetScenePictures();
std::span<QXGalleryPicture const> GetLightPictures();
std::span<QXGalleryPicture const> GetSkyPictures();
std::span<QXGalleryPicture const> GetPickPictures();
std::span<QXGalleryPicture const> GetOverlayPictures();
std::span<QXGalleryPicture const> GetTrailPictures();
std::span<QXGalleryPicture const> GetParticlePictures();
std::span<QXGalleryPicture const> GetInstancePictures();

/// All pictures of all families.
std::vector<QXGalleryPicture> GetAllPictures();

}  // namespace QXGallery
