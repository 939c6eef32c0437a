#include <apps/qx3d/QXAtlasCommand.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXSceneFile.h>

namespace QXApp {

int RunAtlas(QXAtlasOptions const& options) {
  std::vector<std::string> vecProblems;
  QXSceneFile const scene = ReadSceneFile(options.m_strScene, vecProblems);
  if (vecProblems.empty() && scene.m_vecIcons.empty())
    vecProblems.push_back(options.m_strScene + ": there are no icons in it, so there is no atlas; add an [icon]");
  for (std::string const& strProblem : vecProblems) PrintFailure(strProblem);
  return vecProblems.empty() ? 0 : 1;
}

}  // namespace QXApp
