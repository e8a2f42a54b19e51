#include "support/sample_metafiles.h"

#include <algorithm>
#include <array>
#include <bit>
#include <initializer_list>

namespace vernoxa {
namespace {

using Numbers = std::initializer_list<std::uint32_t>;

constexpr std::size_t headerBytes = 108;

std::string bytesOf(const std::vector<std::uint32_t>& numbers) {
  std::string bytes;
  for (const std::uint32_t number : numbers) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
      bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
    }
  }
  return bytes;
}

std::uint32_t real(float value) {
  return std::bit_cast<std::uint32_t>(value);
}

std::uint32_t pair(std::uint32_t low, std::uint32_t high) {
  return high << 16U | low;
}

std::string wide(std::string_view text) {
  std::string bytes;
  for (const char character : text) {
    bytes.append({character, '\0'});
  }
  return bytes;
}

// A metafile that grows by one record after the other.
class Builder {
 public:
  // `tail` follows the numbers and is filled up to a whole number.
  Builder& record(std::uint32_t type, const std::vector<std::uint32_t>& numbers = {}, std::string tail = {}) {
    tail.resize((tail.size() + 3) / 4 * 4, '\0');
    const std::uint32_t size = static_cast<std::uint32_t>(8 + numbers.size() * 4 + tail.size());
    records_ += bytesOf({type, size}) + bytesOf(numbers) + tail;
    ++count_;
    return *this;
  }
  // A solid brush and a pen of two points' width.
  Builder& colours() {
    return record(39, {1, 0, 0x0000FF, 0}).record(37, {1}).record(38, {2, 0, 2, 2, 0xFF0000}).record(37, {2});
  }
  std::string finish() {
    record(14, {0, 16, 20});
    const std::uint32_t bytes = static_cast<std::uint32_t>(headerBytes + records_.size());
    return bytesOf({1,    headerBytes, 0,       0,     99,         99,      0, 0,      2646,
                    2646, 0x464D4520,  0x10000, bytes, count_ + 1, objects, 0, 0,      0,
                    1280, 1024,        338,     270,   0,          0,       0, 338000, 270000}) +
           records_;
  }

 private:
  static constexpr std::uint32_t objects = 12;
  std::string records_;
  std::uint32_t count_ = 0;
};

const std::vector<std::uint32_t> bounds = {10, 10, 90, 90};

std::vector<std::uint32_t> operator+(std::vector<std::uint32_t> first, Numbers more) {
  first.insert(first.end(), more);
  return first;
}

std::vector<std::uint32_t> operator+(std::vector<std::uint32_t> first, const std::vector<std::uint32_t>& more) {
  first.insert(first.end(), more.begin(), more.end());
  return first;
}

std::string lines() {
  Builder made;
  made.colours();
  for (const std::uint32_t type : {2U, 3U, 4U, 5U, 6U}) {
    made.record(type, bounds + Numbers{4, 10, 10, 40, 80, 60, 20, 90, 90});
  }
  made.record(7, bounds + Numbers{2, 5, 2, 3, 10, 90, 90, 10, 20, 20, 50, 80, 80, 20});
  made.record(8, bounds + Numbers{2, 6, 3, 3, 10, 90, 90, 10, 20, 20, 50, 80, 80, 20, 10, 10});
  made.record(15, {50, 50, 0xFF}).record(27, {5, 5}).record(57, {1}).record(54, {95, 5});
  made.record(55, {10, 10, 60, 60, 10, 35, 60, 35}).record(41, {50, 50, 20, real(10), real(120)});
  made.record(42, {10, 10, 60, 40}).record(43, {20, 20, 80, 60}).record(44, {30, 30, 90, 90, 8, 8});
  for (const std::uint32_t type : {45U, 46U, 47U}) {
    made.record(type, {10, 10, 90, 60, 10, 35, 90, 40});
  }
  return made.record(56, bounds + Numbers{3, 10, 10, 50, 20, 90, 90}, "\x06\x02\x03").finish();
}

std::string shortLines() {
  Builder made;
  made.colours();
  for (const std::uint32_t type : {85U, 86U, 87U, 88U, 89U}) {
    made.record(type, bounds + Numbers{4, pair(10, 10), pair(40, 80), pair(60, 20), pair(90, 90)});
  }
  for (const std::uint32_t type : {90U, 91U}) {
    made.record(type,
                bounds + Numbers{2, 5, 2, 3, pair(10, 90), pair(90, 10), pair(20, 20), pair(50, 80), pair(80, 20)});
  }
  return made.record(92, bounds + Numbers{3, pair(10, 10), pair(50, 20), pair(90, 90)}, "\x06\x02\x03").finish();
}

