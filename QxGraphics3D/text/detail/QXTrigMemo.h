/// @file
/// FreeType's angle functions, with the results of late kept.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRIGONOMETRY_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace QXC::detail {

/// FT_Atan2, FT_Vector_From_Polar, FT_Cos and FT_Tan. Each turns a vector bit by bit and takes longer than all the rest of
/// a border's point; strokes of letters have few directions, so most are known. 40 KiB.
class QXTrigMemo {
public:
  FT_Angle Atan2(FT_Vector const& v) {
    Entry& entry = m_arrDirections[Slot(v.x, v.y)];
    if (!entry.Is(v.x, v.y)) entry = {v.x, v.y, {FT_Atan2(v.x, v.y), 0}, true};
    return entry.m_Result.x;
  }
  FT_Vector FromPolar(FT_Fixed nLength, FT_Angle nAngle) {
    Entry& entry = m_arrVectors[Slot(nLength, nAngle)];
    if (!entry.Is(nLength, nAngle)) {
      FT_Vector v;
      FT_Vector_From_Polar(&v, nLength, nAngle);
      entry = {nLength, nAngle, v, true};
    }
    return entry.m_Result;
  }
  FT_Fixed Cos(FT_Angle nAngle) {
    Entry& entry = m_arrCosines[Slot(nAngle, 0)];
    if (!entry.Is(nAngle, 0)) entry = {nAngle, 0, {FT_Cos(nAngle), 0}, true};
    return entry.m_Result.x;
  }
  FT_Fixed Tan(FT_Angle nAngle) {
    Entry& entry = m_arrTangents[Slot(nAngle, 0)];
    if (!entry.Is(nAngle, 0)) entry = {nAngle, 0, {FT_Tan(nAngle), 0}, true};
    return entry.m_Result.x;
  }

private:
  static constexpr std::size_t Slots = 256;

  struct Entry {
    bool Is(FT_Pos nFirst, FT_Pos nSecond) const { return m_bSet && m_nFirst == nFirst && m_nSecond == nSecond; }

    FT_Pos m_nFirst = 0;
    FT_Pos m_nSecond = 0;
    FT_Vector m_Result{};
    bool m_bSet = false;
  };

  static std::size_t Slot(FT_Pos nFirst, FT_Pos nSecond) {
    auto const hash = static_cast<std::uint64_t>(nFirst) * 0x9E3779B97F4A7C15u +
                      static_cast<std::uint64_t>(nSecond) * 0xC2B2AE3D27D4EB4Fu;
    return static_cast<std::size_t>(hash >> 56);
  }

  std::array<Entry, Slots> m_arrDirections;
  std::array<Entry, Slots> m_arrVectors;
  std::array<Entry, Slots> m_arrCosines;
  std::array<Entry, Slots> m_arrTangents;
};

}  // namespace QXC::detail
