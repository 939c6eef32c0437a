// Bones that move the vertices of drawables.
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <random>

#include <QxGraphics3D/model/QXHwInstancingManager.h>
#include <QxGraphics3D/model/QXInstancing.h>
#include <QxGraphics3D/model/QXROInstancePtr.h>
#include <QxGraphics3D/model/QXRenderObjectInstance.h>
#include <QxGraphics3D/renderop/QXBoneKey.h>
#include <QxGraphics3D/renderop/QXSkeletonAnimation.h>

#include <tests/ogre/QXOgreTexturing.h>

namespace QXC {

namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

QXMatrix4d Translation(double x, double y, double z) {
  QXMatrix4d mat;
  mat.SetTrans(QXVector3d(x, y, z));
  return mat;
}

QXQuaternion4d Turn(double dDegrees, QXVector3d const& vecAxis) {
  QXQuaternion4d q;
  q.FromAngleAxis(dDegrees * std::numbers::pi / 180.0, vecAxis);
  return q;
}

QXBoneKey Key(double dTime, QXVector3d const& vecPosition, QXQuaternion4d const& qRotation = QXQuaternion4d::IDENTITY,
    QXVector3d const& vecScale = QXVector3d(1.0, 1.0, 1.0)) {
  QXBoneKey key;
  key.m_dTime = dTime;
  key.m_vecPosition = vecPosition;
  key.m_qRotation = qRotation;
  key.m_vecScale = vecScale;
  return key;
}

QXVector3d const UP(0.0, 0.0, 1.0);

/// A key of a kind that no renderer knows.
class QXForeignKey : public QXAnimationKey {};

}  // namespace

class QXOgreSkeletons : public QXOgreTexturing {
protected:
  void SetUp() override {
    QXOgreTexturing::SetUp();
    m_pSkeleton = Make();
  }
  std::unique_ptr<QXSkeletonAnimation> Make() {
    std::unique_ptr<QXSkeletonAnimation> p(
        m_pGraphics3D->GetRenderOperationManager()->CreateSkeletonAnimation(L"walk"));
    EXPECT_NE(p, nullptr);
    return p;
  }
  unsigned char SetKeys(int nBone, std::vector<QXBoneKey> arrKeys) {
    QdcArray<QXAnimationKey*> arrPointers;
    for (QXBoneKey& key : arrKeys) arrPointers.Add(&key);
    return m_pSkeleton->SetKeys(nBone, arrPointers);
  }
  /// Bones and weights for vertices, four numbers each.
  static void Bind(
      QXRenderOperationMultiIndex& mesh, std::vector<float> const& arrBones, std::vector<float> const& arrWeights) {
    AddTexCoords(mesh, QXSkeletonAnimation::BONE_SET, arrBones, 4);
    AddTexCoords(mesh, QXSkeletonAnimation::WEIGHT_SET, arrWeights, 4);
  }
  /// All corners of a mesh alike.
  static void BindAll(
      QXRenderOperationMultiIndex& mesh, std::array<float, 4> const& arrBones, std::array<float, 4> const& arrWeights) {
    std::vector<float> arrAllBones;
    std::vector<float> arrAllWeights;
    for (unsigned int i = 0; i < mesh.m_pVertexBlock->m_nVertexCount; ++i) {
      arrAllBones.insert(arrAllBones.end(), arrBones.begin(), arrBones.end());
      arrAllWeights.insert(arrAllWeights.end(), arrWeights.begin(), arrWeights.end());
    }
    Bind(mesh, arrAllBones, arrAllWeights);
  }
  /// A red square of 4 x 4 pixels around a place, moved by bones.
  QXRenderOperation3D* DrawBound(float x, float y, std::array<float, 4> const& arrBones,
      std::array<float, 4> const& arrWeights, QXSkeletonAnimation* pSkeleton) {
    float const h = 2.0F / 32.0F;
    auto const pMesh =
        MakeMesh({{x - h, y - h, 0.0F}, {x + h, y - h, 0.0F}, {x + h, y + h, 0.0F}, {x - h, y + h, 0.0F}});
    BindAll(*pMesh, arrBones, arrWeights);
    AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
    QXRenderOperation3D* const p = Draw(*pMesh);
    p->SetSkeletonAnimation(pSkeleton);
    return p;
  }
  /// One vertex of one bone: its bounds are where it stands.
  QXRenderOperation3D* MakeProbe(QXVector3d const& vecPoint, float fBone) {
    auto const pMesh =
        MakeMesh({{static_cast<float>(vecPoint.x), static_cast<float>(vecPoint.y), static_cast<float>(vecPoint.z)}});
    BindAll(*pMesh, {fBone, 0.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F, 0.0F});
    QXRenderOperation3D* const p = Draw(*pMesh);
    p->SetSkeletonAnimation(m_pSkeleton.get());
    return p;
  }
  static QXVector3d PlaceOf(QXRenderOperation3D* pProbe) { return pProbe->GetWorldBoundingBox().GetCenter(); }
  /// Middle of the red pixels, in pixels from the upper left corner; negative without any.
  std::pair<double, double> FindRed() {
    QXPicture const picture = Frame();
    double dX = 0.0;
    double dY = 0.0;
    int nCount = 0;
    for (unsigned int y = 0; y < SIZE; ++y) {
      for (unsigned int x = 0; x < SIZE; ++x) {
        if (!(picture.At(x, y) == RED_PIXEL)) continue;
        dX += x + 0.5;
        dY += y + 0.5;
        ++nCount;
      }
    }
    if (nCount == 0) return {-1.0, -1.0};
    return {dX / nCount, dY / nCount};
  }
  void ExpectRedAt(double x, double y, char const* szWhy) {
    auto const [dX, dY] = FindRed();
    EXPECT_NEAR(dX, x, 0.01) << szWhy;
    EXPECT_NEAR(dY, y, 0.01) << szWhy;
  }
  static void ExpectNear(QXVector3d const& is, QXVector3d const& should, double dTolerance, std::string const& strWhy) {
    EXPECT_NEAR(is.x, should.x, dTolerance) << strWhy;
    EXPECT_NEAR(is.y, should.y, dTolerance) << strWhy;
    EXPECT_NEAR(is.z, should.z, dTolerance) << strWhy;
  }

