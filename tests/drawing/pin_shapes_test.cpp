#include <gtest/gtest.h>

#include "drawing/drawn.h"

namespace vernoxa {
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
  ASSERT_EQ(pinShapes().size(), std::size(shapes));
  for (std::size_t index = 0; index < std::size(shapes); ++index) {
    const Shape& shape = shapes[index];
    EXPECT_EQ(pinShapes()[index].name(), shape.name);
    std::string expected;
    if (shape.dot) {
      expected += std::string("circle cx=3|cy=0|r=3") + style;
    }
    expected += std::string("line x1=") + shape.lineStart + "|y1=0|x2=" + shape.lineEnd + "|y2=0" + style;
    if (shape.clock) {
      expected += std::string("line x1=-3|y1=0|x2=0|y2=3") + style + "line x1=-3|y1=0|x2=0|y2=-3" + style;
    }
    Elements elements;
    drawPinShape(pinShapes()[index], elements);
    EXPECT_EQ(drawn(elements), expected) << shape.name;
  }
}

TEST(PinShapes, PadStacks) {
  for (std::size_t index = 0; index < std::size(shapes); ++index) {
    const Shape& shape = shapes[index];
    const std::string arc = R"({"fill":false,"type":"Arc","xy":[0,0],"segs":[[0,-3,6,6,0,360]]},)";
    const std::string line = std::string(R"({"fill":false,"type":"line","xy":[0,0],"segs":[)") + shape.padLine;
    EXPECT_EQ(padStack(pinShapes()[index]).printUnformatted(), R"({"pads":[)" + (shape.dot ? arc : "") + line +
                                                                   (shape.clock ? ",[-3,0,0,3],[-3,0,0,-3]" : "") +
                                                                   R"(]}],"name":")" + shape.name + "\"}");
  }
}

TEST(PinShapes, References) {
  const struct {
    std::string_view keywords;
    std::string_view reference;
  } cases[] = {{"SHORT", "#PackagePinShort"},
               {"CLOCK", "#PackagePinLongClock"},
               {"LONG DOT", "#PackagePinLongDot"},
               {"SHORT CLOCK DOT", "#PackagePinShortClockDot"},
               {"DOTSHORT", "#PackagePinShortDot"},
               {"CLOCK SHORT", "#PackagePinShortClock"},
               {"DOT-CLOCK", "#PackagePinLongClockDot"},
               {"", "#PackagePinLong"},
               {"short", "#PackagePinLong"},
               {"LONG ZERO DOT", ""}};
  for (const auto& each : cases) {
    EXPECT_EQ(pinReference(each.keywords), each.reference) << each.keywords;
  }
}

}  // namespace
}  // namespace vernoxa
