/// @file
/// The library's values as OGRE's, and back.
#pragma once

#include <string>
#include <string_view>

#include <OgreColourValue.h>
#include <OgreMatrix4.h>

#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

/// Row vectors in double become column vectors in float: transposed, then narrowed. Values beyond float become its
/// infinities, which draw nothing.
Ogre::Matrix4 ToOgre(QXMatrix4d const& mat);
/// x, y, z narrowed to float.
Ogre::Vector3 ToOgre(QXVector3d const& vec);
Ogre::ColourValue ToOgre(QXColorValue3D const& color);

/// Whether every entry is a number that float holds.
bool IsFinite(Ogre::Matrix4 const& mat);
bool IsFinite(Ogre::Vector3 const& vec);
bool IsFinite(QXBoundingBox const& box);

std::string ToUtf8(QdcUnicodeString const& strText);
QdcUnicodeString FromUtf8(std::string const& strText);

/// Line breaks and runs of blanks become single blanks, and none stands at either end.
std::string OneLine(std::string_view strText);

}  // namespace QXC
