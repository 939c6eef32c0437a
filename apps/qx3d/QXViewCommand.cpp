#include <apps/qx3d/QXViewCommand.h>

#include <apps/qx3d/QXFrameClock.h>
#include <apps/qx3d/QXIconPictures.h>
#include <apps/qx3d/QXInstanceModels.h>
#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXPluginFolders.h>
#include <apps/qx3d/QXPngWriter.h>
#include <apps/qx3d/QXProgress.h>
#include <apps/qx3d/QXRendererSession.h>
#include <apps/qx3d/QXSceneData.h>
#include <apps/qx3d/QXSceneInput.h>
#include <apps/qx3d/QXSceneModels.h>
#include <apps/qx3d/QXScenePlaces.h>
#include <apps/qx3d/QXStatsReport.h>
#include <apps/qx3d/QXSymbolModels.h>
#include <apps/qx3d/QXViewOptions.h>
#include <apps/qx3d/QXWindow.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <optional>
#include <vector>

namespace QXApp {

namespace {

/// The work of one call of `qx3d view` or `qx3d pick`; every step answers with the lines to leave with, none where it went well.
class ViewRun {
public:
  explicit ViewRun(QXViewOptions const& options) : m_Options(options) {}

  std::vector<std::string> Run() {
    std::string strError = AddPluginFolders(m_Options.m_vecPluginFolders);
    if (strError.empty()) strError = CheckOutput();
    if (!strError.empty()) return {strError};
    std::vector<std::string> const vecProblems = Load();
    if (vecProblems.empty()) strError = Show();
    m_Progress.Clear();
    return strError.empty() ? vecProblems : std::vector<std::string>{strError};
  }

  /// Of `qx3d pick`: whether there was anything.
  bool HasHit() const { return m_bHit; }

private:
  /// Without a window.
  bool IsPicture() const { return m_Options.m_bPick || !m_Options.m_strOut.empty(); }

  /// Before any work: whoever waited for a large model should not learn only then that the name was wrong.
  std::string CheckOutput() const {
    if (m_Options.m_strOut.empty()) return std::string();
    std::string const strReason = QXPngWriter::Check(m_Options.m_strOut);
    return strReason.empty() ? strReason : m_Options.m_strOut + ": " + strReason;
  }

  std::vector<std::string> Load() {
    std::vector<std::string> vecProblems;
    m_File = ReadAsScene(m_Options.m_strModel, vecProblems);
    if (!vecProblems.empty()) return vecProblems;
    if (m_Options.m_bTime) {
      m_File.m_Sky.m_bSky = true;
      m_File.m_Sky.m_Time = m_Options.m_Time;
    }
    QXSceneProblems problems(m_Options.m_strModel);
    std::vector<std::string> vecWarnings;
    m_Models.Load(
        m_File, m_Options.m_eUp, [this](std::string const& strStep) { m_Progress.Show(strStep); }, problems,
        vecWarnings);
    m_Models.LoadStatics(
        m_File, [this](std::string const& strStep) { m_Progress.Show(strStep); }, problems, vecWarnings);
    Warn(vecWarnings);
    if (!problems.IsEmpty()) return problems.GetLines();
    vecWarnings.clear();
    LoadSceneData(
        m_File, &m_Models, [this](std::string const& strStep) { m_Progress.Show(strStep); }, vecProblems, vecWarnings);
    Warn(vecWarnings);
    if (!vecProblems.empty()) return vecProblems;
    vecProblems = LoadInstances();
    if (!vecProblems.empty()) return vecProblems;
    if (!m_File.m_vecIcons.empty()) {
      m_Progress.Show("reading the images of " + std::to_string(m_File.m_vecIcons.size()) + " icons");
      m_Icons.Load(m_File.m_vecIcons, m_MarkProblems);
      vecWarnings.clear();
      m_vecSymbols = LoadSymbols(
          m_File, m_Options.m_eUp, [this](std::string const& strStep) { m_Progress.Show(strStep); }, m_MarkProblems,
          vecWarnings);
      Warn(vecWarnings);
    }
    m_Progress.Show("preparing " + std::to_string(m_Models.GetTriangleCount()) + " triangles");
    QXC::QXBoundingBox others = GetIconBounds(m_File);
    others.Merge(GetLabelBounds(m_File));
    others.Merge(m_Instances.GetBounds());
    QXMergeOptions options;
    if (!m_Options.m_bMerge) options.m_eMerging = QXMerging::None;
    options.m_bObjects = CanPick();
    m_Scene = m_Models.Build(others, options);
    // Whoever waits in front of a window wants the picture to move by the clock on the wall.
    if (IsPicture() && (m_Models.HasAnimated() || m_Instances.HasAnimated())) m_Clock.emplace();
    return vecProblems;
  }

