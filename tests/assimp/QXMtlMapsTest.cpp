#include <tests/assimp/QXTestFiles.h>

#include <plugins/assimp/QXMtlMaps.h>

#include <gtest/gtest.h>

namespace QXAssimp {
namespace {

std::string Take(QXMtlMaps& maps, std::string const& strText) {
  std::vector<unsigned char> vecBytes = ToBytes(strText);
  maps.TakeOptions(vecBytes);
  return std::string(vecBytes.begin(), vecBytes.end());
}

TEST(QXMtlMaps, LinesWithoutOptionsStayAsTheyAre) {
  QXMtlMaps maps;
  for (char const* sz : {"", "\n", "newmtl a\r\nKd 1 1 1\r\n map_Kd my wall.png \r\n", "map_Ka -s 2 2 a.png\nmap_Kd"})
    EXPECT_EQ(Take(maps, sz), sz);
  EXPECT_EQ(maps.Find("a"), nullptr);
}

TEST(QXMtlMaps, ScaleAndOffsetAreKeptByTheMaterial) {
  QXMtlMaps maps;
  EXPECT_EQ(Take(maps, "newmtl red wall\nmap_Kd -s 2 3 1 -o 0.25 -0.5 0 my wall.png\nnewmtl b\nmap_Kd -o 1 b.png"),
      "newmtl red wall\nmap_Kd my wall.png\nnewmtl b\nmap_Kd b.png");
  QXMtlTransform const* pTransform = maps.Find("red wall");
  ASSERT_NE(pTransform, nullptr);
  EXPECT_EQ(pTransform->m_fScale[0], 2.0f);
  EXPECT_EQ(pTransform->m_fScale[1], 3.0f);
  EXPECT_EQ(pTransform->m_fOffset[0], 0.25f);
  EXPECT_EQ(pTransform->m_fOffset[1], -0.5f);
  ASSERT_NE(maps.Find("b"), nullptr);
  EXPECT_EQ(maps.Find("b")->m_fOffset[0], 1.0f);
  EXPECT_EQ(maps.Find("b")->m_fOffset[1], 0.0f);
  EXPECT_EQ(maps.Find("b")->m_fScale[1], 1.0f);
  EXPECT_EQ(maps.Find("c"), nullptr);
}

TEST(QXMtlMaps, NameIsNeverTakenForANumber) {
  QXMtlMaps maps;
  EXPECT_EQ(Take(maps, "newmtl a\nmap_Kd -s 2 2 2.png\nnewmtl b\nmap_Kd -s 2 7"),
      "newmtl a\nmap_Kd 2.png\nnewmtl b\nmap_Kd 7");
  EXPECT_EQ(maps.Find("a")->m_fScale[1], 2.0f);
  EXPECT_EQ(maps.Find("b")->m_fScale[0], 2.0f);
  EXPECT_EQ(maps.Find("b")->m_fScale[1], 1.0f);
}

TEST(QXMtlMaps, OtherOptionsGoAndClampStays) {
  QXMtlMaps maps;
  EXPECT_EQ(Take(maps, "newmtl a\nmap_Kd -blendu off -mm 0 1 -t 1 1 1 -clamp on -imfchan l -bm 0.5 a.png"),
      "newmtl a\nmap_Kd -clamp on a.png");
  EXPECT_EQ(Take(maps, "map_Kd -clamp off a.png\n"), "map_Kd a.png\n");
  EXPECT_EQ(maps.Find("a"), nullptr);
}

TEST(QXMtlMaps, KeysAreReadInAnyCase) {
  QXMtlMaps maps;
  EXPECT_EQ(Take(maps, "newmtl a\nmap_kd -s 2 2 a.png\nnewmtl b\nMAP_KD -o 1 b.png\nKD 1 1 1"),
      "newmtl a\nmap_Kd a.png\nnewmtl b\nmap_Kd b.png\nKD 1 1 1");
  EXPECT_NE(maps.Find("a"), nullptr);
  EXPECT_NE(maps.Find("b"), nullptr);
  EXPECT_FALSE(maps.IsColorless("b"));
}

TEST(QXMtlMaps, MaterialsWithoutAColorAreKnown) {
  QXMtlMaps maps;
  Take(maps, "newmtl a\nKa 1 1 1\nmap_Kd a.png\nnewmtl b\nmap_Kd b.png\n  Kd 0.5 0.5 0.5\nnewmtl b\nNs 10\n");
  EXPECT_TRUE(maps.IsColorless("a"));
  EXPECT_FALSE(maps.IsColorless("b"));
  EXPECT_FALSE(maps.IsColorless("c"));
}

TEST(QXMtlMaps, BrokenLinesEnd) {
  QXMtlMaps maps;
  EXPECT_EQ(Take(maps, "map_Kd -s"), "map_Kd ");
  EXPECT_EQ(Take(maps, "map_Kd -o nan inf a.png"), "map_Kd nan inf a.png");
  EXPECT_EQ(Take(maps, "map_Kd - - -"), "map_Kd ");
}

}  // namespace
}  // namespace QXAssimp
