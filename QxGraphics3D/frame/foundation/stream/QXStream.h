/// @file
/// Numbers, texts and arrays in a row of bytes.
#pragma once

#include <QxGraphics3D/Export.h>
#include <QxGraphics3D/Platform.h>
#include <QxGraphics3D/frame/foundation/base/QdcByteOrder.h>
#include <QxGraphics3D/frame/foundation/base/QdcUnicodeString.h>

#include <cstddef>
#include <cstring>

namespace QXC {

/// Why a stream failed.
enum QXStreamProblem : int {
  STREAM_NO_PROBLEM = 0,
  STREAM_ENDED = 1,       ///< a read asked for more than was left
  STREAM_FULL = 2,        ///< a write found no room in a block of fixed size
  STREAM_NONSENSE = 3,    ///< a reader called Fail: what it read cannot be
  STREAM_NO_MEMORY = 4,   ///< a block in memory could not grow
  STREAM_NOT_OPEN = 5,    ///< nothing was opened, or not for this direction
  STREAM_SYSTEM = 6,      ///< the operating system refused; the text says why
  STREAM_NOT_A_FILE = 7,  ///< a folder, a device or a pipe
};

/// Typed reading and writing, little-endian on every machine. Numbers have the width of their type, a text is a 32-bit
/// count of bytes and that many bytes of UTF-8, an array has no prefix: who writes it writes its length.
///
/// Failure: the first operation that fails ends the stream. From then on every read gives zeros and empty texts,
/// writes do nothing, Remaining is 0 and the position stays where the failed operation began. Callers ask IsGood once
/// at the end, and before they believe a count.
/// Cost:    a number that fits the window of the stream (all of a block in memory, the buffer of a file) costs a
///          comparison and a copy, inlined. An array is one copy, or one read or write of the file when it is large.
/// Threads: one at a time.
class QXGRAPHICS3D_API QXStream {
public:
  QXStream(QXStream const&) = delete;
  QXStream& operator=(QXStream const&) = delete;

  // Slot order is the contract with plug-ins: never reorder, never insert; append only with a major version.
  virtual ~QXStream();
  /// The reason of the failure for people, without a full stop; empty while the stream is good.
  virtual QdcUnicodeString GetErrorText() const;

  /// Says that about nSize bytes will have been written in all, so that room for them can be made at once. Only a hint:
  /// less and more may follow. Nothing for a stream that is read.
  virtual void Reserve(QXUInt64 nSize);

  QXStream& operator<<(int nValue) { return Put(nValue); }
  QXStream& operator<<(unsigned int nValue) { return Put(nValue); }
  QXStream& operator<<(short nValue) { return Put(nValue); }
  QXStream& operator<<(unsigned short nValue) { return Put(nValue); }
  QXStream& operator<<(unsigned char nValue) { return Put(nValue); }
  QXStream& operator<<(float fValue) { return Put(fValue); }
  QXStream& operator<<(double dValue) { return Put(dValue); }
  QXStream& operator<<(QXInt64 nValue) { return Put(nValue); }
  /// Writes the text; what stands behind its first zero character is left out.
  QXStream& operator<<(QdcUnicodeString const& strText);

  QXStream& operator>>(int& nValue) { return Take(nValue); }
  QXStream& operator>>(unsigned int& nValue) { return Take(nValue); }
  QXStream& operator>>(short& nValue) { return Take(nValue); }
  QXStream& operator>>(unsigned short& nValue) { return Take(nValue); }
  QXStream& operator>>(unsigned char& nValue) { return Take(nValue); }
  QXStream& operator>>(float& fValue) { return Take(fValue); }
  QXStream& operator>>(double& dValue) { return Take(dValue); }
  QXStream& operator>>(QXInt64& nValue) { return Take(nValue); }
  /// A count beyond Remaining fails before anything is allocated. Bytes that are no UTF-8 become U+FFFD each; a zero
  /// byte ends the text, and what stands behind it is skipped.
  QXStream& operator>>(QdcUnicodeString& strText);

  /// @name Arrays
  /// One call an array. nCount elements; a count of 0 does nothing and pValues may then be null. A Load that fails
  /// fills the array with zeros.
  /// @{
  void Save(float const* pValues, unsigned int nCount) { PutArray(pValues, nCount); }
  void Save(int const* pValues, unsigned int nCount) { PutArray(pValues, nCount); }
  void Save(unsigned int const* pValues, unsigned int nCount) { PutArray(pValues, nCount); }
  void Save(unsigned short const* pValues, unsigned int nCount) { PutArray(pValues, nCount); }
  void Save(unsigned char const* pValues, unsigned int nCount) { PutArray(pValues, nCount); }
  void Load(float* pValues, unsigned int nCount) { TakeArray(pValues, nCount); }
  void Load(int* pValues, unsigned int nCount) { TakeArray(pValues, nCount); }
  void Load(unsigned int* pValues, unsigned int nCount) { TakeArray(pValues, nCount); }
  void Load(unsigned short* pValues, unsigned int nCount) { TakeArray(pValues, nCount); }
  void Load(unsigned char* pValues, unsigned int nCount) { TakeArray(pValues, nCount); }
  /// @}

