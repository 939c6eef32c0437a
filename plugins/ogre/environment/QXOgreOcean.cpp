#include <plugins/ogre/environment/QXOgreOcean.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>

#include <OgreHardwareBufferManager.h>
#include <OgreRenderQueue.h>
#include <OgreRenderable.h>
#include <OgreTechnique.h>
#include <OgreTextureUnitState.h>
#include <OgreVertexIndexData.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreDrawable.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/environment/QXOgreAir.h>
#include <plugins/ogre/environment/QXOgreEffect.h>
#include <plugins/ogre/environment/QXOgreFan.h>
#include <plugins/ogre/environment/QXOgreFog.h>
#include <plugins/ogre/environment/QXOgreNoise.h>
#include <plugins/ogre/environment/QXOgreNumbers.h>
#include <plugins/ogre/environment/QXOgreOceanShaders.h>
#include <plugins/ogre/environment/QXOgreRays.h>
#include <plugins/ogre/environment/QXOgreSky.h>
#include <plugins/ogre/environment/QXOgreSkyShaders.h>

namespace QXC {

namespace {

/// 2024-06-21 09:00 UTC.
constexpr QXInt64 DEFAULT_TIME = 1718960400000;
constexpr double WEST = 4.71238898038469;
constexpr QXColorValue3D DEFAULT_WATER(0.02, 0.16, 0.22, 0.95);
constexpr unsigned int NOISE_EDGE = 256;
constexpr unsigned int COLUMNS = 128;
constexpr unsigned int ROWS = 256;
/// Of the last row before the horizon.
constexpr double LEAST_REACH = 30000.0;
/// Metres after which the pattern of the foam repeats itself, and how fast it goes with the wind, metres a second.
constexpr double FOAM_REPEAT = 23.0;
constexpr double FOAM_SPEED = 0.3;
/// So far through air the horizon's colour takes over by 1 - 1 / e.
constexpr double CLEAR_AIR = 25000.0;
/// Beaufort's 3, where the first crests break, metres a second.
constexpr double LEAST_FOAM_WIND = 3.4;
/// The variance of slopes on still water, and that which a wind of 1 adds.
constexpr double CALM_ROUGHNESS = 0.003;
constexpr double ROUGHNESS_OF_WIND = 0.00512;
/// No crest is squeezed so much.
constexpr double NO_FOAM = 10.0;
constexpr double BRIGHTEST = 1.0e6;
// Swells that some sea has, metres.
constexpr double SHORTEST_SWELL = 0.01;
constexpr double LONGEST_SWELL = 1.0e7;
constexpr double HIGHEST_SWELL = 1.0e4;
/// Farther away than anything that is blended: water comes before it.
constexpr Ogre::Real FARTHEST = 1.0e30F;

/// The part of the sea that carries foam under a wind, by Monahan and O'Muircheartaigh (Optimal power-law description
/// of oceanic whitecap coverage, 1980), though never most of it.
double FoamPart(double dWindSpeed) {
  return std::min(3.84e-6 * std::pow(dWindSpeed, 3.41), 0.4);
}

/// How many standard deviations a normal number exceeds with a probability.
double ExceededBy(double dProbability) {
  double dLower = 0.0;
  double dUpper = 6.0;
  for (int i = 0; i < 40; ++i) {
    double const dMiddle = 0.5 * (dLower + dUpper);
    (0.5 * std::erfc(dMiddle / std::numbers::sqrt2) > dProbability ? dLower : dUpper) = dMiddle;
  }
  return dLower;
}

/// Of the slopes of the whole sum, along and across together.
double SlopeVariance(QXOgreWaves const& waves) {
  double dVariance = 0.0;
  for (std::size_t i = 0; i < waves.GetCount(); ++i) {
    QXOgreWave const& wave = waves.GetWave(i);
    double const dSteepness = wave.m_dAmplitude * std::hypot(wave.m_dKX, wave.m_dKY);
    dVariance += 0.5 * dSteepness * dSteepness;
  }
  return dVariance;
}

/// The squeeze of a crest from which on it carries foam, such that the right part of the sea does.
double FoamThreshold(QXOgreWaves const& waves) {
  double const dVariance = SlopeVariance(waves);
  if (dVariance <= 0.0 || waves.GetWindSpeed() < LEAST_FOAM_WIND) return NO_FOAM;
  return std::sqrt(dVariance) * ExceededBy(FoamPart(waves.GetWindSpeed()));
}

Ogre::Vector3 ToVector3(QXColorValue3D const& color) {
  auto const channel = [](double d) { return static_cast<float>(ChannelOf(d, BRIGHTEST)); };
  return {channel(color.r), channel(color.g), channel(color.b)};
}

/// Squares of a grid, whose corners the program moves.
class Grid final : public Ogre::Renderable {
public:
  explicit Grid(Ogre::MaterialPtr const& pMaterial) : m_pMaterial(pMaterial) {
    MakeCorners();
    MakeIndices();
    setPolygonModeOverrideable(true);
  }