  std::unique_ptr<QXSkeletonAnimation> m_pSkeleton;
};

TEST_F(QXOgreSkeletons, AFreshOneHasNothingAndStandsStill) {
  EXPECT_EQ(m_pSkeleton->GetName(), QdcUnicodeString(L"walk"));
  EXPECT_EQ(m_pSkeleton->GetBoneCount(), 0);
  EXPECT_EQ(m_pSkeleton->GetLength(), 0.0);
  EXPECT_EQ(m_pSkeleton->GetTime(), 0.0);
  ASSERT_EQ(m_pSkeleton->AddBone(L"a", -1, QXMatrix4d()), 0);
  ASSERT_EQ(SetKeys(0, {Key(0.0, {}), Key(4.0, {1.0, 0.0, 0.0})}), 1);
  m_pSkeleton->Advance(1.0);
  EXPECT_EQ(m_pSkeleton->GetTime(), 0.0) << "it does not play until it is told to";
}

TEST_F(QXOgreSkeletons, BonesStandUnderEarlierOnesAlone) {
  EXPECT_EQ(m_pSkeleton->AddBone(L"a", 0, QXMatrix4d()), -1) << "under itself";
  EXPECT_EQ(m_pSkeleton->AddBone(L"a", -2, QXMatrix4d()), -1);
  EXPECT_EQ(m_pSkeleton->AddBone(L"a", -1, QXMatrix4d()), 0);
  EXPECT_EQ(m_pSkeleton->AddBone(L"b", 0, QXMatrix4d()), 1);
  EXPECT_EQ(m_pSkeleton->AddBone(L"c", 2, QXMatrix4d()), -1);
  EXPECT_EQ(m_pSkeleton->AddBone(L"c", 0, QXMatrix4d::ZERO), -1) << "a place at rest without an inverse";
  EXPECT_EQ(m_pSkeleton->AddBone(L"c", 0, Translation(NO_NUMBER, 0.0, 0.0)), -1);
  EXPECT_EQ(m_pSkeleton->GetBoneCount(), 2);
}

TEST_F(QXOgreSkeletons, KeysThatCannotBeAreRefusedAndChangeNothing) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  ASSERT_EQ(SetKeys(0, {Key(0.0, {}), Key(2.0, {1.0, 0.0, 0.0})}), 1);
  EXPECT_EQ(SetKeys(-1, {}), 0);
  EXPECT_EQ(SetKeys(1, {}), 0);
  EXPECT_EQ(SetKeys(0, {Key(1.0, {}), Key(0.5, {})}), 0) << "backwards";
  EXPECT_EQ(SetKeys(0, {Key(NO_NUMBER, {})}), 0);
  EXPECT_EQ(SetKeys(0, {Key(0.0, {HUGE_VAL, 0.0, 0.0})}), 0);
  EXPECT_EQ(SetKeys(0, {Key(0.0, {}, QXQuaternion4d(0.0, 0.0, 0.0, 0.0))}), 0) << "no rotation at all";
  EXPECT_EQ(SetKeys(0, {Key(0.0, {}, QXQuaternion4d(1.0e200, 1.0e200, 0.0, 0.0))}), 0) << "a length beyond all numbers";
  EXPECT_EQ(SetKeys(0, {Key(0.0, {}, QXQuaternion4d::IDENTITY, {1.0, NO_NUMBER, 1.0})}), 0);
  QXForeignKey foreign;
  QdcArray<QXAnimationKey*> arrKeys;
  arrKeys.Add(&foreign);
  EXPECT_EQ(m_pSkeleton->SetKeys(0, arrKeys), 0);
  arrKeys[0] = nullptr;
  EXPECT_EQ(m_pSkeleton->SetKeys(0, arrKeys), 0);
  EXPECT_EQ(m_pSkeleton->GetLength(), 2.0);
  EXPECT_EQ(SetKeys(0, {}), 1) << "none takes them away";
  EXPECT_EQ(m_pSkeleton->GetLength(), 0.0);
}