  std::vector<std::string> LoadInstances() {
    std::vector<std::string> vecProblems;
    std::vector<std::string> vecWarnings;
    auto const progress = [this](std::string const& strStep) { m_Progress.Show(strStep); };
    LoadScenePlaces(m_File, progress, vecProblems, vecWarnings);
    QXSceneProblems problems(m_Options.m_strModel);
    if (vecProblems.empty()) m_Instances.Load(m_File, m_Options.m_eUp, progress, problems, vecWarnings);
    Warn(vecWarnings);
    return vecProblems.empty() ? problems.GetLines() : vecProblems;
  }

  /// Nobody points at a picture that is only written.
  bool CanPick() const { return m_Options.m_bPick || !IsPicture(); }

  std::string Show() {
    if (CanPick()) m_Session.EnablePicking();
    std::string strError = OpenRenderer();
    if (strError.empty()) strError = AddViews();
    if (strError.empty() && m_Options.m_bPick) {
      DrawFrames(1);
      m_bHit = Pick(m_Options.m_nPickX, m_Options.m_nPickY);
      if (m_Options.m_strOut.empty()) return strError;
    }
    if (strError.empty()) strError = IsPicture() ? WritePicture() : RunWindow();
    return strError;
  }

  /// A model is worth showing without one of its pictures.
  void Warn(std::vector<std::string> const& vecProblems) {
    m_Progress.Clear();
    for (std::string const& strProblem : vecProblems) PrintFailure(strProblem);
  }

  std::string OpenRenderer() {
    m_Progress.Show("starting the renderer");
    std::string strError;
    if (!IsPicture())
      strError = m_Window.Open("qx3d - " + MakeOneLine(m_Options.m_strModel), m_Options.m_nWidth, m_Options.m_nHeight);
    if (strError.empty()) strError = m_Session.Start(m_Options.m_strRenderer);
    if (strError.empty()) {
      strError = IsPicture()
                     ? m_Session.OpenTexture(m_Options.m_nWidth, m_Options.m_nHeight)
                     : m_Session.OpenWindow(m_Window.GetNativeHandle(), m_Options.m_nWidth, m_Options.m_nHeight);
    }
    if (!strError.empty()) return strError;
    std::vector<std::string> vecProblems;
    if (m_Options.m_nHighlight > static_cast<int>(m_Scene.m_nMeshes - m_Scene.m_vecParts.size()))
      return "--highlight " + std::to_string(m_Options.m_nHighlight) + ": there are " +
             std::to_string(m_Scene.m_nMeshes - m_Scene.m_vecParts.size()) + " merged meshes; give a lower number";
    m_Session.SetHighlight(m_Options.m_nHighlight - 1);
    strError = m_Session.Show(m_Scene, m_Models.GetPictures(), HasGround(), vecProblems);
    Warn(vecProblems);
    m_Models.FreePictures();
    if (strError.empty()) m_Session.ShowInstances(m_File, m_Instances, m_MarkProblems);
    if (strError.empty()) m_Session.ShowEnvironment(m_File, m_MarkProblems);
    if (strError.empty()) m_Session.ShowSymbols(m_vecSymbols, m_MarkProblems);
    m_vecSymbols.clear();
    if (strError.empty()) m_Session.ShowIcons(m_File.m_vecIcons, m_Icons, m_MarkProblems);
    if (strError.empty()) {
      if (!m_File.m_vecLabels.empty())
        m_Progress.Show("drawing the letters of " + std::to_string(m_File.m_vecLabels.size()) + " labels");
      m_Session.ShowLabels(m_File.m_vecLabels, m_MarkProblems);
    }
    // The scene is worth showing without one of its icons or letters.
    Warn(m_MarkProblems.GetLines());
    return strError;
  }

