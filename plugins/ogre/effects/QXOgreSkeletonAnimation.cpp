#include <plugins/ogre/effects/QXOgreSkeletonAnimation.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <plugins/ogre/QXOgreDrawable.h>

namespace QXC {

namespace {

/// Beyond this cosine of the angle between two rotations its sine is too small to divide by, and the chord is the arc.
constexpr double NEARLY_SAME = 1.0 - 1.0e-10;

bool IsFinite(QXMatrix4d const& mat) {
  for (auto const& row : mat.m)
    for (double const d : row)
      if (!std::isfinite(d)) return false;
  return true;
}

/// Vertices are floats: a matrix beyond their range would make no vertex that could be drawn.
bool IsNarrowable(QXMatrix4d const& mat) {
  for (auto const& row : mat.m)
    for (double const d : row)
      if (!(std::abs(d) <= static_cast<double>(std::numeric_limits<float>::max()))) return false;
  return true;
}

bool IsFinite(QXBoneKey const& key) {
  QXVector3d const& p = key.m_vecPosition;
  QXVector3d const& s = key.m_vecScale;
  QXQuaternion4d const& q = key.m_qRotation;
  double const arrNumbers[] = {key.m_dTime, p.x, p.y, p.z, q.w, q.x, q.y, q.z, s.x, s.y, s.z};
  return std::all_of(std::begin(arrNumbers), std::end(arrNumbers), [](double d) { return std::isfinite(d); });
}

/// Scaled, then turned, then moved; for row vectors the rows are the turned and scaled axes.
QXMatrix4d ToMatrix(QXVector3d const& vecPosition, QXQuaternion4d const& qRotation, QXVector3d const& vecScale) {
  QXVector3d arrAxes[3];
  qRotation.ToAxes(arrAxes);
  double const arrScales[3] = {vecScale.x, vecScale.y, vecScale.z};
  QXMatrix4d mat;
  for (int i = 0; i < 3; ++i) {
    mat[i][0] = arrAxes[i].x * arrScales[i];
    mat[i][1] = arrAxes[i].y * arrScales[i];
    mat[i][2] = arrAxes[i].z * arrScales[i];
  }
  mat.SetTrans(vecPosition);
  return mat;
}

/// Along the shorter arc: q and -q turn alike, and between the wrong two of them a bone would turn the long way round.
QXQuaternion4d Between(QXQuaternion4d const& from, QXQuaternion4d const& to, double dPart) {
  double dCos = from.w * to.w + from.x * to.x + from.y * to.y + from.z * to.z;
  double const dSign = dCos < 0.0 ? -1.0 : 1.0;
  dCos *= dSign;
  double dFrom = 1.0 - dPart;
  double dTo = dPart;
  if (dCos < NEARLY_SAME) {
    double const dAngle = std::acos(dCos);
    dFrom = std::sin(dFrom * dAngle) / std::sin(dAngle);
    dTo = std::sin(dTo * dAngle) / std::sin(dAngle);
  }
  dTo *= dSign;
  QXQuaternion4d result(from.w * dFrom + to.w * dTo, from.x * dFrom + to.x * dTo, from.y * dFrom + to.y * dTo,
      from.z * dFrom + to.z * dTo);
  result.Normalize();
  return result;
}

QXVector3d Between(QXVector3d const& from, QXVector3d const& to, double dPart) {
  double const dFrom = 1.0 - dPart;
  return {from.x * dFrom + to.x * dPart, from.y * dFrom + to.y * dPart, from.z * dFrom + to.z * dPart};
}

}  // namespace

QXOgreSkeletonAnimation::QXOgreSkeletonAnimation(QdcUnicodeString const& strName)
    : m_strName(strName), m_dFirst(std::numeric_limits<double>::infinity()), m_dLast(-m_dFirst), m_dTime(0.0),
      m_bLoop(0), m_bPlaying(0), m_bMovesValid(false) {}

QXOgreSkeletonAnimation::~QXOgreSkeletonAnimation() {
  while (!m_arrDrawables.empty()) m_arrDrawables.back()->SetSkeleton(nullptr);
}

int QXOgreSkeletonAnimation::AddBone(QdcUnicodeString const&, int nParent, QXMatrix4d const& matRest) {
  // Only earlier ones can be parents, so no bone stands under itself.
  if (nParent < -1 || nParent >= GetBoneCount() || !IsFinite(matRest)) return -1;
  Bone bone;
  bone.m_nParent = nParent;
  bone.m_matRest = matRest;
  QXMatrix4d const matFromModel =
      nParent < 0 ? QXMatrix4d::IDENTITY : m_arrBones[static_cast<std::size_t>(nParent)].m_matToBone;
  QXMatrix4d const matInverse = matRest.Invert();
  bone.m_matToBone = matFromModel * matInverse;
  if (matInverse == QXMatrix4d::ZERO || !IsFinite(bone.m_matToBone)) return -1;
  m_arrBones.push_back(std::move(bone));
  Change();
  return GetBoneCount() - 1;
}

unsigned char QXOgreSkeletonAnimation::SetKeys(int nBone, QdcArray<QXAnimationKey*> const& arrKeys) {
  if (nBone < 0 || nBone >= GetBoneCount()) return 0;
  std::vector<QXBoneKey> arrTaken;
  for (std::size_t i = 0; i < arrKeys.GetSize(); ++i) {
    auto const* const pKey = dynamic_cast<QXBoneKey const*>(arrKeys[i]);
    if (!pKey || !IsFinite(*pKey) || (!arrTaken.empty() && pKey->m_dTime < arrTaken.back().m_dTime)) return 0;
    arrTaken.push_back(*pKey);
    double const dLength = arrTaken.back().m_qRotation.Normalize();
    if (!(dLength > 0.0) || !std::isfinite(dLength)) return 0;
  }
  Bone& bone = m_arrBones[static_cast<std::size_t>(nBone)];
  bool const bReplaces = !bone.m_arrKeys.empty();
  bone.m_arrKeys = std::move(arrTaken);
  // All bones are asked only where keys go away: those of a model come bone by bone.
  if (bReplaces) {
    FindLength();
  } else {
    GrowLength(bone);
  }
  Change();
  return 1;
}

void QXOgreSkeletonAnimation::FindLength() {
  m_dFirst = std::numeric_limits<double>::infinity();
  m_dLast = -m_dFirst;
  for (Bone const& bone : m_arrBones) GrowLength(bone);
  m_dTime = std::min(m_dTime, GetLength());
}

void QXOgreSkeletonAnimation::GrowLength(Bone const& bone) {
  if (bone.m_arrKeys.empty()) return;
  m_dFirst = std::min(m_dFirst, bone.m_arrKeys.front().m_dTime);
  m_dLast = std::max(m_dLast, bone.m_arrKeys.back().m_dTime);
}

void QXOgreSkeletonAnimation::SetTime(double dSeconds) {
  if (std::isnan(dSeconds)) return;
  m_dTime = std::clamp(dSeconds, 0.0, GetLength());
  Change();
}

void QXOgreSkeletonAnimation::Advance(double dSeconds) {
  if (!m_bPlaying || !std::isfinite(dSeconds)) return;
  double const dLength = GetLength();
  double dTime = m_dTime + dSeconds;
  if (m_bLoop && dLength > 0.0) {
    dTime = std::fmod(dTime, dLength);
    if (dTime < 0.0) dTime += dLength;
  }
  SetTime(dTime);
}

QXMatrix4d QXOgreSkeletonAnimation::FindMatrix(Bone const& bone) const {
  if (bone.m_arrKeys.empty()) return bone.m_matRest;
  double const dTime = m_dFirst + m_dTime;
  auto const next = std::upper_bound(bone.m_arrKeys.begin(), bone.m_arrKeys.end(), dTime,
      [](double d, QXBoneKey const& key) { return d < key.m_dTime; });
  if (next == bone.m_arrKeys.begin() || next == bone.m_arrKeys.end()) {
    QXBoneKey const& key = next == bone.m_arrKeys.begin() ? *next : *(next - 1);
    return ToMatrix(key.m_vecPosition, key.m_qRotation, key.m_vecScale);
  }
  QXBoneKey const& from = *(next - 1);
  double const dPart = (dTime - from.m_dTime) / (next->m_dTime - from.m_dTime);
  return ToMatrix(Between(from.m_vecPosition, next->m_vecPosition, dPart),
      Between(from.m_qRotation, next->m_qRotation, dPart), Between(from.m_vecScale, next->m_vecScale, dPart));
}

std::vector<QXMatrix4d> const& QXOgreSkeletonAnimation::GetMoves() {
  if (m_bMovesValid) return m_arrMoves;
  m_bMovesValid = true;
  m_arrPlaces.resize(m_arrBones.size());
  m_arrMoves.resize(m_arrBones.size());
  for (std::size_t i = 0; i < m_arrBones.size(); ++i) {
    Bone const& bone = m_arrBones[i];
    m_arrPlaces[i] = FindMatrix(bone);
    // Parents come before their children.
    if (bone.m_nParent >= 0) m_arrPlaces[i] = m_arrPlaces[i] * m_arrPlaces[static_cast<std::size_t>(bone.m_nParent)];
    m_arrMoves[i] = bone.m_matToBone * m_arrPlaces[i];
    if (!IsNarrowable(m_arrMoves[i])) m_arrMoves[i] = QXMatrix4d::IDENTITY;
  }
  return m_arrMoves;
}

void QXOgreSkeletonAnimation::Change() {
  m_bMovesValid = false;
  for (QXOgreDrawable* const pDrawable : m_arrDrawables) pDrawable->UpdateSkeleton();
}

}  // namespace QXC
