/// @file
/// Texts and numbers as files of map data write them.
#pragma once

#include <apps/qx3d/geo/QXGeoData.h>

#include <string>
#include <string_view>
#include <vector>

namespace QXApp {

/// One line without blanks around it: line ends, tabs and rows of blanks become one blank each.
std::string MakeGeoLabel(std::string_view text);

/// Whether a number can be a coordinate: neither inf nor nan, and not beyond MaxGeoCoordinate.
bool IsGeoCoordinate(double dNumber);

/// A decimal number with blanks around it and nothing else. @return  whether it is one, finite
bool ScanGeoNumber(std::string_view text, double& dNumber);

/// Numbers between blanks or commas, all of them coordinates.
/// @return  false, with vecNumbers in any state, if something else stands between them
bool ScanGeoNumbers(std::string_view text, std::vector<double>& vecNumbers);

/// Makes a ring fit for a footprint: takes away corners that repeat the one before, and the last one if it is the first.
/// @return  whether three corners are left
bool TidyGeoRing(std::vector<QXC::QXVector3d>& vecRing);

/// Keeps a point unless its text is empty or too long; where places are asked for, without the text.
/// @return  empty, or why not; nothing is said of an empty text
std::string AddGeoPoint(QXGeoPoint point, QXGeoNames const& names, QXGeoData& data);

}  // namespace QXApp
