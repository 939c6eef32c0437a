#include <apps/qx3d/QXViewOptions.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXSceneValue.h>

#include <QxGraphics3D/Version.h>

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <string_view>

namespace QXApp {

namespace {

/// Longest side of a picture: what graphics devices give, with a picture of 1 GiB at most.
constexpr long MaxSide = 16384;

/// Farthest coordinate of an eye: a tenth of a light-year in metres, and its square is still a float.
constexpr double MaxCoordinate = 1e15;

/// Reads "WxH". Numbers of any size are well-formed here; whether there is such a picture is another question.
bool ReadSize(std::string_view strText, long (&nSides)[2]) {
  char const* p = strText.data();
  char const* const pEnd = p + strText.size();
  for (int i = 0; i < 2; ++i) {
    auto const result = std::from_chars(p, pEnd, nSides[i]);
    if (result.ec == std::errc::result_out_of_range)
      nSides[i] = -1;
    else if (result.ec != std::errc())
      return false;
    p = result.ptr;
    if (i == 0 && (p == pEnd || (*p != 'x' && *p != 'X'))) return false;
    if (i == 0) ++p;
  }
  return p == pEnd;
}

/// Reads "x,y,z".
bool ReadPoint(std::string_view strText, double (&dPoint)[3]) {
  char const* p = strText.data();
  char const* const pEnd = p + strText.size();
  for (int i = 0; i < 3; ++i) {
    if (i > 0 && (p == pEnd || *p++ != ',')) return false;
    auto const result = std::from_chars(p, pEnd, dPoint[i]);
    if (result.ec != std::errc() || !(std::abs(dPoint[i]) <= MaxCoordinate)) return false;
    p = result.ptr;
  }
  return p == pEnd;
}

std::string CheckSizeSyntax(std::string& strText) {
  long nSides[2];
  return ReadSize(strText, nSides) ? std::string() : "'" + strText + "' is no size; write it as 1280x720";
}

std::string CheckPointSyntax(std::string& strText) {
  double dPoint[3];
  return ReadPoint(strText, dPoint)
             ? std::string()
             : "'" + strText + "' is no position; write it as 10,20,30.5, with no number beyond 1e15";
}

std::string CheckTimeSyntax(std::string& strText) {
  QDC::QdcTime time;
  return ReadTime(strText, time);
}

/// An empty text is more often a variable that was not set than a wish.
std::string CheckNotEmpty(std::string& strText) {
  return strText.empty() ? "the text is empty; name one" : std::string();
}

constexpr char const* ViewFooter =
    R"(Without --out a window opens: left button orbits, right button pans, wheel zooms, Home goes back to the first
view, Escape quits. A click prints what is there, as 'qx3d pick' does, and highlights it. Without a display give --out, and start a renderer that needs one through 'xvfb-run -a'.

Pictures on a model come from the model file or from files beside it: .png .jpg .tif .webp .bmp .tga .hdr .psd .gif
.ktx2. One that cannot be read is told in one line and its meshes are shown in their colours. A GIF plays: in a window
by the clock, with --out by --frame-time from frame to frame, so that the same call writes the same picture.

Colours: a mesh shows its material colour times its vertex colours. A mesh with neither is coloured by its faces:
light ground, pale walls, brick roofs. If every colour of a file is dark, all are mixed with a light paper tone.
Map data shows as labels at its named points and as buildings on its footprints.

A scene is a text file with placed models, instances of one model at many places, icons, labels, map data, lights, fog,
a sky, a camera and a background; doc/scenes.md has the format. What the command line says about the eye, the point to
look at, the ground and the time goes before what the scene says.

--time puts anything under a sky, with the sun where it stands then over the middle of Germany: white by day, orange
while it is low, gone at night. The time is universal unless a zone follows.

z is up. Formats that say otherwise are turned; of 3DS, OBJ, PLY and STL, which do not say, a flat wide model lies
down, and else OBJ has y up and the others z, unless --up tells.)";

constexpr char const* PickFooter =
    R"(The picture is the one that 'qx3d view' writes with the same size, eye and point to look at. Printed are layer and
object as the renderer numbers them, what the object is, and the position in the world: the mesh of a model or the
building of map data with its file, the place of an instance, the object of static geometry, the icon, the text of the
label, or the ground. What is up to two pixels beside the given one counts where that shows only the background.

The exit status is 0 for a hit and 3 where there is nothing.)";

constexpr char const* InspectFooter =
    R"(Of an image are printed the type by name and by content, the size and depth in the file, the pixel format, size
and levels of a texture that loads it, and how many pixels let something through. A file whose bytes are of another
type than its name says is not read; the message tells which type they are.

