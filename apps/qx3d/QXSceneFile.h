/// @file
/// A scene as its file describes it. The format stands in doc/scenes.md.
#pragma once

#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/QXViewOptions.h>

#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <string>
#include <string_view>
#include <vector>

namespace QXApp {

/// A placed model. It is scaled, then rolled about its y axis, pitched about its x axis, turned about its z axis, then
/// moved; all of that with z up already.
struct QXSceneModel {
  /// As the scene file's folder completes it.
  std::string m_strFile;
  QXC::QXVector3d m_vecPosition;
  /// Degrees. The heading is clockwise seen from above; a positive pitch lifts what points to +y, a positive roll lowers
  /// what points to +x.
  double m_dHeading = 0.0;
  double m_dPitch = 0.0;
  double m_dRoll = 0.0;
  double m_dScale = 1.0;
  /// Auto: as the command line says.
  UpAxis m_eUp = UpAxis::Auto;
  int m_nLine = 0;
};

/// A model that is drawn once, into a picture for icons.
struct QXSceneSymbol {
  std::string m_strName;
  /// As the scene file's folder completes it.
  std::string m_strFile;
  /// Edge of the square picture on the screen, and of an icon that says no other.
  int m_nPixels = 64;
  /// Degrees: as it would turn a placed model, which is then seen from the south, so far above the horizon.
  double m_dHeading = 0.0;
  double m_dElevation = 30.0;
  /// Auto: as the command line says.
  UpAxis m_eUp = UpAxis::Auto;
  int m_nLine = 0;
};

enum class QXIconUnit { Pixels, World };

/// An image that faces the eye and stands on a position with the middle of its lower edge.
struct QXSceneIcon {
  /// As the scene file's folder completes it; empty for an icon that shows a symbol.
  std::string m_strImage;
  /// Name of a symbol of the scene; empty for an icon that shows an image.
  std::string m_strSymbol;
  QXC::QXVector3d m_vecPosition;
  /// 0, 0: as many pixels as the image or symbol has.
  double m_dWidth = 0.0;
  double m_dHeight = 0.0;
  QXIconUnit m_eUnit = QXIconUnit::Pixels;
  /// Pixels of the image whose channels are all within the tolerance of this red, green, blue are transparent.
  bool m_bColorKey = false;
  unsigned char m_nColorKey[3] = {0, 0, 0};
  int m_nTolerance = 0;
  int m_nLine = 0;
};

/// What the first view shows, unless the command line says otherwise.
struct QXSceneCamera {
  bool m_bEye = false;
  QXC::QXVector3d m_vecEye;
  bool m_bLook = false;
  QXC::QXVector3d m_vecLook;
  /// Vertical, degrees; 0: the program's own.
  double m_dFieldOfView = 0.0;
  int m_nLine = 0;
};

/// A scene file. The placed things stand in the order of the file, each with the line that names its file.
struct QXSceneFile {
  std::string m_strPath;
  /// Red, green, blue of what lies behind everything.
  bool m_bBackground = false;
  unsigned char m_nBackground[3] = {0, 0, 0};
  bool m_bGround = true;
  QXSceneCamera m_Camera;
  std::vector<QXSceneModel> m_vecModels;
  std::vector<QXSceneIcon> m_vecIcons;
  std::vector<QXSceneSymbol> m_vecSymbols;
};

/// Of models, of icons, and of whatever else a scene may hold many of, each.
constexpr std::size_t MaxScenePlacements = 100000;

/// Whether a name has the extension of scene files, .qxscene in any case.
bool IsSceneName(std::string const& strPath);

/// Reads a scene from bytes; no file is touched.
/// @param strPath  of the scene, whose folder completes the names of files
/// @return  what could be read, which is worth nothing if there are problems
QXSceneFile ParseScene(std::string_view bytes, std::string const& strPath, QXSceneProblems& problems);

/// Reads a scene file and looks whether the files that it names are there.
/// @param vecProblems  gets one line for each problem, with path, line and what to do; the scene is good if there is none
QXSceneFile ReadSceneFile(std::string const& strPath, std::vector<std::string>& vecProblems);

}  // namespace QXApp
