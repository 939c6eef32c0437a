// One border of a stroked outline beside FreeType's stroker, to the last bit.
#include <QxGraphics3D/text/detail/QXBorderStroker.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace QXC::detail {
namespace {

struct Border {
  bool m_bDone = false;
  std::vector<FT_Pos> m_arrCoordinates;
  std::vector<char> m_arrTags;
  std::vector<std::size_t> m_arrEnds;

  bool operator==(Border const&) const = default;
};

struct Shape {
  std::vector<FT_Vector> m_arrPoints;
  std::vector<char> m_arrTags;
  std::vector<short> m_arrEnds;

  void Add(FT_Pos x, FT_Pos y, int nTag = FT_CURVE_TAG_ON) {
    m_arrPoints.push_back({x, y});
    m_arrTags.push_back(static_cast<char>(nTag));
  }
  void EndContour() { m_arrEnds.push_back(static_cast<short>(m_arrPoints.size() - 1)); }
  FT_Outline Get() {
    FT_Outline outline{};
    outline.n_contours = static_cast<short>(m_arrEnds.size());
    outline.n_points = static_cast<short>(m_arrPoints.size());
    outline.points = m_arrPoints.data();
    outline.tags = m_arrTags.data();
    outline.contours = m_arrEnds.data();
    return outline;
  }
  std::string Print() const {
    std::string text;
    for (std::size_t i = 0; i < m_arrPoints.size(); ++i) {
      text += std::to_string(m_arrPoints[i].x) + "," + std::to_string(m_arrPoints[i].y) + ":" +
              std::to_string(m_arrTags[i]) + " ";
      if (std::find(m_arrEnds.begin(), m_arrEnds.end(), static_cast<short>(i)) != m_arrEnds.end()) text += "| ";
    }
    return text;
  }
};

class QXBorderStrokerTest : public testing::Test {
protected:
  QXBorderStrokerTest() { FT_Init_FreeType(&m_pLibrary); }
  ~QXBorderStrokerTest() override { FT_Done_FreeType(m_pLibrary); }

  Border Reference(FT_Outline outline, FT_StrokerBorder eBorder) {
    FT_Stroker stroker = nullptr;
    FT_Stroker_New(m_pLibrary, &stroker);
    FT_Stroker_Set(stroker, 64, FT_STROKER_LINECAP_ROUND, FT_STROKER_LINEJOIN_ROUND, 0);
    Border border;
    border.m_bDone = FT_Stroker_ParseOutline(stroker, &outline, 0) == 0;
    if (border.m_bDone) {
      FT_UInt points = 0;
      FT_UInt contours = 0;
      FT_Stroker_GetBorderCounts(stroker, eBorder, &points, &contours);
      Shape shape;
      shape.m_arrPoints.resize(points);
      shape.m_arrTags.resize(points);
      shape.m_arrEnds.resize(contours);
      FT_Outline stroked = shape.Get();
      stroked.n_points = 0;
      stroked.n_contours = 0;
      FT_Stroker_ExportBorder(stroker, eBorder, &stroked);
      for (FT_Vector const& point : shape.m_arrPoints) AddPoint(border, point);
      border.m_arrTags = shape.m_arrTags;
      border.m_arrEnds.assign(shape.m_arrEnds.begin(), shape.m_arrEnds.end());
    }
    FT_Stroker_Done(stroker);
    return border;
  }

  Border Ours(FT_Outline const& outline, FT_StrokerBorder eBorder) {
    Border border;
    border.m_bDone = m_Stroker.Stroke(outline, eBorder);
    if (!border.m_bDone) return border;
    for (FT_Vector const& point : m_Stroker.GetPoints()) AddPoint(border, point);
    border.m_arrTags = m_Stroker.GetTags();
    border.m_arrEnds = m_Stroker.GetEnds();
    return border;
  }

  void Compare(Shape& shape) {
    for (FT_StrokerBorder const side : {FT_STROKER_BORDER_LEFT, FT_STROKER_BORDER_RIGHT}) {
      Border const expected = Reference(shape.Get(), side);
      ASSERT_TRUE(Ours(shape.Get(), side) == expected) << "border " << side << ": " << shape.Print();
      m_nPoints += expected.m_arrTags.size();
      m_nRefused += !expected.m_bDone;
    }
  }

  static void AddPoint(Border& border, FT_Vector const& point) {
    border.m_arrCoordinates.push_back(point.x);
    border.m_arrCoordinates.push_back(point.y);
  }

