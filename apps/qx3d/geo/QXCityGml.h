/// @file
/// Names of streets and footprints of buildings from CityGML.
#pragma once

#include <apps/qx3d/QXSceneText.h>
#include <apps/qx3d/geo/QXGeoData.h>

#include <string_view>

namespace QXApp {

/// Reads CityGML, of any version and with extensions. Names of elements count without their prefix:
///
/// - A feature (what stands in cityObjectMember, featureMember or member) with an element of the label's name gives
///   that text at each of its gml:Point positions, in the angle that follows the position.
/// - A Building or BuildingPart gives one footprint for each polygon of its ground: that of lod0FootPrint or
///   geometrie2dGrondvlak, else of its GroundSurface, else of lod0RoofEdge. Its measuredHeight and storeysAboveGround
///   are kept; a part without them has those of the building around it.
/// - Where places are asked for, the features of one name count alone: each gives its gml:Point positions, or, without
///   any, the areas of its polygons, with the numbers of its attributes.
/// - A list of positions has 2 or 3 numbers a position by its srsDimension or that of an element around it, else by the
///   corner of the file's envelope, else by what makes the ring close.
///
/// @param problems  gets why the file cannot be read, with its line: bad XML, declared entities, deep nesting
/// @param warnings  gets what was left out, with its line
/// Cost: linear in the bytes, some 10 ns each.
QXGeoData ParseCityGml(
    std::string_view bytes, QXGeoNames const& names, QXSceneProblems& problems, QXSceneProblems& warnings);

}  // namespace QXApp
