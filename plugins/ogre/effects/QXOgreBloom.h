/// @file
/// The glow of what is bright.
#pragma once

#include <array>
#include <memory>

#include <OgreHighLevelGpuProgram.h>
#include <OgrePrerequisites.h>

#include <QxGraphics3D/view/QXBloomSetting.h>

#include <plugins/ogre/effects/QXOgreSampleCounts.h>

namespace QXC {

class QXOgreDevice;

/// The effect "bloom" of one target. While it is on, the target's viewports draw into a picture of its own; from that
/// the bright part is taken, made smaller and blurred along rows and columns, and both together are the target's picture.
/// Cost: three drawings of the reduced size, and one of the whole, beside the scene's; the picture twice on the device.
class QXOgreBloom final {
public:
  /// Compiles the programs; throws what OGRE throws and std::runtime_error.
  explicit QXOgreBloom(QXOgreDevice& device);
  ~QXOgreBloom();
  QXOgreBloom(QXOgreBloom const&) = delete;
  QXOgreBloom& operator=(QXOgreBloom const&) = delete;

  /// A setting with numbers inside their ranges: those that are none come from the former one.
  static QXBloomSetting Limit(QXBloomSetting const& setting, QXBloomSetting const& former);
  /// Whether a limited setting changes any picture.
  static bool IsVisible(QXBloomSetting const& setting);

  /// Where to draw the scene. Throws what OGRE throws.
  Ogre::Viewport& Begin(unsigned int nWidth, unsigned int nHeight, int nSamples);
  /// Of what is drawn there, until that has another size or samples.
  QXOgreSampleCounts& GetSampleCounts();
  void DropSampleCounts() { m_Drawn.m_pSampleCounts.reset(); }
  /// What was drawn there since Begin, and its glow, into the whole of a viewport.
  void Finish(Ogre::Viewport& viewport, QXBloomSetting const& setting);

private:
  /// A texture to draw into.
  struct Picture {
    Ogre::TexturePtr m_pTexture;
    Ogre::Viewport* m_pViewport = nullptr;
    std::unique_ptr<QXOgreSampleCounts> m_pSampleCounts;
    unsigned int m_nWidth = 0;
    unsigned int m_nHeight = 0;
    int m_nSamples = 0;
  };
  /// One drawing over a whole target.
  struct Step {
    Ogre::MaterialPtr m_pMaterial;
  };

  static void Free(Picture& picture);
  static void Fit(Picture& picture, unsigned int nWidth, unsigned int nHeight, int nSamples);
  Step MakeStep(char const* szFragment, int nTextures);
  static void SetTexture(Step const& step, unsigned short nUnit, Picture const& picture);
  static Ogre::GpuProgramParametersSharedPtr ParametersOf(Step const& step);
  void Draw(Step const& step, Ogre::Viewport& viewport);
  void SetWeights(double dRadius);

  QXOgreDevice& m_Device;
  Ogre::SceneManager* m_pScene;
  Ogre::HighLevelGpuProgramPtr m_pVertex;
  std::unique_ptr<Ogre::VertexData> m_pTriangle;
  Picture m_Drawn;
  std::array<Picture, 2> m_arrReduced;
  Step m_Bright;
  Step m_Blur;
  Step m_Sum;
};

}  // namespace QXC
