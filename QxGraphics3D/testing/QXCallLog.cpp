#include <QxGraphics3D/testing/QXCallLog.h>

#include <charconv>
#include <initializer_list>

#include <QxGraphics3D/frame/QXRenderTarget.h>
#include <QxGraphics3D/frame/QXViewport.h>
#include <QxGraphics3D/view/QXCamera.h>
#include <QxGraphics3D/view/QXFog.h>
#include <QxGraphics3D/view/QXLight.h>

namespace QXC {
namespace {

/// The shortest text that reads back as the same number; unlike printf's it knows no locale.
template <class Number>
void AppendShortest(std::string& strLine, Number value) {
  char szText[64];
  auto const result = std::to_chars(szText, szText + sizeof(szText), value);
  strLine.append(szText, result.ptr);
}

void AppendList(std::string& strLine, std::initializer_list<double> arrValues) {
  char const* szSeparator = "(";
  for (double const value : arrValues) {
    strLine += szSeparator;
    AppendShortest(strLine, value);
    szSeparator = " ";
  }
  strLine += ")";
}

}  // namespace

std::string QXCallLog::GetText() const {
  std::string strText;
  for (std::string const& strLine : m_arrLines) {
    strText += strLine;
    strText += '\n';
  }
  return strText;
}

std::string QXCallLog::Quote(QdcUnicodeString const& strText) {
  constexpr char const* szDigits = "0123456789abcdef";
  std::string strQuoted = "\"";
  QdcMBString const strBytes = strText.ToMBString();
  for (char const* pByte = strBytes.Cstr(); *pByte != '\0'; ++pByte) {
    unsigned char const byte = static_cast<unsigned char>(*pByte);
    if (byte < 0x20) {
      strQuoted += "\\x";
      strQuoted += szDigits[byte >> 4];
      strQuoted += szDigits[byte & 0xF];
      continue;
    }
    if (byte == '"' || byte == '\\') {
      strQuoted += '\\';
    }
    strQuoted += *pByte;
  }
  return strQuoted + "\"";
}

void QXCallLog::Append(std::string& strLine, double dValue) {
  AppendShortest(strLine, dValue);
}
void QXCallLog::Append(std::string& strLine, float fValue) {
  AppendShortest(strLine, fValue);
}
void QXCallLog::Append(std::string& strLine, QdcUnicodeString const& strText) {
  strLine += Quote(strText);
}
void QXCallLog::Append(std::string& strLine, std::string const& strLabel) {
  strLine += strLabel;
}

void QXCallLog::Append(std::string& strLine, QXVector3d const& vector) {
  AppendList(strLine, {vector.x, vector.y, vector.z});
}

void QXCallLog::Append(std::string& strLine, QXVector4d const& vector) {
  AppendList(strLine, {vector[0], vector[1], vector[2], vector[3]});
}

void QXCallLog::Append(std::string& strLine, QXQuaternion4d const& quaternion) {
  AppendList(strLine, {quaternion.w, quaternion.x, quaternion.y, quaternion.z});
}

void QXCallLog::Append(std::string& strLine, QXColorValue3D const& color) {
  AppendList(strLine, {color.r, color.g, color.b, color.a});
}

void QXCallLog::Append(std::string& strLine, QXMatrix4d const& matrix) {
  strLine += "[";
  for (int i = 0; i < 4; ++i) {
    AppendList(strLine, {matrix[i][0], matrix[i][1], matrix[i][2], matrix[i][3]});
  }
  strLine += "]";
}

void QXCallLog::Append(std::string& strLine, QXPlane const& plane) {
  QXVector3d const& normal = plane.GetNormal();
  AppendList(strLine, {normal.x, normal.y, normal.z, plane.GetPlaneDistance()});
}

void QXCallLog::Append(std::string& strLine, QXBoundingBox const& box) {
  if (box.IsNULL()) {
    strLine += "null box";
    return;
  }
  Append(strLine, QXVector3d(box.GetMin()));
  strLine += "..";
  Append(strLine, QXVector3d(box.GetMax()));
}

void QXCallLog::Append(std::string& strLine, QdcRect const& rcArea) {
  strLine += "(" + std::to_string(rcArea.left) + " " + std::to_string(rcArea.top) + " " + std::to_string(rcArea.right) +
             " " + std::to_string(rcArea.bottom) + ")";
}

void QXCallLog::Append(std::string& strLine, QdcRect2D const& rcArea) {
  AppendList(strLine, {rcArea.left, rcArea.top, rcArea.right, rcArea.bottom});
}

void QXCallLog::Append(std::string& strLine, QXRenderTarget const* pTarget) {
  strLine += pTarget == nullptr ? "no target" : "target " + Quote(pTarget->GetName());
}

void QXCallLog::Append(std::string& strLine, QXCamera const* pCamera) {
  strLine += pCamera == nullptr ? "no camera" : "camera " + Quote(pCamera->GetName());
}

void QXCallLog::Append(std::string& strLine, QXViewport const* pViewport) {
  if (pViewport == nullptr) {
    strLine += "no viewport";
    return;
  }
  strLine += "viewport " + std::to_string(pViewport->GetZOrder()) + " of ";
  Append(strLine, static_cast<QXRenderTarget const*>(pViewport->GetTarget()));
}

void QXCallLog::Append(std::string& strLine, QXLight const& light) {
  strLine += "light " + std::to_string(light.GetType()) + " ";
  Append(strLine, light.GetDiffuseColour());
  Append(strLine, light.GetSpecularColour());
  Append(strLine, light.GetAmbientColour());
  Append(strLine, light.GetPosition());
  Append(strLine, light.GetDirection());
  AppendList(strLine, {light.GetSpotlightInnerAngle(), light.GetSpotlightOuterAngle(), light.GetSpotlightFalloff()});
  AppendList(strLine, {light.GetAttenuationRange(), light.GetAttenuationConstant(), light.GetAttenuationLinear(),
                          light.GetAttenuationQuadric()});
  AppendList(strLine, {light.GetPowerScale()});
}

void QXCallLog::Append(std::string& strLine, QXFog const& fog) {
  strLine += "fog " + std::to_string(fog.GetFogMode()) + " ";
  Append(strLine, fog.GetFogColor());
  AppendList(strLine, {fog.GetFogDensity(), fog.GetFogStart(), fog.GetFogEnd()});
}

void QXCallLog::Append(std::string& strLine, QXLoggedMemory memory) {
  strLine += memory.m_pMemory == nullptr ? "no memory" : "memory";
}

void QXCallLog::Append(std::string& strLine, QdcArray<unsigned int> const& arrNumbers) {
  strLine += "{";
  char const* szSeparator = "";
  for (unsigned int const nNumber : arrNumbers) {
    strLine += szSeparator + std::to_string(nNumber);
    szSeparator = " ";
  }
  strLine += "}";
}

}  // namespace QXC
