#include "drawing/page_text.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "system/buffered_file.h"
#include "text/decimal.h"
#include "text/json_escape.h"
#include "text/short_copy.h"

namespace vernoxa::drawing {

// What all elements of a kind have in common, as the file has it.
struct ElementText {
  ElementText(const Shape& shape, std::size_t depth);
  void add(const ShapeMember& member, const std::string& before);

  std::string_view kind;
  bool opensGroup;
  bool hasLines;     // an element for each
  std::string text;  // what stands before each value and behind the last, and bytes to spare
  std::size_t start;
  std::vector<std::size_t> ends;  // of what stands before each value
  std::vector<Place> values;
  std::size_t size;
  std::size_t mostKept;     // bytes of an element whose values are one piece each
  std::size_t mostWritten;  // the same in the file
};

class Layout {
 public:
  Layout(Use use, Elements::In in, std::size_t depth);
  // nullptr for a kind that does not stand there.
  const ElementText* find(std::string_view kind) const;

  std::vector<ElementText> elements;
  std::string groupEnd;  // empty without groups
};

namespace {

constexpr std::size_t textX = 1;
constexpr std::size_t textY = 2;
constexpr std::size_t textFont = 6;
constexpr std::size_t textRotation = 7;

constexpr std::size_t blockSize = std::size_t{16} * 1024;
// A value is kept in pieces of at most so many bytes, each behind a byte for its length. There a bit says whether there
// is another piece, and in the byte of the element's number whether a value must be escaped.
constexpr std::size_t pieceSize = 63;
constexpr unsigned special = 0x40;

const Layout& layoutOf(Use use, Elements::In in, std::size_t depth) {
  static std::map<std::tuple<Use, Elements::In, std::size_t>, Layout> layouts;
  return layouts.try_emplace({use, in, depth}, use, in, depth).first->second;
}

void moveLine(Record& line, std::int64_t number) {
  const std::string_view angle = lookNamed("angle").of(line[textRotation]);
  const Decimal shift = (Decimal::read(lookNamed("font-size").of(line[textFont])) + Decimal::whole(2)) * number;
  const std::size_t moved = angle == "-90" || angle == "-270" ? textX : textY;
  const Decimal place = Decimal::read(line[moved]);
  line.keep(moved, (angle == "-270" ? place - shift : place + shift).text());
}

}  // namespace

ElementText::ElementText(const Shape& shape, std::size_t depth)
    : kind(shape.kind), opensGroup(shape.isGroup()), hasLines(shape.kind == textKind) {
  const std::string line = "\r\n" + std::string(depth, '\t');
  text.append(opensGroup ? "]" + line + "}" : "").append(elementSeparator);
  start = text.size();
  text.append("{").append(line).append("\t\"name\":\t\"").append(shape.name).append("\"");
  auto member = shape.members.begin();
  if (member->name.empty()) {
    add(*member++, "," + line + "\t\"value");
  }
  text.append(",").append(line).append("\t\"attr\":\t{");
  for (const char* separator = ""; member != shape.members.end(); separator = ",") {
    add(*member, separator + line + "\t\t\"" + std::string(member->name));
    ++member;
  }
  text.append(line).append("\t}").append(opensGroup ? "," + line + "\t\"children\":\t[" : line + "}");
  size = text.size();
  mostKept = 1 + values.size() * (1 + pieceSize);
  mostWritten = size + values.size() * pieceSize * longestJsonEscape + copyStep;
  text.append(copyStep, ' ');
}

void ElementText::add(const ShapeMember& member, const std::string& before) {
  text.append(before).append("\":\t\"");
  for (const ShapeMember::Piece& piece : member.pieces) {
    ends.push_back(text.append(piece.before).size());
    values.push_back(piece.place);
  }
  text.append(member.end).append("\"");
}

Layout::Layout(Use use, Elements::In in, std::size_t depth) {
  const bool grouped = in == Elements::In::groups;
  for (const Shape& shape : shapes()) {
    if (shape.isFor(use) && (grouped || !shape.isGroup())) {
      elements.emplace_back(shape, grouped && !shape.isGroup() ? depth + 2 : depth);
    }
  }
  groupEnd = grouped ? "]\r\n" + std::string(depth, '\t') + "}" : "";
}

const ElementText* Layout::find(std::string_view kind) const {
  const auto found =
      std::find_if(elements.begin(), elements.end(), [kind](const ElementText& text) { return text.kind == kind; });
  return found == elements.end() ? nullptr : &*found;
}

Elements::Elements(Use use, In in, std::size_t depth) : layout_(&layoutOf(use, in, depth)), open_(in == In::array) {}

void Elements::open(const Record& record) {
  open_ = false;
  append(*layout_->find(record.kind()), record);
  open_ = true;
}

bool Elements::add(const Record& record) {
  const ElementText* const text = open_ ? layout_->find(record.kind()) : nullptr;
  if (text == nullptr || text->opensGroup) {
    return false;
  }
  append(*text, record);
  return true;
}

void Elements::append(const ElementText& text, const Record& record) {
  const std::size_t blocks = blocks_.size();
  const std::size_t used = blocks == 0 ? 0 : blocks_.back().used;
  try {
    if (text.hasLines) {
      appendLines(text, record);
    } else {
      appendOne(text, record);
    }
  } catch (...) {
    blocks_.resize(blocks);
    if (blocks > 0) {
      blocks_.back().used = used;
    }
    throw;
  }
}

// The n-th line is moved by n times the font size and 2, in the direction in which lines follow each other.
void Elements::appendLines(const ElementText& text, const Record& record) {
  std::int64_t drawn = 0;
  for (std::string_view left = record[textLines]; !left.empty();) {
    const std::string_view shown = left.substr(0, left.find(lineSeparator));
    left.remove_prefix(std::min(shown.size() + lineSeparator.size(), left.size()));
    if (shown.empty()) {
      continue;
    }
    Record line(record, shown);
    if (drawn > 0) {
      moveLine(line, drawn);
    }
    appendOne(text, line);
    ++drawn;
  }
}

void Elements::appendOne(const ElementText& text, const Record& record) {
  char* to = room(text.mostKept);
  const auto number = static_cast<std::size_t>(&text - layout_->elements.data());
  *to++ = static_cast<char>(number + (record.isPlain() ? 0 : special));
  for (const Place& place : text.values) {
    std::string_view value = place.valueOf(record);
    for (;;) {
      const std::string_view piece = value.substr(0, pieceSize);
      value.remove_prefix(piece.size());
      *to = static_cast<char>(piece.size() + (value.empty() ? 0 : special));
      to = copyShort(to + 1, piece);
      if (value.empty()) {
        break;
      }
      filled(to);
      to = room(text.mostKept);
    }
  }
  filled(to);
}

// Where the next bytes are kept, at most so many.
char* Elements::room(std::size_t most) {
  if (blocks_.empty() || blockSize - blocks_.back().used < most) {
    blocks_.push_back({std::make_unique_for_overwrite<char[]>(blockSize + copyStep)});
  }
  return blocks_.back().bytes.get() + blocks_.back().used;
}

void Elements::filled(const char* end) {
  blocks_.back().used = static_cast<std::size_t>(end - blocks_.back().bytes.get());
}

void Elements::writeTo(BufferedFile& file) const {
  auto block = blocks_.begin();
  const char* at = nullptr;
  const char* end = nullptr;
  const auto next = [&] {
    if (at == end) {
      at = block->bytes.get();
      end = at + block->used;
      ++block;
    }
    return static_cast<unsigned char>(*at++);
  };
  const ElementText* before = nullptr;
  while (at != end || block != blocks_.end()) {
    const unsigned number = next();
    const ElementText& text = layout_->elements[number % special];
    const bool isFirst = before == nullptr || (before->opensGroup && !text.opensGroup);
    before = &text;
    std::size_t start = isFirst ? text.start : 0;
    char* to = file.room(text.mostWritten);
    for (const std::size_t valuesPlace : text.ends) {
      to = copySteps(to, text.text.data() + start, valuesPlace - start);
      start = valuesPlace;
      for (unsigned length = special; (length & special) != 0;) {
        length = next();
        const std::size_t size = length % special;
        to = (number & special) == 0 ? copySteps(to, at, size) : putInJson(to, {at, size});
        at += size;
        if ((length & special) != 0) {
          file.filled(to);
          to = file.room(text.mostWritten);
        }
      }
    }
    file.filled(copySteps(to, text.text.data() + start, text.size - start));
  }
  if (!isEmpty()) {
    file.put(layout_->groupEnd);
  }
}

}  // namespace vernoxa::drawing
