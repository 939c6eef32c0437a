#include <plugins/ogre/effects/QXOgreQueryOperation3D.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include <plugins/ogre/QXOgreRenderOperationManager.h>
#include <plugins/ogre/effects/QXOgreSampleCounts.h>

namespace QXC {

QXOgreQueryOperation3D::QXOgreQueryOperation3D(QXOgreRenderOperationManager& manager, QdcUnicodeString const& strName)
    : m_strName(strName), m_pManager(&manager), m_bRunning(false), m_bFinished(false) {
  manager.AddQuery(this);
}

QXOgreQueryOperation3D::~QXOgreQueryOperation3D() {
  EndQuery();
  if (m_pManager) m_pManager->RemoveQuery(this);
}

void QXOgreQueryOperation3D::BeginQuery() {
  m_arrCounts.clear();
  m_bFinished = false;
  if (m_bRunning || !m_pManager) return;
  m_bRunning = true;
  m_pManager->StartQuery(this);
}

void QXOgreQueryOperation3D::EndQuery() {
  if (!m_bRunning) return;
  m_bRunning = false;
  m_bFinished = true;
  if (m_pManager) m_pManager->StopQuery(this);
}

unsigned char QXOgreQueryOperation3D::IsResultReady() const {
  return m_bFinished &&
         std::all_of(m_arrCounts.begin(), m_arrCounts.end(), [](auto const& pCount) { return pCount->IsReady(); });
}

unsigned int QXOgreQueryOperation3D::GetPixelCount() {
  if (!m_bFinished) return 0;
  std::uint64_t nPixels = 0;
  for (auto const& pCount : m_arrCounts) nPixels += pCount->GetPixels();
  return static_cast<unsigned int>(std::min<std::uint64_t>(nPixels, std::numeric_limits<unsigned int>::max()));
}

}  // namespace QXC
