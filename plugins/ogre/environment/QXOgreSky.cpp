#include <plugins/ogre/environment/QXOgreSky.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include <OgreHardwareBufferManager.h>
#include <OgreRenderQueue.h>
#include <OgreRenderable.h>
#include <OgreVertexIndexData.h>

#include <plugins/ogre/QXOgreConvert.h>
#include <plugins/ogre/QXOgreDevice.h>
#include <plugins/ogre/QXOgreGraphics3D.h>
#include <plugins/ogre/QXOgreScene.h>
#include <plugins/ogre/environment/QXOgreAir.h>
#include <plugins/ogre/environment/QXOgreEffect.h>
#include <plugins/ogre/environment/QXOgreFog.h>
#include <plugins/ogre/environment/QXOgreNoise.h>
#include <plugins/ogre/environment/QXOgreNumbers.h>
#include <plugins/ogre/environment/QXOgreRays.h>
#include <plugins/ogre/environment/QXOgreSkyShaders.h>

namespace QXC {

namespace {

/// 2024-06-21 09:00 UTC.
constexpr QXInt64 DEFAULT_TIME = 1718960400000;
constexpr double WEST = 4.71238898038469;
constexpr unsigned int NOISE_EDGE = 256;
/// From the world to the sky of stars: the pole stands in the north as high as the place is north, and the sky turns
/// about it.
Ogre::Matrix3 StarTurn(double dSiderealAngle) {
  double const dLatitude = QXSunPosition::DEFAULT_LATITUDE;
  double const c = std::cos(dSiderealAngle);
  double const s = std::sin(dSiderealAngle);
  // Of a place's east, north and up, in directions that are fixed among the stars.
  QXVector3d const vecEast(-s, c, 0.0);
  QXVector3d const vecNorth(-std::sin(dLatitude) * c, -std::sin(dLatitude) * s, std::cos(dLatitude));
  QXVector3d const vecUp(std::cos(dLatitude) * c, std::cos(dLatitude) * s, std::sin(dLatitude));
  Ogre::Matrix3 mat;
  mat.SetColumn(0, ToOgre(vecEast));
  mat.SetColumn(1, ToOgre(vecNorth));
  mat.SetColumn(2, ToOgre(vecUp));
  return mat;
}

/// Four corners of a viewport as one strip.
class Quad final : public Ogre::Renderable {
public:
  explicit Quad(Ogre::MaterialPtr const& pMaterial) : m_pMaterial(pMaterial) {
    static constexpr std::array<float, 8> CORNERS = {-1.0F, -1.0F, 1.0F, -1.0F, -1.0F, 1.0F, 1.0F, 1.0F};
    m_VertexData.vertexDeclaration->addElement(0, 0, Ogre::VET_FLOAT2, Ogre::VES_POSITION);
    auto const pBuffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
        2 * sizeof(float), 4, Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
    pBuffer->writeData(0, sizeof(CORNERS), CORNERS.data(), true);
    m_VertexData.vertexBufferBinding->setBinding(0, pBuffer);
    m_VertexData.vertexCount = 4;
    // Filled, whatever the camera's mode.
    setPolygonModeOverrideable(false);
  }

