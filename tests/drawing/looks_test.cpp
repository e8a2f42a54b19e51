#include "drawing/shapes.h"

#include <gtest/gtest.h>

#include <string>

#include "text/text.h"

namespace vernoxa::drawing {
namespace {

// What follows the codes: "code>result" between bars.
void expectAll(std::string_view look, std::string_view cases) {
  for (const std::string& each : splitFields(cases, '|')) {
    const std::size_t sign = each.find('>');
    EXPECT_EQ(lookNamed(look).of(each.substr(0, sign)), each.substr(sign + 1)) << look << " " << each;
  }
}

TEST(Looks, Codes) {
  expectAll("dash", "0>0,0|1>10,5|2>5,5|3>10,5,3,5|4>10,3,3,3,3,3|5>0,0|6>6|>| 1> 1|01>01");
  expectAll("width", "0>1|1>4|2>7|3>3|10>10|BusWire>BusWire");
  expectAll("page-width", "0>1|1>2|2>3|3>1|BusWire>5|4>4|>");
  expectAll("scale", "0>1,1|1>-1,1|2>1,-1|3>1,1|>1,1");
  expectAll("angle", "0>0|1>-90|2>180|3>-270|10>0|>0|LEFT>0|RIGHT>0|TOP>-90|BOTTOM>-90");
  expectAll("side", "LEFT>180|RIGHT>0|TOP>-90|BOTTOM>-270|top>top");
  expectAll("font-size",
            "-7>5|-8>6|-9>7|-10>8|-12>9|-13>13|-14>13|-15>15|-16>16|-19>19|-20>20|-21>22|-24>24|-29>29|-32>32|-35>35|"
            "-37>37|-48>48|-56>56|-64>64|-96>96|-11>11|12>12|>|->|--7>-7|-x>x");
  expectAll("pin",
            "SHORT>#PackagePinShort|CLOCK>#PackagePinLongClock|LONG DOT>#PackagePinLongDot|"
            "SHORT CLOCK DOT>#PackagePinShortClockDot|DOTSHORT>#PackagePinShortDot|CLOCK SHORT>#PackagePinShortClock|"
            "DOT-CLOCK>#PackagePinLongClockDot|>#PackagePinLong|short>#PackagePinLong|LONG ZERO DOT>");
}

TEST(Looks, Colours) {
  // The last two saturate at 2^31 - 1, which is 31 beyond a multiple of 48.
  expectAll("colour",
            "0>#0000FF|8>#FF0000|47>#FFFFFF|48>#0000FF|55>#FF80FF|96>#0000FF|abc>#0000FF|>#0000FF|8x>#FF0000|"
            " \t\n\r8>#FF0000|+9>#FFFF00|+-9>#0000FF|-9>#0000FF|-99999999999>#0000FF|99999999999999999999>#8000FF|"
            "99999999999>#8000FF");
  std::string all;
  for (int code = 0; code < 48; ++code) {
    all.append(code == 0 ? "" : " ").append(lookNamed("colour").of(std::to_string(code)).substr(1));
  }
  EXPECT_EQ(all,
            "0000FF FFFF80 80FF80 00FF80 80FFFF 0080FF FF80C0 FF80FF "
            "FF0000 FFFF00 80FF00 00FF40 00FFFF 0080C0 8080C0 FF00FF "
            "804040 FF8040 00FF00 008080 004080 8080FF 800040 FF0080 "
            "800000 FF8000 008000 008040 0000FF 000080 800080 8000FF "
            "400000 804000 004000 004040 000080 000040 400040 400080 "
            "000000 808000 808040 808080 408080 C0C0C0 400040 FFFFFF");
}

}  // namespace
}  // namespace vernoxa::drawing
