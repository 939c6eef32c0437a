#include <apps/qx3d/QXSceneNames.h>

#include <apps/qx3d/QXMessage.h>

#include <cstddef>

namespace QXApp {

std::string QXSceneNames::Describe(QXSceneObject const& object) const {
  Model const& model = m_vecModels[static_cast<std::size_t>(object.m_nModel)];
  std::string strText = model.m_strFile;
  auto const it = m_mapMeshes.find({object.m_nModel, object.m_nNode});
  if (it != m_mapMeshes.end()) {
    strText += ", " + it->second;
  } else if (model.m_nNodes > 1) {
    strText += ", mesh " + std::to_string(object.m_nNode + 1) + " of " + std::to_string(model.m_nNodes);
  }
  if (model.m_nPlaces > 1)
    strText += ", place " + std::to_string(object.m_nPlace + 1) + " of " + std::to_string(model.m_nPlaces);
  return MakeOneLine(strText);
}

}  // namespace QXApp
