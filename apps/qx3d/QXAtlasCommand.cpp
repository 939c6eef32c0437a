#include <apps/qx3d/QXAtlasCommand.h>

#include <apps/qx3d/QXAtlasReport.h>
#include <apps/qx3d/QXIconPictures.h>
#include <apps/qx3d/QXIconSet.h>
#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXNewFile.h>
#include <apps/qx3d/QXPluginFolders.h>
#include <apps/qx3d/QXPngWriter.h>
#include <apps/qx3d/QXProgress.h>
#include <apps/qx3d/QXRendererSession.h>
#include <apps/qx3d/QXSceneData.h>
#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/QXSymbolModels.h>
#include <apps/qx3d/QXViewOptions.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace QXApp {

namespace {

/// Name of the report beside the pictures.
constexpr char const* ReportName = "atlas.txt";

/// The work of one call of `qx3d atlas`; every step answers with an empty string or the line to leave with.
class AtlasRun {
public:
  explicit AtlasRun(QXAtlasOptions const& options) : m_Options(options) {}

  /// @return  the exit status
  int Run() {
    std::string strError = AddPluginFolders(m_Options.m_vecPluginFolders);
    if (strError.empty()) strError = MakeFolder();
    if (strError.empty() && !ReadScene()) return 1;
    if (strError.empty()) strError = FillAtlas();
    if (strError.empty()) strError = WritePages();
    m_Progress.Clear();
    if (!strError.empty()) {
      PrintFailure(strError);
      return 1;
    }
    std::fputs(MakeAtlasTable(m_vecPages).c_str(), stdout);
    return 0;
  }

private:
  std::string GetPath(std::string const& strName) const {
    return (std::filesystem::path(m_Options.m_strOut) / strName).string();
  }

  /// Before any work: whoever waited for a large scene should not learn only then that the name was wrong.
  std::string MakeFolder() const {
    std::error_code error;
    std::filesystem::create_directories(m_Options.m_strOut, error);
    std::error_code ignored;
    if (!std::filesystem::is_directory(m_Options.m_strOut, ignored))
      return "--out " + m_Options.m_strOut +
             ": the folder cannot be made: " + (error ? error.message() : "a file has this name") +
             "; give another name";
    std::string const strReason = QXPngWriter::Check(GetPath(ReportName));
    return strReason.empty() ? strReason : GetPath(ReportName) + ": " + strReason;
  }

  bool ReadScene() {
    m_Progress.Show("reading " + m_Options.m_strScene);
    std::vector<std::string> vecProblems;
    m_Scene = ReadSceneFile(m_Options.m_strScene, vecProblems);
    std::vector<std::string> vecWarnings;
    if (vecProblems.empty())
      LoadSceneData(
          m_Scene, nullptr, [this](std::string const& strStep) { m_Progress.Show(strStep); }, vecProblems, vecWarnings);
    Tell(vecWarnings);
    if (vecProblems.empty() && m_Scene.m_vecIcons.empty() && m_Scene.m_vecLabels.empty())
      vecProblems.push_back(
          m_Options.m_strScene +
          ": there are no icons and no labels in it, so there is no atlas; add an [icon] or a [label]");
    Tell(vecProblems);
    return vecProblems.empty();
  }

  void Tell(std::vector<std::string> const& vecProblems) {
    m_Progress.Clear();
    for (std::string const& strProblem : vecProblems) PrintFailure(strProblem);
  }

  std::string FillAtlas() {
    QXSceneProblems problems(m_Options.m_strScene);
    m_Progress.Show("reading the images of " + std::to_string(m_Scene.m_vecIcons.size()) + " icons");
    QXIconPictures pictures;
    pictures.Load(m_Scene.m_vecIcons, problems);
    std::vector<std::string> vecPictureProblems;
    std::vector<QXSymbolModel> vecSymbols = LoadSymbols(
        m_Scene, UpAxis::Auto, [this](std::string const& strStep) { m_Progress.Show(strStep); }, problems,
        vecPictureProblems);
    Tell(vecPictureProblems);
    m_Progress.Show("starting the renderer");
    std::string strError = m_Session.Start(m_Options.m_strRenderer);
    // Nobody looks at it, but some devices have nothing to put textures on before there is a target.
    if (strError.empty()) strError = m_Session.OpenTexture(64, 64);
    if (strError.empty()) m_Session.ShowSymbols(vecSymbols, problems);
    if (strError.empty()) m_Session.ShowIcons(m_Scene.m_vecIcons, pictures, problems);
    if (strError.empty()) m_Session.ShowLabels(m_Scene.m_vecLabels, problems);
    Tell(problems.GetLines());
    if (!strError.empty()) return strError;
    m_vecPages = m_Session.GetIconPages();
    for (QXAtlasPage& page : m_Session.GetLabelPages()) m_vecPages.push_back(std::move(page));
    return m_vecPages.empty()
               ? m_Options.m_strScene + ": none of its icons and labels can be shown, so there is no atlas"
               : std::string();
  }

  std::string WritePages() {
    for (QXAtlasPage& page : m_vecPages) {
      std::string const strPath = GetPath(page.m_strName + ".png");
      m_Progress.Show("writing " + strPath);
      std::string strReason = m_Session.ReadPage(page);
      if (!strReason.empty()) return strReason;
      QXAtlasPicture const picture = PaintAtlasPage(page);
      page.m_vecPixels = {};
      strReason = QXPngWriter::Write(strPath, picture.m_nWidth, picture.m_nHeight, picture.m_vecPixels.data());
      if (!strReason.empty()) return strPath + ": " + strReason;
    }
    return WriteReport();
  }

  std::string WriteReport() const {
    std::string const strText = MakeAtlasReport(m_vecPages);
    QXNewFile file(GetPath(ReportName));
    bool const bWritten = file.Get() != nullptr &&
                          std::fwrite(strText.data(), 1, strText.size(), file.Get()) == strText.size() && file.Commit();
    if (bWritten) return std::string();
    return GetPath(ReportName) + ": the report cannot be written: " + std::strerror(errno) +
           "; make room or give another folder";
  }

  QXAtlasOptions const& m_Options;
  QXProgress m_Progress;
  QXSceneFile m_Scene;
  QXRendererSession m_Session;
  std::vector<QXAtlasPage> m_vecPages;
};

}  // namespace

int RunAtlas(QXAtlasOptions const& options) {
  return AtlasRun(options).Run();
}

}  // namespace QXApp