  Ogre::MaterialPtr const& getMaterial() const override { return m_pMaterial; }
  void getRenderOperation(Ogre::RenderOperation& operation) override {
    operation.vertexData = &m_VertexData;
    operation.indexData = &m_IndexData;
    operation.useIndexes = true;
    operation.operationType = Ogre::RenderOperation::OT_TRIANGLE_LIST;
    operation.srcRenderable = this;
  }
  void getWorldTransforms(Ogre::Matrix4* pTransform) const override { *pTransform = Ogre::Matrix4::IDENTITY; }
  Ogre::Real getSquaredViewDepth(Ogre::Camera const*) const override { return FARTHEST; }
  Ogre::LightList const& getLights() const override {
    static Ogre::LightList const s_None;
    return s_None;
  }

private:
  void MakeCorners() {
    std::vector<float> arrCorners;
    for (unsigned int nRow = 0; nRow <= ROWS; ++nRow)
      for (unsigned int nColumn = 0; nColumn <= COLUMNS; ++nColumn) {
        arrCorners.push_back(static_cast<float>(nColumn) / COLUMNS);
        arrCorners.push_back(static_cast<float>(nRow) / ROWS);
      }
    m_VertexData.vertexDeclaration->addElement(0, 0, Ogre::VET_FLOAT2, Ogre::VES_POSITION);
    m_VertexData.vertexCount = arrCorners.size() / 2;
    auto const pBuffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
        2 * sizeof(float), m_VertexData.vertexCount, Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
    pBuffer->writeData(0, arrCorners.size() * sizeof(float), arrCorners.data(), true);
    m_VertexData.vertexBufferBinding->setBinding(0, pBuffer);
  }
  void MakeIndices() {
    std::vector<std::uint16_t> arrIndices;
    for (unsigned int nRow = 0; nRow < ROWS; ++nRow)
      for (unsigned int nColumn = 0; nColumn < COLUMNS; ++nColumn) {
        unsigned int const n = nRow * (COLUMNS + 1) + nColumn;
        for (unsigned int const nCorner : {n, n + 1, n + COLUMNS + 2, n, n + COLUMNS + 2, n + COLUMNS + 1})
          arrIndices.push_back(static_cast<std::uint16_t>(nCorner));
      }
    m_IndexData.indexCount = arrIndices.size();
    m_IndexData.indexBuffer = Ogre::HardwareBufferManager::getSingleton().createIndexBuffer(
        Ogre::HardwareIndexBuffer::IT_16BIT, arrIndices.size(), Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
    m_IndexData.indexBuffer->writeData(0, arrIndices.size() * sizeof(std::uint16_t), arrIndices.data(), true);
  }

  Ogre::MaterialPtr m_pMaterial;
  Ogre::VertexData m_VertexData;
  Ogre::IndexData m_IndexData;
};

}  // namespace

/// What the ocean has on the device.
class QXOgreOcean::Device {
public:
  explicit Device(QXOgreDevice& device)
      : m_Air(device), m_Noise(device, NOISE_EDGE, NOISE_EDGE, Ogre::PF_BYTE_L, true),
        m_Effect(device, std::string("#version 330 core\n") + QX_OGRE_OCEAN_WAVES + QX_OGRE_OCEAN_VERTEX,
            std::string("#version 330 core\n") + QX_OGRE_SKY_LIGHT + QX_OGRE_OCEAN_WAVES + QX_OGRE_OCEAN_FRAGMENT),
        m_Grid(m_Effect.GetMaterial()) {
    m_Noise.Fill(MakeNoise(NOISE_EDGE).data());
    m_Effect.AddTexture("skyTable", m_Air.GetTexture(), false);
    m_Effect.AddTexture("noise", m_Noise.GetTexture(), true);
    m_Effect.GetVertex().setNamedAutoConstant("flipping", Ogre::GpuProgramParameters::ACT_RENDER_TARGET_FLIPPING);
    Ogre::Pass& pass = m_Effect.GetPass();
    // Alpha adds up, as that of every pane does. Waves hide each other, though what they let through is blended.
    pass.setSeparateSceneBlending(
        Ogre::SBF_SOURCE_ALPHA, Ogre::SBF_ONE_MINUS_SOURCE_ALPHA, Ogre::SBF_ONE, Ogre::SBF_ONE_MINUS_SOURCE_ALPHA);
    pass.setTransparentSortingForced(true);
  }

