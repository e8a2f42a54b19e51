#include <gtest/gtest.h>

#include "drawing/drawn.h"
#include "drawing/graphic_library.h"
#include "drawing/page_export.h"
#include "support/table.h"

namespace vernoxa::drawing {
namespace {

// Where the line begins in a drawing and in a pad stack, where it ends, and what else there is.
constexpr const char* shapes = R"(
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
  for (const auto& row : rowsOf(shapes)) {
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
