#include "desktop/older_metafile.h"

#include <gmock/gmock.h>

#include "support/table.h"
#include "text/text.h"

namespace vernoxa::desktop {
namespace {

using testing::EndsWith;

// Words of two bytes, in hexadecimal.
std::string bytesOf(const std::string& words) {
  std::string bytes;
  for (const std::string& word : splitItems(words, ' ')) {
    const auto number = static_cast<unsigned>(std::stoul(word, nullptr, 16));
    bytes += {static_cast<char>(number & 0xFFU), static_cast<char>(number >> 8U)};
  }
  return bytes;
}

// The record with its size before it.
std::string record(const std::string& words) {
  const std::string bytes = bytesOf(words);
  const auto size = static_cast<char>(bytes.size() / 2 + 2);
  return std::string{size, '\0', '\0', '\0'} + bytes;
}

const std::string header = bytesOf("1 9 300 0 0 3 0 0 0");  // with a table of three objects
const std::string end = record("0");

// A function, then its parameters and how what is told of them ends. DIB is a bitmap of one point, DIB2 says that it
// has two rows; COLOUR is one with a table of one colour, without its point.
constexpr const char* records = R"(
041B | 1 1 1 1 = sound | 1 1 1 = too short
001E | = sound
0100 | 1 = sound
0325 | 0 = sound | 2 1 1 2 2 = sound | 2 1 1 2 = it counts more than it holds | = too short
0324 | 0 = sound | 2 1 1 2 2 = sound | 2 1 1 2 = counts more than it holds | = too short
0538 | 0 = sound | 1 1 5 5 = sound | 2 1 1 1 1 2 2 = sound | 2 1 1 1 1 2 = counts more than it holds
0538 | 9 = counts more than it holds | = too short
0521 | 0 1 1 = sound | 3 6161 61 5 5 = sound | 5 6161 61 5 5 = counts more than it holds | 0 0 = too short
0A32 | 0 0 0 0 = sound | 0 0 2 0 6161 = sound | 0 0 3 0 6161 = counts more than it holds | 0 0 0 = too short
0A32 | 0 0 2 1 6161 = sound | 0 0 2 4 0 0 0 0 6161 = sound | 0 0 3 4 0 0 0 0 6161 = counts more than it holds
0A32 | 0 0 2 2 6161 = counts more than it holds
0626 | F 0 = sound | F 2 6161 = sound | F 3 6161 = counts more than it holds | 0 = too short
00F7 | 300 0 = sound | 300 2 0 0 0 0 = sound | 300 2 0 0 0 = counts more than it holds | 0 = too short
0037 | 0 0 = sound | 0 2 0 0 0 0 = sound | 0 2 0 0 0 = counts more than it holds | 0 = too short
0436 | 0 0 = sound | 0 2 0 0 0 0 = sound | 0 2 0 0 0 = counts more than it holds | 0 = too short
06FF | 0 6 0 0 0 1 2 0 0 0 0 2 0 9 1 5 2 = sound | 0 6 0 0 0 2 2 0 0 0 0 2 0 9 1 5 2 = counts more than it holds
06FF | 0 6 0 0 0 0 2 0 0 0 0 = sound | 0 6 0 0 0 2 2 0 0 0 0 2 0 9 1 5 2 4 0 9 1 2 3 4 4 = sound
06FF | 0 6 0 0 0 2 2 0 0 0 0 2 0 9 1 5 2 4 0 9 1 2 3 4 = counts more than it holds | 0 0 0 0 0 0 0 0 0 0 = too short
06FF | 0 6 0 0 0 1 2 0 0 0 0 3 0 9 1 5 2 = counts more than it holds
012D | 2 = sound | 3 = no such object | = too short
01F0 | 2 = sound | 3 = no such object | = too short
0234 | 2 = sound | 3 = no such object | = too short
012C | 2 = sound | 3 = no such object | = too short
012A | 2 = sound | 3 = no such object | = too short
012B | 2 = sound | 3 = no such object | = too short
0228 | 2 2 = sound | 1 3 = no such object | 3 1 = no such object | 0 = too short
0429 | 2 2 1 1 = sound | 1 3 1 1 = no such object | 0 0 0 = too short
02FA | 0 1 0 0 0 = sound | 0 1 0 0 = too short
02FB | 0 0 0 0 0 0 0 0 0 = sound | 0 0 0 0 0 0 0 0 = too short
02FC | 0 0 0 0 = sound | 0 0 0 = too short
0142 | 5 1 DIB = sound | 5 0 = bitmap has no known size | 5 0 28 0 = bitmap has no known size
0142 | 5 3 DIB = of no known format | 0 = too short
0F43 | 0 0 0 1 1 0 0 1 1 0 0 = bitmap has no known size | 0 0 1 1 1 0 0 1 1 0 0 DIB = sound
0F43 | 0 0 0 1 1 0 0 1 1 0 0 DIB2 = fewer bits than its size needs
0F43 | 0 0 3 1 1 0 0 1 1 0 0 DIB = of no known format | 0 0 0 0 0 0 0 0 0 0 = too short
0940 | 0 0 0 0 1 1 0 0 DIB = sound | 0 0 0 0 0 1 1 0 0 = sound | 0 0 0 0 1 1 0 0 DIB2 = fewer bits than its size needs
0940 | 0 0 0 0 1 1 0 0 = bitmap has no known size | 0 0 0 0 1 1 0 0 COLOUR FFFF FF = sound
0940 | 0 0 0 0 1 1 0 0 COLOUR FFFF = fewer bits than its size needs | 0 0 0 0 0 0 0 = too short
0B41 | 0 0 0 0 1 1 1 1 0 0 = bitmap has no known size | 0 0 0 0 0 0 0 0 0 = too short
0B41 | 0 0 0 0 1 1 1 1 0 0 DIB = sound | 0 0 0 0 1 1 1 1 0 0 DIB2 = fewer bits than its size needs
0B41 | 0 0 0 0 0 1 1 1 1 0 0 = sound
0D33 | 0 1 0 0 0 1 1 0 0 DIB2 = sound | 0 2 0 0 0 1 1 0 0 DIB2 = fewer bits than its size needs
0D33 | 0 1 0 0 0 1 1 0 0 = bitmap has no known size | 3 1 0 0 0 1 1 0 0 DIB = of no known format
0D33 | 0 0 0 0 0 0 0 0 = too short
0922 | 0 0 0 0 1 1 0 0 0 1 2 4 101 0 0 0 0 = sound | 0 0 0 0 1 1 0 0 0 1 2 4 101 0 0 0 = a bitmap lies outside
0922 | 0 0 0 0 0 1 1 0 0 = sound | 0 0 0 0 1 1 0 0 = a bitmap lies outside
0922 | 0 0 0 0 1 1 0 0 0 1 1 1 101 = a bitmap lies outside | 0 0 0 0 0 0 0 = too short
0B23 | 0 0 0 0 1 1 1 1 0 0 0 1 2 2 101 0 0 = sound | 0 0 0 0 1 1 1 1 0 0 0 1 2 2 101 0 = a bitmap lies outside
0B23 | 0 0 0 0 0 1 1 1 1 0 0 = sound | 0 0 0 0 1 1 1 1 0 0 = a bitmap lies outside | 0 0 0 0 0 0 0 0 0 = too short
01F9 | 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 = sound | 0 1 1 1 101 0 0 0 0 0 0 0 0 0 0 0 = a bitmap lies outside
01F9 | 0 1 2 2 101 0 0 0 0 0 0 0 0 0 0 0 0 0 = sound | 0 1 2 2 101 0 0 0 0 0 0 0 0 0 0 0 0 = a bitmap lies outside
01F9 | 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 = too short
)";

TEST(OlderMetafile, SaysWhichRecordLiesAboutWhat) {
  const std::string bitmap = " 0 1 20 0 0 0 0 0 0 0 0 0 0 0 0 FFFF FF";
  for (const auto& row : rowsOf(records)) {
    for (std::size_t field = 1; field < row.size(); ++field) {
      const std::size_t equals = row[field].find('=');
      std::string words = row[0] + " " + row[field].substr(0, equals);
      words = replaceAll(replaceAll(words, "DIB2", "28 0 1 0 2" + bitmap), "DIB", "28 0 1 0 1" + bitmap);
      words = replaceAll(words, "COLOUR", "28 0 1 0 1 0 1 20 0 0 0 0 0 0 0 0 1 0 0 0 7 7");
      const std::string fault = row[field].substr(equals + 2);
      const std::string cut = header + record(words);
      EXPECT_THAT(olderMetafileFault(cut + end).value_or("sound"), EndsWith(fault)) << words;
      if (fault == "sound") {
        EXPECT_EQ(olderMetafileFault(cut), "no older record ends it") << words;
        EXPECT_THAT(olderMetafileFault(cut.substr(0, cut.size() - 2)).value_or("sound"), EndsWith("a wrong size"));
      }
    }
  }
}

TEST(OlderMetafile, BeginsWithAHeader) {
  const char* const noHeader = "no header of an older metafile";
  const std::pair<std::string, const char*> cases[] = {
      {header + end, "sound"},
      {header, "no older record ends it"},
      {bytesOf("1 9 300 0 0 0 0 0 0") + record("012D 0") + end, "sound"},
      {bytesOf("1 9 300 0 0 0 0 0 0") + record("012D 1") + end, "older record at 18: no such object"},
      {bytesOf("2 9 300 0 0 3 0 0 0") + end, "sound"},
      {bytesOf("3 9 300 0 0 3 0 0 0") + end, noHeader},
      {bytesOf("1 8 300 0 0 3 0 0 0") + end, noHeader},
      {header.substr(0, 16), noHeader},
      {"", noHeader},
      {header + bytesOf("2 0 0") + end, "older record at 18: a wrong size"},
      {header + bytesOf("FFFF FFFF 0") + end, "older record at 18: a wrong size"},
  };
  for (const auto& [bytes, fault] : cases) {
    EXPECT_EQ(olderMetafileFault(bytes).value_or("sound"), fault);
  }
}

}  // namespace
}  // namespace vernoxa::desktop
