#include <apps/qx3d/QXScenePlaces.h>

#include <apps/qx3d/QXSceneValue.h>
#include <apps/qx3d/QXWholeFile.h>
#include <apps/qx3d/geo/QXGeoAreas.h>
#include <apps/qx3d/geo/QXGeoFile.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace QXApp {

namespace {

using QXC::QXVector3d;

/// A million places with all their digits have half of it.
constexpr std::uintmax_t MaxFileMiB = 256;

/// Corners of areas that are looked at for random points, of a whole scene: a few seconds.
constexpr std::size_t MaxCornerLooks = 1000000000;

bool IsShowable(QXVector3d const& vec) {
  for (double const d : {vec.x, vec.y, vec.z})
    if (!(std::abs(d) <= MaxSceneCoordinate)) return false;
  return true;
}

std::string_view TrimLine(std::string_view line) {
  line = line.substr(0, line.find_first_of("#;"));
  std::size_t const nFirst = line.find_first_not_of(" \t\r");
  if (nFirst == std::string_view::npos) return std::string_view();
  return line.substr(nFirst, line.find_last_not_of(" \t\r") + 1 - nFirst);
}

std::string DescribeBadPlace(std::string_view line) {
  std::string strFault = FindLineFault(line);
  QXScenePlace place;
  return strFault.empty() ? ReadPlace(line, place) : strFault;
}

class Loader {
public:
  Loader(QXSceneFile& scene, std::vector<std::string>& vecProblems, std::vector<std::string>& vecWarnings)
      : m_Problems(scene.m_strPath), m_vecProblems(vecProblems), m_vecWarnings(vecWarnings) {}

  void Load(QXSceneInstances& instances, std::function<void(std::string const&)> const& progress) {
    // Whoever mends twenty lines sees those of the further files next.
    if (m_bFull || m_vecProblems.size() >= QXSceneProblems::ms_nMaxKept) return;
    QXRandom random(static_cast<std::uint64_t>(instances.m_nSeed));
    std::size_t const nProblems = m_vecProblems.size();
    if (!instances.m_strPlaces.empty()) {
      progress("reading " + instances.m_strPlaces);
      LoadList(instances);
    }
    if (!instances.m_strPoints.empty()) {
      progress("reading " + instances.m_strPoints);
      LoadPoints(instances, random);
    }
    for (QXScenePlace& place : instances.m_vecPlaces) Complete(instances, random, place);
    std::size_t const nGone = std::erase_if(
        instances.m_vecPlaces, [](QXScenePlace const& place) { return !IsShowable(place.m_vecPosition); });
    if (nGone > 0)
      Warn(instances,
          "instances beyond 1e15, which are left out: " + std::to_string(nGone) + "; give a nearer position");
    bool const bGood = m_vecProblems.size() == nProblems;
    if (bGood && instances.m_vecPlaces.empty())
      m_Problems.Add(instances.m_nLine, "[instances] has no place at all that can be shown; correct its files");
    m_nTotal += instances.m_vecPlaces.size();
    if (m_nTotal > MaxSceneInstances && !m_bFull) {
      m_bFull = true;
      m_Problems.Add(instances.m_nLine, "from here on the scene has more than " + std::to_string(MaxSceneInstances) +
                                            " instances, more than can be shown; leave some out");
    }
  }

  void Finish() {
    for (std::string& strLine : m_Problems.GetLines()) m_vecProblems.push_back(std::move(strLine));
  }

private:
  void LoadList(QXSceneInstances& instances) {
    QXSceneProblems problems(instances.m_strPlaces);
    std::string strBytes;
    std::string const strReason = ReadWholeFile(instances.m_strPlaces, MaxFileMiB, "list of places", strBytes);
    if (strReason.empty())
      ReadPlaces(strBytes, instances.m_vecPlaces, problems);
    else
      problems.Add(0, strReason);
    for (std::string& strLine : problems.GetLines()) m_vecProblems.push_back(std::move(strLine));
  }

  void LoadPoints(QXSceneInstances& instances, QXRandom& random) {
    QXGeoNames names;
    names.m_bPlaces = true;
    names.m_strAngle = instances.m_strHeadingFrom;
    names.m_strScale = instances.m_strScaleFrom;
    names.m_strFeature = instances.m_strFeature;
    names.m_strWhere = instances.m_strWhere;
    names.m_strWhereValue = instances.m_strWhereValue;
    std::vector<std::string> vecProblems;
    std::vector<std::string> vecWarnings;
    QXGeoData const geo = ReadGeoFile(instances.m_strPoints, names, vecProblems, vecWarnings);
    m_vecWarnings.insert(m_vecWarnings.end(), vecWarnings.begin(), vecWarnings.end());
    m_vecProblems.insert(m_vecProblems.end(), vecProblems.begin(), vecProblems.end());
    if (!vecProblems.empty()) return;
    std::size_t const nBefore = instances.m_vecPlaces.size();
    for (QXGeoPoint const& point : geo.m_vecPoints)
      AddPoint(instances, point.m_vecPosition, point.m_bAngle, point.m_dAngle, point.m_dScale);
    for (QXGeoFootprint const& area : geo.m_vecFootprints) AddArea(instances, area, random);
    TellMissing(instances, nBefore);
  }

