// Packet text: a message's bytes as lowercase hexadecimal text, two digits a byte, no separators.
#pragma once

#include <string>
#include <string_view>

#include "wire/failure.h"

namespace vernoxa::inline system {
class LogWriter;
}  // namespace vernoxa::inline system

namespace vernoxa::inline wire {

struct DecodedPacket {
  std::string message;  // what was decoded before the first fault
  bool valid = true;    // false: a pair was not two hexadecimal digits
};

std::string packetTextOf(std::string_view message);

// Takes upper and lower case digits. An odd last digit is dropped.
DecodedPacket messageOf(std::string_view packetText);

// The same with entries in the traffic log. A failure (a fault in the text, memory) is for a box, "发送的数据异常" or
// "接收的数据异常".
Result<std::string> encodePacket(std::string_view message, LogWriter& log);
Result<std::string> decodePacket(std::string_view packetText, LogWriter& log);

}  // namespace vernoxa::inline wire
