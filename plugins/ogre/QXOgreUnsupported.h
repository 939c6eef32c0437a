/// @file
/// What the plug-in cannot do yet.
#pragma once

#include <QxGraphics3D/frame/QXGraphics3D.h>

namespace QXC {

/// The pure operations of the renderer that this plug-in has no work for yet, in one place, so that nobody takes them
/// for done: they answer 0 or null, and the error text says so, or do nothing. The table in the plug-in's README lists
/// the same.
class QXOgreUnsupported : public QXGraphics3D {
public:
  // Drawing at once: the plug-in draws the drawables of scenes, and nothing beside them. OGRE opens and closes the
  // drawing of a viewport itself.
  void BeginFrame() override {}
  void EndFrame() override {}
  void Flush(unsigned char) override {}
  void Render(QXRenderOperation const&) override {}
  void RenderSimpleLine(double const*, int, unsigned char, float const*) override {}
  void RenderSimplePolygon(double const*, int, float const*) override {}
  unsigned int BeginList() override { return Refuse("lists of drawing at once"); }
  void EndList() override {}
  void BeginScreenProjection() override {}
  void EndScreenProjection() override {}
  void ClearFrameBuffer(unsigned int, QXColorValue3D const&, double, unsigned int) override {}
  void SetScissorTest(unsigned char, int, int, int, int) override {}
  void SetCurrentColor(QXColorValue3D const&) override {}

  // State of drawing at once.
  void SetAmbientLight(QXColorValue3D const&) override {}
  void SetShadingMode(int) override {}
  void SetLightingEnable(unsigned char) override {}
  void SetMaterialColor(
      QXColorValue3D const&, QXColorValue3D const&, QXColorValue3D const&, QXColorValue3D const&, double) override {}
  void SetDepthCheckEnable(unsigned char) override {}
  void SetDepthWriteEnable(unsigned char) override {}
  void SetDepthFunction(int) override {}
  void SetDepthBias(double, double) override {}
  void SetColourBufferWriteEnable(unsigned char, unsigned char, unsigned char, unsigned char) override {}
  void SetSceneBlending(int, int) override {}
  void SetAlphaRejectSettings(int, unsigned char) override {}
  void SetClipPlaneEnable(unsigned short, unsigned char) override {}
  void SetPolygonMode(int) override {}
  void SetPointAttenuation(double, double, double, double, double) override {}
  void SetStencilCheckEnable(unsigned char) override {}
  void SetStencilParameters(int, unsigned int, unsigned int, int, int, int) override {}
  void SetPointSize(double) override {}
  void SetLineWidth(double) override {}
  void SetLineSmoothEnable(unsigned char) override {}
  void SetMultiSampleEnable(unsigned char) override {}

  // Textures and programs of the host.
  void SetTexture(unsigned int, unsigned char, QXTexture*) override {}
  void SetTextureMatrix(unsigned int, QXMatrix4d const&) override {}
  void SetTextureCoordCalculation(unsigned int, int) override {}
  void SetTextureAddressingMode(unsigned int, int, int, int) override {}
  void SetTextureBorderColor(unsigned int, QXColorValue3D const&) override {}
  void SetTextureBlendMode(unsigned int, int, int) override {}
  unsigned char BindGpuProgram(QdcUnicodeString const&, QdcUnicodeString const&) override {
    return Refuse("programs of the host");
  }
  void UnbindGpuProgram() override {}
  unsigned char SetGpuProgramParameter(QdcUnicodeString const&, float const*, unsigned int) override {
    return Refuse("programs of the host");
  }
  unsigned char AddResourceFolder(QdcUnicodeString const&) override { return Refuse("resource folders"); }
  void RemoveResourceFolder(QdcUnicodeString const&) override {}

  // Selection of single vertices.
  void SetSelectionMode(int) override {}
  QXRenderTarget* CreateVertexSelectionRenderTarget(
      QdcUnicodeString const&, unsigned int, unsigned int, QdcUnicodeString const&) override {
    Refuse("selection of vertices");
    return nullptr;
  }

  // Head-mounted displays and stereo.
  void SetStereoMode(int) override {}
  int GetStereoMode() const override { return 0; }
  unsigned char IsHMDAvailable(HMDMode) const override { return 0; }
  unsigned char GetHMDRenderSize(unsigned int& nWidth, unsigned int& nHeight) const override {
    nWidth = 0;
    nHeight = 0;
    return 0;
  }
  unsigned char InitializeVR() override { return Refuse("head-mounted displays"); }
  void UpdateHMDPose() override {}
  unsigned char GetHMDPose(int, QXMatrix4d&, QXMatrix4d&) const override { return 0; }
  void SubmitHMDFrame(QXRenderTarget*, QXRenderTarget*) override {}
  void SetCamera4QX(QXCamera*) override {}

  // Effects on the finished picture beside bloom, several textures at once.
  void SetHDREnable(unsigned char) override {}
  void SetExposure(double) override {}
  void SetAmbientOcclusion(unsigned char, double) override {}
  void SetDepthOfField(unsigned char, double, double) override {}
  void SetColorCorrection(double, double, double) override {}
  QXRenderTarget* CreateMultiRenderTarget(QdcUnicodeString const&, unsigned int, unsigned int, unsigned int) override {
    Refuse("targets of several textures");
    return nullptr;
  }

protected:
  /// Takes the lack of what the host asked for as the error text, and gives 0.
  virtual unsigned char Refuse(char const* szWhat) = 0;
};

}  // namespace QXC