  /// Shows this table from now on.
  void SetTable(Ogre::TexturePtr const& pTable) {
    Ogre::TextureUnitState* const pUnit = m_Effect.GetPass().getTextureUnitState(0);
    if (pUnit->_getTexturePtr() != pTable) pUnit->setTexture(pTable);
  }

  /// Of the ocean itself, where the scene has no sky.
  QXOgreAir m_Air;
  QXOgreData m_Noise;
  QXOgreEffect m_Effect;
  Grid m_Grid;
};

QXOgreOcean::QXOgreOcean(QXOgreGraphics3D& graphics3D, QXOgreScene& scene)
    : m_pGraphics3D(&graphics3D), m_pScene(&scene), m_Sun(QdcTime(DEFAULT_TIME)), m_WaterColor(DEFAULT_WATER),
      m_dLevel(0.0), m_dWindDirection(WEST), m_dWindSpeed(0.0), m_dSeaState(-1.0), m_dChoppiness(1.0),
      m_dUnderwaterVisibility(0.0), m_dClock(0.0), m_nGroupID(0), m_bVisible(1), m_bFoam(1), m_bReflection(0),
      m_bTextureBuffer(0) {
  scene.AddItem(this);
}

QXOgreOcean::~QXOgreOcean() {
  if (m_pScene) m_pScene->RemoveItem(this);
}

unsigned char QXOgreOcean::Initialize() {
  if (!m_pScene) return 0;
  if (m_pDevice) return 1;
  return m_pGraphics3D->Try([this] { m_pDevice = std::make_unique<Device>(m_pGraphics3D->RequireDevice()); });
}

void QXOgreOcean::LeaveScene() {
  m_pDevice.reset();
  m_pScene = nullptr;
  m_pGraphics3D = nullptr;
}

void QXOgreOcean::MakeWaves() {
  m_Waves.Make(m_dWindDirection, m_dWindSpeed, m_dSeaState, m_dChoppiness, m_arrSwells);
}

void QXOgreOcean::SetWindDirection(double dDirection) {
  m_dWindDirection = dDirection;
  MakeWaves();
}

void QXOgreOcean::SetWindSpeed(double dSpeed) {
  m_dWindSpeed = dSpeed;
  MakeWaves();
}

void QXOgreOcean::SetSeaState(double dBeaufort) {
  m_dSeaState = dBeaufort;
  MakeWaves();
}

void QXOgreOcean::SetChoppiness(double dChoppiness) {
  m_dChoppiness = dChoppiness;
  MakeWaves();
}

void QXOgreOcean::SetLight(QXVector3d const& vecDirection, QXColorValue3D const& sun, QXColorValue3D const& ambient) {
  m_vecToSun = -UnitOf(vecDirection);
  m_SunColor = sun;
  m_AmbientColor = ambient;
}

void QXOgreOcean::AddSwell(double dDirection, double dWaveLength, double dWaveHeight, double dPhase) {
  // Written so that what is no number is left out as well.
  bool const bWave = dWaveLength >= SHORTEST_SWELL && dWaveLength <= LONGEST_SWELL &&
                     std::abs(dWaveHeight) <= HIGHEST_SWELL && std::isfinite(dDirection) && std::isfinite(dPhase);
  if (!bWave || m_arrSwells.size() == QXOgreWaves::MAX_SWELLS) return;
  m_arrSwells.push_back({dDirection, dWaveLength, dWaveHeight, dPhase});
  MakeWaves();
}

void QXOgreOcean::RemoveAllSwells() {
  m_arrSwells.clear();
  MakeWaves();
}

unsigned char QXOgreOcean::GetHeight(QXVector3d const& vecPosition, double& dHeight, QXVector3d& vecNormal) const {
  if (!m_pDevice || !std::isfinite(vecPosition.x) || !std::isfinite(vecPosition.y)) return 0;
  m_Waves.GetSurface(vecPosition.x, vecPosition.y, m_dClock, dHeight, vecNormal);
  dHeight += m_dLevel;
  return 1;
}

unsigned int QXOgreOcean::RefuseDisturbance() {
  if (m_pGraphics3D) m_pGraphics3D->SetErrorText("the renderer on OGRE has no wakes, rotors and impacts on the water");
  return 0;
}

unsigned int QXOgreOcean::CreateWakeGenerator(QXWakeGeneratorParameters const&) {
  return RefuseDisturbance();
}

unsigned int QXOgreOcean::CreateRotorWash(QXRotorWashParameters const&) {
  return RefuseDisturbance();
}

unsigned int QXOgreOcean::CreateTidalStreamWake(QXTidalStreamWakeParameters const&) {
  return RefuseDisturbance();
}

void QXOgreOcean::Update(double dSeconds) {
  if (std::isfinite(m_dClock + dSeconds)) m_dClock += dSeconds;
}

void QXOgreOcean::TellWaves(QXOgreRays const& rays) {
  std::array<float, 4 * QXOgreWaves::MAX_WAVES> arrWaves{};
  for (std::size_t i = 0; i < m_Waves.GetCount(); ++i) {
    QXOgreWave const& wave = m_Waves.GetWave(i);
    arrWaves[4 * i] = static_cast<float>(wave.m_dKX);
    arrWaves[4 * i + 1] = static_cast<float>(wave.m_dKY);
    arrWaves[4 * i + 2] = static_cast<float>(wave.m_dAmplitude);
    arrWaves[4 * i + 3] = static_cast<float>(m_Waves.GetAngle(i, rays.m_vecEye.x, rays.m_vecEye.y, m_dClock));
  }
  for (Ogre::GpuProgramParameters* const pParameters :
      {&m_pDevice->m_Effect.GetVertex(), &m_pDevice->m_Effect.GetFragment()}) {
    pParameters->setNamedConstant("wave", arrWaves.data(), QXOgreWaves::MAX_WAVES, 4);
    pParameters->setNamedConstant("waveCount", static_cast<int>(m_Waves.GetCount()));
    pParameters->setNamedConstant("chop", static_cast<float>(m_Waves.GetChop()));
  }
}

void QXOgreOcean::TellPlace(QXOgreView const& view, QXOgreRays const& rays) {
  double const dAbove = MetresOf(rays.m_vecEye.z - m_dLevel * view.m_dVerticalExaggeration);
  QXMatrix4d matTurn = view.m_matView;
  matTurn.SetTrans(QXVector3d::ZERO);
  Ogre::GpuProgramParameters& vertex = m_pDevice->m_Effect.GetVertex();
  vertex.setNamedConstant("toClip", ToOgre(matTurn * view.m_matProjection));
  vertex.setNamedConstant("parallel", rays.m_bParallel ? 1.0F : 0.0F);
  vertex.setNamedConstant("start", ToOgre(rays.m_vecStart));
  vertex.setNamedConstant("startRight", ToOgre(rays.m_vecStartRight));
  vertex.setNamedConstant("startUp", ToOgre(rays.m_vecStartUp));
  vertex.setNamedConstant("ray", ToOgre(rays.m_vecRay));
  vertex.setNamedConstant("eyeAbove", static_cast<float>(dAbove));
  vertex.setNamedConstant("stretch", static_cast<float>(view.m_dVerticalExaggeration));
  double dApart = 0.0;
  if (rays.m_bParallel) {
    dApart = 2.2 * std::max(rays.m_vecStartRight.Length() / COLUMNS, rays.m_vecStartUp.Length() / ROWS) /
             std::abs(rays.m_vecRay.z);
  } else {
    double const dNearest = std::max(0.1 * std::abs(dAbove), 0.2);
    double const dReach = std::max(100.0 * std::abs(dAbove), LEAST_REACH);
    // Waves move what is near the eye sideways.
    QXOgreFan const fan = FindFan(rays, 0.1 + 2.0 / std::max(std::abs(dAbove), 1.0));
    double const dGrowth = std::log(dReach / dNearest) * ROWS / (ROWS - 1);
    vertex.setNamedConstant("fan", Ogre::Vector4(static_cast<float>(fan.m_dAzimuth), static_cast<float>(fan.m_dAngle),
                                       static_cast<float>(dNearest), static_cast<float>(dGrowth)));
    dApart = std::max(dGrowth / ROWS, fan.m_dAngle / COLUMNS);
  }
  vertex.setNamedConstant("apart", static_cast<float>(dApart));
}

void QXOgreOcean::TellAir() {
  QXOgreSky* const pSky = m_pScene->FindSky();
  QXOgreAir const* pAir = pSky ? pSky->UpdateAir() : nullptr;
  if (!pAir) m_pDevice->m_Air.Update(m_Sun);
  double const dVeil = pAir ? pSky->GetVeil() : 0.0;
  double const dDarkness = pAir ? pSky->GetDarkness() : 0.0;
  QXSunPosition const& sun = pAir ? pSky->GetSun() : m_Sun;
  if (!pAir) pAir = &m_pDevice->m_Air;
  m_pDevice->SetTable(pAir->GetTexture());
  Ogre::GpuProgramParameters& fragment = m_pDevice->m_Effect.GetFragment();
  fragment.setNamedConstant("toSun", pAir->GetToSun());
  fragment.setNamedConstant("average", QXOgreAir::ToOgre(pAir->GetModel().GetAverage()));
  fragment.setNamedConstant("cover", Ogre::Vector2(static_cast<float>(dVeil), static_cast<float>(dDarkness)));
  bool const bOwnLight = m_vecToSun.Length2() > 0.0;
  Ogre::Vector3 const sunColor = ToVector3(sun.GetSunColor()) * static_cast<float>(1.0 - dVeil);
  fragment.setNamedConstant("sunDirection", bOwnLight ? ToOgre(m_vecToSun) : pAir->GetToSun());
  fragment.setNamedConstant("sunColour", bOwnLight ? ToVector3(m_SunColor) : sunColor);
  // A closed layer spreads the sun's light over the whole sky.
  Ogre::Vector3 const spread = ToVector3(sun.GetSunColor()) * static_cast<float>(0.5 * dVeil * (1.0 - dDarkness));
  Ogre::Vector3 const ambient = ToVector3(sun.GetAmbientColor()) + spread;
  fragment.setNamedConstant("ambientColour", bOwnLight ? ToVector3(m_AmbientColor) : ambient);
}

void QXOgreOcean::TellLook(QXOgreRays const& rays) {
  Ogre::GpuProgramParameters& fragment = m_pDevice->m_Effect.GetFragment();
  // Cox's and Munk's variance of slopes, less what the waves of the sum have of it themselves.
  double const dRoughness =
      CALM_ROUGHNESS + std::max(ROUGHNESS_OF_WIND * m_Waves.GetWindSpeed() - SlopeVariance(m_Waves), 0.0);
  double const dFoam = m_bFoam ? FoamThreshold(m_Waves) : NO_FOAM;
  fragment.setNamedConstant("look", Ogre::Vector4(static_cast<float>(dRoughness), static_cast<float>(dFoam),
                                        static_cast<float>(CLEAR_AIR), static_cast<float>(1.0 / FOAM_REPEAT)));
  double const dWay = FOAM_SPEED * m_dClock;
  fragment.setNamedConstant("foamPlace",
      Ogre::Vector2(static_cast<float>(FractionOf((rays.m_vecEye.x + std::sin(m_dWindDirection) * dWay) / FOAM_REPEAT)),
          static_cast<float>(FractionOf((rays.m_vecEye.y + std::cos(m_dWindDirection) * dWay) / FOAM_REPEAT))));
  auto const fOpacity = static_cast<float>(ChannelOf(m_WaterColor.a, 1.0));
  fragment.setNamedConstant("water", Ogre::Vector4(ToVector3(m_WaterColor), fOpacity));
  Ogre::Vector3 const vecParallel = rays.m_bParallel ? ToOgre(rays.m_vecRay) : Ogre::Vector3::ZERO;
  fragment.setNamedConstant("parallelRay", vecParallel);
  fragment.setNamedConstant("depthAxis", Ogre::Vector4(vecParallel.x, vecParallel.y, vecParallel.z, 0.0F));
  QXOgreFog const fog(m_pScene->GetFog());
  fragment.setNamedConstant("fog", fog.m_Numbers);
  fragment.setNamedConstant("fogColour", fog.m_Color);
}

void QXOgreOcean::Queue(
    QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>& arrDepths, QXOgreCounts& counts) {
  QXOgreRays rays;
  if (!m_pDevice || !m_bVisible || !std::isfinite(m_dLevel) || !FindRays(view, rays)) return;
  // A parallel view along the water does not see it.
  if (rays.m_bParallel && std::abs(rays.m_vecRay.z) < 1.0e-3) return;
  TellAir();
  TellWaves(rays);
  TellPlace(view, rays);
  TellLook(rays);
  queue.addRenderable(&m_pDevice->m_Grid, Ogre::RENDER_QUEUE_MAIN, QXOgreDrawable::PLAIN_PRIORITY);
  arrDepths.push_back(FARTHEST);
  counts.m_nDrawOperations += 1;
  counts.m_nTriangles += 2 * COLUMNS * ROWS;
  counts.m_nVertices += (COLUMNS + 1) * (ROWS + 1);
}

}  // namespace QXC
