// Packet text: a message's bytes as lowercase hexadecimal text, two digits a byte, no separators.
#pragma once

#include <string>
#include <string_view>

namespace vernoxa {

struct Services;

struct DecodedPacket {
  std::string message;  // what was decoded before the first fault
  bool valid = true;    // false: a pair was not two hexadecimal digits
};

std::string packetTextOf(std::string_view message);

// Takes upper and lower case digits. An odd last digit is dropped.
DecodedPacket messageOf(std::string_view packetText);

// The same with entries in the traffic log and message boxes, as the packet doors and senders use them. 0 or -1.
// A failure (a fault in the text, memory) shows "发送的数据异常" or "接收的数据异常" and leaves the output as far as
// built.
int encodePacket(const Services& services, std::string_view message, std::string& packetText);
int decodePacket(const Services& services, std::string_view packetText, std::string& message);

}  // namespace vernoxa