  static void AddPoint(
      QXSceneInstances& instances, QXVector3d vecPosition, bool bHeading, double dHeading, double dScale) {
    if (instances.m_bZ) vecPosition.z = instances.m_dZ;
    // Data may count turns, too.
    instances.m_vecPlaces.push_back({vecPosition, bHeading, std::fmod(dHeading, 360.0), dScale});
  }

  void AddArea(QXSceneInstances& instances, QXGeoFootprint const& area, QXRandom& random) {
    m_vecPoints.clear();
    if (instances.m_dSpread > 0.0) {
      // The fraction of an instance decides by chance, so that many small areas have as many as a large one.
      double const dCount = std::floor(GetArea(area) / instances.m_dSpread + random.Take());
      std::size_t const nRoom = MaxSceneInstances + 1 - std::min(MaxSceneInstances + 1, instances.m_vecPlaces.size());
      std::size_t const nCount = dCount < static_cast<double>(nRoom) ? static_cast<std::size_t>(dCount) : nRoom;
      bool const bBefore = m_nCornerLooks > 0;
      AppendPoints(area, nCount, random, m_nCornerLooks, m_vecPoints);
      if (bBefore && m_nCornerLooks == 0)
        Warn(instances, "its areas have too many corners for so many instances, and the further ones are left out; "
                        "give a larger spread");
    } else {
      m_vecPoints.push_back(GetMiddle(area));
    }
    for (QXVector3d const& vec : m_vecPoints) AddPoint(instances, vec, area.m_bAngle, area.m_dAngle, area.m_dScale);
  }

  /// Attributes that no point has are mistakes; those that some lack are told.
  void TellMissing(QXSceneInstances const& instances, std::size_t nFirst) {
    std::vector<QXScenePlace> const& vecPlaces = instances.m_vecPlaces;
    auto const nCount = static_cast<std::ptrdiff_t>(vecPlaces.size() - nFirst);
    auto const itFirst = vecPlaces.begin() + static_cast<std::ptrdiff_t>(nFirst);
    auto const tell = [&](std::string const& strName, std::ptrdiff_t nMissing) {
      if (strName.empty() || nMissing == 0 || nCount == 0) return;
      if (nMissing == nCount)
        m_Problems.Add(instances.m_nPointsLine, instances.m_strPoints + ": none of its points has a number as '" +
                                                    strName + "'; correct the name of the attribute");
      else
        Warn(instances, "points without a number as '" + strName + "', which take what the section says: " +
                            std::to_string(nMissing) + " of " + std::to_string(nCount));
    };
    tell(instances.m_strHeadingFrom, std::count_if(itFirst, vecPlaces.end(), [](auto& p) { return !p.m_bHeading; }));
    tell(instances.m_strScaleFrom, std::count_if(itFirst, vecPlaces.end(), [](auto& p) { return p.m_dScale == 0.0; }));
  }

  static void Complete(QXSceneInstances const& instances, QXRandom& random, QXScenePlace& place) {
    if (!place.m_bHeading) place.m_dHeading = instances.m_bRandomHeading ? 360.0 * random.Take() : instances.m_dHeading;
    place.m_bHeading = true;
    if (place.m_dScale == 0.0) {
      double const dMin = instances.m_dScale[0];
      double const dMax = instances.m_dScale[1];
      place.m_dScale = dMin == dMax ? dMin : dMin + random.Take() * (dMax - dMin);
    }
    place.m_vecPosition = place.m_vecPosition + instances.m_vecPosition;
  }

  void Warn(QXSceneInstances const& instances, std::string const& strText) {
    m_vecWarnings.push_back(
        (instances.m_strPoints.empty() ? instances.m_strFile : instances.m_strPoints) + ": " + strText);
  }

  QXSceneProblems m_Problems;
  std::vector<std::string>& m_vecProblems;
  std::vector<std::string>& m_vecWarnings;
  std::vector<QXVector3d> m_vecPoints;
  std::size_t m_nCornerLooks = MaxCornerLooks;
  std::size_t m_nTotal = 0;
  bool m_bFull = false;
};

}  // namespace

void ReadPlaces(std::string_view bytes, std::vector<QXScenePlace>& vecPlaces, QXSceneProblems& problems) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  for (int nLine = 1; !bytes.empty(); ++nLine) {
    std::size_t const nEnd = std::min(bytes.find('\n'), bytes.size());
    std::string_view const line = TrimLine(bytes.substr(0, nEnd));
    bytes.remove_prefix(std::min(nEnd + 1, bytes.size()));
    if (line.empty()) continue;
    QXScenePlace place;
    if (line.size() > MaxSceneLine || !ScanPlace(line, place)) {
      problems.Add(nLine, problems.IsFull() ? std::string() : DescribeBadPlace(line));
    } else if (vecPlaces.size() > MaxSceneInstances) {
      // One more than there may be tells that there are too many.
      return;
    } else {
      vecPlaces.push_back(place);
    }
  }
}

void LoadScenePlaces(QXSceneFile& scene, std::function<void(std::string const&)> const& progress,
    std::vector<std::string>& vecProblems, std::vector<std::string>& vecWarnings) {
  Loader loader(scene, vecProblems, vecWarnings);
  for (QXSceneInstances& instances : scene.m_vecInstances) loader.Load(instances, progress);
  loader.Finish();
}

}  // namespace QXApp