  Ogre::MaterialPtr const& getMaterial() const override { return m_pMaterial; }
  void getRenderOperation(Ogre::RenderOperation& operation) override {
    operation.vertexData = &m_VertexData;
    operation.indexData = nullptr;
    operation.useIndexes = false;
    operation.operationType = Ogre::RenderOperation::OT_TRIANGLE_STRIP;
    operation.srcRenderable = this;
  }
  void getWorldTransforms(Ogre::Matrix4* pTransform) const override { *pTransform = Ogre::Matrix4::IDENTITY; }
  Ogre::Real getSquaredViewDepth(Ogre::Camera const*) const override { return 0.0F; }
  Ogre::LightList const& getLights() const override {
    static Ogre::LightList const s_None;
    return s_None;
  }

private:
  Ogre::MaterialPtr m_pMaterial;
  Ogre::VertexData m_VertexData;
};

}  // namespace

struct QXOgreSky::Clouds {
  double m_dCover;    ///< Part of the sky
  double m_dSoft;     ///< How far edges fade, of the pattern's range
  double m_dSolid;    ///< How much the thickest hides
  double m_dVeil;     ///< How much of the blue is hidden where single clouds are not seen any more
  double m_dDark;     ///< How much light a base keeps back
  double m_dRepeat;   ///< Metres after which the pattern repeats itself
  double m_dStretch;  ///< How many times as long along the wind
};

/// What the sky has on the device.
class QXOgreSky::Device {
public:
  explicit Device(QXOgreDevice& device)
      : m_Air(device), m_Noise(device, NOISE_EDGE, NOISE_EDGE, Ogre::PF_BYTE_L, true),
        m_Effect(device, QX_OGRE_SKY_VERTEX,
            std::string("#version 330 core\n") + QX_OGRE_SKY_LIGHT + QX_OGRE_SKY_FOG + QX_OGRE_SKY_FRAGMENT),
        m_Quad(m_Effect.GetMaterial()) {
    m_Noise.Fill(MakeNoise(NOISE_EDGE).data());
    m_Effect.AddTexture("skyTable", m_Air.GetTexture(), false);
    m_Effect.AddTexture("noise", m_Noise.GetTexture(), true);
    m_Effect.GetVertex().setNamedAutoConstant("flipping", Ogre::GpuProgramParameters::ACT_RENDER_TARGET_FLIPPING);
    Ogre::Pass& pass = m_Effect.GetPass();
    pass.setDepthCheckEnabled(false);
    pass.setDepthWriteEnabled(false);
    pass.setPolygonModeOverrideable(false);
  }

