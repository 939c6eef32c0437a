/// @file
/// The command line of the program.
#pragma once

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>

#include <string>
#include <vector>

namespace QXApp {

/// Which axis of a model points up where its format does not say.
enum class UpAxis { Auto, Y, Z };

/// What `qx3d view` was asked for.
struct QXViewOptions {
  /// A model, or a scene by its extension.
  std::string m_strModel;
  /// Picture to write; empty: show a window.
  std::string m_strOut;
  int m_nWidth = 1280;
  int m_nHeight = 720;
  /// Name of the renderer plug-in; empty: the configured default.
  std::string m_strRenderer;
  /// Folders with further plug-in configurations.
  std::vector<std::string> m_vecPluginFolders;
  /// Whether and where the first view's eye was placed.
  bool m_bEye = false;
  double m_dEye[3] = {0.0, 0.0, 0.0};
  bool m_bLook = false;
  double m_dLook[3] = {0.0, 0.0, 0.0};
  int m_nViews = 1;
  /// 0: one for a picture, until it is closed for a window.
  int m_nFrames = 0;
  /// Milliseconds from one frame of a written picture to the next, as animated pictures see them.
  int m_nFrameTime = 40;
  /// Frames side by side in a written picture, each m_nFrames after the one before.
  int m_nStrip = 1;
  bool m_bStats = false;
  bool m_bGround = true;
  /// Whether the meshes of models are merged into few drawables.
  bool m_bMerge = true;
  /// Merged mesh to mark, from 1 in the order in which they were merged; 0 for none.
  int m_nHighlight = 0;
  UpAxis m_eUp = UpAxis::Auto;
  /// Moment of the sky, in place of that of a scene.
  bool m_bTime = false;
  QDC::QdcTime m_Time;
  /// `qx3d pick`: tell what is at a pixel of the picture, counted from the upper left corner. m_strOut may be empty.
  bool m_bPick = false;
  int m_nPickX = 0;
  int m_nPickY = 0;
};

/// What `qx3d bake` was asked for.
struct QXBakeOptions {
  std::vector<std::string> m_vecInputs;
  /// The file of static geometry.
  std::string m_strOut;
  UpAxis m_eUp = UpAxis::Auto;
};

/// What `qx3d atlas` was asked for.
struct QXAtlasOptions {
  std::string m_strScene;
  /// Folder for the pictures.
  std::string m_strOut;
  /// Name of the renderer plug-in; empty: the configured default.
  std::string m_strRenderer;
  /// Folders with further plug-in configurations.
  std::vector<std::string> m_vecPluginFolders;
};

/// What `qx3d fonts` was asked for.
struct QXFontsOptions {
  /// Name to look for; empty: list all.
  std::string m_strFind;
  bool m_bBold = false;
  bool m_bItalic = false;
  /// Folder of the font files; empty: the one that texts take.
  std::string m_strFolder;
};

enum class QXCommand { View, Pick, Inspect, Atlas, Fonts, Bake };

/// Outcome of reading the command line: either options to act on, or an exit status to leave with.
struct QXCommandLine {
  bool m_bRun = false;
  int m_nExitStatus = 0;
  QXCommand m_eCommand = QXCommand::View;
  // Of these the one of the command is filled.
  /// Of view and pick.
  QXViewOptions m_Options;
  /// What is inspected.
  std::string m_strFile;
  QXBakeOptions m_Bake;
  QXAtlasOptions m_Atlas;
  QXFontsOptions m_Fonts;
};

/// Reads the command line. Help and version are printed to the standard output; a mistake is one line on the standard
/// error output, with exit status 2 for wrong usage and 1 for a size that cannot be.
QXCommandLine ParseCommandLine(int nArguments, char const* const* pszArguments);

}  // namespace QXApp
