#include <plugins/ogre/effects/QXOgreSampleCounts.h>

#include <algorithm>
#include <utility>

#include <OgreRenderSystem.h>
#include <OgreRenderTarget.h>

#include <plugins/ogre/QXOgreOpenGL.h>

namespace QXC {

namespace {

// OpenGL's numbers.
constexpr unsigned int SAMPLES_PASSED = 0x8914;
constexpr unsigned int QUERY_RESULT = 0x8866;
constexpr unsigned int QUERY_RESULT_AVAILABLE = 0x8867;

}  // namespace

bool QXOgreSampleCount::IsReady() {
  if (m_bRead || m_nQuery == 0) return true;
  // Makes the context of the target current.
  m_pRenderSystem->_setRenderTarget(m_pTarget);
  unsigned int bReady = 0;
  QXOgreOpenGL::Get().m_pfnGetQueryObject(m_nQuery, QUERY_RESULT_AVAILABLE, &bReady);
  return bReady != 0;
}

unsigned int QXOgreSampleCount::GetPixels() {
  if (!m_bRead && m_nQuery != 0) Read();
  return m_nPixels;
}

void QXOgreSampleCount::Read() {
  m_pRenderSystem->_setRenderTarget(m_pTarget);
  unsigned int nVisible = 0;
  QXOgreOpenGL::Get().m_pfnGetQueryObject(m_nQuery, QUERY_RESULT, &nVisible);
  m_nPixels = nVisible / m_nSamples + (nVisible % m_nSamples != 0 ? 1 : 0);
  m_bRead = true;
}

QXOgreSampleCounts::QXOgreSampleCounts(Ogre::RenderSystem& renderSystem, Ogre::RenderTarget& target)
    : m_RenderSystem(renderSystem), m_Target(target) {}

QXOgreSampleCounts::~QXOgreSampleCounts() {
  if (m_arrCounts.empty()) return;
  m_RenderSystem._setRenderTarget(&m_Target);
  for (auto const& pCount : m_arrCounts) {
    if (pCount.use_count() > 1) pCount->GetPixels();
    QXOgreOpenGL::Get().m_pfnDeleteQueries(1, &pCount->m_nQuery);
    pCount->m_nQuery = 0;
  }
}

std::shared_ptr<QXOgreSampleCount> const& QXOgreSampleCounts::FindFree() {
  auto const position =
      std::find_if(m_arrCounts.begin(), m_arrCounts.end(), [](auto const& pCount) { return pCount.use_count() == 1; });
  if (position != m_arrCounts.end()) return *position;
  auto pCount = std::make_shared<QXOgreSampleCount>();
  pCount->m_pRenderSystem = &m_RenderSystem;
  pCount->m_pTarget = &m_Target;
  QXOgreOpenGL::Get().m_pfnGenQueries(1, &pCount->m_nQuery);
  return m_arrCounts.emplace_back(std::move(pCount));
}

std::shared_ptr<QXOgreSampleCount> QXOgreSampleCounts::Begin(Ogre::Viewport& viewport) {
  // The viewport would become current only with its first draw operation.
  m_RenderSystem._setViewport(&viewport);
  std::shared_ptr<QXOgreSampleCount> pCount = FindFree();
  pCount->m_nSamples = std::max(m_Target.getFSAA(), 1U);
  pCount->m_nPixels = 0;
  pCount->m_bRead = false;
  QXOgreOpenGL::Get().m_pfnBeginQuery(SAMPLES_PASSED, pCount->m_nQuery);
  return pCount;
}

void QXOgreSampleCounts::End() {
  QXOgreOpenGL::Get().m_pfnEndQuery(SAMPLES_PASSED);
}

}  // namespace QXC