  FT_Library m_pLibrary = nullptr;
  QXBorderStroker m_Stroker;
  std::size_t m_nPoints = 0;
  int m_nRefused = 0;
};

TEST_F(QXBorderStrokerTest, SquareOfEitherDirectionIsFreeTypes) {
  for (bool const reverse : {false, true}) {
    Shape shape;
    std::vector<FT_Vector> corners = {{0, 0}, {640, 0}, {640, 640}, {0, 640}};
    if (reverse) std::reverse(corners.begin(), corners.end());
    for (FT_Vector const& corner : corners) shape.Add(corner.x, corner.y);
    shape.EndContour();
    ASSERT_NO_FATAL_FAILURE(Compare(shape));
  }
  EXPECT_GT(m_nPoints, 0u);
}

TEST_F(QXBorderStrokerTest, NothingAndSinglePointsHaveNoBorder) {
  Shape shape;
  ASSERT_NO_FATAL_FAILURE(Compare(shape));
  shape.Add(64, 64);
  shape.EndContour();
  ASSERT_NO_FATAL_FAILURE(Compare(shape));
  for (int i = 0; i < 3; ++i) shape.Add(100, 100);
  shape.EndContour();
  ASSERT_NO_FATAL_FAILURE(Compare(shape));
  EXPECT_EQ(m_nPoints, 0u);
}

TEST_F(QXBorderStrokerTest, LineThereAndBackIsFreeTypes) {
  Shape shape;
  shape.Add(0, 0);
  shape.Add(1000, 0);
  shape.EndContour();
  shape.Add(0, 500);
  shape.Add(900, 500);
  shape.Add(300, 500);
  shape.EndContour();
  ASSERT_NO_FATAL_FAILURE(Compare(shape));
}

TEST_F(QXBorderStrokerTest, OutlinesThatAreNoneAreRefused) {
  struct {
    std::vector<int> m_arrTags;
  } const cases[] = {{{2, 2, 1}}, {{1, 2, 1}}, {{1, 2}}, {{1, 0, 2, 1}}, {{1, 1, 2}}, {{0, 2, 0}}};
  for (auto const& c : cases) {
    Shape shape;
    for (std::size_t i = 0; i < c.m_arrTags.size(); ++i) {
      FT_Pos const place = 100 * static_cast<FT_Pos>(i);
      shape.Add(place, place * place % 700, c.m_arrTags[i]);
    }
    shape.EndContour();
    m_nRefused = 0;
    ASSERT_NO_FATAL_FAILURE(Compare(shape));
    EXPECT_EQ(m_nRefused, 2) << shape.Print();
  }
}

// Coarse grids make points coincide and lines run back on themselves; fine ones make segments too short to have a
// direction.
TEST_F(QXBorderStrokerTest, RandomOutlinesAreFreeTypes) {
  unsigned int const seed = 4711;
  std::cout << "seed " << seed << '\n';
  std::mt19937 random(seed);
  auto const below = [&random](unsigned int nLimit) { return static_cast<int>(random() % nLimit); };
  for (int round = 0; round < 20000; ++round) {
    int const range = 1 << (1 + below(13));
    int const grid = 1 << below(7);
    int const curves = below(4);
    Shape shape;
    for (int contour = below(3); contour >= 0; --contour) {
      for (int left = 1 + below(9); left > 0; --left) {
        auto const place = [&] { return FT_Pos{below(static_cast<unsigned int>(range))} * grid - range * grid / 2; };
        int const kind = below(3) < curves ? 1 + below(2) : 0;
        if (kind == 1) shape.Add(place(), place(), FT_CURVE_TAG_CONIC);
        if (kind == 2 && below(50) != 0) {
          if (left == 1 && shape.m_arrPoints.empty()) shape.Add(place(), place());
          shape.Add(place(), place(), FT_CURVE_TAG_CUBIC);
          shape.Add(place(), place(), FT_CURVE_TAG_CUBIC);
        }
        if (kind != 1 || below(3) == 0) shape.Add(place(), place());
      }
      shape.EndContour();
    }
    ASSERT_NO_FATAL_FAILURE(Compare(shape)) << "round " << round;
  }
  EXPECT_GT(m_nPoints, 500000u);
  EXPECT_GT(m_nRefused, 100);
}

}  // namespace
}  // namespace QXC::detail
