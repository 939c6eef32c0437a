#include <apps/qx3d/QXIconImage.h>

#include <QxGraphics3D/frame/foundation/base3d/QXMathEngine.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace QXApp {

namespace {

/// The part of one row or column that becomes one pixel: the first source pixel and the weight of each from there on.
struct Span {
  unsigned int m_nFirst = 0;
  std::vector<double> m_vecWeights;
};

std::vector<Span> CutEdge(unsigned int nSource, unsigned int nTarget) {
  std::vector<Span> vecSpans(nTarget);
  double const dStep = static_cast<double>(nSource) / nTarget;
  for (unsigned int i = 0; i < nTarget; ++i) {
    double const dBegin = i * dStep;
    double const dEnd = std::min<double>(nSource, (i + 1) * dStep);
    vecSpans[i].m_nFirst = static_cast<unsigned int>(dBegin);
    for (unsigned int n = vecSpans[i].m_nFirst; n < dEnd; ++n)
      vecSpans[i].m_vecWeights.push_back(std::min<double>(dEnd, n + 1.0) - std::max<double>(dBegin, n));
  }
  return vecSpans;
}

/// A mean of pixels in which each counts by its weight, and its colour by its alpha as well.
class Mean {
public:
  void Add(unsigned char const* p, double dWeight) {
    double const dVisible = dWeight * p[3];
    m_dWeight += dWeight;
    m_dVisible += dVisible;
    for (int i = 0; i < 3; ++i) m_dColors[i] += dVisible * p[i];
  }

  bool IsVisible() const { return m_dVisible > 0.0; }

  void StoreColor(unsigned char* p) const {
    for (int i = 0; i < 3; ++i) p[i] = IsVisible() ? Round(m_dColors[i] / m_dVisible) : 0;
  }
  void StoreAlpha(unsigned char* p) const { p[3] = Round(m_dVisible / m_dWeight); }

private:
  static unsigned char Round(double d) { return static_cast<unsigned char>(std::lround(std::min(d, 255.0))); }

  double m_dWeight = 0.0;
  double m_dVisible = 0.0;
  double m_dColors[3] = {0.0, 0.0, 0.0};
};

bool IsNear(unsigned char nChannel, unsigned char nKey, int nTolerance) {
  return std::abs(int{nChannel} - int{nKey}) <= nTolerance;
}

/// The visible pixels among the eight around one.
Mean GatherAround(QXPixels const& pixels, unsigned int nX, unsigned int nY) {
  Mean mean;
  for (unsigned int y = nY - (nY > 0 ? 1 : 0); y <= std::min(nY + 1, pixels.m_nHeight - 1); ++y)
    for (unsigned int x = nX - (nX > 0 ? 1 : 0); x <= std::min(nX + 1, pixels.m_nWidth - 1); ++x)
      mean.Add(pixels.At(x, y), 1.0);
  return mean;
}

}  // namespace

void ApplyColorKey(QXColorKey const& key, QXPixels& pixels) {
  for (std::size_t i = 0; i < pixels.GetPixelCount(); ++i) {
    unsigned char* p = pixels.m_pBytes.get() + 4 * i;
    if (IsNear(p[0], key.m_nBlue, key.m_nTolerance) && IsNear(p[1], key.m_nGreen, key.m_nTolerance) &&
        IsNear(p[2], key.m_nRed, key.m_nTolerance))
      p[3] = 0;
  }
}

QXPixels Shrink(QXPixels const& pixels, unsigned int nWidth, unsigned int nHeight) {
  QXPixels target = MakePixels(std::min(nWidth, pixels.m_nWidth), std::min(nHeight, pixels.m_nHeight));
  std::vector<Span> const vecColumns = CutEdge(pixels.m_nWidth, target.m_nWidth);
  std::vector<Span> const vecRows = CutEdge(pixels.m_nHeight, target.m_nHeight);
  for (unsigned int y = 0; y < target.m_nHeight; ++y)
    for (unsigned int x = 0; x < target.m_nWidth; ++x) {
      Mean mean;
      for (unsigned int j = 0; j < vecRows[y].m_vecWeights.size(); ++j)
        for (unsigned int i = 0; i < vecColumns[x].m_vecWeights.size(); ++i)
          mean.Add(pixels.At(vecColumns[x].m_nFirst + i, vecRows[y].m_nFirst + j),
              vecRows[y].m_vecWeights[j] * vecColumns[x].m_vecWeights[i]);
      mean.StoreColor(target.At(x, y));
      mean.StoreAlpha(target.At(x, y));
    }
  return target;
}

void SpreadColors(QXPixels& pixels) {
  // The pixels that are written have no alpha and count for nothing: nothing spreads from them in turn.
  for (unsigned int y = 0; y < pixels.m_nHeight; ++y)
    for (unsigned int x = 0; x < pixels.m_nWidth; ++x) {
      unsigned char* p = pixels.At(x, y);
      if (p[3] == 0) GatherAround(pixels, x, y).StoreColor(p);
    }
}

unsigned int GetIconTileEdge(unsigned int nWidth, unsigned int nHeight) {
  return QXC::QXMathEngine::NextP2(std::max(nWidth, nHeight) + 2);
}

QXIconTile MakeIconTile(QXPixels const& pixels) {
  unsigned int const nEdge = GetIconTileEdge(pixels.m_nWidth, pixels.m_nHeight);
  QXIconTile tile{MakePixels(nEdge, nEdge), (nEdge - pixels.m_nWidth) / 2, (nEdge - pixels.m_nHeight) / 2};
  for (unsigned int y = 0; y < nEdge; ++y) {
    unsigned int const nRow = std::clamp(y, tile.m_nTop, tile.m_nTop + pixels.m_nHeight - 1);
    for (unsigned int x = 0; x < nEdge; ++x) {
      unsigned int const nColumn = std::clamp(x, tile.m_nLeft, tile.m_nLeft + pixels.m_nWidth - 1);
      unsigned char* p = tile.m_Pixels.At(x, y);
      std::memcpy(p, pixels.At(nColumn - tile.m_nLeft, nRow - tile.m_nTop), 4);
      bool const bNear = x + 1 >= nColumn && x <= nColumn + 1 && y + 1 >= nRow && y <= nRow + 1;
      if (!bNear) p[3] = 0;
    }
  }
  return tile;
}

}  // namespace QXApp
