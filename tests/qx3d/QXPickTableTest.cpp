#include <apps/qx3d/QXPickTable.h>
#include <apps/qx3d/QXSceneNames.h>

#include <gtest/gtest.h>

namespace QXApp {
namespace {

std::string Count(unsigned int i) {
  return "number " + std::to_string(i);
}

TEST(QXPickTable, EachKindHasALayerWhoseObjectsCountFromOne) {
  QXPickTable table;
  unsigned int const nModels = table.Take(QXPickKind::Model, 10, Count);
  unsigned int const nIcon = table.Take(QXPickKind::Icon, 1, Count);
  unsigned int const nMore = table.Take(QXPickKind::Model, 2, Count);
  EXPECT_EQ(nModels, 0x01000001U);
  EXPECT_EQ(nIcon, 0x02000001U);
  EXPECT_EQ(nMore, 0x0100000BU);
  QXPickedThing thing;
  ASSERT_TRUE(table.Find(nModels + 9, thing));
  EXPECT_EQ(thing.m_eKind, QXPickKind::Model);
  EXPECT_EQ(thing.m_nLayer, 1);
  EXPECT_EQ(thing.m_nObject, 10);
  EXPECT_EQ(thing.m_nIndex, 9U);
  EXPECT_EQ(thing.m_strText, "number 9");
  ASSERT_TRUE(table.Find(nMore, thing));
  EXPECT_EQ(thing.m_strText, "number 0");
  ASSERT_TRUE(table.Find(nIcon, thing));
  EXPECT_EQ(thing.m_eKind, QXPickKind::Icon);
}

TEST(QXPickTable, WhatWasNotHandedOutIsNothing) {
  QXPickTable table;
  QXPickedThing thing;
  EXPECT_FALSE(table.Find(1, thing));
  unsigned int const nFirst = table.Take(QXPickKind::Label, 3, Count);
  EXPECT_FALSE(table.Find(0, thing));
  EXPECT_FALSE(table.Find(nFirst - 1, thing));
  EXPECT_TRUE(table.Find(nFirst + 2, thing));
  EXPECT_FALSE(table.Find(nFirst + 3, thing));
  EXPECT_FALSE(table.Find(0xFFFFFFFF, thing));
}

TEST(QXPickTable, AFullLayerIsFollowedByAnother) {
  QXPickTable table;
  EXPECT_EQ(table.Take(QXPickKind::Model, 0xFFFFFF, Count), 0x01000001U);
  EXPECT_EQ(table.Take(QXPickKind::Model, 1, Count), 0x02000001U);
  QXPickedThing thing;
  ASSERT_TRUE(table.Find(0x01FFFFFF, thing));
  EXPECT_EQ(thing.m_nIndex, 0xFFFFFEU);
  ASSERT_TRUE(table.Find(0x02000001, thing));
  EXPECT_EQ(thing.m_nIndex, 0U);
  for (int nLayer = 3; nLayer <= 255; ++nLayer) ASSERT_NE(table.Take(QXPickKind::Model, 0xFFFFFF, Count), 0U) << nLayer;
  EXPECT_EQ(table.Take(QXPickKind::Model, 0xFFFFFF, Count), 0U);
  EXPECT_EQ(table.Take(QXPickKind::Icon, 1, Count), 0U);
}

TEST(QXPickTable, NoneAndTooManyCannotBeNumbered) {
  QXPickTable table;
  EXPECT_EQ(table.Take(QXPickKind::Model, 0, Count), 0U);
  EXPECT_EQ(table.Take(QXPickKind::Model, 0x1000000, Count), 0U);
  EXPECT_EQ(table.Take(QXPickKind::Model, 1, Count), 0x01000001U);
}

TEST(QXSceneNames, TellMeshAndPlaceWhereThereAreSeveral) {
  QXSceneNames names;
  names.m_vecModels = {{"one.obj", 1, 1}, {"many.glb", 3, 7}, {"city.geojson", 9, 1}};
  names.m_mapMeshes[{2, 4}] = "building 5";
  EXPECT_EQ(names.Describe({0, 0, 0}), "one.obj");
  EXPECT_EQ(names.Describe({1, 1, 4}), "many.glb, mesh 2 of 3, place 5 of 7");
  EXPECT_EQ(names.Describe({2, 4, 0}), "city.geojson, building 5");
  names.m_mapMeshes[{0, 0}] = "two\nlines";
  EXPECT_EQ(names.Describe({0, 0, 0}).find('\n'), std::string::npos);
}

}  // namespace
}  // namespace QXApp
