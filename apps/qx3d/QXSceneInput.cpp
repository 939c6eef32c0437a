#include <apps/qx3d/QXSceneInput.h>

#include <apps/qx3d/QXStaticFile.h>
#include <apps/qx3d/geo/QXGeoNames.h>

namespace QXApp {

QXSceneFile ReadAsScene(std::string const& strPath, std::vector<std::string>& vecProblems) {
  if (IsSceneName(strPath)) return ReadSceneFile(strPath, vecProblems);
  QXSceneFile scene;
  scene.m_strPath = strPath;
  if (IsGeoName(strPath)) {
    scene.m_vecData.emplace_back();
    scene.m_vecData.back().m_strFile = strPath;
  } else if (IsStaticName(strPath)) {
    // A file that is not there is told as such, not as the scene beside it.
    bool const bThere = CheckStaticFile(strPath).empty();
    scene.m_vecStatics.push_back({strPath, bThere ? ReadStaticPlace(strPath, vecProblems) : QXC::QXVector3d(), 0});
  } else {
    scene.m_vecModels.emplace_back();
    scene.m_vecModels.back().m_strFile = strPath;
  }
  return scene;
}

}  // namespace QXApp