  QXOgreAir m_Air;
  QXOgreData m_Noise;
  QXOgreEffect m_Effect;
  Quad m_Quad;
};

QXOgreSky::QXOgreSky(QXOgreGraphics3D& graphics3D, QXOgreScene& scene)
    : m_pGraphics3D(&graphics3D), m_pScene(&scene), m_Sun(QdcTime(DEFAULT_TIME)), m_nTime(0), m_dDriftEast(0.0),
      m_dDriftNorth(0.0), m_dCloudDistance(40000.0), m_dCloudAltitude(2000.0), m_dWindMin(0.0), m_dWindMax(20000.0),
      m_dWindDirection(WEST), m_dWindSpeed(5.0), m_dPrecipitationRate(0.0), m_eCondition(CONDITION_CLEAR),
      m_ePrecipitation(PRECIPITATION_NONE), m_eCloudType(CLOUD_NONE), m_nGroupID(0), m_bVisible(1),
      m_bTextureBuffer(0) {
  scene.AddItem(this);
}

QXOgreSky::~QXOgreSky() {
  if (m_pScene) m_pScene->RemoveItem(this);
}

void QXOgreSky::Initialize() {
  if (!m_pScene || m_pDevice) return;
  m_pGraphics3D->Try([this] { m_pDevice = std::make_unique<Device>(m_pGraphics3D->RequireDevice()); });
}

void QXOgreSky::LeaveScene() {
  m_pDevice.reset();
  m_pScene = nullptr;
  m_pGraphics3D = nullptr;
}

void QXOgreSky::SetTime(QdcTime time) {
  double const dSeconds = (static_cast<double>(time.GetMillisecondsUTC()) - static_cast<double>(m_nTime)) / 1000.0;
  bool const bWind = m_dCloudAltitude >= m_dWindMin && m_dCloudAltitude <= m_dWindMax;
  // The wind comes from its direction.
  double const dWay = bWind ? -m_dWindSpeed * dSeconds : 0.0;
  double const dEast = std::sin(m_dWindDirection) * dWay;
  double const dNorth = std::cos(m_dWindDirection) * dWay;
  if (std::isfinite(dEast) && std::isfinite(dNorth)) {
    m_dDriftEast += dEast;
    m_dDriftNorth += dNorth;
  }
  m_nTime = time.GetMillisecondsUTC();
  m_Sun = QXSunPosition(time);
}

void QXOgreSky::SetCondition(QXConditionPresets eCondition) {
  m_eCondition = eCondition;
  auto const set = [this](QXCloudTypes eType, double dAltitude, double dDistance, double dWindSpeed) {
    m_eCloudType = eType;
    m_dCloudAltitude = dAltitude;
    m_dCloudDistance = dDistance;
    m_dWindSpeed = dWindSpeed;
    m_ePrecipitation = m_eCondition == CONDITION_STORM ? PRECIPITATION_RAIN : PRECIPITATION_NONE;
    m_dPrecipitationRate = m_eCondition == CONDITION_STORM ? 10.0 : 0.0;
  };
  switch (eCondition) {
  case CONDITION_CLEAR: set(CLOUD_NONE, 2000.0, 40000.0, 3.0); break;
  case CONDITION_FAIR: set(CLOUD_CUMULUS, 2000.0, 40000.0, 5.0); break;
  case CONDITION_OVERCAST: set(CLOUD_STRATUS, 1500.0, 30000.0, 8.0); break;
  case CONDITION_STORM: set(CLOUD_CUMULONIMBUS, 1000.0, 20000.0, 20.0); break;
  default: break;
  }
}

void QXOgreSky::SetPrecipitationType(QXPrecipitationTypes eType, double dRate) {
  m_ePrecipitation = eType;
  m_dPrecipitationRate = dRate;
}

QXOgreSky::Clouds const& QXOgreSky::LookOf(QXCloudTypes eType) {
  static constexpr Clouds NONE{0.0, 1.0, 0.0, 0.0, 0.0, 10000.0, 1.0};
  static constexpr Clouds CUMULUS{0.48, 0.22, 0.97, 0.0, 0.0, 11000.0, 1.0};
  static constexpr Clouds STRATUS{1.35, 1.1, 1.0, 0.9, 0.3, 26000.0, 1.0};
  static constexpr Clouds CIRRUS{0.70, 0.85, 0.75, 0.0, 0.0, 9000.0, 5.0};
  static constexpr Clouds CUMULONIMBUS{1.12, 0.7, 1.0, 0.85, 0.88, 14000.0, 1.0};
  switch (eType) {
  case CLOUD_CUMULUS: return CUMULUS;
  case CLOUD_STRATUS: return STRATUS;
  case CLOUD_CIRRUS: return CIRRUS;
  case CLOUD_CUMULONIMBUS: return CUMULONIMBUS;
  default: return NONE;
  }
}

QXOgreAir const* QXOgreSky::UpdateAir() {
  if (!m_pDevice || !m_bVisible) return nullptr;
  m_pDevice->m_Air.Update(m_Sun);
  return &m_pDevice->m_Air;
}

double QXOgreSky::GetVeil() const {
  return LookOf(m_eCloudType).m_dVeil;
}

double QXOgreSky::GetDarkness() const {
  return LookOf(m_eCloudType).m_dDark;
}

void QXOgreSky::TellAir(QXOgreAir const& air) {
  Ogre::GpuProgramParameters& fragment = m_pDevice->m_Effect.GetFragment();
  fragment.setNamedConstant("toSun", air.GetToSun());
  fragment.setNamedConstant("average", QXOgreAir::ToOgre(air.GetModel().GetAverage()));
  fragment.setNamedConstant("night", static_cast<float>(air.GetModel().GetNight()));
  fragment.setNamedConstant("starTurn", Ogre::Matrix4(StarTurn(m_Sun.GetSiderealAngle())));
}

void QXOgreSky::TellClouds(QXVector3d const& vecEye, Clouds const& clouds) {
  double const c = std::cos(m_dWindDirection);
  double const s = std::sin(m_dWindDirection);
  // Repeats across the wind and along it, in one metre.
  double const dAcross = 1.0 / clouds.m_dRepeat;
  double const dAlong = dAcross / clouds.m_dStretch;
  double const arrAxes[4] = {c * dAcross, s * dAlong, -s * dAcross, c * dAlong};
  double const dEast = vecEye.x - m_dDriftEast;
  double const dNorth = vecEye.y - m_dDriftNorth;
  double const dAbove = m_dCloudAltitude - vecEye.z;
  Ogre::GpuProgramParameters& fragment = m_pDevice->m_Effect.GetFragment();
  fragment.setNamedConstant("cloudAxes", Ogre::Vector4(static_cast<float>(arrAxes[0]), static_cast<float>(arrAxes[1]),
                                             static_cast<float>(arrAxes[2]), static_cast<float>(arrAxes[3])));
  fragment.setNamedConstant(
      "cloudPlace", Ogre::Vector4(static_cast<float>(FractionOf(arrAxes[0] * dEast + arrAxes[2] * dNorth)),
                        static_cast<float>(FractionOf(arrAxes[1] * dEast + arrAxes[3] * dNorth)), MetresOf(dAbove),
                        std::max(MetresOf(m_dCloudDistance), 1.0e-6F)));
  fragment.setNamedConstant(
      "cloudLook", Ogre::Vector4(static_cast<float>(clouds.m_dCover), static_cast<float>(clouds.m_dSoft),
                       static_cast<float>(clouds.m_dSolid), static_cast<float>(clouds.m_dDark)));
  fragment.setNamedConstant("cloudVeil", static_cast<float>(clouds.m_dVeil));
}

void QXOgreSky::Queue(
    QXOgreView const& view, Ogre::RenderQueue& queue, std::vector<Ogre::Real>&, QXOgreCounts& counts) {
  QXOgreRays rays;
  QXOgreAir const* const pAir = UpdateAir();
  if (!pAir || !FindRays(view, rays)) return;
  TellAir(*pAir);
  Ogre::GpuProgramParameters& vertex = m_pDevice->m_Effect.GetVertex();
  Ogre::GpuProgramParameters& fragment = m_pDevice->m_Effect.GetFragment();
  QXVector3d vecRay = rays.m_vecRay;
  QXVector3d const& vecToSun = m_Sun.GetDirection();
  // A map is looked at from above: it gets the horizon beside the sun, however it is turned.
  if (rays.m_bParallel && vecRay.z < 0.0) vecRay = QXVector3d(-vecToSun.y, vecToSun.x, 0.0);
  vertex.setNamedConstant("ray", ToOgre(vecRay));
  vertex.setNamedConstant("rayRight", ToOgre(rays.m_vecRayRight));
  vertex.setNamedConstant("rayUp", ToOgre(rays.m_vecRayUp));
  fragment.setNamedConstant(
      "sunLight", rays.m_bParallel ? Ogre::Vector3::ZERO : QXOgreAir::ToOgre(pAir->GetModel().GetSun()));
  bool const bClouds =
      !rays.m_bParallel && m_dCloudDistance > 0.0 && std::isfinite(m_dCloudAltitude) && std::isfinite(m_dWindDirection);
  TellClouds(rays.m_vecEye, LookOf(bClouds ? m_eCloudType : CLOUD_NONE));
  QXOgreFog const fog(m_pScene->GetFog());
  fragment.setNamedConstant("fog", fog.m_Numbers);
  fragment.setNamedConstant("fogColour", fog.m_Color);
  queue.addRenderable(&m_pDevice->m_Quad, Ogre::RENDER_QUEUE_SKIES_EARLY, 0);
  counts.m_nDrawOperations += 1;
  counts.m_nTriangles += 2;
  counts.m_nVertices += 4;
}

}  // namespace QXC
