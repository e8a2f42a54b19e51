// Records and the elements that they draw.
#include "drawing/drawn.h"
#include "drawing/graphic_library.h"
#include "drawing/page_export.h"
#include "support/table.h"
#include "system/fake_code_page.h"

namespace vernoxa::drawing {
namespace {

// A record's words between semicolons, and what it draws.
void expectDrawn(Use use, std::string_view cases) {
  for (const auto& row : rowsOf(cases)) {
    EXPECT_EQ(drawn(use, WordRecord(row[0])), row[1].empty() ? "" : row[1] + "\n") << row[0];
  }
}

constexpr const char* ofEither = R"(
Box;1;2;30;40;8;1;1;0;2 | rect style=stroke:#FF0000;stroke-width:4;fill:#FF0000;stroke-dasharray:10,5|x=1|y=2|width=30|height=40
Box;1;2;30;40;8;9;9;1 | rect style=stroke:#FF0000;stroke-width:9;fill:none;stroke-dasharray:9|x=1|y=2|width=30|height=40
Ellipse;5;6;7;8;47;2;2;0;0 | ellipse style=stroke:#FFFFFF;stroke-width:7;fill:#FFFFFF;stroke-dasharray:5,5|cx=5|cy=6|rx=7|ry=8
Arc;M0 0A1 1;18;3;3 | path style=stroke:#00FF00;stroke-width:3;fill:none;stroke-dasharray:10,5,3,5|d=M0 0A1 1
Bezier;M0 0C1 1;18;5;0 | path style=stroke:#00FF00;stroke-width:1;fill:none;stroke-dasharray:0,0|d=M0 0C1 1
Polyline;0,0 1,1;18;4;1 | polyline style=stroke:#00FF00;stroke-width:4;fill:none;stroke-dasharray:10,3,3,3,3,3|points=0,0 1,1
Polygon;M0 0Z;18;0;0;0;1 | path style=stroke:#00FF00;stroke-width:1;fill:#00FF00;stroke-dasharray:0,0|d=M0 0Z
Polygon;M0 0Z;18;0;0 | path style=stroke:#00FF00;stroke-width:1;fill:none;stroke-dasharray:0,0|d=M0 0Z
Text;1;2;R1;8;?;-9;1 | text [R1] style=stroke:#FF0000;stroke-width:0;font-size:7;fill:#FF0000|transform=translate(1,2) rotate(-90)|dominant-baseline=hanging
Box | rect style=stroke:#0000FF;stroke-width:;fill:none;stroke-dasharray:|x=|y=|width=|height=
BitMap;1;2 |
box |
)";

TEST(Elements, OfPagesAndSymbolsAlike) {
  expectDrawn(Use::page, ofEither);
  expectDrawn(Use::symbol, ofEither);
  EXPECT_EQ(drawn(Use::page, Record{}), "");
}

TEST(Elements, OfPages) {
  expectDrawn(Use::page, R"(
Line;0;0;10;0;31;0;3 | line style=stroke:#8000FF;stroke-width:1;fill:none;stroke-dasharray:0,0;stroke-linecap:round|x1=0|y1=0|x2=10|y2=0
Line;0;0;10;0;31;1;BusWire | line style=stroke:#8000FF;stroke-width:5;fill:none;stroke-dasharray:10,5;stroke-linecap:round|x1=0|y1=0|x2=10|y2=0
Part;100;200;1;2;RES;INS1 | use id=INS1|transform=translate(100 200) rotate(-90) scale(1,-1)|xlink:href=#RES
Port;1;2;3;1;P;x | use transform=translate(1 2) rotate(-270) scale(-1,1)|xlink:href=#P
Global;1;2;2;;GND | use transform=translate(1 2) rotate(180) scale(1,1)|xlink:href=#GND
OffPage;1;2;0;0;O | use transform=translate(1 2) rotate(0) scale(1,1)|xlink:href=#O
TitleBlock;1;2 | use transform=translate(1 2) rotate(0) scale(1,1)|xlink:href=#
Junction;1;2;3;24;0 | circle cx=1|cy=2|r=3|style=stroke:none;stroke-width:1;fill:#800000
Junction;1;2;3;24;00 | circle cx=1|cy=2|r=3|style=stroke:none;stroke-width:1;fill:none
Page;1 |
Alias;1 |
BusEntry;1 |
BezierPart;1 |
Property;1 |
Pin;1 |
)");
}

TEST(Elements, OfSymbols) {
  expectDrawn(Use::symbol, R"(
Line;0;1;2;3;8;1;0 | line style=stroke:#FF0000;stroke-width:1;stroke-linecap:round|x1=0|y1=1|x2=2|y2=3
Line;0;1;2;3;8;1;2 | line style=stroke:#FF0000;stroke-width:2;stroke-linecap:round|x1=0|y1=1|x2=2|y2=3
Pin;0;10;x;x;8;0;SHORT CLOCK;LEFT | use transform=translate(0,10) rotate(180)|xlink:href=#PackagePinShortClock
Pin;0;10;x;x;8;0;ZERO;left | use transform=translate(0,10) rotate(left)|xlink:href=
Part;1 |
Junction;1 |
)");
}

// Texts are copied by their length; of 255 bytes and more they have it before them.
TEST(Elements, ValuesOfEveryLengthAndContent) {
  std::string digits;
  while (digits.size() < 1000) {
    digits += std::to_string(digits.size());
  }
  const std::string special = "\x01\x1F\b\f\n\r\t\"\\/\x7F\xC3\xA4";
  for (std::size_t size = 0; size < 600; size += size < 40 || size > 240 ? 1 : 9) {
    for (const std::string& inserted : {std::string(), special}) {
      const std::string path = digits.substr(0, size / 2) + inserted + digits.substr(0, size - size / 2);
      const std::string id = digits.substr(0, size % 20) + inserted;
      EXPECT_EQ(drawn(Use::page, Record{"Arc", path, "0", "0", "0"}),
                "path style=stroke:#0000FF;stroke-width:1;fill:none;stroke-dasharray:0,0|d=" + path + "\n");
      EXPECT_EQ(drawn(Use::page, Record{"Part", "1", id, "0", "0", id, path}),
                "use id=" + path + "|transform=translate(1 " + id + ") rotate(0) scale(1,1)|xlink:href=#" + id + "\n");
    }
  }
}

// Each byte takes six in the file, which is written in pieces.
TEST(Elements, ManyOfTheLongest) {
  const std::string longest(255, '\x01');
  const Record box{"Box", longest, longest, longest, longest, "0", longest, longest, "0"};
  Elements boxes(Use::page, Elements::In::array, 2);
  std::string expected;
  for (int count = 0; count < 100; ++count) {
    EXPECT_TRUE(boxes.add(box, Encoding::utf8));
    expected += "rect style=stroke:#0000FF;stroke-width:" + longest + ";fill:#0000FF;stroke-dasharray:" + longest +
                "|x=" + longest + "|y=" + longest + "|width=" + longest + "|height=" + longest + "\n";
  }
  EXPECT_TRUE(drawn(boxes) == expected);
}

TEST(Elements, AsGivenTakesOnlyWhatIsTheSameInEveryEncoding) {
  const std::string chinese = utf8(u8"电");
  Elements elements(Use::symbol, Elements::In::groups, 2);
  EXPECT_FALSE(elements.add({"Name", std::string(20'000, 'x') + chinese}, Encoding::asGiven));
  EXPECT_TRUE(elements.isEmpty());
  EXPECT_FALSE(elements.isOpen());
  EXPECT_TRUE(elements.add({"Name", std::string(20'000, 'y') + chinese}, Encoding::utf8));
  EXPECT_TRUE(elements.add({"Line", "1", "2", "3", "4", "0", chinese, "0"}, Encoding::asGiven));  // no style
  EXPECT_TRUE(elements.add({"Text", "1", "2", "", "0", "", "-9", "0"}, Encoding::asGiven));       // no lines
  for (const std::string& words :
       {"Arc;" + chinese, std::string("Arc;\""), std::string("Arc;\n"), std::string("Arc;;1;0\\"),
        std::string("Text;;;A\r\nB"), std::string("BitMap"), "Line;1;2;3;4;0" + chinese + ";0;0"}) {
    EXPECT_FALSE(elements.add(WordRecord(words), Encoding::asGiven)) << words;
  }
  EXPECT_EQ(drawn(elements), "g id=" + std::string(20'000, 'y') + chinese +
                                 "\nline style=stroke:#0000FF;stroke-width:1;stroke-linecap:round|"
                                 "x1=1|y1=2|x2=3|y2=4\n");
}

// The places of a text's lines.
std::string places(const std::string& x, const std::string& y, const std::string& lines, const std::string& font,
                   const std::string& rotation) {
  const std::string elements = drawn(Use::page, Record{"Text", x, y, lines, "0", "", font, rotation});
  std::string found;
  for (std::size_t at = 0; (at = elements.find('[', at)) != std::string::npos; ++at) {
    const std::size_t place = elements.find("translate", at) + 9;
    found += elements.substr(at, elements.find(" style", at) - at) +
             elements.substr(place, elements.find(' ', place) - place);
  }
  return found;
}

// x, y, font size and rotation of two lines, and where the second one stands: reckoned in decimal.
constexpr const char* secondLines = R"(
10 | 20 | -12 | 2 | 10,31
10 | 20 | -12 | 1 | 21,20
10 | 20 | -12 | 3 | -1,20
10.5 | 20 | -12 | 3 | -0.5,20
1 | -11 | -12 | 0 | 1,0
1 | +2.500 | -12 | 0 | 1,13.5
1 | abc |  | 0 | 1,2
1 | 1e3 | 1 | 0 | 1,1003
1 | -1.5E+2 | 1E1 | 0 | 1,-138
1 | 2e-06 | 1e-05 | 0 | 1,2.000012
1 | 1e-7 | 0.125e1 | 0 | 1,3.25
1 | 30000e-10 | 1 | 0 | 1,3.000003
1 | x5 | 1 | 0 | 1,3
1 | 1e | 1 | 0 | 1,4
1 | 1e-x | 1 | 0 | 1,4
1 | e3 | 1 | 0 | 1,3
1 | 0e99999999999999999999 | 1 | 0 | 1,3
1 | 1e-99999999999999999999 | 1 | 0 | 1,3
1 | -1e99999999999999999999 | 1 | 0 | 1,-9223372036851.775807
1 | 0.1234567 | 1 | 0 | 1,3.123456
1 | -99999999999999 | 1 | 0 | 1,-9223372036851.775807
1 | 9999999999999 | 99999999999999 | 0 | 1,9223372036854.775807
-9999999999999 | 1 | 99999999999999 | 3 | -9223372036854.775808,1
)";

TEST(Elements, LinesOfATextFollowEachOther) {
  for (const auto& row : rowsOf(secondLines)) {
    EXPECT_EQ(places(row[0], row[1], "A\r\nB", row[2], row[3]),
              "[A](" + row[0] + "," + row[1] + ")[B](" + row[4] + ")");
  }
  EXPECT_EQ(places("10", "0.20", "A\r\nB\r\nC", "0.1", "0"), "[A](10,0.20)[B](10,2.3)[C](10,4.4)");
  EXPECT_EQ(places("10", "20", "A\r\nB", " \t1", "0"), "[A](10,20)[B](10,23)");
  EXPECT_EQ(places("10", "20", "\r\nA\r\n\r\nB\r\n", "-12", "0"), "[A](10,20)[B](10,31)");
  EXPECT_EQ(places("10", "20", "A\nB\rC", "-12", "0"), "[A\nB\rC](10,20)");
  EXPECT_EQ(places("10", "20", "", "-12", "0") + places("10", "20", "\r\n", "-12", "0"), "");
}

// Where the line begins in a drawing and in a pad stack, where it ends, and what else there is.
constexpr const char* pinCases = R"(
PackagePinLongClockDot  | 6 | 6 | 30 | dot | clock
PackagePinLong          | 0 | 0 | 30 |     |
PackagePinLongClock     | 0 | 0 | 30 |     | clock
PackagePinLongDot       | 6 | 6 | 30 | dot |
PackagePinShortClockDot | 6 | 6 | 10 | dot | clock
PackagePinShort         | 0 | 0 | 10 |     |
PackagePinShortClock    | 6 | 0 | 10 |     | clock
PackagePinShortDot      | 6 | 6 | 10 | dot |
)";

TEST(PinShapes, InDrawingsAndInPadStacks) {
  const std::string style = "|style=stroke:#FF0000;stroke-width:1;fill:none\n";
  const std::string circle = "circle cx=3|cy=0|r=3" + style;
  const std::string arc = R"({"fill":false,"type":"Arc","xy":[0,0],"segs":[[0,-3,6,6,0,360]]},)";
  const std::string wedge = "line x1=-3|y1=0|x2=0|y2=3" + style + "line x1=-3|y1=0|x2=0|y2=-3" + style;
  std::string drawings;
  std::string padStacks;
  for (const auto& row : rowsOf(pinCases)) {
    const bool dot = row[4] == "dot";
    const bool clock = row[5] == "clock";
    drawings += "g id=" + row[0] + "\n" + (dot ? circle : "") + "line x1=" + row[1] + "|y1=0|x2=" + row[3] + "|y2=0" +
                style + (clock ? wedge : "");
    padStacks += std::string(padStacks.empty() ? "" : ",") + R"({"pads":[)" + (dot ? arc : "") +
                 R"({"fill":false,"type":"line","xy":[0,0],"segs":[[)" + row[2] + ",0," + row[3] +
                 (clock ? ",0],[-3,0,0,3],[-3,0,0,-3]" : ",0]") + R"(]}],"name":")" + row[0] + "\"}";
  }
  PageDocument document;
  document.page.add({"Page", "P"}, Encoding::utf8);
  document.symbols.add({"Name", "RES"}, Encoding::utf8);
  const Json page = written([&document](OutputFile& file) { return document.writeTo(file); });
  EXPECT_EQ(drawn((*page.member("children").begin()).member("children")), drawings + "g id=RES\n");
  const Json library = written([](OutputFile& file) { return LibraryDocument().writeTo(file); });
  EXPECT_EQ(Json::copyOf(library.member("padstacks")).printUnformatted(), "[" + padStacks + "]");
}

}  // namespace
}  // namespace vernoxa::drawing
