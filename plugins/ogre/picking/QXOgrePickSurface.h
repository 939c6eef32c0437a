/// @file
/// Where identifiers are drawn.
#pragma once

#include <cstdint>
#include <vector>

#include <OgrePrerequisites.h>
#include <OgreTexture.h>

namespace QXC {

class QXOgreScene;
struct QXOgreView;

/// Two textures that are drawn at once: identifiers of 8 bits a channel, one sample a pixel, and where along the view
/// each lies, as floats. On the rendering thread, while the device lives.
class QXOgrePickSurface final {
public:
  /// Throws what OGRE throws.
  QXOgrePickSurface(unsigned int nWidth, unsigned int nHeight);
  ~QXOgrePickSurface();
  QXOgrePickSurface(QXOgrePickSurface const&) = delete;
  QXOgrePickSurface& operator=(QXOgrePickSurface const&) = delete;

  unsigned int GetWidth() const { return m_nWidth; }
  unsigned int GetHeight() const { return m_nHeight; }

  /// Nothing is there from now on.
  void Clear();
  /// Draws a view into a rectangle, counted from the lower left corner.
  /// @param nClearBuffers  bits of what is cleared there first: 1 colour, 2 depth
  void Draw(QXOgreScene& scene, QXOgreView const& view, int nLeft, int nBottom, int nWidth, int nHeight,
      unsigned int nClearBuffers);
  /// Reads all pixels, rows from below: four bytes each (red, green, blue, alpha), and four floats each: the window's
  /// depth, w, which is 0 where nothing was drawn, the number of the view, and nothing. Cost: that of the surface's size, whatever was drawn.
  void Read(std::vector<unsigned char>& arrIdentifiers, std::vector<float>& arrPlaces);

private:
  Ogre::TexturePtr MakeTexture(Ogre::PixelFormat eFormat);
  void Release();

  unsigned int m_nWidth;
  unsigned int m_nHeight;
  Ogre::TexturePtr m_pIdentifiers;
  Ogre::TexturePtr m_pPlaces;
  Ogre::MultiRenderTarget* m_pTarget;
  Ogre::Viewport* m_pViewport;
};

}  // namespace QXC