Of a file of static geometry are printed its version, its buckets with their levels, passes and bounds, the spheres of
its textures, and its sizes. All of it is looked at: counts, indices, positions. The first fault is told with the offset
of its byte.

The exit status is 0 only for an image that loads and a file without a fault.)";

constexpr char const* BakeFooter =
    R"(Models, the buildings of map data and what scenes place are merged into one file of static geometry, which is
read as fast as the disk allows and drawn in a few operations. Labels and icons are not part of it.

The pictures on the models go into a folder beside the file, OUT.textures, and where its coordinates stand in the world
goes into a scene, OUT.qxscene. Keep the three together; 'qx3d view OUT' finds them, and a scene places the file with a
section [static].

A file of static geometry given as the one INPUT is written again in the newest version of the format.)";

constexpr char const* AtlasFooter =
    R"(Small images of a scene share large textures, the pages of an atlas. Each page is written as a PNG in which the
places are outlined and numbered; printed are its size and format, how many places it has and how much of it they fill.)";

constexpr char const* FontsFooter =
    R"(Listed are all faces of the .ttf and .ttc files of the fonts folder and what is below it, in the order in which names
are looked for, the style that each calls its own, and which one stands in for fonts that are not there. Of a collection
with more than 10 faces only the first is listed.

--find goes the way that a text goes: first the names of the registry section Graphics3DDefaultFonts, then the first
listed face whose name begins with the name asked for.)";

struct RawOptions {
  std::string m_strBakeUp = "auto";
  bool m_bNoMerge = false;
  std::string m_strSize;
  std::string m_strEye;
  std::string m_strLook;
  std::string m_strUp = "auto";
  bool m_bNoGround = false;
  std::string m_strTime;
};

void DefineRenderer(CLI::App& command, std::string& strRenderer, std::vector<std::string>& vecPluginFolders) {
  command.add_option("--renderer", strRenderer, "Renderer plug-in by name, such as ogre or null")
      ->type_name("NAME")
      ->check(CLI::Validator(CheckNotEmpty, ""));
  command.add_option("--plugins", vecPluginFolders, "Folder with further plug-in configurations")
      ->type_name("DIR")
      ->check(CLI::Validator(CheckNotEmpty, ""))
      ->expected(1)
      ->take_all();
}

/// What is shown, how large and from where.
void DefineScene(CLI::App& view, QXViewOptions& options, RawOptions& raw) {
  view.add_option("model", options.m_strModel,
          "Model file: .3ds .gltf .glb .obj .ply .stl .dae .fbx; map data: .gml .citygml .geojson .shp; static "
          "geometry: .qsg; or a scene of several: .qxscene")
      ->required()
      ->check(CLI::Validator(CheckNotEmpty, ""));
  view.add_option("--size", raw.m_strSize, "Width and height in pixels (1280x720)")
      ->type_name("WxH")
      ->check(CLI::Validator(CheckSizeSyntax, ""));
  DefineRenderer(view, options.m_strRenderer, options.m_vecPluginFolders);
  view.add_option("--eye", raw.m_strEye, "Position of the eye (default: the model fills the picture)")
      ->type_name("x,y,z")
      ->check(CLI::Validator(CheckPointSyntax, ""));
  view.add_option("--look", raw.m_strLook, "Point to look at (default: the middle of the model)")
      ->type_name("x,y,z")
      ->check(CLI::Validator(CheckPointSyntax, ""));
  view.add_option("--up", raw.m_strUp, "Axis that is up where the format does not say: auto, y or z")
      ->type_name("AXIS")
      ->check(CLI::IsMember({"auto", "y", "z"}));
  view.add_option(
          "--time", raw.m_strTime, "Moment of the sky and its sun, as 2026-06-21T20:30 or with +02:00 behind it")
      ->type_name("TIME")
      ->check(CLI::Validator(CheckTimeSyntax, ""));
  view.add_flag("--no-ground", raw.m_bNoGround, "Leave out the ground plane under the model");
}

