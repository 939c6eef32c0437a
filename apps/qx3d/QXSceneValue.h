/// @file
/// Values of a scene file.
#pragma once

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
/// "yes" or "no".
std::string ReadYesNo(std::string_view text, bool& bYes);
/// The index of one of some words.
std::string ReadWord(std::string_view text, std::vector<std::string> const& vecWords, std::size_t& nWord);

}  // namespace QXApp
