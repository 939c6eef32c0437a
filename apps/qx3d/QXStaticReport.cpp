#include <apps/qx3d/QXStaticReport.h>

#include <apps/qx3d/QXMessage.h>
#include <apps/qx3d/QXStaticFile.h>
#include <apps/qx3d/QXStaticWalk.h>

#include <QxGraphics3D/frame/foundation/stream/QXFileStream.h>

#include <cstdio>

namespace QXApp {

namespace {

constexpr char const* ListNames[] = {"32-bit", "16-bit", "typed 32-bit", "typed 16-bit"};

/// Buckets of a list, and passes and textures of a bucket, that are printed; the others are counted.
constexpr std::size_t MaxShown = 20;

void PrintLine(char const* szWhat, std::string const& strText) {
  std::printf("%-18s %s\n", szWhat, MakeOneLine(strText).c_str());
}

std::string Print(double dValue) {
  char szText[32];
  std::snprintf(szText, sizeof szText, "%.9g", dValue);
  return szText;
}

std::string Print(QXC::QXVector3d const& vec) {
  return Print(vec.x) + ", " + Print(vec.y) + ", " + Print(vec.z);
}

std::string Quote(std::string const& strText) {
  return strText.empty() ? "no pass" : "'" + strText + "'";
}

void PrintMore(std::size_t nCount) {
  if (nCount > MaxShown) PrintLine("", "  and " + std::to_string(nCount - MaxShown) + " more");
}

void PrintVertices(QXStaticBucket const& bucket) {
  std::string strText = std::to_string(bucket.m_nVertices) + " of " + std::to_string(bucket.m_nVertexDim) + " numbers";
  if (bucket.m_nNormals > 0) strText += ", with normals";
  if (bucket.m_nColors > 0) strText += ", with colours";
  for (std::size_t i = 0; i < bucket.m_vecUnitDims.size(); ++i)
    strText += ", unit " + std::to_string(i) + " of " + std::to_string(bucket.m_vecUnitDims[i]);
  PrintLine("  vertices", strText);
  if (bucket.m_Bounds.IsNULL() == 0)
    PrintLine("  bounds", Print(bucket.m_Bounds.GetMin()) + " to " + Print(bucket.m_Bounds.GetMax()));
}

void PrintPass(QXStaticPass const& pass) {
  std::string strText = "  pass " + Quote(pass.m_strKey);
  if (!pass.m_strVertexProgram.empty())
    strText += ", " + pass.m_strVertexProgram + " with " + pass.m_strFragmentProgram;
  PrintLine("", strText);
  for (std::size_t i = 0; i < pass.m_vecTextures.size() && i < MaxShown; ++i)
    PrintLine("", "    texture " + pass.m_vecTextures[i]);
  PrintMore(pass.m_vecTextures.size());
}

void PrintBucket(QXStaticBucket const& bucket, int nList) {
  PrintLine("bucket", std::string(ListNames[nList]) + " list, " + (bucket.m_nIndexType == 1 ? "32" : "16") +
                          "-bit indices, type " + std::to_string(bucket.m_nType) + ", bytes " +
                          std::to_string(bucket.m_nOffset) + " to " + std::to_string(bucket.m_nEnd));
  PrintVertices(bucket);
  for (std::size_t i = 0; i < bucket.m_vecRanges.size() && i < MaxShown; ++i) {
    QXStaticRange const& range = bucket.m_vecRanges[i];
    PrintLine(i == 0 ? "  indices" : "", "level " + std::to_string(range.m_nLevel) + ", " +
                                             std::to_string(range.m_nIndices) + " of " +
                                             std::to_string(range.m_nWidth) + " bytes, " + Quote(range.m_strPass));
  }
  PrintMore(bucket.m_vecRanges.size());
  PrintLine("  passes", std::to_string(bucket.m_vecPasses.size()));
  for (std::size_t i = 0; i < bucket.m_vecPasses.size() && i < MaxShown; ++i) PrintPass(bucket.m_vecPasses[i]);
  PrintMore(bucket.m_vecPasses.size());
  PrintLine("  sub-objects", std::to_string(bucket.m_nSubObjects));
}

void PrintBuckets(std::vector<QXStaticBucket> const& vecBuckets, int nList) {
  for (std::size_t i = 0; i < vecBuckets.size() && i < MaxShown; ++i) PrintBucket(vecBuckets[i], nList);
  if (vecBuckets.size() > MaxShown)
    PrintLine("", "and " + std::to_string(vecBuckets.size() - MaxShown) + " more of the " + ListNames[nList] + " list");
}

void PrintContents(std::string const& strPath, QXStaticContents const& contents) {
  PrintLine("file", strPath);
  PrintLine("size", std::to_string(contents.m_nSize) + " bytes");
  PrintLine("version", Print(contents.m_dVersion));
  std::vector<std::string> vecProblems;
  QXC::QXVector3d const vecPlace = ReadStaticPlace(strPath, vecProblems);
  PrintLine("placed at", vecProblems.empty() ? Print(vecPlace) : vecProblems[0]);
  PrintLine("identifiers", std::to_string(contents.m_nIDs));
  std::string strLists;
  for (int i = 0; i < 4; ++i)
    strLists += (i == 0 ? "" : ", ") + std::to_string(contents.m_vecBuckets[i].size()) + " " + ListNames[i];
  PrintLine("buckets", strLists);
  for (int i = 0; i < 4; ++i) PrintBuckets(contents.m_vecBuckets[i], i);
  PrintLine("textures", std::to_string(contents.m_vecTextures.size()));
  for (std::size_t i = 0; i < contents.m_vecTextures.size() && i < MaxShown; ++i)
    PrintLine("", "  " + contents.m_vecTextures[i].m_strName + ", of " +
                      std::to_string(contents.m_vecTextures[i].m_nSpheres) +
                      (contents.m_vecTextures[i].m_nSpheres == 1 ? " object" : " objects"));
  PrintMore(contents.m_vecTextures.size());
}

}  // namespace

std::string PrintStatic(std::string const& strPath) {
  std::string strReason = CheckStaticFile(strPath);
  if (!strReason.empty()) return strReason;
  QXC::QXFileStream stream;
  if (stream.OpenForReading(QXC::QdcUnicodeString::FromUTF8(strPath.c_str())) == 0)
    return "the file cannot be read; change its permissions";
  QXStaticContents const contents = WalkStatic(stream);
  PrintContents(strPath, contents);
  if (!contents.m_strFault.empty()) return DescribeFault(contents) + "; bake it again";
  PrintLine("verified", "every count, index and position");
  return std::string();
}

}  // namespace QXApp