  /// Under a single icon or label there is nothing that a ground could be measured by.
  bool HasGround() const {
    bool const bPoint = m_Scene.m_Bounds.GetMin() == m_Scene.m_Bounds.GetMax();
    return m_Options.m_bGround && m_File.m_bGround && !bPoint;
  }

  QXCell GetCell(int nView) const { return GetViewCell(nView, m_Options.m_nViews, m_nWidth, m_nHeight); }

  std::string AddViews() {
    std::optional<QXC::QXSunPosition> sun;
    if (m_File.m_Sky.m_bSky) sun.emplace(m_File.m_Sky.m_Time);
    QXC::QXColorValue3D const background = ChooseBackground(m_File, sun ? &*sun : nullptr);
    m_Session.SetBackground(background.r, background.g, background.b);
    double const dFov = m_File.m_Camera.m_dFieldOfView;
    if (dFov > 0.0) m_Session.SetFieldOfView(dFov * std::numbers::pi / 180.0);
    for (int i = 0; i < m_Options.m_nViews; ++i) {
      std::string const strError = m_Session.AddView(GetCell(i));
      if (!strError.empty()) return strError;
      m_vecPoses.emplace_back();
    }
    return ResetPoses();
  }

  std::string ResetPoses() {
    for (int i = 0; i < m_Options.m_nViews; ++i) {
      double dHeading = 0.0;
      double dElevation = 0.0;
      GetViewAngles(i, dHeading, dElevation);
      QXPose& pose = m_vecPoses[static_cast<std::size_t>(i)];
      // What lies around the core fills the rim of the picture; a model that ends at its bounds needs a margin.
      pose = FrameBox(m_Scene.m_Core, dHeading, dElevation, m_Session.GetFieldOfView(), m_Session.GetAspect(i),
          m_Scene.HasOutskirts() ? 0.97 : 1.12);
    }
    std::string const strError = ApplyEyeAndLook();
    ApplyPoses();
    return strError;
  }

  /// What the command line and the file say about eye and look is about the first view.
  std::string ApplyEyeAndLook() {
    QXSceneCamera const& camera = m_File.m_Camera;
    bool const bEye = m_Options.m_bEye || camera.m_bEye;
    bool const bLook = m_Options.m_bLook || camera.m_bLook;
    if (!bEye && !bLook) return std::string();
    QXPose& pose = m_vecPoses[0];
    QXC::QXVector3d vecLook = bLook ? camera.m_vecLook : m_Scene.m_Core.GetCenter();
    if (m_Options.m_bLook) vecLook = QXC::QXVector3d(m_Options.m_dLook[0], m_Options.m_dLook[1], m_Options.m_dLook[2]);
    if (!bEye) {
      pose.m_vecTarget = vecLook;
      return std::string();
    }
    QXC::QXVector3d vecEye = camera.m_vecEye;
    if (m_Options.m_bEye) vecEye = QXC::QXVector3d(m_Options.m_dEye[0], m_Options.m_dEye[1], m_Options.m_dEye[2]);
    if (pose.SetEyeAndTarget(vecEye, vecLook)) return std::string();
    if (m_Options.m_bEye && m_Options.m_bLook) return "--eye and --look are the same point; move one of them";
    return m_Options.m_strModel + ": the eye and the point that it looks at are the same; move one of them";
  }

  void ApplyPoses() {
    for (int i = 0; i < m_Options.m_nViews; ++i) m_Session.SetPose(i, m_vecPoses[static_cast<std::size_t>(i)]);
  }

