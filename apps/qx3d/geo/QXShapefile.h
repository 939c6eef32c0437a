/// @file
/// Named points from shapefiles.
#pragma once

#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/geo/QXGeoData.h>

#include <string_view>

namespace QXApp {

/// The files of one shapefile. Shapes, their index and their attributes must be there, the code page of texts may be
/// empty.
struct QXShapefileBytes {
  std::string_view m_Shapes;
  std::string_view m_Index;
  std::string_view m_Attributes;
  std::string_view m_CodePage;
};

/// Reads points and multipoints, with the text of their record's attribute, whose name counts without upper and lower
/// case. Texts have the encoding that the .cpg file or the .dbf file names; without either they are UTF-8 if they can
/// be, and else Latin-1.
///
/// @param problems  gets why the files cannot be read: lengths that lie, other kinds of shapes, no such attribute
/// @param warnings  gets which records were left out, by their numbers from 1
/// Cost: linear in the records.
/// Threads: any number of calls at once.
QXGeoData ParseShapefile(
    QXShapefileBytes const& bytes, QXGeoNames const& names, QXSceneProblems& problems, QXSceneProblems& warnings);

}  // namespace QXApp