std::string mapping() {
  Builder made;
  made.record(33).record(17, {8}).record(9, {100, 100}).record(10, {0, 0}).record(11, {100, 100}).record(12, {0, 0});
  made.record(31, {2, 1, 2, 1})
      .record(32, {2, 1, 2, 1})
      .record(13, {1, 1})
      .record(16, {0})
      .record(18, {1})
      .record(19, {2});
  made.record(20, {13}).record(21, {3}).record(22, {24}).record(24, {0x00FF00}).record(25, {0xFFFFFF}).record(98, {1});
  made.record(23, {pair(24, 0), pair(1, 10000), pair(10000, 10000), pair(0, 10000), 0, 0});
  made.record(30, {5, 5, 95, 95}).record(29, {40, 40, 50, 50}).record(26, {1, 1}).record(28);
  made.record(35, {real(1), 0, 0, real(1), real(2), real(2)}).record(36, {real(0.5F), 0, 0, real(0.5F), 0, 0, 2});
  made.record(115, {0})
      .record(120, {2, 1})
      .record(58, {real(4)})
      .record(43, {10, 10, 90, 90})
      .record(33)
      .record(34, {~0U});
  return made.record(34, {~0U}).record(42, {30, 30, 70, 70}).finish();
}

std::string paths() {
  Builder made;
  made.colours();
  for (const std::uint32_t end : {62U, 63U, 64U, 65U, 66U, 67U, 68U}) {
    made.record(59).record(27, {10, 10}).record(54, {90, 10}).record(54, {50, 90}).record(61).record(60);
    made.record(end, end <= 64 ? bounds : end == 67 ? std::vector<std::uint32_t>{5} : std::vector<std::uint32_t>{});
  }
  return made.record(43, {0, 0, 100, 100}).finish();
}

// Header, colours and bits of a bitmap of eight by eight points.
struct Bitmap {
  std::string header;
  std::string bits;
  std::vector<std::uint32_t> places(std::size_t fixedBytes) const {
    const auto at = static_cast<std::uint32_t>(fixedBytes);
    const auto length = static_cast<std::uint32_t>(header.size());
    return {at, length, at + length, static_cast<std::uint32_t>(bits.size())};
  }
  std::string bytes() const { return header + bits; }
};

Bitmap bitmap(std::uint32_t bitCount, std::uint32_t compression = 0) {
  Bitmap made;
  made.bits = compression == 1 ? std::string("\x08\x05\x00\x00\x00\x04\x01\x02\x03\x04\x00\x02\x02\x01\x00\x01", 16)
                               : std::string(std::size_t{8} * std::max(4U, bitCount), '\x5A');
  made.header =
      bytesOf({40, 8, 8, pair(1, bitCount), compression, static_cast<std::uint32_t>(made.bits.size()), 0, 0, 0, 0});
  if (compression == 3) {
    made.header += bytesOf({0xFF0000, 0xFF00, 0xFF});
  }
  if (bitCount <= 4) {
    made.header.resize(40 + (std::size_t{4} << bitCount), '\x77');
  } else if (bitCount == 8) {
    made.header.replace(32, 1, 1, '\x06');
    made.header.append(24, '\x33');
  }
  return made;
}

const std::vector<std::uint32_t> identity = {real(1), 0, 0, real(1), 0, 0};

std::string brushes() {
  const Bitmap mono = bitmap(1);
  const Bitmap colour = bitmap(4);
  Builder made;
  made.record(93, std::vector<std::uint32_t>{1, 0} + mono.places(32), mono.bytes())
      .record(37, {1})
      .record(43, {5, 5, 45, 45});
  made.record(94, std::vector<std::uint32_t>{2, 0} + colour.places(32), colour.bytes()).record(37, {2});
  made.record(43, {50, 50, 95, 95}).record(37, {0x80000004}).record(40, {1}).record(40, {2});
  made.record(39, {1, 2, 0xFF00FF, 4}).record(37, {1});
  made.record(95, {3, 0, 0, 0, 0, 0x10007, 3, 0, 0x0000FF, 0, 4, 6, 2, 1, 2}).record(37, {3});
  made.record(95, {4, 0, 0, 0, 0, 0, 1, 0, 0x00FF00, 0, 0});
  made.record(95, std::vector<std::uint32_t>{5} + colour.places(52) + Numbers{0x10000, 4, 5, 0, 0, 0}, colour.bytes());
  return made.record(42, {10, 10, 90, 90}).record(53, {50, 50, 0xFFFFFF, 1}).record(40, {3}).finish();
}

