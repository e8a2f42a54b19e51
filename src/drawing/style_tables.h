// The host's codes for colours, lines, fills, turns and fonts, as the attribute values of a drawing.
//
// Codes are compared as whole texts. A result is a view of a table or of what was given, and valid as long as that.
#pragma once

#include <string_view>

namespace vernoxa {

// "#" and six upper-case hexadecimal digits. The code is read as a decimal number up to the first other character and
// counts round the 48 colours; no number, or a negative one, is colour 0.
std::string_view colour(std::string_view code);

// "stroke-dasharray" of wires, buses and graphics. A code outside the table passes through.
std::string_view dashPattern(std::string_view lineStyle);

// "stroke-width" of graphics. A code outside the table passes through.
std::string_view strokeWidth(std::string_view lineWidth);

// "stroke-width" of the lines, wires and buses of a page, where "BusWire" is a code too.
std::string_view pageStrokeWidth(std::string_view lineWidth);

// "fill": the shape's colour, as colour() gave it, for a solid fill, else "none". Hatched shapes are drawn unfilled.
std::string_view fill(std::string_view fillStyle, std::string_view shapeColour);

// The two factors of "scale(".
std::string_view mirrorScale(std::string_view mirror);

// Degrees of "rotate(" for placed objects; 0 for every other text.
std::string_view rotationAngle(std::string_view rotation);

// Degrees of "rotate(" for a pin on a side of its symbol. A text outside the table passes through.
std::string_view pinSideAngle(std::string_view side);

// "font-size" of a font height; negative heights are character heights. One outside the table loses its sign.
std::string_view fontSize(std::string_view height);

}  // namespace vernoxa