TEST_F(QXOgreSkeletons, TimeStaysWithinTheLengthOfAllKeys) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  m_pSkeleton->AddBone(L"b", -1, QXMatrix4d());
  SetKeys(0, {Key(3.0, {}), Key(5.0, {})});
  SetKeys(1, {Key(2.0, {})});
  EXPECT_EQ(m_pSkeleton->GetLength(), 3.0);
  m_pSkeleton->SetTime(9.0);
  EXPECT_EQ(m_pSkeleton->GetTime(), 3.0);
  m_pSkeleton->SetTime(-1.0);
  EXPECT_EQ(m_pSkeleton->GetTime(), 0.0);
  m_pSkeleton->SetTime(1.0);
  m_pSkeleton->SetTime(NO_NUMBER);
  EXPECT_EQ(m_pSkeleton->GetTime(), 1.0);
  m_pSkeleton->SetPlaying(1);
  m_pSkeleton->Advance(0.5);
  EXPECT_EQ(m_pSkeleton->GetTime(), 1.5);
  m_pSkeleton->Advance(-1.0);
  EXPECT_EQ(m_pSkeleton->GetTime(), 0.5);
  m_pSkeleton->Advance(NO_NUMBER);
  m_pSkeleton->Advance(HUGE_VAL);
  EXPECT_EQ(m_pSkeleton->GetTime(), 0.5);
  m_pSkeleton->Advance(7.0);
  EXPECT_EQ(m_pSkeleton->GetTime(), 3.0) << "it stops at its end";
  m_pSkeleton->SetLoop(1);
  EXPECT_EQ(m_pSkeleton->GetTime(), 3.0);
  m_pSkeleton->Advance(1.0);
  EXPECT_EQ(m_pSkeleton->GetTime(), 1.0);
  m_pSkeleton->Advance(-7.5);
  EXPECT_EQ(m_pSkeleton->GetTime(), 2.5) << "loops run backwards as well";
  SetKeys(1, {Key(2.0, {}), Key(3.0, {})});
  EXPECT_EQ(m_pSkeleton->GetTime(), 2.5);
  SetKeys(0, {});
  EXPECT_EQ(m_pSkeleton->GetTime(), 1.0) << "cut to the new length";
}

TEST_F(QXOgreSkeletons, ABoneTakesItsVerticesAlongAndBetweenKeysMovesEvenly) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {}), Key(1.0, {0.5, 0.0, 0.0}), Key(3.0, {0.5, -0.5, 0.0})});
  DrawBound(0.0F, 0.0F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  ExpectRedAt(32.0, 32.0, "at the start");
  m_pSkeleton->SetTime(0.5);
  ExpectRedAt(40.0, 32.0, "half a second on");
  m_pSkeleton->SetTime(2.0);
  ExpectRedAt(48.0, 40.0, "between the second key and the third");
  m_pSkeleton->SetTime(3.0);
  ExpectRedAt(48.0, 48.0, "at the end");
}

