/// @file
/// A renderer plug-in at work: one target, its views and what they show.
#pragma once

#include <apps/qx3d/QXEnvironment.h>
#include <apps/qx3d/QXIconSet.h>
#include <apps/qx3d/QXInstanceSet.h>
#include <apps/qx3d/QXLabelSet.h>
#include <apps/qx3d/QXPickTable.h>
#include <apps/qx3d/QXPose.h>
#include <apps/qx3d/QXSymbolSet.h>
#include <apps/qx3d/QXTextureShelf.h>

#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/QXPluginModule.h>

#include <memory>
#include <string>
#include <vector>

namespace QXC {
class QXCamera;
class QXGraphics3D;
class QXRenderOperation3D;
class QXRenderTarget;
class QXStaticGeometry;
class QXTexture;
class QXViewport;
struct QXStaticGeometryBucket;
}  // namespace QXC

namespace QXApp {

class QXInstanceModels;
struct QXScene;
struct QXScenePart;
struct QXSymbolModel;

/// Figures of the frames drawn so far.
struct QXFrameFigures {
  unsigned int m_nTriangles = 0;
  unsigned int m_nVertices = 0;
  unsigned int m_nDrawOperations = 0;
};

/// What was handed to the renderer, each viewport may draw.
struct QXSceneFigures {
  unsigned int m_nModelTriangles = 0;
  unsigned int m_nModelVertices = 0;
  /// Placed meshes of the models, and the ranges in which they reach the renderer: draw operations without and with
  /// merging.
  unsigned int m_nMeshes = 0;
  unsigned int m_nRanges = 0;
  /// Of the ground plane, which no model file holds.
  unsigned int m_nGroundTriangles = 0;
  unsigned int m_nGroundVertices = 0;
  /// Of the models that stand at many places: how often, and what they have together.
  std::size_t m_nInstances = 0;
  unsigned long long m_nInstanceTriangles = 0;
  unsigned long long m_nInstanceVertices = 0;
};

/// Drives a renderer through the library's abstract classes alone. Each step answers with an empty string or the reason
/// of its failure, one line. The order is Start, one of the Open operations, Show, AddView, then frames.
class QXRendererSession {
public:
  QXRendererSession() = default;
  QXRendererSession(QXRendererSession const&) = delete;
  QXRendererSession& operator=(QXRendererSession const&) = delete;
  /// Gives everything back: drawables, textures, targets, cameras, renderer.
  ~QXRendererSession();

  /// Loads a renderer and starts its device.
  /// @param strName  empty: the configured default
  std::string Start(std::string const& strName);

  /// Opens the target off screen.
  std::string OpenTexture(int nWidth, int nHeight);
  /// Opens the target in a window of the program.
  std::string OpenWindow(HWND hWindow, int nWidth, int nHeight);

  /// Merged mesh that Show marks, counted from 0 over all geometries in their order; below 0, or beyond the last, none.
  void SetHighlight(long nMesh) { m_nHighlight = nMesh; }
  /// Hands a scene's drawables over. Geometries and parts are freed on the way.
  /// @param vecPictures  of the models, by the index that a part has of its model
  /// @param vecProblems  gets one line for each picture that the renderer cannot use; the model is shown all the same
  std::string Show(QXScene& scene, std::vector<QXModelPictures> const& vecPictures, bool bGround,
      std::vector<std::string>& vecProblems);

  /// Hands the instances of a scene over, after Show.
  /// @param models    their meshes are freed on the way
  /// @param problems  gets those that the renderer cannot show, and pictures that it cannot use; they are left out
  void ShowInstances(QXSceneFile const& scene, QXInstanceModels& models, QXSceneProblems& problems);
  /// Lights the scene: sun, lights, fog, sky and ocean.
  /// @param problems  gets what the renderer has not; the rest is shown
  void ShowEnvironment(QXSceneFile const& scene, QXSceneProblems& problems);

  /// Gives everything that is shown from then on an identifier.
  void EnablePicking() { m_bPicking = true; }
  /// What a person points at, within two pixels.
  /// @param nX,nY        pixel of the target, from the upper left corner
  /// @param vecPosition  set where anything is hit: where, in world coordinates
  /// @return  0 where nothing is, else the thing's identifier
  unsigned int Pick(int nX, int nY, QXPickedThing& thing, QXC::QXVector3d& vecPosition);
  /// Shows that thing as selected and no other; 0 for none. Labels and the ground stay as they are.
  void HighlightPicked(unsigned int nID);

  /// What viewports added from then on have behind everything; red, green, blue from 0 to 1. The sky, unless set.
  void SetBackground(double dRed, double dGreen, double dBlue);
  /// Vertical, radians; for poses set from then on.
  void SetFieldOfView(double dFov) { m_dFov = dFov; }
  double GetFieldOfView() const { return m_dFov; }

  /// Draws symbols into their pages, before the icons that show them. The parts' buffers are freed on the way.
  /// @param problems  gets the symbols that the renderer cannot draw, and pictures that it cannot use
  void ShowSymbols(std::vector<QXSymbolModel>& vecSymbols, QXSceneProblems& problems);
  /// Hands a scene's icons over, after Show where there is a model.
  /// @param pictures  loaded with the same icons; their pixels are gone afterwards
  /// @param problems  gets the icons that the renderer cannot show; they are left out
  void ShowIcons(std::vector<QXSceneIcon> const& vecIcons, QXIconPictures& pictures, QXSceneProblems& problems);

