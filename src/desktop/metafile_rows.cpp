#include "desktop/metafile_rows.h"

#include <algorithm>
#include <array>

#include "desktop/metafile_bitmap.h"
#include "desktop/metafile_parts.h"

namespace vernoxa::desktop {
namespace {

constexpr std::uint32_t stockObject = 0x80000000;  // the system's own, numbered in the other bits
constexpr std::uint32_t lastStockObject = 20;

// --- the table of objects -------------------------------------------------------------------------------------------

Fault objectFault(std::uint32_t index, const PlayerState& state) {
  return index == 0 || index >= state.objects.size() ? "no such object" : nullptr;
}

// A player that makes an object in the place of another never frees the former.
Fault makeObject(std::uint32_t index, PlayerState& state) {
  if (const Fault fault = objectFault(index, state)) {
    return fault;
  }
  if (state.objects[index]) {
    return "an object is made over another";
  }
  state.objects[index] = true;
  return nullptr;
}

Fault makes(const MetafileRecord& record, PlayerState& state) {
  return makeObject(record.number(8), state);
}

Fault selects(const MetafileRecord& record, PlayerState& state) {
  const std::uint32_t index = record.number(8);
  if ((index & stockObject) != 0) {
    return (index & ~stockObject) <= lastStockObject ? nullptr : "no such object of the system's";
  }
  return objectFault(index, state);
}

Fault frees(const MetafileRecord& record, PlayerState& state) {
  const std::uint32_t index = record.number(8);
  if (const Fault fault = objectFault(index, state)) {
    return fault;
  }
  state.objects[index] = false;
  return nullptr;
}

Fault usesColours(const MetafileRecord& record, PlayerState& state) {
  return objectFault(record.number(8), state);
}

// --- states of the drawing surface ----------------------------------------------------------------------------------

Fault savesState(const MetafileRecord&, PlayerState& state) {
  ++state.savedStates;
  return nullptr;
}

// A negative number: so many states back. To restore one where none was saved is allowed: some programs do that.
Fault restoresState(const MetafileRecord& record, PlayerState& state) {
  const std::uint32_t back = ~record.number(8) + 1;
  if (back == 0 || back > std::max(state.savedStates, 1U)) {
    return "a state is restored that was not saved";
  }
  state.savedStates -= std::min(state.savedStates, back);
  return nullptr;
}

// For a check that needs no state.
template <Fault (*check)(const MetafileRecord&)>
Fault only(const MetafileRecord& record, PlayerState&) {
  return check(record);
}

// --- items that are counted -----------------------------------------------------------------------------------------

// As many items of `itemBytes` bytes, from `first` on, as the number at `countAt` says.
template <std::size_t countAt, std::size_t first, std::size_t itemBytes = 1>
Fault counts(const MetafileRecord& record, PlayerState&) {
  return record.holds(first, record.number(countAt), itemBytes) ? nullptr : "it counts more than it holds";
}

// The same for two pieces, one after the other.
template <std::size_t countAt, std::size_t otherCountAt, std::size_t first>
Fault countsTwo(const MetafileRecord& record, PlayerState&) {
  return record.holds(first, std::uint64_t{record.number(countAt)} + record.number(otherCountAt))
             ? nullptr
             : "it counts more than it holds";
}

// How many points each shape has, then the points of all.
template <std::size_t pointBytes>
Fault countsShapes(const MetafileRecord& record, PlayerState&) {
  constexpr std::size_t first = 32;
  const std::uint32_t shapes = record.number(24);
  const std::uint32_t points = record.number(28);
  if (!record.holds(first, shapes, 4) || !record.holds(first + std::uint64_t{shapes} * 4, points, pointBytes)) {
    return "it counts more than it holds";
  }
  std::uint64_t inShapes = 0;
  for (std::size_t at = first; at < first + std::size_t{shapes} * 4; at += 4) {
    inShapes += record.number(at);
  }
  return inShapes <= points ? nullptr : "its shapes have more points than it holds";
}

Fault makesPalette(const MetafileRecord& record, PlayerState& state) {
  return record.holds(16, record.shortNumber(14), 4) ? makes(record, state) : "it counts more than it holds";
}

Fault makesColours(const MetafileRecord& record, PlayerState& state) {
  return record.holds(608, record.number(604)) ? makes(record, state) : "it counts more than it holds";
}

Fault setsColours(const MetafileRecord& record, PlayerState& state) {
  return record.holds(20, record.number(16), 4) ? usesColours(record, state) : "it counts more than it holds";
}

Fault resizesPalette(const MetafileRecord& record, PlayerState& state) {
  constexpr std::uint32_t largestPalette = 1024;  // [MS-EMF] 2.3.8.2
  const std::uint32_t colours = record.number(12);
  return colours != 0 && colours <= largestPalette ? usesColours(record, state) : "a palette of no possible size";
}

Fault endsFile(const MetafileRecord& record, PlayerState&) {
  return record.number(8) == 0 || record.holds(record.number(12), record.number(8), 4) ? nullptr
                                                                                       : "the palette lies outside";
}

Fault comments(const MetafileRecord& record, PlayerState& state) {
  constexpr std::size_t first = 12;
  const std::uint32_t bytes = record.number(8);
  return record.holds(first, bytes) ? commentFault(record.part(first, bytes), state.depth)
                                    : "it counts more than it holds";
}

// --- fonts and pens -------------------------------------------------------------------------------------------------

// The newest form has numbers of the font's axes at its end, [MS-EMF] 2.2.2 and 2.2.14.
Fault makesFont(const MetafileRecord& record, PlayerState& state) {
  constexpr std::size_t axesAt = 360;
  constexpr std::uint32_t axesSignature = 0x08007664;
  constexpr std::uint32_t mostAxes = 16;
  if (!record.holds(axesAt, 8) || record.number(axesAt) != axesSignature) {
    return makes(record, state);
  }
  const std::uint32_t axes = record.number(axesAt + 4);
  return axes <= mostAxes && record.holds(axesAt + 8, axes, 4) ? makes(record, state) : "it counts more than it holds";
}

// Before them: solid, and none.
enum BrushStyle : std::uint32_t { hatched = 2, pattern = 3, dibPattern = 5, dibPatternPointer = 6 };

// Other styles contain an address or a handle, which means something only to the program that wrote it.
Fault makesBrush(const MetafileRecord& record, PlayerState& state) {
  return record.number(12) <= hatched ? makes(record, state) : "a brush is of no known style";
}

Fault makesExtendedPen(const MetafileRecord& record, PlayerState& state) {
  constexpr std::size_t bitmapAt = 12;
  const std::uint32_t style = record.number(36);
  if (!record.holds(52, record.number(48), 4)) {
    return "it counts more than it holds";
  }
  if (style > hatched) {
    if (style != pattern && style != dibPattern && style != dibPatternPointer) {
      return "a pen is of no known style";
    }
    const std::uint32_t usage = style == pattern ? 0 : record.shortNumber(40);
    if (const Fault fault = bitmapFault(record, {bitmapAt, usage})) {
      return fault;
    }
  } else if (!record.holds(record.number(bitmapAt), record.number(bitmapAt + 4)) ||
             !record.holds(record.number(bitmapAt + 8), record.number(bitmapAt + 12))) {
    return "a bitmap lies outside";
  }
  return makes(record, state);
}

// --- texts ----------------------------------------------------------------------------------------------------------

template <std::size_t characterBytes>
Fault writes(const MetafileRecord& record, PlayerState&) {
  return textFault(record, 36, characterBytes, false);
}

template <std::size_t characterBytes>
Fault writesMany(const MetafileRecord& record, PlayerState&) {
  constexpr std::size_t first = 40;
  const std::uint32_t texts = record.number(36);
  if (!record.holds(first, texts, textBytes)) {
    return "it counts more than it holds";
  }
  for (std::size_t at = first; at < first + texts * textBytes; at += textBytes) {
    if (const Fault fault = textFault(record, at, characterBytes, true)) {
      return fault;
    }
  }
  return nullptr;
}

// --- regions --------------------------------------------------------------------------------------------------------

template <std::size_t first>
Fault paintsRegion(const MetafileRecord& record, PlayerState&) {
  return regionFault(record, first, record.number(24));
}

template <std::size_t first>
Fault brushesRegion(const MetafileRecord& record, PlayerState& state) {
  const Fault fault = objectFault(record.number(28), state);
  return fault != nullptr ? fault : paintsRegion<first>(record, state);
}

// Without a region the former clipping ends. Only this mode of combining allows that.
Fault clipsToRegion(const MetafileRecord& record, PlayerState&) {
  constexpr std::size_t first = 16;
  constexpr std::uint32_t copy = 5;
  const std::uint32_t bytes = record.number(8);
  if (bytes == 0 && record.number(12) == copy && record.size() <= first + 4) {
    return nullptr;
  }
  return regionFault(record, first, bytes);
}

// --- bitmaps --------------------------------------------------------------------------------------------------------

// `place` is the offset of the four numbers of the bitmap, `usageAt` that of its usage.
template <std::size_t place, std::size_t usageAt>
Fault needsBitmap(const MetafileRecord& record, PlayerState&) {
  return bitmapFault(record, {place, record.number(usageAt)});
}

template <std::size_t place, std::size_t usageAt>
Fault mayHaveBitmap(const MetafileRecord& record, PlayerState& state) {
  return hasNoBitmap(record, place) ? missingBitmapFault(record) : needsBitmap<place, usageAt>(record, state);
}

template <std::size_t place, std::size_t usageAt, std::size_t maskPlace, std::size_t maskUsageAt>
Fault mayHaveMask(const MetafileRecord& record, PlayerState& state) {
  const Fault fault = mayHaveBitmap<place, usageAt>(record, state);
  return fault != nullptr ? fault : mayHaveBitmap<maskPlace, maskUsageAt>(record, state);
}

Fault setsRows(const MetafileRecord& record, PlayerState&) {
  return bitmapFault(record, {48, record.number(64), record.number(72)});
}

Fault blends(const MetafileRecord& record, PlayerState&) {
  const std::uint32_t usage = record.number(80);
  if (hasNoBitmap(record, 84)) {
    return nullptr;
  }
  return usage <= 1 ? bitmapFault(record, {.place = 84, .usage = usage, .exact = true})
                    : "a bitmap is of no known format";
}

Fault makesPatternBrush(const MetafileRecord& record, PlayerState& state) {
  const Fault fault = needsBitmap<16, 12>(record, state);
  return fault != nullptr ? fault : makes(record, state);
}

// --- all kinds ------------------------------------------------------------------------------------------------------

// clang-format off
constexpr std::array rows = {
    RecordRow{2, "POLYBEZIER", 28, counts<24, 28, 8>},
    RecordRow{3, "POLYGON", 28, counts<24, 28, 8>},
    RecordRow{4, "POLYLINE", 28, counts<24, 28, 8>},
    RecordRow{5, "POLYBEZIERTO", 28, counts<24, 28, 8>},
    RecordRow{6, "POLYLINETO", 28, counts<24, 28, 8>},
    RecordRow{7, "POLYPOLYLINE", 32, countsShapes<8>},
    RecordRow{8, "POLYPOLYGON", 32, countsShapes<8>},
    RecordRow{9, "SETWINDOWEXTEX", 16},
    RecordRow{10, "SETWINDOWORGEX", 16},
    RecordRow{11, "SETVIEWPORTEXTEX", 16},
    RecordRow{12, "SETVIEWPORTORGEX", 16},
    RecordRow{13, "SETBRUSHORGEX", 16},
    RecordRow{endOfFileRecord, "EOF", 20, endsFile},
    RecordRow{15, "SETPIXELV", 20},
    RecordRow{16, "SETMAPPERFLAGS", 12},
    RecordRow{17, "SETMAPMODE", 12},
    RecordRow{18, "SETBKMODE", 12},
    RecordRow{19, "SETPOLYFILLMODE", 12},
    RecordRow{20, "SETROP2", 12},
    RecordRow{21, "SETSTRETCHBLTMODE", 12},
    RecordRow{22, "SETTEXTALIGN", 12},
    RecordRow{23, "SETCOLORADJUSTMENT", 32},
    RecordRow{24, "SETTEXTCOLOR", 12},
    RecordRow{25, "SETBKCOLOR", 12},
    RecordRow{26, "OFFSETCLIPRGN", 16},
    RecordRow{27, "MOVETOEX", 16},
    RecordRow{28, "SETMETARGN", smallestRecord},
    RecordRow{29, "EXCLUDECLIPRECT", 24},
    RecordRow{30, "INTERSECTCLIPRECT", 24},
    RecordRow{31, "SCALEVIEWPORTEXTEX", 24},
    RecordRow{32, "SCALEWINDOWEXTEX", 24},
    RecordRow{33, "SAVEDC", smallestRecord, savesState},
    RecordRow{34, "RESTOREDC", 12, restoresState},
    RecordRow{35, "SETWORLDTRANSFORM", 32},
    RecordRow{36, "MODIFYWORLDTRANSFORM", 36},
    RecordRow{37, "SELECTOBJECT", 12, selects},
    RecordRow{38, "CREATEPEN", 28, makes},
    RecordRow{39, "CREATEBRUSHINDIRECT", 24, makesBrush},
    RecordRow{40, "DELETEOBJECT", 12, frees},
    RecordRow{41, "ANGLEARC", 28},
    RecordRow{42, "ELLIPSE", 24},
    RecordRow{43, "RECTANGLE", 24},
    RecordRow{44, "ROUNDRECT", 32},
    RecordRow{45, "ARC", 40},
    RecordRow{46, "CHORD", 40},
    RecordRow{47, "PIE", 40},
    RecordRow{48, "SELECTPALETTE", 12, selects},
    RecordRow{49, "CREATEPALETTE", 16, makesPalette},
    RecordRow{50, "SETPALETTEENTRIES", 20, setsColours},
    RecordRow{51, "RESIZEPALETTE", 16, resizesPalette},
    RecordRow{52, "REALIZEPALETTE", smallestRecord},
    RecordRow{53, "EXTFLOODFILL", 24},
    RecordRow{54, "LINETO", 16},
    RecordRow{55, "ARCTO", 40},
    RecordRow{56, "POLYDRAW", 28, counts<24, 28, 9>},  // a point of eight bytes, and its kind
    RecordRow{57, "SETARCDIRECTION", 12},
    RecordRow{58, "SETMITERLIMIT", 12},
    RecordRow{59, "BEGINPATH", smallestRecord},
    RecordRow{60, "ENDPATH", smallestRecord},
    RecordRow{61, "CLOSEFIGURE", smallestRecord},
    RecordRow{62, "FILLPATH", 24},
    RecordRow{63, "STROKEANDFILLPATH", 24},
    RecordRow{64, "STROKEPATH", 24},
    RecordRow{65, "FLATTENPATH", smallestRecord},
    RecordRow{66, "WIDENPATH", smallestRecord},
    RecordRow{67, "SELECTCLIPPATH", 12},
    RecordRow{68, "ABORTPATH", smallestRecord},
    RecordRow{70, "COMMENT", 12, comments},
    RecordRow{71, "FILLRGN", 32, brushesRegion<32>},
    RecordRow{72, "FRAMERGN", 40, brushesRegion<40>},
    RecordRow{73, "INVERTRGN", 28, paintsRegion<28>},
    RecordRow{74, "PAINTRGN", 28, paintsRegion<28>},
    RecordRow{75, "EXTSELECTCLIPRGN", 16, clipsToRegion},
    RecordRow{76, "BITBLT", 100, mayHaveBitmap<84, 80>},
    RecordRow{77, "STRETCHBLT", 108, mayHaveBitmap<84, 80>},
    RecordRow{78, "MASKBLT", 128, mayHaveMask<84, 80, 112, 108>},
    RecordRow{79, "PLGBLT", 140, mayHaveMask<96, 92, 124, 120>},
    RecordRow{80, "SETDIBITSTODEVICE", 76, setsRows},
    RecordRow{81, "STRETCHDIBITS", 80, mayHaveBitmap<48, 64>},
    RecordRow{82, "EXTCREATEFONTINDIRECTW", 104, makesFont},
    RecordRow{83, "EXTTEXTOUTA", 76, writes<1>},
    RecordRow{84, "EXTTEXTOUTW", 76, writes<2>},
    RecordRow{85, "POLYBEZIER16", 28, counts<24, 28, 4>},
    RecordRow{86, "POLYGON16", 28, counts<24, 28, 4>},
    RecordRow{87, "POLYLINE16", 28, counts<24, 28, 4>},
    RecordRow{88, "POLYBEZIERTO16", 28, counts<24, 28, 4>},
    RecordRow{89, "POLYLINETO16", 28, counts<24, 28, 4>},
    RecordRow{90, "POLYPOLYLINE16", 32, countsShapes<4>},
    RecordRow{91, "POLYPOLYGON16", 32, countsShapes<4>},
    RecordRow{92, "POLYDRAW16", 28, counts<24, 28, 5>},
    RecordRow{93, "CREATEMONOBRUSH", 32, makesPatternBrush},
    RecordRow{94, "CREATEDIBPATTERNBRUSHPT", 32, makesPatternBrush},
    RecordRow{95, "EXTCREATEPEN", 52, makesExtendedPen},
    RecordRow{96, "POLYTEXTOUTA", 40, writesMany<1>},
    RecordRow{97, "POLYTEXTOUTW", 40, writesMany<2>},
    RecordRow{98, "SETICMMODE", 12},
    RecordRow{99, "CREATECOLORSPACE", 340, makes},
    RecordRow{100, "SETCOLORSPACE", 12, usesColours},
    RecordRow{101, "DELETECOLORSPACE", 12, frees},
    RecordRow{102, "GLSRECORD", 12, counts<8, 12>},
    RecordRow{103, "GLSBOUNDEDRECORD", 28, counts<24, 28>},
    RecordRow{104, "PIXELFORMAT", 48},
    RecordRow{105, "DRAWESCAPE", 16, counts<12, 16>},
    RecordRow{106, "EXTESCAPE", 16, counts<12, 16>},
    RecordRow{108, "SMALLTEXTOUT", 36, only<smallTextFault>},
    RecordRow{109, "FORCEUFIMAPPING", 16},
    RecordRow{110, "NAMEDESCAPE", 20, countsTwo<12, 16, 20>},
    RecordRow{111, "COLORCORRECTPALETTE", 24, usesColours},
    RecordRow{112, "SETICMPROFILEA", 20, countsTwo<12, 16, 20>},
    RecordRow{113, "SETICMPROFILEW", 20, countsTwo<12, 16, 20>},
    RecordRow{114, "ALPHABLEND", 108, blends},
    RecordRow{115, "SETLAYOUT", 12},
    RecordRow{116, "TRANSPARENTBLT", 108, mayHaveBitmap<84, 80>},
    RecordRow{118, "GRADIENTFILL", 36, only<gradientFault>},
    RecordRow{119, "SETLINKEDUFIS", 12, counts<8, 12, 8>},
    RecordRow{120, "SETTEXTJUSTIFICATION", 16},
    RecordRow{121, "COLORMATCHTOTARGETW", 24, countsTwo<16, 20, 24>},
    RecordRow{122, "CREATECOLORSPACEW", 608, makesColours},
};
// clang-format on

constexpr bool isBefore(const RecordRow& first, const RecordRow& second) {
  return first.type < second.type;
}
static_assert(std::is_sorted(rows.begin(), rows.end(), isBefore));

}  // namespace

const RecordRow* findRecordRow(std::uint32_t type) {
  const auto found = std::lower_bound(rows.begin(), rows.end(), RecordRow{type}, isBefore);
  return found != rows.end() && found->type == type ? &*found : nullptr;
}

}  // namespace vernoxa::desktop
