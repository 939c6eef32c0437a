/// @file
/// A stream over a file.
#pragma once

#include <QxGraphics3D/frame/foundation/stream/QXStream.h>

#include <memory>

namespace QXC {

/// Reads or writes one regular file through a buffer; longer arrays go straight between the file and the caller. A file
/// may be longer than 4 GiB.
class QXGRAPHICS3D_API QXFileStream : public QXStream {
public:
  QXFileStream();
  /// Closes. Who must know whether everything reached the file calls Close first.
  ~QXFileStream() override;

  /// Opens a file for reading, after closing what was open.
  /// @param strPath  in UTF-8 for the system
  /// @return  0 if there is no regular file that may be read; GetErrorText says why
  unsigned char OpenForReading(QdcUnicodeString const& strPath);
  /// Opens a file for writing, after closing what was open. A file that stands there is emptied; what is no regular
  /// file is left alone.
  /// @return  0 if it cannot be made or written; GetErrorText says why
  unsigned char OpenForWriting(QdcUnicodeString const& strPath);
  /// Writes what the buffer holds and closes. A failure of the stream stays to be asked for.
  /// @return  1 if every byte written reached the file, or every read succeeded; 0 also if nothing was open
  unsigned char Close();

  /// Length of the file that is read, as it was when it was opened; bytes written of the file that is written.
  QXUInt64 GetSize() const { return m_eMode == MODE_READ ? m_nFileSize : GetWritten(); }
  QdcUnicodeString GetErrorText() const override;
  /// Has a large file's blocks chosen now and together, where the file system can; Close gives back what was not
  /// needed. Writing a file of a hundred megabytes then takes a tenth less.
  void Reserve(QXUInt64 nSize) override;

protected:
  QXUInt64 GetReadEnd() const override;
  unsigned char ReadPast(void* pBytes, std::size_t nSize) override;
  unsigned char WritePast(void const* pBytes, std::size_t nSize) override;

private:
  enum Mode : int { MODE_CLOSED = 0, MODE_READ = 1, MODE_WRITE = 2 };

  unsigned char Open(QdcUnicodeString const& strPath, Mode eMode);
  unsigned char CheckOpened(Mode eMode);
  unsigned char Flush();
  unsigned char ReadFile(unsigned char* pBytes, std::size_t nSize);
  unsigned char WriteFile(unsigned char const* pBytes, std::size_t nSize);
  void FailWithSystem(int nError);
  void CloseHandle();

  int m_nHandle = -1;
  Mode m_eMode = MODE_CLOSED;
  QXUInt64 m_nFileSize = 0;
  unsigned char m_bReserved = 0;
  int m_nSystemError = 0;
  std::unique_ptr<unsigned char[]> m_pBuffer;
};

}  // namespace QXC
