/// @file
/// Bytes of a file as a test expects them, written without the library.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

namespace QXC {

class QXByteWriter {
public:
  QXByteWriter& Byte(unsigned int nValue) { return Number(nValue, 1); }
  QXByteWriter& Short(unsigned int nValue) { return Number(nValue, 2); }
  QXByteWriter& Int(std::int64_t nValue) { return Number(static_cast<std::uint64_t>(nValue), 4); }
  QXByteWriter& Long(std::uint64_t nValue) { return Number(nValue, 8); }
  QXByteWriter& Float(float fValue) { return Number(std::bit_cast<std::uint32_t>(fValue), 4); }
  QXByteWriter& Double(double dValue) { return Number(std::bit_cast<std::uint64_t>(dValue), 8); }
  QXByteWriter& Text(std::string_view bytes) {
    Int(static_cast<std::int64_t>(bytes.size()));
    m_strBytes += bytes;
    return *this;
  }

  std::string const& GetBytes() const { return m_strBytes; }

private:
  QXByteWriter& Number(std::uint64_t nValue, int nSize) {
    for (int i = 0; i < nSize; ++i) m_strBytes += static_cast<char>(nValue >> 8 * i & 0xFF);
    return *this;
  }

  std::string m_strBytes;
};

}  // namespace QXC
