#include <QxGraphics3D/text/detail/QXBorderStroker.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace QXC::detail {

namespace {

constexpr FT_Fixed Radius = 64;  // one pixel
// A curve is split until its direction changes by less than this from end to end.
constexpr FT_Angle ConicTurn = FT_ANGLE_PI / 6;
constexpr FT_Angle CubicTurn = FT_ANGLE_PI / 8;
// Borders are not cut where the path turns back by nearly half a turn: 89.75 degrees.
constexpr FT_Angle SharpestCut = 0x59C000;
constexpr FT_Angle QuarterTurn = FT_ANGLE_PI2;

bool IsSmall(FT_Pos n) {
  return n > -2 && n < 2;
}

bool IsSmall(FT_Vector const& v) {
  return IsSmall(v.x) && IsSmall(v.y);
}

FT_Vector operator+(FT_Vector const& a, FT_Vector const& b) {
  return {a.x + b.x, a.y + b.y};
}

FT_Vector operator-(FT_Vector const& a, FT_Vector const& b) {
  return {a.x - b.x, a.y - b.y};
}

bool IsZero(FT_Vector const& v) {
  return v.x == 0 && v.y == 0;
}

FT_Vector Middle(FT_Vector const& a, FT_Vector const& b) {
  return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

FT_Angle Turn(FT_Angle nFrom, FT_Angle nTo) {
  return FT_Angle_Diff(nFrom, nTo);
}

FT_Angle Mean(FT_Angle nFirst, FT_Angle nSecond) {
  return nFirst + Turn(nFirst, nSecond) / 2;
}

FT_Fixed Length(FT_Vector v) {
  return FT_Vector_Length(&v);
}

// Parts of a curve lie last point first, as a stack: the part nearest to the curve's start is on top.

void SplitConic(FT_Vector* p) {
  auto const split = [p](FT_Pos FT_Vector::*c) {
    FT_Pos const a = p[0].*c + p[1].*c;
    FT_Pos const b = p[1].*c + p[2].*c;
    p[4].*c = p[2].*c;
    p[3].*c = b >> 1;
    p[2].*c = (a + b) >> 2;
    p[1].*c = a >> 1;
  };
  split(&FT_Vector::x);
  split(&FT_Vector::y);
}

void SplitCubic(FT_Vector* p) {
  auto const split = [p](FT_Pos FT_Vector::*c) {
    FT_Pos const a = p[0].*c + p[1].*c;
    FT_Pos const b = p[1].*c + p[2].*c;
    FT_Pos const e = p[2].*c + p[3].*c;
    p[6].*c = p[3].*c;
    p[5].*c = e >> 1;
    p[4].*c = (e + b) >> 2;
    p[3].*c = (a + b + e + b) >> 3;
    p[2].*c = (a + b) >> 2;
    p[1].*c = a >> 1;
  };
  split(&FT_Vector::x);
  split(&FT_Vector::y);
}

/// Directions of a part of a conic; a part without extent keeps those given.
void GetDirections(QXTrigMemo& trig, FT_Vector const* p, FT_Angle& nIn, FT_Angle& nOut) {
  FT_Vector const first = p[1] - p[2];
  FT_Vector const second = p[0] - p[1];
  bool const hasFirst = !IsSmall(first);
  bool const hasSecond = !IsSmall(second);
  if (hasFirst) nIn = trig.Atan2(first);
  if (hasSecond) nOut = trig.Atan2(second);
  if (hasFirst && !hasSecond) nOut = nIn;
  if (hasSecond && !hasFirst) nIn = nOut;
}

/// The same of a cubic, with the direction between its control points.
void GetDirections(QXTrigMemo& trig, FT_Vector const* p, FT_Angle& nIn, FT_Angle& nMiddle, FT_Angle& nOut) {
  std::array<FT_Vector, 3> const legs = {p[2] - p[3], p[1] - p[2], p[0] - p[1]};
  bool const has0 = !IsSmall(legs[0]);
  bool const has1 = !IsSmall(legs[1]);
  bool const has2 = !IsSmall(legs[2]);
  if (!has0 && !has1 && !has2) return;
  FT_Angle const angle0 = has0 ? trig.Atan2(legs[0]) : 0;
  FT_Angle const angle1 = has1 ? trig.Atan2(legs[1]) : 0;
  FT_Angle const angle2 = has2 ? trig.Atan2(legs[2]) : 0;
  nIn = has0 ? angle0 : has1 ? angle1 : angle2;
  nOut = has2 ? angle2 : has1 ? angle1 : angle0;
  nMiddle = has1 ? angle1 : has0 && has2 ? Mean(angle0, angle2) : nIn;
}

}  // namespace

bool QXBorderStroker::Stroke(FT_Outline const& outline, FT_StrokerBorder eBorder) {
  m_arrPoints.clear();
  m_arrTags.clear();
  m_arrEnds.clear();
  m_bSecondBorder = eBorder == FT_STROKER_BORDER_RIGHT;
  m_nSide = m_bSecondBorder ? -QuarterTurn : QuarterTurn;
  std::size_t first = 0;
  for (int i = 0; i < outline.n_contours; ++i) {
    auto const last = static_cast<std::size_t>(outline.contours[i]);
    // A contour of one point is not stroked.
    if (last > first && !StrokeContour(outline, first, last)) return false;
    first = last + 1;
  }
  return true;
}

bool QXBorderStroker::StrokeContour(FT_Outline const& outline, std::size_t nFirst, std::size_t nLast) {
  FT_Vector const* const points = outline.points;
  auto const tag = [&outline](std::size_t i) { return FT_CURVE_TAG(outline.tags[i]); };
  if (tag(nFirst) == FT_CURVE_TAG_CUBIC) return false;
  FT_Vector start = points[nFirst];
  std::size_t next = nFirst + 1;
  std::size_t end = nLast + 1;  // behind the last point of segments
  if (tag(nFirst) == FT_CURVE_TAG_CONIC) {
    // It starts with a control point: the last point is the start, or the middle between the two.
    next = nFirst;
    if (tag(nLast) == FT_CURVE_TAG_ON) {
      start = points[nLast];
      --end;
    } else {
      start = Middle(start, points[nLast]);
    }
  }
  Begin(start);
  while (next < end) {
    FT_Vector const point = points[next];
    if (tag(next) == FT_CURVE_TAG_ON) {
      LineTo(point);
      ++next;
    } else if (tag(next) == FT_CURVE_TAG_CONIC) {
      ++next;
      if (next >= end) {
        ConicTo(point, start);
      } else if (tag(next) == FT_CURVE_TAG_ON) {
        ConicTo(point, points[next++]);
      } else if (tag(next) == FT_CURVE_TAG_CONIC) {
        ConicTo(point, Middle(point, points[next]));  // the next control point stays for the next curve
      } else {
        return false;
      }
    } else {
      if (next + 1 >= end || tag(next + 1) != FT_CURVE_TAG_CUBIC) return false;
      FT_Vector const second = points[next + 1];
      next += 2;
      CubicTo(point, second, next < end ? points[next] : start);
      ++next;
    }
  }
  if (!m_bFirst) End();
  return true;
}

void QXBorderStroker::Begin(FT_Vector const& start) {
  m_bFirst = true;
  m_Center = start;
  m_ContourStart = start;
  m_nAngleIn = 0;
}

void QXBorderStroker::End() {
  if (!IsSmall(m_Center - m_ContourStart)) LineTo(m_ContourStart);
  AddCorner(m_nStartAngle, m_StartLine);
  m_bMovable = false;
  if (m_arrPoints.size() <= m_nStart + 1) {
    m_arrPoints.resize(m_nStart);
    m_arrTags.resize(m_nStart);
    return;
  }
  // The last corner is at the contour's start and knows better where that lies.
  m_arrPoints[m_nStart] = m_arrPoints.back();
  m_arrTags[m_nStart] = m_arrTags.back();
  m_arrPoints.pop_back();
  m_arrTags.pop_back();
  if (m_bSecondBorder) {
    auto const offset = static_cast<std::ptrdiff_t>(m_nStart + 1);
    std::reverse(m_arrPoints.begin() + offset, m_arrPoints.end());
    std::reverse(m_arrTags.begin() + offset, m_arrTags.end());
  }
  m_arrEnds.push_back(m_arrPoints.size() - 1);
}

void QXBorderStroker::LineTo(FT_Vector const& to) {
  FT_Vector const line = to - m_Center;
  if (IsZero(line)) return;
  FT_Angle const angle = m_Trig.Atan2(line);
  if (m_bFirst) {
    AddStart(angle, line);
  } else {
    AddCorner(angle, line);
  }
  FT_Vector const across = m_Trig.FromPolar(Radius, angle + QuarterTurn);
  AddLine(m_bSecondBorder ? to - across : to + across, true);
  m_nAngleIn = angle;
  m_Center = to;
  m_LineIn = line;
}

void QXBorderStroker::ConicTo(FT_Vector const& control, FT_Vector const& to) {
  if (IsSmall(m_Center - control) && IsSmall(control - to)) {
    m_Center = to;
    return;
  }
  std::array<FT_Vector, 34> stack;
  std::ptrdiff_t const deepest = 30;
  std::ptrdiff_t top = 0;
  stack[0] = to;
  stack[1] = control;
  stack[2] = m_Center;
  bool first = true;
  while (top >= 0) {
    FT_Vector* const part = stack.data() + top;
    FT_Angle in = m_nAngleIn;
    FT_Angle out = m_nAngleIn;
    if (top < deepest) {
      GetDirections(m_Trig, part, in, out);
      if (std::abs(Turn(in, out)) >= ConicTurn) {
        if (m_bFirst) m_nAngleIn = in;
        SplitConic(part);
        top += 2;
        continue;
      }
    }
    JoinCurve(first, part[2], in, ConicTurn / 4);
    FT_Angle const half = Turn(in, out) / 2;
    FT_Fixed const length = FT_DivFix(Radius, m_Trig.Cos(half));
    AddPoint(part[1] + m_Trig.FromPolar(length, in + half + m_nSide), FT_CURVE_TAG_CONIC);
    AddPoint(part[0] + m_Trig.FromPolar(Radius, out + m_nSide), FT_CURVE_TAG_ON);
    m_bMovable = false;
    m_nAngleIn = out;
    top -= 2;
  }
  m_Center = to;
  m_LineIn = {0, 0};
}

void QXBorderStroker::CubicTo(FT_Vector const& control1, FT_Vector const& control2, FT_Vector const& to) {
  if (IsSmall(m_Center - control1) && IsSmall(control1 - control2) && IsSmall(control2 - to)) {
    m_Center = to;
    return;
  }
  std::array<FT_Vector, 37> stack;
  std::ptrdiff_t const deepest = 32;
  std::ptrdiff_t top = 0;
  stack[0] = to;
  stack[1] = control2;
  stack[2] = control1;
  stack[3] = m_Center;
  bool first = true;
  while (top >= 0) {
    FT_Vector* const part = stack.data() + top;
    FT_Angle in = m_nAngleIn;
    FT_Angle middle = m_nAngleIn;
    FT_Angle out = m_nAngleIn;
    if (top < deepest) {
      GetDirections(m_Trig, part, in, middle, out);
      if (std::abs(Turn(in, middle)) >= CubicTurn || std::abs(Turn(middle, out)) >= CubicTurn) {
        if (m_bFirst) m_nAngleIn = in;
        SplitCubic(part);
        top += 3;
        continue;
      }
    }
    JoinCurve(first, part[3], in, CubicTurn / 4);
    auto const control = [this](FT_Angle nFrom, FT_Angle nTo) {
      FT_Fixed const length = FT_DivFix(Radius, m_Trig.Cos(Turn(nFrom, nTo) / 2));
      return m_Trig.FromPolar(length, Mean(nFrom, nTo) + m_nSide);
    };
    AddPoint(part[2] + control(in, middle), FT_CURVE_TAG_CUBIC);
    AddPoint(part[1] + control(middle, out), FT_CURVE_TAG_CUBIC);
    AddPoint(part[0] + m_Trig.FromPolar(Radius, out + m_nSide), FT_CURVE_TAG_ON);
    m_bMovable = false;
    m_nAngleIn = out;
    top -= 3;
  }
  m_Center = to;
  m_LineIn = {0, 0};
}

void QXBorderStroker::JoinCurve(bool& bFirst, FT_Vector const& start, FT_Angle nAngle, FT_Angle nLimit) {
  if (bFirst) {
    bFirst = false;
    if (m_bFirst) {
      AddStart(nAngle, {0, 0});
    } else {
      AddCorner(nAngle, {0, 0});
    }
  } else if (std::abs(Turn(m_nAngleIn, nAngle)) > nLimit) {
    m_Center = start;
    AddCorner(nAngle, {0, 0});
  }
}

void QXBorderStroker::AddStart(FT_Angle nAngle, FT_Vector const& line) {
  FT_Vector const across = m_Trig.FromPolar(Radius, nAngle + QuarterTurn);
  m_nStart = m_arrPoints.size();
  AddPoint(m_bSecondBorder ? m_Center - across : m_Center + across, FT_CURVE_TAG_ON);
  m_bMovable = false;
  m_nStartAngle = nAngle;
  m_StartLine = line;
  m_bFirst = false;
}

void QXBorderStroker::AddCorner(FT_Angle nAngle, FT_Vector const& line) {
  FT_Angle turn = Turn(m_nAngleIn, nAngle);
  if (turn == 0) return;
  if ((turn < 0) == m_bSecondBorder) {
    AddInnerCorner(nAngle, line);
    return;
  }
  if (turn == FT_ANGLE_PI) turn = -2 * m_nSide;  // back on itself: half way round on this side
  AddRound(m_nAngleIn + m_nSide, turn);
  m_bMovable = false;
}

void QXBorderStroker::AddInnerCorner(FT_Angle nAngle, FT_Vector const& line) {
  FT_Angle const half = Turn(m_nAngleIn, nAngle) / 2;
  // Two lines that are long enough meet where their borders cross.
  if (m_bMovable && !IsZero(line) && half <= SharpestCut && half >= -SharpestCut) {
    FT_Vector unit;
    FT_Vector_Unit(&unit, half);
    FT_Fixed const needed = std::abs(FT_MulDiv(Radius, unit.y, unit.x));
    if (needed != 0 && Length(m_LineIn) >= needed && Length(line) >= needed) {
      AddLine(m_Center + m_Trig.FromPolar(FT_DivFix(Radius, unit.x), m_nAngleIn + half + m_nSide), false);
      return;
    }
  }
  m_bMovable = false;
  AddLine(m_Center + m_Trig.FromPolar(Radius, nAngle + m_nSide), false);
}

void QXBorderStroker::AddRound(FT_Angle nStart, FT_Angle nTurn) {
  FT_Angle arcs = 1;
  while (std::abs(nTurn) > QuarterTurn * arcs) ++arcs;
  FT_Fixed tangent = m_Trig.Tan(nTurn / (4 * arcs));
  tangent += tangent / 3;
  FT_Vector const from = m_Trig.FromPolar(Radius, nStart);
  FT_Vector control = m_Center + from + FT_Vector{FT_MulFix(-from.y, tangent), FT_MulFix(from.x, tangent)};
  for (FT_Angle i = 1; i <= arcs; ++i) {
    FT_Vector const to = m_Trig.FromPolar(Radius, nStart + i * nTurn / arcs);
    FT_Vector const end = m_Center + to;
    FT_Vector const before = end + FT_Vector{FT_MulFix(to.y, tangent), FT_MulFix(-to.x, tangent)};
    AddPoint(control, FT_CURVE_TAG_CUBIC);
    AddPoint(before, FT_CURVE_TAG_CUBIC);
    AddPoint(end, FT_CURVE_TAG_ON);
    control = end - before + end;
  }
}

void QXBorderStroker::AddPoint(FT_Vector const& point, char nTag) {
  m_arrPoints.push_back(point);
  m_arrTags.push_back(nTag);
}

void QXBorderStroker::AddLine(FT_Vector const& point, bool bMovable) {
  if (m_bMovable) {
    m_arrPoints.back() = point;
  } else {
    // Nothing is added for a line of no length, and what could be moved stays as it is.
    if (m_arrPoints.size() > m_nStart && IsSmall(m_arrPoints.back() - point)) return;
    AddPoint(point, FT_CURVE_TAG_ON);
  }
  m_bMovable = bMovable;
}

}  // namespace QXC::detail
