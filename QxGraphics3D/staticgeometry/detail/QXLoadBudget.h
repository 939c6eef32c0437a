/// @file
/// How much memory a stream may cost.
#pragma once

#include <QxGraphics3D/frame/foundation/stream/QXStream.h>

#include <cstddef>
#include <cstdint>

namespace QXC::detail {

/// Memory that one load may take: a fixed amount, and some times what it has read so far. The smallest bucket has 42
/// bytes in a stream and more than a thousand in memory, so that a file of a hundred megabytes could otherwise ask for
/// gigabytes. Honest records stay far below: the arrays are as large in memory as in the stream.
///
/// Loaders charge what they make right after making it. The one record that oversteps is paid for already, and at most
/// eight times its bytes; so all of a load takes less than 64 MiB and eight times the stream.
class QXLoadBudget {
public:
  static constexpr std::uint64_t BaseBytes = std::uint64_t{32} << 20;
  static constexpr std::uint64_t BytesPerByte = 6;
  /// What the allocator keeps beside a block.
  static constexpr std::size_t BlockBytes = 16;
  /// Parent, children and colour of a map's node, with its block.
  static constexpr std::size_t NodeBytes = 32 + BlockBytes;

  explicit QXLoadBudget(QXStream const& stream) : m_stream(stream), m_nStart(stream.Remaining()) {}

  /// Charges nBytes; false when it is too much, which a loader takes as an allocation that failed.
  bool Charge(std::uint64_t nBytes) {
    m_nUsed += nBytes;
    std::uint64_t const nRemaining = m_stream.Remaining();
    std::uint64_t const nRead = m_nStart > nRemaining ? m_nStart - nRemaining : 0;
    return m_nUsed <= BaseBytes || (m_nUsed - BaseBytes) / BytesPerByte <= nRead;
  }

private:
  QXStream const& m_stream;
  std::uint64_t m_nStart;
  std::uint64_t m_nUsed = 0;
};

}  // namespace QXC::detail