  std::string WritePicture() {
    m_Progress.Show("drawing");
    std::size_t const nRow = std::size_t{4} * static_cast<std::size_t>(m_Options.m_nWidth);
    std::size_t const nStrip = static_cast<std::size_t>(m_Options.m_nStrip);
    std::size_t const nRows = static_cast<std::size_t>(m_Options.m_nHeight);
    std::vector<unsigned char> vecStrip(nStrip > 1 ? nRow * nStrip * nRows : 0);
    std::vector<unsigned char> vecPixels;
    for (std::size_t i = 0; i < nStrip; ++i) {
      DrawFrames(m_Options.m_nFrames > 0 ? m_Options.m_nFrames : 1);
      std::string strError = m_Session.ReadPicture(vecPixels);
      if (!strError.empty()) return strError;
      for (std::size_t y = 0; y < nRows && nStrip > 1; ++y)
        std::copy_n(vecPixels.data() + nRow * y, nRow, vecStrip.data() + nRow * (nStrip * y + i));
    }
    if (nStrip > 1) vecPixels.swap(vecStrip);
    m_Progress.Show("writing " + m_Options.m_strOut);
    std::string const strError = QXPngWriter::Write(
        m_Options.m_strOut, m_Options.m_nWidth * m_Options.m_nStrip, m_Options.m_nHeight, vecPixels.data());
    if (!strError.empty()) return m_Options.m_strOut + ": " + strError;
    Report();
    return std::string();
  }

  /// Prints what is at a pixel and highlights it, or says that there is nothing.
  /// @return  whether anything is there
  bool Pick(int nX, int nY) {
    m_Progress.Clear();
    QXPickedThing thing;
    QXC::QXVector3d vecPosition;
    unsigned int const nID = m_Session.Pick(nX, nY, thing, vecPosition);
    m_Session.HighlightPicked(nID);
    if (nID == 0) {
      std::printf("nothing at %d %d\n", nX, nY);
    } else {
      if (thing.m_eKind == QXPickKind::Label) thing.m_strText = FindLabel(FindView(nX, nY), vecPosition);
      std::printf("layer     %d (%s)\n", thing.m_nLayer, QXPickTable::GetKindName(thing.m_eKind));
      std::printf("object    %d (%s)\n", thing.m_nObject, thing.m_strText.c_str());
      std::printf("position  %.3f %.3f %.3f\n", vecPosition.x, vecPosition.y, vecPosition.z);
    }
    // Whoever reads along learns of each click at once.
    std::fflush(stdout);
    return nID != 0;
  }

  /// The text whose letters were hit: labels share drawables, and a letter stands as far from the eye as the position of
  /// its label, or in the world beside it.
  std::string FindLabel(int nView, QXC::QXVector3d const& vecHit) const {
    QXPose const& pose = m_vecPoses[static_cast<std::size_t>(nView)];
    QXC::QXVector3d const vecLook = (pose.m_vecTarget - pose.GetEye()).Normalize();
    double dNearest = HUGE_VAL;
    std::string strText;
    for (QXSceneLabel const& label : m_File.m_vecLabels) {
      QXC::QXVector3d const vecWay = label.m_vecPosition - vecHit;
      double const dAlong = label.m_eFacing == QXLabelFacing::Flat ? 0.0 : vecWay.DotProduct(vecLook);
      double const dCost = 1e3 * std::abs(dAlong) + vecWay.Length();
      if (dCost >= dNearest) continue;
      dNearest = dCost;
      strText = label.m_strText;
    }
    return MakeOneLine(strText);
  }

  /// The first frame of all is at time 0.
  void DrawFrames(int nFrames) {
    for (int i = 0; i < nFrames; ++i) {
      if (m_Clock && m_bDrawn) m_Clock->Advance(static_cast<unsigned int>(m_Options.m_nFrameTime));
      m_Session.DrawFrame(m_bDrawn ? m_Options.m_nFrameTime / 1000.0 : 0.0);
      m_bDrawn = true;
    }
  }

  std::string RunWindow() {
    m_Progress.Clear();
    for (int nFrame = 0; m_Options.m_nFrames == 0 || nFrame < m_Options.m_nFrames; ++nFrame) {
      m_Session.DrawFrame(TakeSeconds());
      // A little wait keeps a still picture from costing a whole core; the frame after an event comes at once.
      QXInput const input = m_Window.ReadInput(m_Options.m_nFrames == 0 ? 15 : 0);
      if (input.m_bQuit) break;
      FollowInput(input);
    }
    Report();
    return std::string();
  }

