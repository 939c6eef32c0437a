/// @file
/// A stream over bytes in memory.
#pragma once

#include <QxGraphics3D/frame/foundation/stream/QXStream.h>

namespace QXC {

/// Reads a block of the caller's without copying it, writes into room of the caller's, or writes into a block of its
/// own that grows. What was written can be read back: reads follow the writes and end where they end.
class QXGRAPHICS3D_API QXMemoryStream : public QXStream {
public:
  /// Bytes of the caller's to write into.
  struct Room {
    void* m_pBytes;
    QXUInt64 m_nSize;
  };

  /// Writes into a block of its own, which doubles when it is full.
  QXMemoryStream();
  /// Reads nSize bytes, which must outlive the stream; writes fail.
  QXMemoryStream(void const* pBytes, QXUInt64 nSize);
  /// Writes into the room, which must outlive the stream; what does not fit fails and changes nothing.
  explicit QXMemoryStream(Room const& room);
  ~QXMemoryStream() override;

  /// What was written, or the block that is read; null if there is none. Of a block of its own valid until the next
  /// write.
  unsigned char const* GetData() const { return m_pData; }
  /// Bytes of GetData: all that was written, or the length of the block that is read. A failure changes neither.
  QXUInt64 GetSize() const { return m_bConstant != 0 ? m_nCapacity : GetWritten(); }

  /// Makes a block of its own large enough for nSize bytes in all, so that writing them allocates nothing. Where there
  /// is no memory for that, and for the other kinds, nothing happens.
  void Reserve(QXUInt64 nSize) override;
  /// Reading begins again at the first byte; a failure is forgotten.
  void Rewind();

protected:
  QXUInt64 GetReadEnd() const override;
  unsigned char ReadPast(void* pBytes, std::size_t nSize) override;
  unsigned char WritePast(void const* pBytes, std::size_t nSize) override;

private:
  unsigned char Grow(QXUInt64 nCapacity);

  unsigned char* m_pData = nullptr;
  QXUInt64 m_nCapacity = 0;
  unsigned char m_bOwned = 0;
  unsigned char m_bConstant = 0;
};

}  // namespace QXC
