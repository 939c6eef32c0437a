#include <QxGraphics3D/frame/foundation/base3d/QXPass.h>

#include <QxGraphics3D/frame/foundation/base3d/detail/QXStreamRecords.h>

#include <utility>

namespace QXC {

namespace {

constexpr unsigned int GroupPairSize = 2 * QXMaterialExtension::GROUP_SIZE;
constexpr int ExtensionSize = 4 + 2 * static_cast<int>(GroupPairSize) * 4;
// Matrix, word, unit words, multi-texture byte, colours, shininess; then the states of the device.
constexpr int StatesSize =
    detail::MatrixSize + 4 + 8 * 4 + 1 + 4 * detail::ColourSize + 8 + 1 + 3 * 4 + 2 + 2 * 4 + 1 + 2 * 8;
// A unit without name and effects.
constexpr unsigned int LeastUnitSize = 4 + detail::MatrixSize + 3 * 4 + 4;

void LoadStates(QXStream& stream, QXPassStates& states) {
  int nCulling = 0;
  detail::LoadMatrix(stream, states.m_matPass);
  stream >> states.m_nPassWord;
  stream.Load(states.m_nUnitWords, QXPassStates::MAX_UNIT_WORDS);
  stream >> states.m_bMultiTexture;
  for (QXColorValue3D* pColour :
      {&states.m_clrAmbient, &states.m_clrDiffuse, &states.m_clrSpecular, &states.m_clrEmissive})
    detail::LoadColour(stream, *pColour);
  stream >> states.m_dShininess >> states.m_bLighting >> states.m_eSourceFactor >> states.m_eDestFactor >> nCulling;
  stream >> states.m_bDepthCheck >> states.m_bDepthWrite >> states.m_eDepthFunction >> states.m_eAlphaFunction;
  stream >> states.m_nAlphaReference >> states.m_dLineWidth >> states.m_dPointSize;
  states.m_eCulling = static_cast<CullingMode>(nCulling);
}

void SaveStates(QXStream& stream, QXPassStates const& states) {
  detail::SaveMatrix(stream, states.m_matPass);
  stream << states.m_nPassWord;
  stream.Save(states.m_nUnitWords, QXPassStates::MAX_UNIT_WORDS);
  stream << states.m_bMultiTexture;
  for (QXColorValue3D const* pColour :
      {&states.m_clrAmbient, &states.m_clrDiffuse, &states.m_clrSpecular, &states.m_clrEmissive})
    detail::SaveColour(stream, *pColour);
  stream << states.m_dShininess << states.m_bLighting << states.m_eSourceFactor << states.m_eDestFactor;
  stream << static_cast<int>(states.m_eCulling) << states.m_bDepthCheck << states.m_bDepthWrite;
  stream << states.m_eDepthFunction << states.m_eAlphaFunction << states.m_nAlphaReference;
  stream << states.m_dLineWidth << states.m_dPointSize;
}

}  // namespace

QXPass::QXPass() = default;

// Delegates, so that the destructor runs when the copy throws half-way.
QXPass::QXPass(QXPass const& other) : QXPass() {
  static_cast<QXPassStates&>(*this) = other;
  m_strName = other.m_strName;
  m_nPFFMode = other.m_nPFFMode;
  m_arrUnits.reserve(other.m_arrUnits.size());
  for (auto const& pUnit : other.m_arrUnits) m_arrUnits.push_back(std::make_unique<QXTextureUnitState>(*pUnit));
  if (other.m_pExtension) m_pExtension = new QXMaterialExtension(*other.m_pExtension);
  m_strVertexProgram = other.m_strVertexProgram;
  m_strFragmentProgram = other.m_strFragmentProgram;
}

QXPass& QXPass::operator=(QXPass const& other) {
  if (this == &other) return *this;
  QXPass copy(other);
  Swap(copy);
  return *this;
}

QXPass::~QXPass() {
  delete m_pExtension;
}

void QXPass::SetName(QdcUnicodeString const& strName) {
  m_strName = strName;
}

QXTextureUnitState* QXPass::CreateTextureUnitState() {
  return m_arrUnits.emplace_back(std::make_unique<QXTextureUnitState>()).get();
}

QXTextureUnitState* QXPass::GetTextureUnitState(unsigned int nUnit) {
  return nUnit < m_arrUnits.size() ? m_arrUnits[nUnit].get() : nullptr;
}

QXTextureUnitState const* QXPass::GetTextureUnitState(unsigned int nUnit) const {
  return nUnit < m_arrUnits.size() ? m_arrUnits[nUnit].get() : nullptr;
}

unsigned char QXPass::Load(QXStream& stream, double /*dVersion*/) {
  QXPass loaded;
  stream >> loaded.m_strName >> loaded.m_nPFFMode >> loaded.m_strVertexProgram >> loaded.m_strFragmentProgram;
  LoadStates(stream, loaded);
  if (!loaded.LoadUnits(stream) || !loaded.LoadExtension(stream)) return 0;
  Swap(loaded);
  return 1;
}

void QXPass::Save(QXStream& stream, double /*dVersion*/) const {
  stream << m_strName << m_nPFFMode << m_strVertexProgram << m_strFragmentProgram;
  SaveStates(stream, *this);
  stream << static_cast<int>(m_arrUnits.size());
  for (auto const& pUnit : m_arrUnits) pUnit->Save(stream);
  stream << static_cast<unsigned char>(m_pExtension ? 1 : 0);
  if (!m_pExtension) return;
  stream << m_pExtension->GetType();
  stream.Save(m_pExtension->m_fSlides[0], GroupPairSize);
  stream.Save(m_pExtension->m_fTurns[0], GroupPairSize);
}

int QXPass::GetDataSize() const {
  QXInt64 nSize = QXInt64{QXStream::GetStringSize(m_strName)} + 4 + QXStream::GetStringSize(m_strVertexProgram) +
                  QXStream::GetStringSize(m_strFragmentProgram) + StatesSize + 4 + 1;
  for (auto const& pUnit : m_arrUnits) nSize += pUnit->GetDataSize();
  return detail::ToDataSize(m_pExtension ? nSize + ExtensionSize : nSize);
}

void QXPass::Swap(QXPass& other) {
  std::swap(static_cast<QXPassStates&>(*this), static_cast<QXPassStates&>(other));
  std::swap(m_strName, other.m_strName);
  std::swap(m_nPFFMode, other.m_nPFFMode);
  std::swap(m_arrUnits, other.m_arrUnits);
  std::swap(m_pExtension, other.m_pExtension);
  std::swap(m_strVertexProgram, other.m_strVertexProgram);
  std::swap(m_strFragmentProgram, other.m_strFragmentProgram);
}

unsigned char QXPass::LoadUnits(QXStream& stream) {
  int nUnits = 0;
  if (!detail::LoadCount(stream, nUnits, LeastUnitSize)) return 0;
  for (int i = 0; i < nUnits; ++i)
    if (!CreateTextureUnitState()->Load(stream)) return 0;
  return 1;
}

unsigned char QXPass::LoadExtension(QXStream& stream) {
  QXUInt64 const nPosition = stream.GetPosition();
  unsigned char bExtension = 0;
  stream >> bExtension;
  if (bExtension > 1) stream.Fail(nPosition);
  if (bExtension == 0 || !stream.IsGood()) return stream.IsGood();
  int nType = 0;
  stream >> nType;
  m_pExtension = new QXMaterialExtension(nType);
  stream.Load(m_pExtension->m_fSlides[0], GroupPairSize);
  stream.Load(m_pExtension->m_fTurns[0], GroupPairSize);
  return stream.IsGood();
}

}  // namespace QXC
