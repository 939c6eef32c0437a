/// @file
/// Figures of atlas pages for a person.
#pragma once

#include <apps/qx3d/QXAtlasPicture.h>

namespace QXApp {

/// A table with a line for each page: name, size, format, number of places and how much of the page they fill.
std::string MakeAtlasTable(std::vector<QXAtlasPage> const& vecPages);

/// The table, and under it each page's places by the numbers in its picture: corner, edge and what stands there.
std::string MakeAtlasReport(std::vector<QXAtlasPage> const& vecPages);

}  // namespace QXApp
