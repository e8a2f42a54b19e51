// What a page file holds, against cJSON's own printer.
#include <random>

#include "drawing/drawn.h"
#include "drawing/page_export.h"
#include "support/hostile_values.h"
#include "support/session_test.h"

namespace vernoxa::drawing {
namespace {

constexpr std::string_view kinds[] = {"Line",    "Part",       "Text",     "Port", "Global", "OffPage",
                                      "Box",     "TitleBlock", "Ellipse",  "Arc",  "Bezier", "Polyline",
                                      "Polygon", "Junction",   "Property", "Pin",  "Name",   "Text"};

class RandomRecords {
 public:
  std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(engine_); }

  // Plain text, or bytes of all values but NUL around Chinese in either encoding and what a text must escape. Now and
  // then one that is longer than the blocks in which elements are kept.
  std::string text() {
    static const std::string pieces[] = {"",      utf8(u8"电阻"), utf8(u8"\U0001F600"), std::string(tclNul), "\xB5\xE7",
                                         "\b\f/", "\r\n"};
    return below(20'000) == 0 ? std::string(70'000 + below(3), 'x')
           : below(4) > 0     ? std::to_string(below(10'000))
                              : hostile_.next() + pieces[below(std::size(pieces))] + hostile_.next();
  }

 private:
  std::mt19937 engine_{20240305};
  HostileValues hostile_;
};

class PageText : public SessionTest {};

TEST_F(PageText, IsWhatTheLibraryPrintsForAnyContent) {
  fake.files.addFolder("C:\\App");
  auto& pages = part<PageExport>();
  RandomRecords random;
  pages.start();
  for (int page = 0; page < 16; ++page) {
    WordRecord start(std::vector<std::string>{"Page", random.text(), random.text(), random.text(), "K"});
    start.showInCodePage(text, false);
    pages.addRecord(Use::page, start, start);
    for (int number = 0; number < 2000; ++number) {
      std::vector<std::string> texts{std::string(kinds[random.below(std::size(kinds))])};
      while (texts.size() < Record::size) {
        texts.push_back(random.text());
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