  /// Hands a scene's labels over, after Show where there is a model.
  /// @param problems  gets what cannot be shown, which is left out
  void ShowLabels(std::vector<QXSceneLabel> const& vecLabels, QXSceneProblems& problems);

  /// Adds a viewport with a camera of its own, below those that come after it.
  std::string AddView(QXCell const& cell);
  /// Size of a viewport as width over height.
  double GetAspect(int nView) const;
  /// Moves the camera of a viewport.
  void SetPose(int nView, QXPose const& pose);

  /// The window has another size; its viewports keep their fractions until SetCell.
  void Resize(int nWidth, int nHeight);
  /// Moves a viewport.
  void SetCell(int nView, QXCell const& cell);
  /// Draws a frame of all targets and shows it.
  /// @param dSeconds  since the one before, by which waves move on
  void DrawFrame(double dSeconds = 0.0);

  /// Width times height times four bytes, blue, green, red, alpha, top row first.
  std::string ReadPicture(std::vector<unsigned char>& vecPixels);

  /// Reads a page of an atlas back from the device.
  std::string ReadPage(QXAtlasPage& page) { return ReadAtlasPage(*m_pGraphics3D, page); }

  QXC::QXRenderTarget const* GetTarget() const { return m_pTarget; }
  /// Of the last frame.
  QXFrameFigures const& GetFigures() const { return m_Figures; }
  QXSceneFigures const& GetSceneFigures() const { return m_SceneFigures; }
  bool HasInstancing() const;
  /// Instances that the last view drew, over all their meshes.
  std::size_t CountDrawnInstances() const { return m_Instances.CountDrawn(*m_pGraphics3D); }
  std::size_t GetInstanceMeshCount() const { return m_Instances.GetMeshCount(); }
  unsigned int GetLightCount() const { return m_Environment.GetLightCount(); }
  unsigned int GetIconCount() const { return m_Icons.GetCount(); }
  unsigned int GetLabelCount() const { return m_Labels.GetCount(); }
  std::size_t GetGlyphCount() const { return m_Labels.GetGlyphCount(); }
  /// The pages that icons are shown from, without pixels: those of images, then those of symbols.
  std::vector<QXAtlasPage> GetIconPages() const;
  /// The pages that labels are shown from, without pixels.
  std::vector<QXAtlasPage> GetLabelPages() const { return m_Labels.GetPages(); }
  unsigned int GetTextureCount() const { return m_Textures.GetCount(); }
  std::string GetRendererName() const;

private:
  struct View {
    QXC::QXCamera* m_pCamera;
    QXC::QXViewport* m_pViewport;
  };

  std::string DescribeFailure(char const* szWhat) const;
  std::string PrepareScene();
  std::string AttachTarget(QXC::QXRenderTarget* pTarget);
  std::string AddPart(QXScenePart& part, QXC::QXMatrix4d const& matPlace = QXC::QXMatrix4d());
  std::string AddScene(QXScene& scene, std::vector<QXModelPictures> const& vecPictures,
      std::vector<std::string>& vecProblems, QXC::QXMatrix4d const& matPlace = QXC::QXMatrix4d());
  std::string AddGeometry(QXC::QXStaticGeometry const& geometry, QXC::QXMatrix4d const& matPlace = QXC::QXMatrix4d());
  /// Gives the drawables from a number on their identifiers: those of the buckets of a geometry.
  /// @param nStatic  its place among those that were merged already, -1 for others
  void NumberGeometry(
      QXC::QXStaticGeometry const& geometry, QXScene const& scene, int nStatic, std::size_t nFirstDrawable);
  void Highlight(QXC::QXStaticGeometryBucket const& bucket, QXC::QXRenderOperation3D& drawable);
  std::string AddSymbol(QXSymbolModel& symbol, QXSymbolPlace const& place, std::vector<std::string>& vecProblems);
  std::string AddGround(QXScene const& scene);
  QXC::QXTexture* TakeTexture(int nModel, QXTextureKey const& key, std::vector<QXModelPictures> const& vecPictures,
      std::vector<std::string>& vecProblems);
  void AddTexture(
      QXScenePart& part, std::vector<QXModelPictures> const& vecPictures, std::vector<std::string>& vecProblems);

  std::unique_ptr<QXC::QXPluginModule> m_pModule;
  QXC::QXGraphics3D* m_pGraphics3D = nullptr;
  QXC::QXRenderTarget* m_pTarget = nullptr;
  std::vector<QXC::QXRenderOperation3D*> m_vecDrawables;
  std::vector<View> m_vecViews;
  QXTextureShelf m_Textures;
  QXIconSet m_Icons;
  QXSymbolSet m_Symbols;
  QXLabelSet m_Labels;
  QXInstanceSet m_Instances;
  QXPickTable m_PickTable;
  bool m_bPicking = false;
  QXEnvironment m_Environment;
  QXC::QXVector3d m_vecOrigin;
  QXC::QXBoundingBox m_Bounds;
  double m_dGroundReach = 0.0;
  /// How many merged meshes come before the marked one; below 0 once it was met.
  long m_nHighlight = -1;
  double m_dFov = 0.55;
  double m_dBackground[3] = {0.78, 0.87, 0.95};
  QXFrameFigures m_Figures;
  QXSceneFigures m_SceneFigures;
  std::wstring m_strScene;
};

}  // namespace QXApp