TEST_F(QXOgreSkeletons, ABoneTurnsAboutItsOwnPlaceAndTakesItsChildrenAlong) {
  // The elbow is at (0.25, 0), the hand 0.25 farther.
  m_pSkeleton->AddBone(L"arm", -1, Translation(0.25, 0.0, 0.0));
  m_pSkeleton->AddBone(L"hand", 0, Translation(0.25, 0.0, 0.0));
  SetKeys(0, {Key(0.0, {0.25, 0.0, 0.0}), Key(1.0, {0.25, 0.0, 0.0}, Turn(90.0, UP))});
  DrawBound(0.75F, 0.0F, {1, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  ExpectRedAt(56.0, 32.0, "at rest: the key repeats the place of the bone");
  m_pSkeleton->SetTime(1.0);
  // Half a unit from the elbow, now upwards.
  ExpectRedAt(40.0, 16.0, "a quarter turn");
  m_pSkeleton->SetTime(0.5);
  EXPECT_NEAR(FindRed().first, 32.0 + 32.0 * (0.25 + 0.5 * std::sqrt(0.5)), 0.6);
}

TEST_F(QXOgreSkeletons, RotationsTakeTheShorterWayWhateverTheirSigns) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  QXQuaternion4d const q = Turn(80.0, UP);
  QXQuaternion4d const opposite(-q.w, -q.x, -q.y, -q.z);
  QXRenderOperation3D* const pProbe = MakeProbe({1.0, 0.0, 0.0}, 0.0F);
  double const dAngle = 20.0 * std::numbers::pi / 180.0;
  for (QXQuaternion4d const& to : {q, opposite}) {
    ASSERT_EQ(SetKeys(0, {Key(0.0, {}), Key(4.0, {}, to)}), 1);
    m_pSkeleton->SetTime(1.0);
    ExpectNear(PlaceOf(pProbe), {std::cos(dAngle), std::sin(dAngle), 0.0}, 1e-12, "a quarter of 80 degrees");
  }
  // A length other than 1 turns alike.
  ASSERT_EQ(SetKeys(0, {Key(0.0, {}), Key(4.0, {}, QXQuaternion4d(5.0 * q.w, 5.0 * q.x, 5.0 * q.y, 5.0 * q.z))}), 1);
  ExpectNear(PlaceOf(pProbe), {std::cos(dAngle), std::sin(dAngle), 0.0}, 1e-12, "five times as long");
  // Half a turn has two ways alike; either is right, and none is in between.
  ASSERT_EQ(SetKeys(0, {Key(0.0, {}), Key(4.0, {}, Turn(180.0, UP))}), 1);
  m_pSkeleton->SetTime(2.0);
  EXPECT_NEAR(std::abs(PlaceOf(pProbe).y), 1.0, 1e-12);
}

TEST_F(QXOgreSkeletons, KeysOfOneTimeAreAJump) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  QXRenderOperation3D* const pProbe = MakeProbe({0.0, 0.0, 0.0}, 0.0F);
  SetKeys(0, {Key(0.0, {}), Key(1.0, {1.0, 0.0, 0.0}), Key(1.0, {5.0, 0.0, 0.0}), Key(2.0, {6.0, 0.0, 0.0})});
  m_pSkeleton->SetTime(0.75);
  ExpectNear(PlaceOf(pProbe), {0.75, 0.0, 0.0}, 1e-12, "before");
  m_pSkeleton->SetTime(1.0);
  ExpectNear(PlaceOf(pProbe), {5.0, 0.0, 0.0}, 1e-12, "there the later one counts");
  m_pSkeleton->SetTime(1.5);
  ExpectNear(PlaceOf(pProbe), {5.5, 0.0, 0.0}, 1e-12, "after");
}

