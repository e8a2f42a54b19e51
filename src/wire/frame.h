// Frames on a socket: a 4-byte little-endian length, then that many bytes of packet text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vernoxa::inline wire {

constexpr std::size_t frameHeaderBytes = 4;
constexpr std::size_t framePieceBytes = 4000;  // largest piece that is sent or received at once

using FrameHeader = std::array<char, frameHeaderBytes>;

FrameHeader frameHeaderFor(std::size_t payloadBytes);
std::uint32_t payloadBytesOf(const FrameHeader& header);

// Only the low 16 bits of the length count when a payload is read: a limit of the format that both ends keep to.
constexpr std::uint16_t countedBytes(std::uint32_t payloadBytes) {
  return static_cast<std::uint16_t>(payloadBytes);
}

}  // namespace vernoxa::inline wire
