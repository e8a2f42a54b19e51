#include "wire/packet_text.h"

#include <array>
#include <cstdint>
#include <exception>

#include "system/log.h"

namespace vernoxa::inline wire {
namespace {

constexpr std::string_view digits = "0123456789abcdef";
constexpr std::uint8_t noDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> digitValues() {
  std::array<std::uint8_t, 256> values{};
  values.fill(noDigit);
  for (std::uint8_t value = 0; value < 16; ++value) {
    values[static_cast<unsigned char>(digits[value])] = value;
    if (value >= 10) {
      values[static_cast<unsigned char>('A' + value - 10)] = value;
    }
  }
  return values;
}

constexpr std::array<std::uint8_t, 256> valueOfDigit = digitValues();

}  // namespace

std::string packetTextOf(std::string_view message) {
  std::string text(message.size() * 2, '\0');
  auto digit = text.begin();
  for (const char c : message) {
    const auto byte = static_cast<unsigned char>(c);
    *digit++ = digits[byte >> 4U];
    *digit++ = digits[byte & 0x0FU];
  }
  return text;
}

DecodedPacket messageOf(std::string_view packetText) {
  DecodedPacket decoded;
  decoded.message.reserve(packetText.size() / 2);
  for (std::size_t index = 0; index + 1 < packetText.size(); index += 2) {
    const unsigned high = valueOfDigit[static_cast<unsigned char>(packetText[index])];
    const unsigned low = valueOfDigit[static_cast<unsigned char>(packetText[index + 1])];
    if (high == noDigit || low == noDigit) {
      decoded.valid = false;
      break;
    }
    decoded.message.push_back(static_cast<char>(high << 4U | low));
  }
  return decoded;
}

Result<std::string> encodePacket(std::string_view message, LogWriter& log) {
  try {
    if (message.empty()) {
      return std::string();
    }
    if (log.enabled()) {
      log.writeLine(std::string("return data:").append(message));
    }
    std::string packetText = packetTextOf(message);
    log.writeLine(packetText);
    return packetText;
  } catch (const std::exception&) {
    return Failure::inBox(u8"发送的数据异常");
  }
}

Result<std::string> decodePacket(std::string_view packetText, LogWriter& log) {
  try {
    log.writeLine("====================decodePacket");
    DecodedPacket decoded = messageOf(packetText);
    if (decoded.valid) {
      log.writeLine(decoded.message);
      return std::move(decoded.message);
    }
  } catch (const std::exception&) {  // no memory: reported like text that cannot be read
  }
  return Failure::inBox(u8"接收的数据异常");
}

}  // namespace vernoxa::inline wire
