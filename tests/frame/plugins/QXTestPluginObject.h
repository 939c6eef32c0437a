/// @file
/// What the well-behaved test module makes.
#pragma once

namespace QXC {

struct QXTestPluginObject {
  int m_nMagic = 0x5158;
  /// Counted up when the module destroys the object.
  int* m_pDeaths = nullptr;
};

}  // namespace QXC
