// A character that the table of the code page does not have is no part of the plug-in's own texts.
#include "text/gbk_literal.h"

namespace vernoxa {

// Behind the one that is fine: any, and the first and the last lead byte of two bytes and of three.
constexpr char8_t texts[][6] = {u8"é号", u8"a猫", u8"\u00A7", u8"\u07FF", u8"\u0800", u8"\uFFFD"};

constexpr const auto& bytes = gbkLiteral<texts[CASE]>.bytes;

}  // namespace vernoxa
