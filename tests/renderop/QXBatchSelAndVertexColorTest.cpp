#include <utility>

#include <gtest/gtest.h>

#include <QxGraphics3D/renderop/QXBatchSelAndVertexColor.h>

namespace QXC {
namespace {

QXBatchSelAndVertexColor MakeFilled() {
  QXBatchSelAndVertexColor state;
  state.m_mapSelections[3] = 1;
  state.m_mapSelections[1] = 0;
  state.m_mapVertexColors[7] = 0xFF00FF00u;
  return state;
}

void ExpectFilled(QXBatchSelAndVertexColor const& state) {
  ASSERT_EQ(state.m_mapSelections.size(), 2u);
  EXPECT_EQ(state.m_mapSelections.begin()->first, 1u) << "ordered by identifier";
  EXPECT_EQ(state.m_mapSelections.at(3), 1);
  ASSERT_EQ(state.m_mapVertexColors.size(), 1u);
  EXPECT_EQ(state.m_mapVertexColors.at(7), 0xFF00FF00u);
}

TEST(QXBatchSelAndVertexColor, FreshIsEmpty) {
  QXBatchSelAndVertexColor const state;
  EXPECT_TRUE(state.m_mapSelections.empty());
  EXPECT_TRUE(state.m_mapVertexColors.empty());
}

TEST(QXBatchSelAndVertexColor, CopiesAndMovesCarryBothMaps) {
  QXBatchSelAndVertexColor source = MakeFilled();
  QXBatchSelAndVertexColor copy(source);
  ExpectFilled(copy);
  ExpectFilled(source);
  QXBatchSelAndVertexColor assigned;
  assigned.m_mapSelections[99] = 1;
  assigned = source;
  ExpectFilled(assigned);
  QXBatchSelAndVertexColor const moved(std::move(copy));
  ExpectFilled(moved);
  QXBatchSelAndVertexColor moveAssigned;
  moveAssigned.m_mapVertexColors[99] = 1;
  moveAssigned = std::move(assigned);
  ExpectFilled(moveAssigned);
}

TEST(QXBatchSelAndVertexColor, CopyIsIndependent) {
  QXBatchSelAndVertexColor source = MakeFilled();
  QXBatchSelAndVertexColor const copy(source);
  source.m_mapSelections.clear();
  source.m_mapVertexColors[7] = 0;
  ExpectFilled(copy);
}

}  // namespace
}  // namespace QXC
