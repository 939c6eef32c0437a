/// @file
/// What an image plug-in overrides.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/frame/foundation/base/QdcArray.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

// A virtual destructor would take the first slot and shift the eight operations; the plug-in deletes its operators
// through their own class, so the missing destructor costs nothing.
#if defined(__GNUC__)
#  pragma GCC diagnostic push
#  pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// Reads and writes image files of one family for the image tools. It stands outside the namespaces of the other
/// classes because plug-ins of other products of the platform share it. Pixels are rows top down, 4 bytes blue, green,
/// red, alpha. Every operation answers failure with 0 and throws nothing. Called on one thread at a time.
class QXGRAPHICS3D_API QXPluginImageOperator {
public:
  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.

  /// 1 if the first nByteCount bytes of a file, at most 64, are of this family. Called before Load.
  virtual unsigned char CanLoad(unsigned char const* pBytes, unsigned int nByteCount) const = 0;
  /// Size of an image file in pixels, without reading its pixels.
  virtual unsigned char GetSize(QDC::QdcUnicodeString const& strPath, unsigned int& nWidth, unsigned int& nHeight) = 0;
  /// Reads an image: arrPixels becomes nWidth x nHeight x 4 bytes, and keeps its content on failure.
  virtual unsigned char Load(QDC::QdcUnicodeString const& strPath, QDC::QdcArray<unsigned char>& arrPixels,
      unsigned int& nWidth, unsigned int& nHeight) = 0;
  /// The same from a file's bytes in memory.
  virtual unsigned char LoadFromMemory(unsigned char const* pBytes, unsigned long long nByteCount,
      QDC::QdcArray<unsigned char>& arrPixels, unsigned int& nWidth, unsigned int& nHeight) = 0;
  /// Writes an image file whole or not at all; nQuality 0 to 100 for formats that lose detail.
  virtual unsigned char Save(QDC::QdcUnicodeString const& strPath, unsigned char const* pPixels, unsigned int nWidth,
      unsigned int nHeight, int nQuality) = 0;
  /// 1 if Save can write the family.
  virtual unsigned char CanSave() const = 0;
  /// Number of file extensions that the operator handles. Base: 1.
  virtual int GetExtNameCount() const;
  /// The extension of that number, from 0, with its dot, lower case; empty beyond the count.
  virtual QDC::QdcUnicodeString GetExtName(int nIndex) const = 0;
};

#if defined(__GNUC__)
#  pragma GCC diagnostic pop
#endif
