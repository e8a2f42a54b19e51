// What a page file holds, against cJSON's own printer.
#include <random>

#include "drawing/drawn.h"
#include "drawing/page_export.h"
#include "support/session_test.h"

namespace vernoxa::drawing {
namespace {

constexpr std::string_view kinds[] = {"Line",    "Part",       "Text",     "Port", "Global", "OffPage",
                                      "Box",     "TitleBlock", "Ellipse",  "Arc",  "Bezier", "Polyline",
                                      "Polygon", "Junction",   "Property", "Pin",  "Name",   "Text"};

class RandomRecords {
 public:
  std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(engine_); }

  // Bytes of all values but NUL, plain text, Chinese in either encoding, or what a text must escape.
  std::string text() {
    static const std::string pieces[] = {
        utf8(u8"电阻"), utf8(u8"\U0001F600"), std::string(tclNul), "\xB5\xE7", "\"\\/\b\f\t", "\r\n", "R10"};
    if (below(4) > 0) {
      return std::to_string(below(10'000));
    }
    std::string result;
    for (std::size_t left = below(4); left > 0; --left) {
      if (below(3) == 0) {
        for (std::size_t bytes = below(6); bytes > 0; --bytes) {
          result += static_cast<char>(1 + below(255));
        }
      } else {
        result += pieces[below(std::size(pieces))];
      }
    }
    return result;
  }

  // A long text now and then, longer than the blocks in which elements are kept.
  std::string anyText() { return below(20'000) == 0 ? std::string(70'000 + below(3), 'x') : text(); }

 private:
  std::mt19937 engine_{20240305};
};

class PageText : public SessionTest {};

TEST_F(PageText, IsWhatTheLibraryPrintsForAnyContent) {
  fake.files.addFolder("C:\\App");
  auto& pages = part<PageExport>();
  RandomRecords random;
  pages.start();
  for (int page = 0; page < 16; ++page) {
    WordRecord start({"Page", random.anyText(), random.anyText(), random.anyText(), "K"});
    start.showInCodePage(text, false);
    pages.addRecord(Use::page, start, start);
    for (int number = 0; number < 2000; ++number) {
      std::vector<std::string> texts{std::string(kinds[random.below(std::size(kinds))])};
      while (texts.size() < Record::size) {
        texts.push_back(random.anyText());
      }
      WordRecord record(std::move(texts));
      const Use use = random.below(4) == 0 ? Use::symbol : Use::page;
      if (!pages.draw(use, record, Encoding::asGiven)) {
        record.showInCodePage(text, random.below(2) == 0);
        pages.addRecord(use, record, record);
      }
    }
    pages.finish({"S", "P", std::to_string(page)});
    const std::string file = fake.files.bytes("C:\\App\\Cache\\Output\\S@!@P@!@" + std::to_string(page) + ".json");
    const auto parsed = Json::parse(file);
    ASSERT_TRUE(parsed.document) << page << ": " << parsed.errorRest.substr(0, 80);
    ASSERT_TRUE(withDosLineEnds(parsed.document.printFormatted()) == file) << page;
  }
}

}  // namespace
}  // namespace vernoxa::drawing