/// Beside the plug-in's way: rotations as matrices by the formula of axis and angle, bones by calls down to the root.
TEST_F(QXOgreSkeletons, RandomSkeletonsMoveAsTheSlowWayDoes) {
  unsigned int const nSeed = 20261121;
  SCOPED_TRACE("seed " + std::to_string(nSeed));
  std::mt19937 random(nSeed);
  auto const number = [&](double dLow, double dHigh) {
    return std::uniform_real_distribution<double>(dLow, dHigh)(random);
  };
  struct Pose {
    double m_dTime;
    QXVector3d m_vecPlace;
    QXVector3d m_vecAxis;
    double m_dAngle;
    double m_dScale;
  };
  struct Bone {
    int m_nParent;
    QXMatrix4d m_matRest;
    Pose m_From, m_To;
  };
  auto const matrix = [](QXVector3d const& place, QXVector3d const& a, double dAngle, double dScale) {
    double const c = std::cos(dAngle);
    double const s = std::sin(dAngle);
    double const t = 1.0 - c;
    double const r[3][3] = {{t * a.x * a.x + c, t * a.x * a.y - s * a.z, t * a.x * a.z + s * a.y},
        {t * a.x * a.y + s * a.z, t * a.y * a.y + c, t * a.y * a.z - s * a.x},
        {t * a.x * a.z - s * a.y, t * a.y * a.z + s * a.x, t * a.z * a.z + c}};
    QXMatrix4d mat;
    // Row vectors: the transposed of the usual form.
    for (int i = 0; i < 3; ++i)
      for (int k = 0; k < 3; ++k) mat[i][k] = r[k][i] * dScale;
    mat.SetTrans(place);
    return mat;
  };
  for (int nRound = 0; nRound < 20; ++nRound) {
    m_pSkeleton = Make();
    std::vector<Bone> arrBones(static_cast<std::size_t>(random() % 6 + 1));
    for (std::size_t i = 0; i < arrBones.size(); ++i) {
      Bone& bone = arrBones[i];
      bone.m_nParent = static_cast<int>(random() % (i + 1)) - 1;
      QXVector3d axis(number(-1.0, 1.0), number(-1.0, 1.0), number(0.1, 1.0));
      axis.Normalize();
      bone.m_matRest =
          matrix({number(-2.0, 2.0), number(-2.0, 2.0), number(-2.0, 2.0)}, axis, number(-3.0, 3.0), number(0.5, 2.0));
      // Both keys turn about one axis, so that what lies between them is known without quaternions.
      bone.m_From = {
          0.0, {number(-2.0, 2.0), number(-2.0, 2.0), number(-2.0, 2.0)}, axis, number(-1.4, 1.4), number(0.5, 2.0)};
      bone.m_To = bone.m_From;
      bone.m_To.m_dTime = 2.0;
      bone.m_To.m_vecPlace = {number(-2.0, 2.0), number(-2.0, 2.0), number(-2.0, 2.0)};
      bone.m_To.m_dAngle = number(-1.4, 1.4);
      bone.m_To.m_dScale = number(0.5, 2.0);
      ASSERT_EQ(m_pSkeleton->AddBone(L"bone", bone.m_nParent, bone.m_matRest), static_cast<int>(i));
      std::vector<QXBoneKey> arrKeys;
      for (Pose const* const p : {&bone.m_From, &bone.m_To})
        arrKeys.push_back(Key(p->m_dTime, p->m_vecPlace, Turn(p->m_dAngle * 180.0 / std::numbers::pi, p->m_vecAxis),
            {p->m_dScale, p->m_dScale, p->m_dScale}));
      ASSERT_EQ(SetKeys(static_cast<int>(i), arrKeys), 1);
    }
    double const dTime = number(0.0, 2.0);
    m_pSkeleton->SetTime(dTime);
    double const f = dTime / 2.0;
    auto const mean = [f](double a, double b) { return a + (b - a) * f; };
    std::function<QXMatrix4d(std::size_t, bool)> const place = [&](std::size_t i, bool bRest) {
      Bone const& bone = arrBones[i];
      Pose const& a = bone.m_From;
      Pose const& b = bone.m_To;
      QXMatrix4d const matOwn =
          bRest ? bone.m_matRest
                : matrix({mean(a.m_vecPlace.x, b.m_vecPlace.x), mean(a.m_vecPlace.y, b.m_vecPlace.y),
                             mean(a.m_vecPlace.z, b.m_vecPlace.z)},
                      a.m_vecAxis, mean(a.m_dAngle, b.m_dAngle), mean(a.m_dScale, b.m_dScale));
      return bone.m_nParent < 0 ? matOwn : matOwn * place(static_cast<std::size_t>(bone.m_nParent), bRest);
    };
    for (std::size_t i = 0; i < arrBones.size(); ++i) {
      QXVector3d const vecPoint(0.5, -0.25, 1.0);
      QXRenderOperation3D* const pProbe = MakeProbe(vecPoint, static_cast<float>(i));
      QXVector3d const vecExpected = vecPoint.MultiplyMatrix(place(i, true).Invert()).MultiplyMatrix(place(i, false));
      ExpectNear(PlaceOf(pProbe), vecExpected, 1e-9 * (1.0 + vecExpected.Length()),
          "round " + std::to_string(nRound) + ", bone " + std::to_string(i));
      pProbe->SetSkeletonAnimation(nullptr);
    }
  }
}

TEST_F(QXOgreSkeletons, WeightsShareAVertexAndNeedNoSumOfOne) {
  for (int i = 0; i < 2; ++i) m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {0.5, 0.0, 0.0})});
  SetKeys(1, {Key(0.0, {0.0, 0.5, 0.0})});
  QXRenderOperation3D* p = DrawBound(0.0F, 0.0F, {0, 1, 0, 0}, {0.5F, 0.5F, 0.0F, 0.0F}, m_pSkeleton.get());
  ExpectRedAt(40.0, 24.0, "halves");
  p->SetVisible(0);
  p = DrawBound(0.0F, 0.0F, {0, 1, 0, 0}, {6.0F, 2.0F, 0.0F, 0.0F}, m_pSkeleton.get());
  ExpectRedAt(44.0, 28.0, "three quarters and one, of eight");
  p->SetVisible(0);
  DrawBound(0.0F, 0.0F, {1, 0, 1, 1}, {0.25F, 0.5F, 0.25F, 0.0F}, m_pSkeleton.get());
  ExpectRedAt(40.0, 24.0, "a bone that is named twice counts twice");
}

