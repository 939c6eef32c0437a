/// @file
/// Values of a scene file.
#pragma once

#include <apps/qx3d/QXSceneInstances.h>

#include <QxGraphics3D/frame/foundation/base/QdcTime.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

#include <string>
#include <string_view>
#include <vector>

namespace QXApp {

/// Each operation answers with an empty string, or with what was expected and leaves its result as it was. Numbers are
/// decimal: no inf, nan or hexadecimal ones, and none beyond what a double holds.

/// Farthest coordinate, as on the command line.
constexpr double MaxSceneCoordinate = 1e15;

/// A number from a range, its ends included.
std::string ReadNumber(std::string_view text, double dMin, double dMax, double& dNumber);
/// The same without a fraction.
std::string ReadWholeNumber(std::string_view text, int nMin, int nMax, int& nNumber);
/// Above 0 and not above 1e15.
std::string ReadLength(std::string_view text, double& dLength);
/// "width, height", or one length for both.
std::string ReadLengths(std::string_view text, double& dWidth, double& dHeight);
/// "x, y, z"; commas or blanks between them.
std::string ReadPosition(std::string_view text, QXC::QXVector3d& vecPosition);
/// "x, y": right and up.
std::string ReadOffset(std::string_view text, double (&dOffset)[2]);
/// "#RRGGBB", or "r, g, b" of whole numbers from 0 to 255.
std::string ReadColor(std::string_view text, unsigned char (&nColor)[3]);
/// Any list of numbers from a range, its ends included; as few and as many as are allowed.
std::string ReadNumbers(std::string_view text, std::size_t nFewest, std::size_t nMost, double dMin, double dMax,
    std::vector<double>& vecNumbers);
/// "x, y, z", and behind it the heading in degrees, -360 to 360, and the scale, above 0, if wanted.
std::string ReadPlace(std::string_view text, QXScenePlace& place);
/// The same without words for what is wrong, which cost more than all the rest where millions of lines are.
bool ScanPlace(std::string_view text, QXScenePlace& place);
/// A moment, "2026-06-21T20:30", with seconds if wanted, in universal time or with a zone, "+02:00", behind it; from
/// 1900 to 2099.
std::string ReadTime(std::string_view text, QDC::QdcTime& time);
/// "yes" or "no".
std::string ReadYesNo(std::string_view text, bool& bYes);
/// The index of one of some words.
std::string ReadWord(std::string_view text, std::vector<std::string> const& vecWords, std::size_t& nWord);

}  // namespace QXApp
