/// @file
/// Results down to the last bit, recorded as digests: every compiler and build type must reach the same ones. A fused
/// multiply-add, a reordered sum or a library function of the compiler's own would show here. Sine and its relatives
/// stay out, since the C library itself picks another version of them on another processor. A deliberate change of
/// the arithmetic changes a digest: record the new one once all compilers and build types agree on it.
#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QxGraphics3D/All.h>

namespace {

/// FNV-1a over the bits of what it is given.
class QXDigest {
public:
  void Add(std::uint64_t nValue) {
    for (int nByte = 0; nByte < 8; ++nByte) {
      m_nState = (m_nState ^ ((nValue >> (8 * nByte)) & 0xFF)) * 0x100000001B3ULL;
    }
  }
  void Add(double dValue) { Add(std::bit_cast<std::uint64_t>(dValue)); }
  void Add(QXC::QXVector3d const& vector) {
    Add(vector.x);
    Add(vector.y);
    Add(vector.z);
  }
  void Add(QXC::QXQuaternion4d const& quaternion) {
    Add(quaternion.w);
    Add(QXC::QXVector3d(quaternion.x, quaternion.y, quaternion.z));
  }
  void Add(QXC::QXMatrix4d const& matrix) {
    for (auto const& row : matrix.m) {
      for (double const dValue : row) Add(dValue);
    }
  }
  std::string Text() const {
    char szText[17];
    std::snprintf(szText, sizeof szText, "%016llx", static_cast<unsigned long long>(m_nState));
    return szText;
  }

private:
  std::uint64_t m_nState = 0xCBF29CE484222325ULL;
};

/// Random doubles that need no rounding on any machine: integers of a linear congruence, scaled by a power of two.
class QXRandom {
public:
  double Next(double dScale) {
    m_nState = m_nState * 6364136223846793005ULL + 1442695040888963407ULL;
    return (static_cast<double>(m_nState >> 32) / 2147483648.0 - 1.0) * dScale;
  }
  QXC::QXVector3d Vector(double dScale) {
    double const dX = Next(dScale);
    double const dY = Next(dScale);
    return {dX, dY, Next(dScale)};
  }
  QXC::QXMatrix4d Matrix(double dScale) {
    QXC::QXMatrix4d matrix;
    for (auto& row : matrix.m) {
      for (double& dValue : row) dValue = Next(dScale);
    }
    return matrix;
  }

private:
  std::uint64_t m_nState = 20261121;
};

constexpr int Rounds = 2000;

TEST(Determinism, MatrixProductsAndInversesAreTheRecordedBits) {
  QXRandom random;
  QXDigest digest;
  for (int nRound = 0; nRound < Rounds; ++nRound) {
    QXC::QXMatrix4d const matA = random.Matrix(1000.0);
    QXC::QXMatrix4d const matB = random.Matrix(3.0);
    digest.Add(matA * matB);
    digest.Add(matA.Invert());
    digest.Add(random.Vector(6378137.0).MultiplyMatrix(matB));
  }
  EXPECT_EQ(digest.Text(), "45053d4f15838168");
}

TEST(Determinism, QuaternionsAreTheRecordedBits) {
  QXRandom random;
  QXDigest digest;
  for (int nRound = 0; nRound < Rounds; ++nRound) {
    // Braces: the order of the four calls is fixed.
    QXC::QXQuaternion4d rotation{random.Next(1.0), random.Next(1.0), random.Next(1.0), random.Next(1.0)};
    digest.Add(rotation.Normalize());
    QXC::QXVector3d arrAxes[3];
    rotation.ToAxes(arrAxes);
    for (auto const& axis : arrAxes) digest.Add(axis);
    digest.Add(rotation * random.Vector(6378137.0));
    digest.Add(rotation * rotation);
  }
  EXPECT_EQ(digest.Text(), "6889b461cb8c6873");
}

TEST(Determinism, CamerasAndWhatTheySeeAreTheRecordedBits) {
  QXRandom random;
  QXDigest digest;
  for (int nRound = 0; nRound < Rounds; ++nRound) {
    QXC::QXCamera camera;
    camera.SetPosition(random.Vector(5000.0));
    camera.LookAt(random.Vector(100.0));
    camera.SetProjectionMatrix(QXC::QXMathEngine::ComputeOrthoMatrix(-900, 900, -700, 700, 1, 9000));
    digest.Add(camera.GetViewMatrix());
    camera.UpdateFrustum();
    for (int nPlane = 0; nPlane < 6; ++nPlane) {
      digest.Add(camera.GetFrustumPlanes()[nPlane].GetDistance(QXC::QXVector3d(1, 2, 3)));
    }
    QXC::QXVector3d const corner = random.Vector(4000.0);
    QXC::QXBoundingBox const box(corner, corner + QXC::QXVector3d(50, 60, 70));
    digest.Add(static_cast<std::uint64_t>(camera.IsVisible(box, 0.0)));
    digest.Add(camera.GetDistFromEye(corner));
  }
  EXPECT_EQ(digest.Text(), "78e5542836626ae3");
}

TEST(Determinism, WindowCoordinatesAreTheRecordedBits) {
  QXRandom random;
  QXDigest digest;
  int const arrViewport[4] = {10, 20, 1280, 720};
  for (int nRound = 0; nRound < Rounds; ++nRound) {
    double arrModel[16];
    double arrProjection[16];
    QXC::QXGraphics3D::MakeRowGLMatrix(arrModel, random.Matrix(2.0));
    QXC::QXGraphics3D::MakeRowGLMatrix(arrProjection, random.Matrix(2.0));
    QXC::QXVector3d window;
    QXC::QXVector3d world;
    digest.Add(static_cast<std::uint64_t>(QXC::QXGraphics3D::Project(
        1, nRound, -3, arrModel, arrProjection, arrViewport, &window.x, &window.y, &window.z)));
    digest.Add(static_cast<std::uint64_t>(QXC::QXGraphics3D::UnProject(
        window.x, window.y, window.z, arrModel, arrProjection, arrViewport, &world.x, &world.y, &world.z)));
    digest.Add(window);
    digest.Add(world);
  }
  EXPECT_EQ(digest.Text(), "eac9afb4d8762dcd");
}

}  // namespace