std::string palettes() {
  Builder made;
  made.record(49, {1, pair(0x300, 3), 0xFF, 0xFF00, 0xFF0000}).record(48, {1}).record(52).record(50, {1, 1, 2, 7, 8});
  made.record(51, {1, 4}).record(111, {1, 0, 2, 0}).record(48, {0x8000000F}).record(40, {1});
  const std::vector<std::uint32_t> space = {0x50534F43, 0x400, 328, 0x73524742, 4, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  made.record(99, std::vector<std::uint32_t>{2} + space, std::string(260, '\0')).record(100, {2}).record(101, {2});
  made.record(122, std::vector<std::uint32_t>{3} + space, std::string(520, '\0') + bytesOf({0, 0}))
      .record(43, {20, 20, 80, 80});
  made.record(112, {0, 4, 4}, "namedata").record(113, {0, 4, 4}, "n-a-data").record(121, {1, 0, 4, 4}, "namedata");
  return made.finish();
}

// A text at that place of a record: where its characters are and its advances.
std::vector<std::uint32_t> text(std::uint32_t characters, std::uint32_t at, std::uint32_t options,
                                std::uint32_t advances) {
  return {20, 30, characters, at, options, 0, 0, 100, 100, advances};
}

std::string texts() {
  const std::string advances = bytesOf({9, 9, 9, 9});
  const std::vector<std::uint32_t> scaled = bounds + Numbers{1, real(1), real(1)};
  std::string font = bytesOf({static_cast<std::uint32_t>(-16), 0, 0, 0, 400, 0, 0}) + wide("Tahoma");
  font.resize(320, '\0');
  Builder made;
  made.record(82, {1}, font)
      .record(37, {1})
      .record(82, {2}, font + bytesOf(std::vector<std::uint32_t>(7)) + bytesOf({0x08007664, 2, 5, 6}));
  made.record(83, scaled + text(4, 76, 0, 80), "text" + advances)
      .record(84, scaled + text(4, 76, 0, 84), wide("text") + advances);
  made.record(84, scaled + text(2, 76, 0x2000, 80), wide("up") + advances)
      .record(84, scaled + text(4, 76, 0, 0), wide("none"));
  made.record(83, scaled + text(2, 76, 0x10, 80), wide("\x24\x25") + advances).record(84, scaled + text(0, 0, 2, 0));
  made.record(96, scaled + Numbers{1} + text(4, 80, 0, 84), "many" + advances);
  made.record(97, scaled + Numbers{1} + text(4, 80, 0, 88), wide("wide") + advances);
  made.record(108, {20, 60, 4, 0x300, 1, real(1), real(1)}, "tiny");
  made.record(108, std::vector<std::uint32_t>{20, 70, 4, 0, 1, real(1), real(1)} + bounds, wide("more"));
  return made.finish();
}

std::string regions() {
  const std::vector<std::uint32_t> two = {32, 1, 2, 32, 10, 10, 90, 90, 10, 10, 40, 40, 50, 50, 90, 90};
  Builder made;
  made.colours().record(71, bounds + Numbers{64, 1} + two).record(72, bounds + Numbers{64, 1, 2, 2} + two);
  made.record(73, bounds + Numbers{64} + two).record(74, bounds + Numbers{64} + two);
  made.record(75, std::vector<std::uint32_t>{64, 1} + two).record(43, {0, 0, 100, 100}).record(75, {0, 5});
  return made.finish();
}

std::string bitmaps() {
  const std::vector<std::uint32_t> drawn = bounds + Numbers{10, 10, 60, 60};
  const std::vector<std::uint32_t> drawnFrom = drawn + Numbers{0xCC0020, 0, 0} + identity + Numbers{0xFFFFFF, 0};
  const Bitmap two = bitmap(1);
  const Bitmap sixteen = bitmap(4);
  const Bitmap many = bitmap(32);
  Builder made;
  made.colours().record(76, drawn + Numbers{0xF00021, 0, 0} + identity + Numbers{0, 0, 0, 0, 0, 0});
  made.record(76, drawnFrom + two.places(100), two.bytes());
  made.record(77, drawnFrom + sixteen.places(108) + Numbers{8, 8}, sixteen.bytes());
  made.record(114, drawn + Numbers{0x01800000, 0, 0} + identity + Numbers{0, 0} + many.places(108) + Numbers{8, 8},
              many.bytes());
  made.record(116, drawn + Numbers{0xFFFFFF, 0, 0} + identity + Numbers{0, 0} + sixteen.places(108) + Numbers{8, 8},
              sixteen.bytes());
  const auto masked = static_cast<std::uint32_t>(two.bytes().size());
  made.record(78,
              drawn + Numbers{0xAACC0020, 0, 0} + identity + Numbers{0, 0} + sixteen.places(128 + masked) +
                  Numbers{0, 0, 0} + two.places(128),
              two.bytes() + sixteen.bytes());
  made.record(79,
              bounds + Numbers{10, 10, 60, 20, 20, 60, 0, 0, 8, 8} + identity + Numbers{0, 0} + sixteen.places(140) +
                  Numbers{0, 0, 0, 0, 0, 0, 0},
              sixteen.bytes());
  return made.finish();
}

std::string imageFormats() {
  Builder made;
  const std::array<Bitmap, 6> formats = {bitmap(1), bitmap(8), bitmap(8, 1), bitmap(16), bitmap(24), bitmap(32, 3)};
  for (const Bitmap& each : formats) {
    made.record(81, bounds + Numbers{10, 10, 0, 0, 8, 8} + each.places(80) + Numbers{0, 0xCC0020, 40, 40},
                each.bytes());
  }
  Bitmap rows = bitmap(24);
  rows.bits.resize(3 * 24);
  return made.record(80, bounds + Numbers{60, 60, 0, 0, 8, 8} + rows.places(76) + Numbers{0, 2, 3}, rows.bytes())
      .finish();
}

std::string comments() {
  Builder made;
  const auto comment = [&made](const std::string& data) {
    made.record(70, {static_cast<std::uint32_t>(data.size())}, data);
  };
  Builder inner;
  const std::string within = inner.record(43, {10, 10, 90, 90}).finish();
  const auto length = static_cast<std::uint32_t>(within.size());
  comment("anything");
  comment("GDIC" + bytesOf({2, 0, 0, 99, 99, 4}) + wide("name"));
  comment("GDIC" + bytesOf({3}));
  comment("GDIC" + bytesOf({0x40000004, 0, 0, 99, 99, 1, 0x464D4520, 1, length, 44}) + within);
  comment("GDIC" + bytesOf({0x80000001, pair(0x300, 0), 0, 0, 8}) + "12345678");
  comment("EMF+" + bytesOf({pair(0x4001, 0), 28, 16, 1, 0, 96, 96, pair(0x4002, 0), 12, 0}));
  made.record(102, {4}, "call")
      .record(103, bounds + Numbers{4}, "call")
      .record(105, {1, 4}, "data")
      .record(106, {1, 4}, "data");
  made.record(110, {1, 4, 4}, "namedata").record(109, {0, 0}).record(119, {1, 1, 2});
  made.record(104, {pair(40, 1), 0x24, pair(0x2000, 0), 0, 0, 0, 0, 0, 0, 0});
  return made.record(43, {10, 10, 90, 90}).finish();
}

std::string gradients() {
  const std::vector<std::uint32_t> corners = {10, 10, pair(0xFF00, 0), 0,     90, 90, pair(0, 0xFF00), 0,
                                              10, 90, pair(0, 0),      0xFF00};
  Builder made;
  made.record(118, bounds + Numbers{3, 1, 0} + corners + Numbers{0, 1, 0});
  return made.record(118, bounds + Numbers{3, 1, 2} + corners + Numbers{0, 1, 2}).finish();
}

}  // namespace

std::vector<SampleMetafile> sampleMetafiles() {
  return {
      {"lines", lines()},     {"short_lines", shortLines()},     {"mapping", mapping()},   {"paths", paths()},
      {"brushes", brushes()}, {"palettes", palettes()},          {"texts", texts()},       {"regions", regions()},
      {"bitmaps", bitmaps()}, {"image_formats", imageFormats()}, {"comments", comments()}, {"gradients", gradients()}};
}

}  // namespace vernoxa
