/// @file
/// The two namespaces of the platform: QDC holds the data types and colour helpers of the foundation, QXC
/// everything else. This is the one place that makes QDC visible in QXC.
#pragma once

namespace QDC {}

namespace QXC {
using namespace QDC;
}
