#include <QxGraphics3D/frame/foundation/base/detail/QXUtf8.h>

#include <cstddef>

namespace QXC::detail {

namespace {

struct Lead {
  std::size_t m_nLength;    // bytes of the character, 0: no lead byte
  std::uint32_t m_nBits;    // payload of the lead byte
  std::uint32_t m_nLowest;  // smaller codes have a shorter form
};

Lead Classify(unsigned char nByte) {
  if (nByte < 0x80) return {1, nByte, 0};
  if (nByte >= 0xC2 && nByte < 0xE0) return {2, nByte & 0x1Fu, 0x80};
  if (nByte >= 0xE0 && nByte < 0xF0) return {3, nByte & 0x0Fu, 0x800};
  if (nByte >= 0xF0 && nByte < 0xF5) return {4, nByte & 0x07u, 0x10000};
  return {0, 0, 0};
}

}  // namespace

std::uint32_t TakeUtf8(std::string_view& bytes) {
  Lead const lead = Classify(static_cast<unsigned char>(bytes[0]));
  std::uint32_t code = lead.m_nBits;
  bool valid = lead.m_nLength > 0 && bytes.size() >= lead.m_nLength;
  for (std::size_t i = 1; valid && i < lead.m_nLength; ++i) {
    auto const next = static_cast<unsigned char>(bytes[i]);
    valid = (next & 0xC0u) == 0x80u;
    code = code << 6 | (next & 0x3Fu);
  }
  valid = valid && code >= lead.m_nLowest && code <= 0x10FFFF;
  bytes.remove_prefix(valid ? lead.m_nLength : 1);
  return valid ? code : ms_nNoCharacter;
}

void AppendUtf8(std::string& bytes, std::uint32_t nCode) {
  if (nCode > 0x10FFFF) nCode = ms_nReplacement;
  auto const put = [&bytes](std::uint32_t nByte) { bytes.push_back(static_cast<char>(nByte)); };
  if (nCode < 0x80) {
    put(nCode);
  } else if (nCode < 0x800) {
    put(0xC0 | nCode >> 6);
    put(0x80 | (nCode & 0x3F));
  } else if (nCode < 0x10000) {
    put(0xE0 | nCode >> 12);
    put(0x80 | (nCode >> 6 & 0x3F));
    put(0x80 | (nCode & 0x3F));
  } else {
    put(0xF0 | nCode >> 18);
    put(0x80 | (nCode >> 12 & 0x3F));
    put(0x80 | (nCode >> 6 & 0x3F));
    put(0x80 | (nCode & 0x3F));
  }
}

unsigned char IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    std::uint32_t const code = TakeUtf8(bytes);
    if (code == ms_nNoCharacter || (code >= 0xD800 && code <= 0xDFFF)) return 0;
  }
  return 1;
}

}  // namespace QXC::detail