void DefineView(CLI::App& view, QXViewOptions& options, RawOptions& raw) {
  DefineScene(view, options, raw);
  view.add_option("--out", options.m_strOut, "Write the picture to this PNG file instead of opening a window")
      ->type_name("FILE")
      ->check(CLI::Validator(CheckNotEmpty, ""));
  view.add_option("--views", options.m_nViews, "Viewports with different views, 1 to 16")
      ->type_name("N")
      ->check(CLI::Range(1, 16));
  view.add_option(
          "--frames", options.m_nFrames, "Frames to draw: before the picture is taken, or before the window closes")
      ->type_name("N")
      ->check(CLI::Range(1, 1000000));
  view.add_option("--frame-time", options.m_nFrameTime,
          "Milliseconds between the frames of a written picture, by which animated pictures move on (40)")
      ->type_name("MS")
      ->check(CLI::Range(1, 1000000));
  view.add_option("--strip", options.m_nStrip,
          "Moments side by side in the written picture, each --frames after the one before, 1 to 64")
      ->type_name("N")
      ->check(CLI::Range(1, 64));
  view.add_flag("--no-merge", raw.m_bNoMerge, "Draw each mesh of the models for itself, to see what merging saves");
  view.add_option("--highlight", options.m_nHighlight, "Mark this one of the merged meshes, counted from 1")
      ->type_name("N")
      ->check(CLI::Range(1, 100000000));
  view.add_flag("--stats", options.m_bStats, "Print frame statistics, triangles, vertices and draw operations");
  view.footer(ViewFooter);
}

void DefinePick(CLI::App& pick, QXViewOptions& options, RawOptions& raw) {
  DefineScene(pick, options, raw);
  pick.add_option("x", options.m_nPickX, "Column of the picture, from 0 at the left")->type_name("X")->required();
  pick.add_option("y", options.m_nPickY, "Row of the picture, from 0 at the top")->type_name("Y")->required();
  pick.add_option("--out", options.m_strOut, "Write the picture to this PNG file, with what is hit highlighted")
      ->type_name("FILE")
      ->check(CLI::Validator(CheckNotEmpty, ""));
  pick.footer(PickFooter);
}

void DefineInspect(CLI::App& inspect, std::string& strFile) {
  inspect
      .add_option("file", strFile,
          "Image file: .png .jpg .tif .webp .bmp .tga .hdr .psd .gif .ktx2; a .gif with its frames and delays. Or "
          "static geometry: .qsg")
      ->required()
      ->check(CLI::Validator(CheckNotEmpty, ""));
  inspect.footer(InspectFooter);
}

void DefineBake(CLI::App& bake, QXBakeOptions& options, RawOptions& raw) {
  bake.add_option("input", options.m_vecInputs,
          "Model files, map data, scenes: whatever 'qx3d view' shows; or one .qsg of an older version")
      ->type_name("INPUT")
      ->required()
      ->check(CLI::Validator(CheckNotEmpty, ""));
  bake.add_option("-o,--out", options.m_strOut, "File to write: .qsg")
      ->type_name("OUT")
      ->required()
      ->check(CLI::Validator(CheckNotEmpty, ""));
  bake.add_option("--up", raw.m_strBakeUp, "Axis that is up where the format does not say: auto, y or z")
      ->type_name("AXIS")
      ->check(CLI::IsMember({"auto", "y", "z"}));
  bake.footer(BakeFooter);
}

void DefineAtlas(CLI::App& atlas, QXAtlasOptions& options) {
  atlas.add_option("scene", options.m_strScene, "Scene file: .qxscene")
      ->required()
      ->check(CLI::Validator(CheckNotEmpty, ""));
  atlas.add_option("--out", options.m_strOut, "Folder for the pictures, made if it is missing")
      ->type_name("DIR")
      ->required()
      ->check(CLI::Validator(CheckNotEmpty, ""));
  DefineRenderer(atlas, options.m_strRenderer, options.m_vecPluginFolders);
  atlas.footer(AtlasFooter);
}

void DefineFonts(CLI::App& fonts, QXFontsOptions& options) {
  CLI::Option* const pFind =
      fonts.add_option("--find", options.m_strFind, "Tell which file a font name means, and why")
          ->type_name("NAME")
          ->check(CLI::Validator(CheckNotEmpty, ""));
  fonts.add_flag("--bold", options.m_bBold, "With --find: the bold face is wanted")->needs(pFind);
  fonts.add_flag("--italic", options.m_bItalic, "With --find: the italic face is wanted")->needs(pFind);
  fonts.add_option("--folder", options.m_strFolder, "Folder of the font files (default: the one that texts take)")
      ->type_name("DIR")
      ->check(CLI::Validator(CheckNotEmpty, ""));
  fonts.footer(FontsFooter);
}

UpAxis FindUp(std::string const& strUp) {
  return strUp == "y" ? UpAxis::Y : (strUp == "z" ? UpAxis::Z : UpAxis::Auto);
}