TEST_F(QXOgreSkeletons, WhatCannotCountDoesNot) {
  float const fNone = std::numeric_limits<float>::quiet_NaN();
  float const fInfinity = std::numeric_limits<float>::infinity();
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {0.5, 0.0, 0.0})});
  struct Case {
    std::array<float, 4> m_arrBones;
    std::array<float, 4> m_arrWeights;
    double m_dX;
  };
  Case const arrCases[] = {
      {{0, 1, 0, 0}, {1, 9, 0, 0}, 48.0},                   // there is no bone 1
      {{1, 0, 0, 0}, {1, 0, 0, 0}, 32.0},                   // nothing is left: at rest
      {{0, -1, -7, 0}, {1, 9, 9, 0}, 48.0},                 // below 0
      {{0, fNone, fInfinity, 1.0e9F}, {1, 9, 9, 9}, 48.0},  // no numbers of bones
      {{0, 0, 0, 0}, {1, -3, fNone, fInfinity}, 48.0},      // no weights
      {{0, 0, 0, 0}, {0, 0, 0, 0}, 32.0},                   // none at all
  };
  for (Case const& c : arrCases) {
    QXRenderOperation3D* const p = DrawBound(0.0F, 0.0F, c.m_arrBones, c.m_arrWeights, m_pSkeleton.get());
    ExpectRedAt(c.m_dX, 32.0, ("case " + std::to_string(&c - arrCases)).c_str());
    p->SetVisible(0);
  }
}

TEST_F(QXOgreSkeletons, VerticesWithoutBonesStayWhereTheyAre) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {0.5, 0.0, 0.0})});
  QXRenderOperation3D* const p = DrawSquare(-0.0625F, -0.0625F, 0.0625F, 0.0625F, 0.0F, RED);
  p->SetSkeletonAnimation(m_pSkeleton.get());
  EXPECT_EQ(p->GetSkeletonAnimation(), m_pSkeleton.get());
  ExpectRedAt(32.0, 32.0, "a drawable that does not say what moves it");
}

TEST_F(QXOgreSkeletons, WithoutASkeletonAnymoreVerticesGoBack) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {0.5, 0.0, 0.0})});
  QXRenderOperation3D* const p = DrawBound(0.0F, 0.0F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  ExpectRedAt(48.0, 32.0, "moved");
  p->SetSkeletonAnimation(nullptr);
  EXPECT_EQ(p->GetSkeletonAnimation(), nullptr);
  ExpectRedAt(32.0, 32.0, "at rest");
  p->SetSkeletonAnimation(m_pSkeleton.get());
  ExpectRedAt(48.0, 32.0, "moved again");
  m_pSkeleton.reset();
  EXPECT_EQ(p->GetSkeletonAnimation(), nullptr);
  ExpectRedAt(32.0, 32.0, "the skeleton has died");
}

TEST_F(QXOgreSkeletons, RaysMeetVerticesWhereTheyAreEvenIfNoCameraSawThem) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {0.5, 0.0, 0.0})});
  QXRenderOperation3D* const p = DrawBound(0.0F, 0.0F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  auto pMesh = MakeMesh({{-0.1F, -0.1F, 0.0F}, {0.1F, -0.1F, 0.0F}, {0.1F, 0.1F, 0.0F}});
  AddRange<unsigned short>(*pMesh, {0, 1, 2});
  BindAll(*pMesh, {0, 0, 0, 0}, {1, 0, 0, 0});
  QXROInstancePtr const pShared(new QXRenderObjectInstance(pMesh.release(), m_pGraphics3D.get()));
  QXHwInstancingManager& manager = *m_pGraphics3D->GetHwInstancingManager();
  QXInstancing* const pWalkers = manager.CreateInstancing(L"walkers", L"3D");
  ASSERT_EQ(manager.SetSharedMesh(pWalkers, pShared), 1);
  QXMatrix4d const matPlace = Translation(0.0, 4.0, 0.0);
  manager.AddPlacements(pWalkers, &matPlace, 1);
  double dDistance = 0.0;
  unsigned int nPlacement = 0;
  auto const isHit = [&](double x, double y) {
    QXVector3d const vecOrigin(x, y, 3.0);
    return y < 1.0 ? p->Intersect(vecOrigin, {0.0, 0.0, -1.0}, dDistance)
                   : manager.Intersect(pWalkers, vecOrigin, {0.0, 0.0, -1.0}, dDistance, nPlacement);
  };
  for (QXSkeletonAnimation* const pSkeleton : {m_pSkeleton.get(), static_cast<QXSkeletonAnimation*>(nullptr)}) {
    p->SetSkeletonAnimation(pSkeleton);
    pShared->GetRenderOperation3D()->SetSkeletonAnimation(pSkeleton);
    for (double const y : {0.0, 3.98}) {
      EXPECT_EQ(isHit(0.52, y), pSkeleton ? 1 : 0) << y;
      EXPECT_EQ(isHit(0.02, y), pSkeleton ? 0 : 1) << y;
    }
  }
}

