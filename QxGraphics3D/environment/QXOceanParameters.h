/// @file
/// What disturbs the water of an ocean.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>

// Values that a host fills and hands to QXTritonOceanGraphics3D. Order, types and defaults are the contract; what a
// field means, and its unit, is settled between the plug-in and the water simulation that it wraps, which is why the
// fields are numbered. A host that does not know them leaves the defaults alone.

namespace QXC {

/// Water beaten down by a helicopter: QXTritonOceanGraphics3D::CreateRotorWash.
class QXGRAPHICS3D_API QXRotorWashParameters {
public:
  double m_dValue0 = 10.0;
  unsigned char m_bFlag0 = 1;
  unsigned char m_bFlag1 = 1;
  QXVector3d m_vVector0;
  QXVector3d m_vVector1;
  double m_dValue1 = 0.0;
};

/// Water that streams past something fixed: QXTritonOceanGraphics3D::CreateTidalStreamWake.
class QXGRAPHICS3D_API QXTidalStreamWakeParameters {
public:
  double m_dValue0 = 10.0;
  double m_dValue1 = 10.0;
  double m_dValue2 = 1.0;
  double m_dValue3 = 0.0;
  unsigned char m_bFlag0 = 1;
  unsigned char m_bFlag1 = 1;
};

/// Something that falls into the water: QXTritonOceanGraphics3D::AddWaterImpact.
class QXGRAPHICS3D_API QXWaterImpactParameters {
public:
  double m_dValue0 = 10.0;
  double m_dValue1 = 10000.0;
  double m_dValue2 = 0.0;
  double m_dValue3 = 2.0;
};

/// A ship under way: QXTritonOceanGraphics3D::CreateWakeGenerator.
class QXGRAPHICS3D_API QXWakeGeneratorParameters {
public:
  unsigned char m_bFlag0 = 1;
  double m_dValue0 = 50.0;
  double m_dValue1 = 1.0;
  double m_dValue2 = 1.0;
  unsigned char m_bFlag1 = 1;
  double m_dValue3 = 50.0;
  double m_dValue4 = 1.0;
  double m_dValue5 = -1.0;
  double m_dValue6 = 0.0;
  unsigned char m_bFlag2 = 1;
  double m_dValue7 = -50.0;
  double m_dValue8 = 500.0;
  double m_dValue9 = 20.0;
  double m_dValue10 = 5.0;
  unsigned char m_bFlag3 = 1;
  double m_dValue11 = 0.0;
  double m_dValue12 = 1.5;
  double m_dValue13 = 1000.0;
  int m_nCount0 = 0;
  double m_dValue14 = 40.0;
  double m_dValue15 = -50.0;
  double m_dValue16 = 0.5;
  double m_dValue17 = 1.0;
  double m_dValue18 = 0.0;
  double m_dValue19 = 1.0;
  double m_dValue20 = 1.0;
  QXVector3d m_vVector0;
  QXVector3d m_vVector1;
  double m_dValue21 = 0.0;
};

}  // namespace QXC
