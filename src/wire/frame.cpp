#include "wire/frame.h"

namespace vernoxa::inline wire {

FrameHeader frameHeaderFor(std::size_t payloadBytes) {
  FrameHeader header{};
  for (std::size_t index = 0; index < frameHeaderBytes; ++index) {
    header[index] = static_cast<char>(payloadBytes >> (8 * index) & 0xFFU);
  }
  return header;
}

std::uint32_t payloadBytesOf(const FrameHeader& header) {
  std::uint32_t length = 0;
  for (std::size_t index = 0; index < frameHeaderBytes; ++index) {
    length |= static_cast<std::uint32_t>(static_cast<unsigned char>(header[index])) << (8 * index);
  }
  return length;
}

}  // namespace vernoxa::inline wire
