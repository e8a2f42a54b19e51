#include <gtest/gtest.h>

#include "drawing/drawn.h"
#include "drawing/graphic_library.h"
#include "drawing/page_export.h"

namespace vernoxa::drawing {
namespace {

constexpr const char* style = "|style=stroke:#FF0000;stroke-width:1;fill:none\n";

struct Shape {
  const char* name;
  const char* lineStart;
  const char* lineEnd;
  const char* padLine;
  bool dot;
  bool clock;
};

constexpr Shape shapes[] = {
    {"PackagePinLongClockDot", "6", "30", "[6,0,30,0]", true, true},
    {"PackagePinLong", "0", "30", "[0,0,30,0]", false, false},
    {"PackagePinLongClock", "0", "30", "[0,0,30,0]", false, true},
    {"PackagePinLongDot", "6", "30", "[6,0,30,0]", true, false},
    {"PackagePinShortClockDot", "6", "10", "[6,0,10,0]", true, true},
    {"PackagePinShort", "0", "10", "[0,0,10,0]", false, false},
    {"PackagePinShortClock", "6", "10", "[0,0,10,0]", false, true},
    {"PackagePinShortDot", "6", "10", "[6,0,10,0]", true, false},
};

TEST(PinShapes, Drawings) {
  PageDocument document;
  document.page.add({"Page", "P"}, Encoding::utf8);
  document.symbols.add({"Name", "RES"}, Encoding::utf8);
  const Json page = written([&document](OutputFile& file) { return document.writeTo(file); });
  std::string expected;
  for (const Shape& shape : shapes) {
    expected += std::string("g id=") + shape.name + '\n';
    if (shape.dot) {
      expected += std::string("circle cx=3|cy=0|r=3") + style;
    }
    expected += std::string("line x1=") + shape.lineStart + "|y1=0|x2=" + shape.lineEnd + "|y2=0" + style;
    if (shape.clock) {
      expected += std::string("line x1=-3|y1=0|x2=0|y2=3") + style + "line x1=-3|y1=0|x2=0|y2=-3" + style;
    }
  }
  EXPECT_EQ(drawn((*page.member("children").begin()).member("children")), expected + "g id=RES\n");
}

TEST(PinShapes, PadStacks) {
  const LibraryDocument document;
  const Json library = written([&document](OutputFile& file) { return document.writeTo(file); });
  std::string expected;
  for (const Shape& shape : shapes) {
    const std::string arc = R"({"fill":false,"type":"Arc","xy":[0,0],"segs":[[0,-3,6,6,0,360]]},)";
    const std::string line = std::string(R"({"fill":false,"type":"line","xy":[0,0],"segs":[)") + shape.padLine;
    expected += std::string(expected.empty() ? "[" : ",") + R"({"pads":[)" + (shape.dot ? arc : "") + line +
                (shape.clock ? ",[-3,0,0,3],[-3,0,0,-3]" : "") + R"(]}],"name":")" + shape.name + "\"}";
  }
  EXPECT_EQ(Json::copyOf(library.member("padstacks")).printUnformatted(), expected + "]");
}

}  // namespace
}  // namespace vernoxa::drawing
