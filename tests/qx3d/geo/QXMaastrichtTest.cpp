/// @file
/// The one city of these tests: read whole, if scripts/setup has fetched it.
#include <apps/qx3d/QXWholeFile.h>
#include <apps/qx3d/geo/QXCityGml.h>
#include <apps/qx3d/geo/QXFootprintModel.h>
#include <apps/qx3d/geo/QXGeoFile.h>
#include <apps/qx3d/geo/QXGeoNames.h>

#include <QxGraphics3D/frame/foundation/fileparser/ModelDataInfo.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>

namespace QXApp {
namespace {

std::string const strPath = QX_SOURCE_DIR "/build/samples/Maastricht_GML_20130924.gml";

TEST(QXMaastricht, CutAnywhereItIsToldAndNothingIsLeft) {
  ASSERT_TRUE(std::filesystem::exists(strPath)) << "scripts/setup test fetches the file";
  std::string strBytes;
  ASSERT_EQ(ReadWholeFile(strPath, 1024, "file", strBytes), "");
  std::size_t const nWhole = strBytes.rfind('>');
  for (std::size_t const nSize : {nWhole, nWhole / 3, nWhole / 40, nWhole / 1000, nWhole / 100000}) {
    QXSceneProblems problems(strPath);
    QXSceneProblems warnings(strPath);
    QXGeoData const data =
        ParseCityGml(std::string_view(strBytes).substr(0, nSize), {"tekst", "hoek"}, problems, warnings);
    EXPECT_EQ(problems.GetLines().size(), 1u) << nSize;
    EXPECT_TRUE(data.m_vecPoints.empty() && data.m_vecFootprints.empty()) << nSize;
  }
}

TEST(QXMaastricht, StreetsAndBuildingsAreAllThere) {
  ASSERT_TRUE(std::filesystem::exists(strPath)) << "scripts/setup test fetches the file";
  std::vector<std::string> vecProblems;
  std::vector<std::string> vecWarnings;
  auto const start = std::chrono::steady_clock::now();
  QXGeoData const data = ReadGeoFile(strPath, GetGeoNames(strPath), vecProblems, vecWarnings);
  auto const middle = std::chrono::steady_clock::now();
  EXPECT_THAT(vecProblems, testing::IsEmpty());
  EXPECT_THAT(vecWarnings, testing::IsEmpty());
  ASSERT_EQ(data.m_vecPoints.size(), 158u);
  ASSERT_EQ(data.m_vecFootprints.size(), 2592u);
  EXPECT_EQ(data.m_vecPoints[0].m_strText, "Parkweg");
  EXPECT_EQ(data.m_vecPoints[0].m_vecPosition, QXC::QXVector3d(176772.697, 316786.469, 0.0));
  EXPECT_EQ(data.m_vecPoints[0].m_dAngle, 79.0108799485405);
  std::string strWarning;
  auto const pModel = MakeFootprintModel(data.m_vecFootprints, QXC::QXVector3d(), strWarning);
  auto const end = std::chrono::steady_clock::now();
  EXPECT_EQ(strWarning, "");
  ASSERT_NE(pModel, nullptr);
  EXPECT_EQ(pModel->GetBoundingBox().m_dMin[2], 0.0);
  EXPECT_EQ(pModel->GetBoundingBox().m_dMax[2], 12.0);
  std::printf("read in %.3f s, %u triangles in %.3f s\n", std::chrono::duration<double>(middle - start).count(),
      pModel->GetTriangleCount(), std::chrono::duration<double>(end - middle).count());
}

}  // namespace
}  // namespace QXApp