  /// By the clock on the wall since the last call; 0 at the first.
  double TakeSeconds() {
    unsigned int const nNow = QXC::QdcTime::GetMillisecond();
    double const dSeconds = m_bDrawn ? (nNow - m_nLastFrame) / 1000.0 : 0.0;
    m_nLastFrame = nNow;
    m_bDrawn = true;
    return dSeconds;
  }

  void FollowInput(QXInput const& input) {
    if (input.m_bResized) {
      m_Window.GetSize(m_nWidth, m_nHeight);
      m_Session.Resize(m_nWidth, m_nHeight);
      for (int i = 0; i < m_Options.m_nViews; ++i) m_Session.SetCell(i, GetCell(i));
    }
    if (input.m_bHome) ResetPoses();
    if (input.m_bClick) Pick(input.m_nClickX, input.m_nClickY);
    QXPose& pose = m_vecPoses[static_cast<std::size_t>(FindView(input.m_nMouseX, input.m_nMouseY))];
    constexpr double RadiansPerPixel = 0.006;
    pose.Orbit(input.m_dOrbitX * RadiansPerPixel, -input.m_dOrbitY * RadiansPerPixel);
    // What is grabbed stays under the mouse: the picture is 2 tan(fov / 2) of the distance high.
    double const dPerPixel = 2.0 * std::tan(0.5 * m_Session.GetFieldOfView()) / m_nHeight;
    pose.Pan(-input.m_dPanX * dPerPixel, input.m_dPanY * dPerPixel);
    pose.Zoom(std::pow(0.85, input.m_dZoom));
    ApplyPoses();
  }

  /// The view under a pixel of the window.
  int FindView(int nX, int nY) const {
    double const x = (nX + 0.5) / m_nWidth;
    double const y = 1.0 - (nY + 0.5) / m_nHeight;
    for (int i = 0; i < m_Options.m_nViews; ++i) {
      QXCell const cell = GetCell(i);
      if (x >= cell.m_dLeft && x < cell.m_dLeft + cell.m_dWidth && y >= cell.m_dBottom &&
          y < cell.m_dBottom + cell.m_dHeight)
        return i;
    }
    return 0;
  }

  void Report() {
    m_Progress.Clear();
    if (m_Options.m_bStats)
      PrintStats(m_Session, IsSceneName(m_Options.m_strModel), m_Clock ? m_Options.m_nFrameTime : 0);
  }

  QXViewOptions const& m_Options;
  QXProgress m_Progress;
  // Before the session, which still asks the time while it ends.
  std::optional<QXFrameClock> m_Clock;
  bool m_bDrawn = false;
  bool m_bHit = false;
  unsigned int m_nLastFrame = 0;
  QXSceneFile m_File;
  QXSceneModels m_Models;
  QXInstanceModels m_Instances;
  QXIconPictures m_Icons;
  std::vector<QXSymbolModel> m_vecSymbols;
  QXSceneProblems m_MarkProblems{m_Options.m_strModel};
  QXScene m_Scene;
  QXWindow m_Window;
  // After the window, so that the renderer goes first: it draws into it.
  QXRendererSession m_Session;
  std::vector<QXPose> m_vecPoses;
  int m_nWidth = m_Options.m_nWidth;
  int m_nHeight = m_Options.m_nHeight;
};

}  // namespace

int RunView(QXViewOptions const& options) {
  ViewRun run(options);
  std::vector<std::string> const vecErrors = run.Run();
  for (std::string const& strError : vecErrors) PrintFailure(strError);
  return vecErrors.empty() ? 0 : 1;
}

int RunPick(QXViewOptions const& options) {
  constexpr int Miss = 3;
  ViewRun run(options);
  std::vector<std::string> const vecErrors = run.Run();
  for (std::string const& strError : vecErrors) PrintFailure(strError);
  if (!vecErrors.empty()) return 1;
  return run.HasHit() ? 0 : Miss;
}

}  // namespace QXApp