TEST_F(QXOgreSkeletons, BoundsFollowTheBonesAndSoDoesCulling) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  QXRenderOperation3D* const p = DrawBound(-3.0F, 0.0F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  EXPECT_EQ(FindRed().first, -1.0) << "beside the picture";
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U);
  SetKeys(0, {Key(0.0, {3.0, 0.0, 0.0}), Key(1.0, {6.0, 0.0, 0.0})});
  ExpectRedAt(32.0, 32.0, "moved into it");
  EXPECT_EQ(p->GetWorldBoundingBox().GetMin(), QXVector3d(-0.0625, -0.0625, 0.0));
  EXPECT_EQ(p->GetWorldBoundingBox().GetMax(), QXVector3d(0.0625, 0.0625, 0.0));
  m_pSkeleton->SetTime(1.0);
  EXPECT_EQ(FindRed().first, -1.0);
  EXPECT_EQ(m_pGraphics3D->GetDrawOperationCount(), 0U) << "out of it on the other side";
  p->SetModelMatrix(Translation(-3.0, 0.0, 0.0));
  ExpectRedAt(32.0, 32.0, "the model matrix comes after the bones");
}

TEST_F(QXOgreSkeletons, BoundsOfTheHostGrowByWhatLeavesThem) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  QXRenderOperation3D* const p = DrawBound(-3.0F, 0.0F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  p->SetBoundingBox(QXBoundingBox({-4.0, -1.0, -1.0}, {-2.0, 1.0, 1.0}));
  SetKeys(0, {Key(0.0, {3.0, 0.0, 0.0})});
  ExpectRedAt(32.0, 32.0, "the host's box is beside the picture");
  EXPECT_EQ(p->GetBoundingBox().GetMin(), QXVector3d(-4.0, -1.0, -1.0));
  EXPECT_EQ(p->GetBoundingBox().GetMax(), QXVector3d(0.0625, 1.0, 1.0));
  p->SetSkeletonAnimation(nullptr);
  EXPECT_EQ(p->GetBoundingBox().GetMax(), QXVector3d(-2.0, 1.0, 1.0));
}

TEST_F(QXOgreSkeletons, BoundsHoldSharedVerticesAndThoseAtRest) {
  for (int i = 0; i < 2; ++i) m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {}, Turn(90.0, UP))});
  SetKeys(1, {Key(0.0, {8.0, 0.0, 0.0})});
  auto const pMesh = MakeMesh({{1.0F, 0.0F, 0.0F}, {2.0F, 0.0F, 0.0F}, {0.0F, 0.0F, -5.0F}});
  Bind(*pMesh, {0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0}, {1, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0});
  QXRenderOperation3D* const p = Draw(*pMesh);
  p->SetSkeletonAnimation(m_pSkeleton.get());
  QXBoundingBox const box = p->GetWorldBoundingBox();
  // (0, 1, 0); between (0, 2, 0) and (10, 0, 0); (0, 0, -5).
  for (QXVector3d const& v : {QXVector3d(0.0, 1.0, 0.0), QXVector3d(5.0, 1.0, 0.0), QXVector3d(0.0, 0.0, -5.0)}) {
    QXBoundingBox grown = box;
    grown.Merge(QXBoundingBox(v, v));
    ExpectNear(grown.GetMin(), box.GetMin(), 1e-12, "inside");
    ExpectNear(grown.GetMax(), box.GetMax(), 1e-12, "inside");
  }
  ExpectNear(box.GetMax(), {10.0, 2.0, 0.0}, 1e-12, "no larger than what each bone moves");
}

TEST_F(QXOgreSkeletons, NormalsTurnAndStaySquareToFaces) {
  m_pTarget->SetSunLightEnable(1);
  m_pTarget->SetAmbientLight(QXColorValue3D(0.0, 0.0, 0.0, 1.0));
  m_pTarget->SetDiffuseLight(QXColorValue3D::White);
  m_pTarget->SetSunPosition({0.0, 0.0, 1000.0});
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  QXVector3d const vecNormal(std::sqrt(0.5), 0.0, std::sqrt(0.5));
  // The normals lean to the right, as those of a roof that would rise to the left.
  auto const pMesh = MakeMesh({{-0.5F, -0.5F, 0.5F, vecNormal}, {0.5F, -0.5F, -0.5F, vecNormal},
                                  {0.5F, 0.5F, -0.5F, vecNormal}, {-0.5F, 0.5F, 0.5F, vecNormal}},
      true);
  BindAll(*pMesh, {0, 0, 0, 0}, {1, 0, 0, 0});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3});
  Draw(*pMesh)->SetSkeletonAnimation(m_pSkeleton.get());
  auto const expect = [&](QXBoneKey const& key, double dCos, char const* szWhy) {
    ASSERT_EQ(SetKeys(0, {key}), 1);
    EXPECT_NEAR(Frame().At(32, 32).r, 255.0 * dCos, 1.5) << szWhy;
  };
  expect(Key(0.0, {}), std::sqrt(0.5), "45 degrees");
  expect(
      Key(0.0, {}, Turn(-30.0, QXVector3d(0.0, 1.0, 0.0))), std::cos(15.0 * std::numbers::pi / 180.0), "turned by 30");
  // Three times as high, the roof is steeper: (3, 0, 1) / sqrt(10).
  expect(Key(0.0, {}, QXQuaternion4d::IDENTITY, {1.0, 1.0, 3.0}), 1.0 / std::sqrt(10.0), "steeper");
  expect(Key(0.0, {}, QXQuaternion4d::IDENTITY, {1.0, 1.0, 0.0}), 1.0, "flat: it has an inverse no more");
  expect(Key(0.0, {}, QXQuaternion4d::IDENTITY, {2.0, 2.0, 2.0}), std::sqrt(0.5), "larger");
}

