/// @file
/// The images of a scene's icons, read and ready for an atlas.
#pragma once

#include <apps/qx3d/QXIconImage.h>

#include <cstddef>
#include <string>
#include <vector>

namespace QXApp {

struct QXSceneIcon;
class QXSceneProblems;

/// An image as its icons need it.
struct QXIconPicture {
  /// Its name in the atlas: file, colour key and size tell it from every other.
  std::string m_strName;
  /// For messages: the first icon that shows it.
  int m_nLine = 0;
  QXPixels m_Pixels;
  /// Size of the file's image, which an icon without a size has on the screen.
  unsigned int m_nFileWidth = 0;
  unsigned int m_nFileHeight = 0;
};

/// Reads each image once, whatever number of icons show it.
///
/// An image is kept as large as its largest icon needs it, at most as large as its file and at most MaxIconEdge: shown
/// pixel for pixel it is sharp, where a device that leaves pixels out would let it flicker, and it takes less of the
/// atlas. Icons in world units can come near and need all of it.
class QXIconPictures {
public:
  /// @param problems    gets the images that cannot be read, each once, those that lose detail, and those beyond nMaxPixels
  /// @param nMaxPixels  of all tiles together. What does not fit into all pages of the atlas is not kept, however many
  ///                    images a scene has: a hundred thousand of them would fill the memory
  void Load(
      std::vector<QXSceneIcon> const& vecIcons, QXSceneProblems& problems, std::size_t nMaxPixels = ms_nAtlasPixels);

  /// Of one image for each file and colour key, by the order of their names.
  std::vector<QXIconPicture>& GetPictures() { return m_vecPictures; }
  /// Picture of each icon in the order given to Load, -1 where its image cannot be read or it shows a
  /// symbol.
  std::vector<int> const& GetChoices() const { return m_vecChoices; }

  /// 256 pages of 1024 x 1024.
  static constexpr std::size_t ms_nAtlasPixels = std::size_t{256} << 20;

private:
  std::vector<QXIconPicture> m_vecPictures;
  std::vector<int> m_vecChoices;
};

}  // namespace QXApp