/// What follows once the syntax is right. An empty string, or the line that says what cannot be.
std::string TakeOver(RawOptions const& raw, QXViewOptions& options) {
  options.m_bGround = !raw.m_bNoGround;
  options.m_bMerge = !raw.m_bNoMerge;
  options.m_eUp = FindUp(raw.m_strUp);
  options.m_bEye = !raw.m_strEye.empty() && ReadPoint(raw.m_strEye, options.m_dEye);
  options.m_bTime = !raw.m_strTime.empty() && ReadTime(raw.m_strTime, options.m_Time).empty();
  options.m_bLook = !raw.m_strLook.empty() && ReadPoint(raw.m_strLook, options.m_dLook);
  if (options.m_nHighlight > 0 && !options.m_bMerge)
    return "--highlight marks one of the merged meshes; leave --no-merge out";
  long nSides[2] = {options.m_nWidth, options.m_nHeight};
  if (!raw.m_strSize.empty()) ReadSize(raw.m_strSize, nSides);
  for (long nSide : nSides)
    if (nSide < 1 || nSide > MaxSide) return "--size " + raw.m_strSize + ": a side must have 1 to 16384 pixels";
  if (options.m_nStrip > 1 && options.m_strOut.empty()) return "--strip goes into a picture; name its file with --out";
  if (nSides[0] * options.m_nStrip > MaxSide)
    return "--strip " + std::to_string(options.m_nStrip) + " of " + std::to_string(nSides[0]) +
           " pixels each: the picture must have 1 to 16384 pixels a side";
  options.m_nWidth = static_cast<int>(nSides[0]);
  options.m_nHeight = static_cast<int>(nSides[1]);
  bool const bInside = options.m_nPickX >= 0 && options.m_nPickX < options.m_nWidth && options.m_nPickY >= 0 &&
                       options.m_nPickY < options.m_nHeight;
  if (!bInside)
    return "the pixel " + std::to_string(options.m_nPickX) + " " + std::to_string(options.m_nPickY) +
           " is outside of the picture, which has " + std::to_string(options.m_nWidth) + " x " +
           std::to_string(options.m_nHeight) + "; give another one, or a larger --size";
  return std::string();
}

QXCommandLine Leave(int nExitStatus, std::string const& strLine) {
  if (!strLine.empty()) PrintFailure(strLine);
  QXCommandLine result;
  result.m_nExitStatus = nExitStatus;
  return result;
}

}  // namespace

QXCommandLine ParseCommandLine(int nArguments, char const* const* pszArguments) {
  CLI::App app("Shows 3D models and scenes through a renderer plug-in, and what images become as textures.", "qx3d");
  app.set_version_flag("--version", std::string("qx3d ") + QXC::GetLibraryVersion());
  app.require_subcommand(1);
  QXCommandLine result;
  RawOptions raw;
  CLI::App* pView = app.add_subcommand("view", "Show a model or a scene in a window, or write a picture of it");
  DefineView(*pView, result.m_Options, raw);
  CLI::App* pPick = app.add_subcommand("pick", "Tell what is at a pixel of the picture of a model or a scene");
  DefinePick(*pPick, result.m_Options, raw);
  CLI::App* pInspect =
      app.add_subcommand("inspect", "Print what is in an image or in static geometry, and whether it is whole");
  DefineInspect(*pInspect, result.m_strFile);
  CLI::App* pBake = app.add_subcommand("bake", "Merge models, map data and scenes into one file of static geometry");
  DefineBake(*pBake, result.m_Bake, raw);
  CLI::App* pAtlas = app.add_subcommand("atlas", "Write the textures that a scene's small images share");
  DefineAtlas(*pAtlas, result.m_Atlas);
  CLI::App* pFonts = app.add_subcommand("fonts", "List the fonts of texts, or tell which one a name means");
  DefineFonts(*pFonts, result.m_Fonts);
  try {
    app.parse(nArguments, pszArguments);
  } catch (CLI::Success const& success) {
    app.exit(success);  // prints help or version
    return Leave(0, std::string());
  } catch (CLI::ParseError const& error) {
    std::string strCommand;
    for (CLI::App const* pCommand : app.get_subcommands()) strCommand = " " + pCommand->get_name();
    return Leave(2, std::string(error.what()) + "; see 'qx3d" + strCommand + " --help'");
  }
  if (pPick->parsed()) result.m_eCommand = QXCommand::Pick;
  result.m_Options.m_bPick = pPick->parsed();
  if (pInspect->parsed()) result.m_eCommand = QXCommand::Inspect;
  if (pAtlas->parsed()) result.m_eCommand = QXCommand::Atlas;
  if (pFonts->parsed()) result.m_eCommand = QXCommand::Fonts;
  if (pBake->parsed()) result.m_eCommand = QXCommand::Bake;
  result.m_Bake.m_eUp = FindUp(raw.m_strBakeUp);
  std::string const strImpossible = TakeOver(raw, result.m_Options);
  if (!strImpossible.empty()) return Leave(1, strImpossible);
  result.m_bRun = true;
  return result;
}

}  // namespace QXApp
