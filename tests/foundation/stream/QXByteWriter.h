/// @file
/// Bytes of files as a test spells them out, put together without any code of the library.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace QXC {

using QXBytes = std::vector<unsigned char>;

/// Appends little-endian values; every call returns the writer, so that a file reads as a row of fields.
class QXByteWriter {
public:
  QXByteWriter& Byte(unsigned int nValue) { return Number(nValue, 1); }
  QXByteWriter& Short(unsigned int nValue) { return Number(nValue, 2); }
  /// Any number of 32 bits, with a sign or without.
  QXByteWriter& Int(std::int64_t nValue) { return Number(static_cast<std::uint64_t>(nValue), 4); }
  QXByteWriter& Long(std::uint64_t nValue) { return Number(nValue, 8); }
  QXByteWriter& Float(float fValue) { return Number(std::bit_cast<std::uint32_t>(fValue), 4); }
  QXByteWriter& Double(double dValue) { return Number(std::bit_cast<std::uint64_t>(dValue), 8); }
  QXByteWriter& Shorts(std::vector<std::uint16_t> const& arrValues) {
    for (std::uint16_t const nValue : arrValues) Short(nValue);
    return *this;
  }
  QXByteWriter& Ints(std::vector<std::uint32_t> const& arrValues) {
    for (std::uint32_t const nValue : arrValues) Int(nValue);
    return *this;
  }
  QXByteWriter& Floats(std::vector<float> const& arrValues) {
    for (float const fValue : arrValues) Float(fValue);
    return *this;
  }
  /// A text in UTF-8 behind its byte count.
  QXByteWriter& Text(std::string_view bytes) {
    Int(static_cast<std::int64_t>(bytes.size()));
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return *this;
  }
  /// A text with a zero behind it.
  QXByteWriter& ZeroText(std::string_view bytes) {
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return Byte(0);
  }
  QXByteWriter& Bytes(QXBytes const& bytes) {
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return *this;
  }

  QXBytes const& Get() const { return m_bytes; }
  std::string GetBytes() const { return std::string(m_bytes.begin(), m_bytes.end()); }

private:
  QXByteWriter& Number(std::uint64_t nValue, int nSize) {
    for (int nByte = 0; nByte < nSize; ++nByte) m_bytes.push_back(static_cast<unsigned char>(nValue >> 8 * nByte));
    return *this;
  }

  QXBytes m_bytes;
};

}  // namespace QXC