  /// 1 until the first failure.
  unsigned char IsGood() const { return m_eProblem == STREAM_NO_PROBLEM ? 1 : 0; }
  /// Bytes that can still be read; 0 after a failure and for a stream that is only written.
  QXUInt64 Remaining() const { return IsGood() ? GetReadEnd() - GetPosition() : 0; }
  /// 1 if nCount elements of at least nLeastSize bytes each could still come: what a reader asks before it believes a
  /// count. 0 for a negative one.
  unsigned char CanHold(QXInt64 nCount, unsigned int nLeastSize) const;
  /// Offset of the next byte to be read; after a failed read the offset where that read began.
  QXUInt64 GetPosition() const { return m_nReadEndOffset - static_cast<QXUInt64>(m_pReadEnd - m_pRead); }
  /// Bytes written so far.
  QXUInt64 GetWritten() const { return m_nWriteEndOffset - static_cast<QXUInt64>(m_pWriteEnd - m_pWrite); }

  /// Ends the stream because what was read makes no sense, so that nothing behind it is taken for data. Nothing on a
  /// stream that failed before.
  /// @param nPosition  where the nonsense begins; GetPosition gives it from now on
  void Fail(QXUInt64 nPosition) { FailWith(STREAM_NONSENSE, nPosition); }
  QXStreamProblem GetProblem() const { return m_eProblem; }
  /// Bytes that a text takes in a stream.
  static int GetStringSize(QdcUnicodeString const& strText);

protected:
  QXStream();

  /// Offset behind the last byte that can be read; the position for a stream that is only written.
  virtual QXUInt64 GetReadEnd() const = 0;
  /// Reads bytes of which the window holds too few: moves the window, fills pBytes whole.
  /// @return  0 after FailWith
  virtual unsigned char ReadPast(void* pBytes, std::size_t nSize) = 0;
  /// Writes bytes that do not fit the window.
  /// @return  0 after FailWith
  virtual unsigned char WritePast(void const* pBytes, std::size_t nSize) = 0;

  /// Keeps the first reason, closes both windows and holds both positions.
  void FailWith(QXStreamProblem eProblem) { FailWith(eProblem, GetPosition()); }
  /// @copydoc FailWith(QXStreamProblem)
  void FailWith(QXStreamProblem eProblem, QXUInt64 nReadPosition);
  /// Takes a failure back, for a stream that begins anew.
  void Recover() { m_eProblem = STREAM_NO_PROBLEM; }

  // What can be read and written without a virtual call, and the offset of the end of each. A derived class moves them.
  unsigned char const* m_pRead = nullptr;
  unsigned char const* m_pReadEnd = nullptr;
  unsigned char* m_pWrite = nullptr;
  unsigned char* m_pWriteEnd = nullptr;
  QXUInt64 m_nReadEndOffset = 0;
  QXUInt64 m_nWriteEndOffset = 0;

private:
  template <class T>
  QXStream& Put(T value) {
    if constexpr (qdcbigendian() != 0) value = qdcswapbytes(value);
    PutBytes(&value, sizeof value);
    return *this;
  }
  template <class T>
  QXStream& Take(T& value) {
    TakeBytes(&value, sizeof value);
    if constexpr (qdcbigendian() != 0) value = qdcswapbytes(value);
    return *this;
  }

  void PutBytes(void const* pBytes, std::size_t nSize) {
    if (nSize > static_cast<std::size_t>(m_pWriteEnd - m_pWrite)) {
      PutPast(pBytes, nSize);
      return;
    }
    std::memcpy(m_pWrite, pBytes, nSize);
    m_pWrite += nSize;
  }
  void TakeBytes(void* pBytes, std::size_t nSize) {
    if (nSize > static_cast<std::size_t>(m_pReadEnd - m_pRead)) {
      TakePast(pBytes, nSize);
      return;
    }
    std::memcpy(pBytes, m_pRead, nSize);
    m_pRead += nSize;
  }

  // Out of line: they only matter where a call is cheap beside the copy.
  template <class T>
  void PutArray(T const* pValues, unsigned int nCount);
  template <class T>
  void TakeArray(T* pValues, unsigned int nCount);
  void PutPast(void const* pBytes, std::size_t nSize);
  void TakePast(void* pBytes, std::size_t nSize);
  void PutBlock(void const* pBytes, std::size_t nSize);
  void TakeBlock(void* pBytes, std::size_t nSize);

  QXStreamProblem m_eProblem = STREAM_NO_PROBLEM;
};

extern template QXGRAPHICS3D_API void QXStream::PutArray(float const*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::PutArray(int const*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::PutArray(unsigned int const*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::PutArray(unsigned short const*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::PutArray(unsigned char const*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::TakeArray(float*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::TakeArray(int*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::TakeArray(unsigned int*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::TakeArray(unsigned short*, unsigned int);
extern template QXGRAPHICS3D_API void QXStream::TakeArray(unsigned char*, unsigned int);

}  // namespace QXC
