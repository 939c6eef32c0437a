#include <apps/qx3d/QXIconPictures.h>

#include <apps/qx3d/QXSceneFile.h>
#include <apps/qx3d/QXSceneText.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <utility>

namespace QXApp {

namespace {

/// What several icons share. Those of one file follow each other, so that it is read once.
struct ImageKey {
  std::string m_strFile;
  bool m_bColorKey = false;
  QXColorKey m_ColorKey;

  auto operator<=>(ImageKey const&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// The icons of an image and how large they want it; 0 for as large as it is.
struct Users {
  std::vector<std::size_t> m_vecIcons;
  int m_nLine = 0;
  bool m_bWhole = false;
  double m_dWidth = 0.0;
  double m_dHeight = 0.0;
};

ImageKey MakeKey(QXSceneIcon const& icon) {
  ImageKey key{icon.m_strImage, icon.m_bColorKey, {}};
  if (icon.m_bColorKey)
    key.m_ColorKey = {icon.m_nColorKey[0], icon.m_nColorKey[1], icon.m_nColorKey[2], icon.m_nTolerance};
  return key;
}

std::map<ImageKey, Users> GatherUsers(std::vector<QXSceneIcon> const& vecIcons) {
  std::map<ImageKey, Users> mapUsers;
  for (std::size_t i = 0; i < vecIcons.size(); ++i) {
    QXSceneIcon const& icon = vecIcons[i];
    if (icon.m_strImage.empty()) continue;
    Users& users = mapUsers[MakeKey(icon)];
    if (users.m_vecIcons.empty()) users.m_nLine = icon.m_nLine;
    users.m_vecIcons.push_back(i);
    users.m_bWhole = users.m_bWhole || icon.m_eUnit == QXIconUnit::World || icon.m_dWidth == 0.0;
    users.m_dWidth = std::max(users.m_dWidth, icon.m_dWidth);
    users.m_dHeight = std::max(users.m_dHeight, icon.m_dHeight);
  }
  return mapUsers;
}

QXPixels Copy(QXPixels const& pixels) {
  QXPixels copy = MakePixels(pixels.m_nWidth, pixels.m_nHeight);
  std::memcpy(copy.m_pBytes.get(), pixels.m_pBytes.get(), 4 * pixels.GetPixelCount());
  return copy;
}

std::string DescribeSize(unsigned int nWidth, unsigned int nHeight) {
  return std::to_string(nWidth) + " x " + std::to_string(nHeight);
}

unsigned int LimitEdge(unsigned int nEdge, double dWanted) {
  return dWanted < nEdge ? std::max(1U, static_cast<unsigned int>(std::ceil(dWanted))) : nEdge;
}

/// The size in which a picture is kept.
struct Fit {
  unsigned int m_nWidth = 0;
  unsigned int m_nHeight = 0;
  /// Empty, or what is lost.
  std::string m_strLoss;
};

/// What the icons need of a file.
Fit FitPicture(Users const& users, QXPixels const& file) {
  Fit fit;
  fit.m_nWidth = users.m_bWhole ? file.m_nWidth : LimitEdge(file.m_nWidth, users.m_dWidth);
  fit.m_nHeight = users.m_bWhole ? file.m_nHeight : LimitEdge(file.m_nHeight, users.m_dHeight);
  if (unsigned int const nLonger = std::max(fit.m_nWidth, fit.m_nHeight); nLonger > MaxIconEdge) {
    fit.m_nWidth = LimitEdge(fit.m_nWidth, static_cast<double>(fit.m_nWidth) * MaxIconEdge / nLonger);
    fit.m_nHeight = LimitEdge(fit.m_nHeight, static_cast<double>(fit.m_nHeight) * MaxIconEdge / nLonger);
    fit.m_strLoss = "of its " + DescribeSize(file.m_nWidth, file.m_nHeight) + " pixels " +
                    DescribeSize(fit.m_nWidth, fit.m_nHeight) +
                    " are kept, more do not fit into an atlas; give a smaller image, or a size in pixels";
  }
  return fit;
}

std::string MakeName(ImageKey const& key, QXPixels const& pixels) {
  std::string strName = key.m_strFile;
  if (key.m_bColorKey) {
    char szKey[48];
    std::snprintf(szKey, sizeof(szKey), "|key-%02x%02x%02x-%d", key.m_ColorKey.m_nRed, key.m_ColorKey.m_nGreen,
        key.m_ColorKey.m_nBlue, key.m_ColorKey.m_nTolerance);
    strName += szKey;
  }
  return strName + "|" + std::to_string(pixels.m_nWidth) + "x" + std::to_string(pixels.m_nHeight);
}

/// The file that was read last.
class LastFile {
public:
  /// @return  whether it is another one than before
  bool Read(std::string const& strFile) {
    if (m_strFile == strFile) return false;
    m_strFile = strFile;
    m_Pixels = QXPixels();
    m_strReason = ReadPixels(strFile, m_Pixels);
    return true;
  }

  std::string const& GetReason() const { return m_strReason; }
  QXPixels const& GetPixels() const { return m_Pixels; }

private:
  std::string m_strFile;
  std::string m_strReason;
  QXPixels m_Pixels;
};

QXIconPicture MakePicture(QXPixels const& file, ImageKey const& key, Fit const& fit) {
  QXIconPicture picture{{}, 0, Copy(file), file.m_nWidth, file.m_nHeight};
  if (key.m_bColorKey) ApplyColorKey(key.m_ColorKey, picture.m_Pixels);
  if (fit.m_nWidth != file.m_nWidth || fit.m_nHeight != file.m_nHeight)
    picture.m_Pixels = Shrink(picture.m_Pixels, fit.m_nWidth, fit.m_nHeight);
  SpreadColors(picture.m_Pixels);
  picture.m_strName = MakeName(key, picture.m_Pixels);
  return picture;
}

}  // namespace

void QXIconPictures::Load(std::vector<QXSceneIcon> const& vecIcons, QXSceneProblems& problems, std::size_t nMaxPixels) {
  m_vecPictures.clear();
  m_vecChoices.assign(vecIcons.size(), -1);
  LastFile file;
  std::size_t nLeft = nMaxPixels;
  for (auto const& [key, users] : GatherUsers(vecIcons)) {
    bool const bNew = file.Read(key.m_strFile);
    if (!file.GetReason().empty()) {
      // What is no picture is none with another colour key either.
      if (bNew) problems.Add(users.m_nLine, "image " + key.m_strFile + ": " + file.GetReason());
      continue;
    }
    Fit const fit = FitPicture(users, file.GetPixels());
    std::size_t const nEdge = GetIconTileEdge(fit.m_nWidth, fit.m_nHeight);
    std::string const strLoss =
        nEdge * nEdge > nLeft ? "the atlas has no place for it; use fewer or smaller images" : fit.m_strLoss;
    if (!strLoss.empty()) problems.Add(users.m_nLine, "image " + key.m_strFile + ": " + strLoss);
    if (nEdge * nEdge > nLeft) continue;
    nLeft -= nEdge * nEdge;
    for (std::size_t const nIcon : users.m_vecIcons) m_vecChoices[nIcon] = static_cast<int>(m_vecPictures.size());
    m_vecPictures.push_back(MakePicture(file.GetPixels(), key, fit));
    m_vecPictures.back().m_nLine = users.m_nLine;
  }
}

}  // namespace QXApp
