#include <QxGraphics3D/frame/foundation/toolkit/detail/ktx2/QXEtc1s.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using QXC::detail::QXEtc1sEndpoint;
using QXC::detail::UnfoldEtc1sEndpoint;

// Base 132 (5-bit 16) lies far enough from both ends for the tables up to 6 to be seen whole.
TEST(QXEtc1s, SelectorsGoFromDarkestToBrightestByTheTables) {
  int const modifiers[7][2] = {{2, 8}, {5, 17}, {9, 29}, {13, 42}, {18, 60}, {24, 80}, {33, 106}};
  for (unsigned int nTable = 0; nTable < 7; ++nTable) {
    QXEtc1sEndpoint const endpoint = UnfoldEtc1sEndpoint(16, 16, 16, nTable);
    EXPECT_EQ(endpoint.m_Colors[0][0], 132 - modifiers[nTable][1]) << nTable;
    EXPECT_EQ(endpoint.m_Colors[1][0], 132 - modifiers[nTable][0]) << nTable;
    EXPECT_EQ(endpoint.m_Colors[2][0], 132 + modifiers[nTable][0]) << nTable;
    EXPECT_EQ(endpoint.m_Colors[3][0], std::min(132 + modifiers[nTable][1], 255)) << nTable;
  }
}

TEST(QXEtc1s, WidestTableReachesBothEndsAndStopsThere) {
  QXEtc1sEndpoint const endpoint = UnfoldEtc1sEndpoint(16, 0, 31, 7);
  EXPECT_EQ(endpoint.m_Colors[0][0], 0);
  EXPECT_EQ(endpoint.m_Colors[1][0], 132 - 47);
  EXPECT_EQ(endpoint.m_Colors[2][0], 132 + 47);
  EXPECT_EQ(endpoint.m_Colors[3][0], 255);
  EXPECT_EQ(endpoint.m_Colors[3][1], 183);
  EXPECT_EQ(endpoint.m_Colors[0][2], 255 - 183);
}

TEST(QXEtc1s, ChannelsWidenByTheirUpperBitsAndStayApart) {
  QXEtc1sEndpoint const endpoint = UnfoldEtc1sEndpoint(1, 13, 30, 0);
  EXPECT_EQ(endpoint.m_Colors[2][0], 8 + 2);
  EXPECT_EQ(endpoint.m_Colors[2][1], 107 + 2);
  EXPECT_EQ(endpoint.m_Colors[2][2], 247 + 2);
  for (auto const& color : endpoint.m_Colors) EXPECT_EQ(color[3], 255);
}

}  // namespace
