/// @file
/// Bytes of files as a test spells them out, put together without any code of the library.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace QXTest {

using QXBytes = std::vector<unsigned char>;

/// Appends little-endian values; every call returns the writer, so that a file reads as a row of fields.
class QXByteWriter {
public:
  QXByteWriter& U8(unsigned int nValue) { return Put(nValue, 1); }
  QXByteWriter& U16(unsigned int nValue) { return Put(nValue, 2); }
  QXByteWriter& I32(std::int32_t nValue) { return Put(static_cast<std::uint32_t>(nValue), 4); }
  QXByteWriter& U32(std::uint32_t nValue) { return Put(nValue, 4); }
  QXByteWriter& F32(float fValue) { return Put(std::bit_cast<std::uint32_t>(fValue), 4); }
  QXByteWriter& F64(double dValue) { return Put(std::bit_cast<std::uint64_t>(dValue), 8); }
  QXByteWriter& F32s(std::vector<float> const& arrValues) {
    for (float const fValue : arrValues) F32(fValue);
    return *this;
  }
  QXByteWriter& U32s(std::vector<std::uint32_t> const& arrValues) {
    for (std::uint32_t const nValue : arrValues) U32(nValue);
    return *this;
  }
  /// A text in UTF-8 behind its byte count.
  QXByteWriter& Text(std::string_view text) {
    U32(static_cast<std::uint32_t>(text.size()));
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
    return *this;
  }
  QXByteWriter& Bytes(QXBytes const& bytes) {
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return *this;
  }
  QXBytes const& Get() const { return m_bytes; }

private:
  QXByteWriter& Put(std::uint64_t nValue, int nBytes) {
    for (int nByte = 0; nByte < nBytes; ++nByte) m_bytes.push_back(static_cast<unsigned char>(nValue >> (8 * nByte)));
    return *this;
  }

  QXBytes m_bytes;
};

}  // namespace QXTest
