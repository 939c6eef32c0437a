/// @file
/// A scene as its file describes it. The format stands in doc/scenes.md.
#pragma once

#include <apps/qx3d/QXSceneEnvironment.h>
#include <apps/qx3d/QXSceneInstances.h>
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
  /// Degrees. The heading is clockwise seen from above; a positive pitch lifts what points to +y, a positive roll
  /// lowers what points to +x.
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

/// How a label stands: it faces the eye, or lies level in the world.
enum class QXLabelFacing { Camera, Flat };

/// A line of text.
struct QXSceneLabel {
  /// UTF-8.
  std::string m_strText;
  /// Family name; empty: the default font.
  std::string m_strFont;
  /// Points at 96 to an inch; 0: GetSize decides. Of a flat label it says how finely the letters are drawn, and
  /// m_dHeight how large they are.
  int m_nSize = 0;
  bool m_bBold = false;
  bool m_bItalic = false;
  unsigned char m_nColor[3] = {0, 0, 0};
  /// Of the border round each letter, if there is one.
  bool m_bHalo = false;
  unsigned char m_nHalo[3] = {0, 0, 0};
  QXC::QXVector3d m_vecPosition;
  /// Degrees, counter-clockwise about the position: on the screen, or, of a flat label, seen from above, where it reads
  /// eastwards at 0 and northwards at 90.
  double m_dRotation = 0.0;
  /// Along the line and upwards across it, before it is turned: pixels, or world units of a flat label.
  double m_dOffset[2] = {0.0, 0.0};
  /// What of the text stands on the position. Across: -1 its left end, 0 its middle, 1 its right end; up: -1 its lower
  /// edge, 0 its middle, 1 its upper edge.
  int m_nAlignX = 0;
  int m_nAlignY = -1;
  /// Whether what stands before it hides it.
  bool m_bDepth = true;
  QXLabelFacing m_eFacing = QXLabelFacing::Camera;
  /// Of a flat label, in world units: that of its font, of which capitals have about seven tenths.
  double m_dHeight = 0.0;
  int m_nLine = 0;

  /// Points; where nothing else is said, 12 for the screen, and enough for a look from nearby for the world.
  int GetSize() const { return m_nSize > 0 ? m_nSize : (m_eFacing == QXLabelFacing::Flat ? 36 : 12); }
};

/// Largest size of a label in points: even wide letters then fit a page of the glyph atlas.
constexpr int MaxLabelSize = 300;

/// Map data: labels at its points, and buildings on its footprints.
struct QXSceneData {
  /// As the scene file's folder completes it.
  std::string m_strFile;
  /// Attributes of the file with the text of a point and its angle; empty: those that its format has by habit.
  std::string m_strLabel;
  std::string m_strAngle;
  bool m_bLabels = true;
  bool m_bBuildings = true;
  /// Added to all coordinates of the file.
  QXC::QXVector3d m_vecPosition;
  /// World units by which labels stand above their points.
  double m_dLift = 0.0;
  /// What the labels have in common. Text, position and rotation come from the file.
  QXSceneLabel m_Style;
  /// Whether the facing of the style was chosen; else labels with an angle are flat and the others face the eye.
  bool m_bFacing = false;
  /// Whether its alignment was chosen; else labels with an angle begin on their point.
  bool m_bAlign = false;
  int m_nLine = 0;
};

/// A file of static geometry, placed as it was merged.
struct QXSceneStatic {
  /// As the scene file's folder completes it.
  std::string m_strFile;
  /// Where the origin of its coordinates stands.
  QXC::QXVector3d m_vecPosition;
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
  /// Whether the sun shines; without a sky it stands in the south-west.
  bool m_bSun = true;
  /// Of the light that comes from everywhere, where the scene chooses it.
  bool m_bAmbient = false;
  unsigned char m_nAmbient[3] = {0, 0, 0};
  QXSceneCamera m_Camera;
  std::vector<QXSceneModel> m_vecModels;
  std::vector<QXSceneInstances> m_vecInstances;
  std::vector<QXSceneLight> m_vecLights;
  QXSceneFog m_Fog;
  QXSceneSky m_Sky;
  QXSceneOcean m_Ocean;
  std::vector<QXSceneIcon> m_vecIcons;
  std::vector<QXSceneSymbol> m_vecSymbols;
  std::vector<QXSceneLabel> m_vecLabels;
  std::vector<QXSceneData> m_vecData;
  std::vector<QXSceneStatic> m_vecStatics;
};

/// Of models, icons, labels and of whatever else a scene may hold many of, each.
constexpr std::size_t MaxScenePlacements = 100000;

/// Whether a name has the extension of scene files, .qxscene in any case.
bool IsSceneName(std::string const& strPath);
/// Whether a name has that of static geometry, .qsg in any case.
bool IsStaticName(std::string const& strPath);

/// Reads a scene from bytes; no file is touched.
/// @param strPath  of the scene, whose folder completes the names of files
/// @return  what could be read, which is worth nothing if there are problems
QXSceneFile ParseScene(std::string_view bytes, std::string const& strPath, QXSceneProblems& problems);

/// Reads a scene file and looks whether the files that it names are there.
/// @param vecProblems  gets one line for each problem, with path, line and what to do; the scene is good if there is
///                     none
QXSceneFile ReadSceneFile(std::string const& strPath, std::vector<std::string>& vecProblems);

}  // namespace QXApp
