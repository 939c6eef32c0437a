/// @file
/// Calls on a renderer as lines of text.
#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcRect.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>
#include <QxGraphics3D/frame/foundation/base3d/QXBoundingBox.h>
#include <QxGraphics3D/frame/foundation/base3d/QXMatrix4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXPlane.h>
#include <QxGraphics3D/frame/foundation/base3d/QXQuaternion4d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector3d.h>
#include <QxGraphics3D/frame/foundation/base3d/QXVector4d.h>
#include <QxGraphics3D/frame/foundation/toolkit/QXColorValue3D.h>

namespace QXC {

class QXCamera;
class QXFog;
class QXLight;
class QXRenderTarget;
class QXViewport;

/// Memory that a call was given: the log tells whether there was any, never where.
struct QXLoggedMemory {
  void const* m_pMemory;
};

/// What was called, in order, one line a call: `target "main": SwapBuffers(1)`. The text holds names and numbers and no
/// address, so that the same program gives the same lines on every machine. Numbers are written with the fewest digits
/// that read back as the same number.
/// Threads: the render thread, as everything that writes here.
class QXCallLog {
public:
  /// Appends a line.
  template <class... Arguments>
  void Write(std::string const& strObject, char const* szCall, Arguments const&... arguments) {
    std::string strLine = strObject + ": " + szCall + "(";
    [[maybe_unused]] char const* szSeparator = "";
    ((strLine += std::exchange(szSeparator, ", "), Append(strLine, arguments)), ...);
    strLine += ")";
    m_arrLines.push_back(std::move(strLine));
  }

  std::vector<std::string> const& GetLines() const { return m_arrLines; }
  /// All lines, each with its end of line.
  std::string GetText() const;
  void Clear() { m_arrLines.clear(); }

  /// A name in quotes as UTF-8, with quotes, backslashes and control characters escaped.
  static std::string Quote(QdcUnicodeString const& strText);

private:
  template <class Number>
  requires(std::is_integral_v<Number> || std::is_enum_v<Number>) static void Append(
      std::string& strLine, Number nValue) {
    strLine += std::to_string(static_cast<long long>(nValue));
  }
  static void Append(std::string& strLine, double dValue);
  static void Append(std::string& strLine, float fValue);
  static void Append(std::string& strLine, QdcUnicodeString const& strText);
  static void Append(std::string& strLine, QXVector3d const& vector);
  static void Append(std::string& strLine, QXVector4d const& vector);
  static void Append(std::string& strLine, QXQuaternion4d const& quaternion);
  static void Append(std::string& strLine, QXColorValue3D const& color);
  static void Append(std::string& strLine, QXMatrix4d const& matrix);
  static void Append(std::string& strLine, QXPlane const& plane);
  static void Append(std::string& strLine, QXBoundingBox const& box);
  static void Append(std::string& strLine, QdcRect const& rcArea);
  static void Append(std::string& strLine, QdcRect2D const& rcArea);
  static void Append(std::string& strLine, QXRenderTarget const* pTarget);
  static void Append(std::string& strLine, QXCamera const* pCamera);
  static void Append(std::string& strLine, QXViewport const* pViewport);
  /// Type, diffuse, specular and ambient colour, position, direction, inner and outer angle with the falloff,
  /// attenuation in the order of SetAttenuation, power scale.
  static void Append(std::string& strLine, QXLight const& light);
  /// Mode, colour, density, start, end.
  static void Append(std::string& strLine, QXFog const& fog);
  static void Append(std::string& strLine, QXLoggedMemory memory);
  static void Append(std::string& strLine, QdcArray<unsigned int> const& arrNumbers);
  static void Append(std::string& strLine, std::string const& strLabel);

  std::vector<std::string> m_arrLines;
};

}  // namespace QXC
