/// @file
/// Text from one character set to another.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/Namespaces.h>

namespace QXC {

/// Converts between the character sets of QDCCharset. One pair is known: 251, the big-endian UTF-16 of a font's name
/// records, to 252, wide text. Any thread; a codec keeps no state between calls.
class QXGRAPHICS3D_API QXTextCodec {
public:
  /// Both are numbers of QDCCharset. A pair that is not known makes a codec whose Convert fails.
  QXTextCodec(int nFrom, int nTo);

  /// Converts all of the input and ends the output with a zero. Surrogate pairs become one character, a lone surrogate
  /// passes through as it is.
  /// @param pOut         room for nOutLength characters; one more than the input's pairs of bytes is always enough
  /// @param nOutLength   length of pOut in characters
  /// @param pIn          the bytes, need not be aligned
  /// @param nByteLength  their number, at least one pair
  /// @return  0 if the pair of character sets is not known, there is no input, its last unit is cut in half, or the
  ///          output is too short; the output, if there is any, is then an empty text.
  unsigned char Convert(
      wchar_t* pOut, unsigned int nOutLength, unsigned char const* pIn, unsigned int nByteLength) const;

private:
  unsigned char m_bKnown;
};

}  // namespace QXC