TEST_F(QXOgreSkeletons, MovedVerticesAreRightSixMillionUnitsAway) {
  double const dFar = 6.0e6;
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {0.25, 0.125, 0.0})});
  QXRenderOperation3D* const p = DrawBound(0.0F, 0.0F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  p->SetModelMatrix(Translation(dFar, -dFar, 0.0));
  m_pGraphics3D->SetRelativeOrigin({dFar, -dFar, 0.0});
  m_pCamera->SetPosition(dFar, -dFar, 10.0);
  ExpectRedAt(40.0, 28.0, "by the model matrix");
  EXPECT_EQ(p->GetWorldBoundingBox().GetMin().x, dFar + 0.25 - 0.0625);
  p->SetModelMatrix(QXMatrix4d());
  // The bone itself brings the vertices there, in double.
  SetKeys(0, {Key(0.0, {dFar, -dFar, 0.0})});
  p->SetVisible(0);
  QXRenderOperation3D* const pProbe = MakeProbe({0.5, 0.0, 0.0}, 0.0F);
  EXPECT_EQ(PlaceOf(pProbe).x, dFar + 0.5);
}

TEST_F(QXOgreSkeletons, OneSkeletonMovesManyAndEachKeepsItsGeometryWhenThatChanges) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  SetKeys(0, {Key(0.0, {0.5, 0.0, 0.0})});
  DrawBound(0.0F, 0.5F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  QXRenderOperation3D* const p = DrawBound(0.0F, -0.5F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  ExpectRedAt(48.0, 32.0, "both");
  float const h = 2.0F / 32.0F;
  float const arrPositions[] = {-1.0F - h, -h, 0.0F, -1.0F + h, -h, 0.0F, -1.0F + h, h, 0.0F, -1.0F - h, h, 0.0F};
  EXPECT_EQ(p->UpdatePositions(0, 4, arrPositions), 1);
  // At (0.5, 0.5) and, from (-1, 0) on, at (-0.5, 0).
  ExpectRedAt(32.0, 24.0, "overwritten positions are those at rest");
  p->ClearGeometry();
  ExpectRedAt(48.0, 16.0, "one is left");
  auto const pMesh = MakeMesh({{-h, -h, 0.0F}, {h, -h, 0.0F}, {h, h, 0.0F}, {-h, h, 0.0F}});
  BindAll(*pMesh, {0, 0, 0, 0}, {1, 0, 0, 0});
  AddRange<unsigned short>(*pMesh, {0, 1, 2, 0, 2, 3}, RED);
  p->SetRenderOperationMultiIndex(pMesh.get());
  ExpectRedAt(48.0, 24.0, "new geometry is moved too");
}

TEST_F(QXOgreSkeletons, NumbersOfBonesAreNoPlaceInATexture) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  QXRenderOperation3D* const p = DrawBound(0.0F, 0.0F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  p->SetTexture(0, MakeTexture(1, 1, PF_A8R8G8B8, {0, 0, 0, 255}));
  ExpectRedAt(32.0, 32.0, "a texture needs coordinates");
}

TEST_F(QXOgreSkeletons, PlacesBeyondAllNumbersLeaveVerticesAtRest) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  m_pSkeleton->AddBone(L"b", 0, QXMatrix4d());
  QXVector3d const vecHuge(1.0e200, 1.0e200, 1.0e200);
  SetKeys(0, {Key(0.0, {}, QXQuaternion4d::IDENTITY, vecHuge)});
  SetKeys(1, {Key(0.0, {}, QXQuaternion4d::IDENTITY, vecHuge)});
  DrawBound(0.0F, 0.0F, {1, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  ExpectRedAt(32.0, 32.0, "what no float holds");
}

TEST_F(QXOgreSkeletons, ASkeletonOutlivesItsRenderer) {
  m_pSkeleton->AddBone(L"a", -1, QXMatrix4d());
  DrawBound(0.0F, 0.0F, {0, 0, 0, 0}, {1, 0, 0, 0}, m_pSkeleton.get());
  Frame();
  m_pGraphics3D.reset();
  EXPECT_EQ(SetKeys(0, {Key(0.0, {}), Key(1.0, {1.0, 0.0, 0.0})}), 1);
  m_pSkeleton->SetTime(0.5);
  EXPECT_EQ(m_pSkeleton->GetTime(), 0.5);
}

}  // namespace QXC
