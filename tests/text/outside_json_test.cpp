#include "text/outside_json.h"

#include <gtest/gtest.h>

#include "system/fake_world.h"

namespace vernoxa::inline text {
namespace {

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (; count > 0; --count) {
    text += piece;
  }
  return text;
}

TEST(OutsideJson, IsBounded) {
  constexpr std::size_t longest = 33'554'432;
  constexpr const char* size = "longer than 32 MB";
  constexpr const char* depth = "nested deeper than 1000 levels";
  constexpr std::size_t most = 4'194'304;
  constexpr const char* count = "too many values";
  const std::string deepest = repeated("[", 1000) + repeated("]", 1000);
  const struct {
    const char* what;
    std::string text;
    const char* refusal;
  } rows[] = {
      {"nothing", "", ""},
      {"the longest text", '"' + std::string(longest - 2, 'x') + '"', ""},
      {"one byte more", '"' + std::string(longest - 1, 'x') + '"', size},
      {"what ends at a NUL", std::string("{}\0", 3) + std::string(longest, 'x'), ""},
      {"the deepest text", deepest, ""},
      {"one level more", "[" + deepest + "]", depth},
      {"behind a byte order mark", "\xEF\xBB\xBF \r\n[" + deepest + "]", depth},
      {"deep objects", "[" + repeated(R"({"a":)", 1000), depth},
      {"brackets in a string", "[\"" + repeated("[", 2000) + "\"]", ""},
      {"brackets behind a quote in a string", R"(["\"\\)" + repeated("[", 2000) + "\"]", ""},
      {"brackets behind a string", R"(["\\",)" + repeated("[", 1000), depth},
      {"one after the other", "[" + repeated("[],", 1500) + "1]", ""},
      {"behind the first value", "{} " + repeated("[", 2000), ""},
      {"behind a bracket that closes nothing", "] " + repeated("[", 2000), ""},
      {"behind a number", "1 " + repeated("[", 2000), ""},
      {"behind a string as a whole", "\"\" " + repeated("[", 2000), ""},
      {"the most values", "[" + repeated("0,", most - 2) + "0]", ""},
      {"one value more", "[" + repeated("0,", most - 1) + "0]", count},
      {"objects", "[" + repeated("{},", most / 2), count},
      {"words", "[\"" + std::string(most, ' ') + "\"]", count},
      {"no end to a string", "[\"" + repeated("\\", 2001), ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(outsideJsonRefusal(row.text), row.refusal) << row.what;
  }
  EXPECT_EQ(outsideJsonRefusal("[" + repeated("0,", 1'048'574) + "0]", mostMessageValues), "");
  EXPECT_EQ(outsideJsonRefusal("[" + repeated("0,", 1'048'575) + "0]", mostMessageValues), count);
}

TEST(OutsideJson, ARefusalIsLogged) {
  FakeSession with;
  with.enableTraffic();
  EXPECT_FALSE(parseOutsideJson(repeated("[", 1001), with.logs));
  EXPECT_EQ(with.traffic(), "JSON refused: nested deeper than 1000 levels");
  EXPECT_FALSE(parseOutsideJson("[", with.logs));
  EXPECT_TRUE(parseOutsideJson("[]", with.logs));
  EXPECT_EQ(with.traffic(), "JSON refused: nested deeper than 1000 levels");
}

}  // namespace
}  // namespace vernoxa::inline text
