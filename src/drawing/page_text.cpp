#include "drawing/page_text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <tuple>

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
  std::vector<Place> values;
  std::vector<std::size_t> ends;   // of what stands before each
  std::vector<std::size_t> texts;  // which of the record's they are made of
  std::size_t size;
  std::size_t mostWritten;  // bytes in the file when no value is long
};

struct Layout {
  Layout(Use use, Elements::In in, std::size_t depth);

  std::vector<ElementText> elements;
  std::string groupEnd;  // empty without groups
};

namespace {

constexpr std::size_t blockSize = 16'384;
// The size of a text is a byte; a longer one has its size before it, and this in the place of its size.
constexpr std::size_t longText = std::numeric_limits<unsigned char>::max();

const Layout& layoutOf(Use use, Elements::In in, std::size_t depth) {
  static std::map<std::tuple<Use, Elements::In, std::size_t>, Layout> layouts;
  return layouts.try_emplace({use, in, depth}, use, in, depth).first->second;
}

// The n-th line is moved by n times the font size and 2, in the direction in which lines follow each other. A text's
// row shows x and y before the turn.
void moveLine(const ElementText& text, Record& line, std::int64_t number) {
  const auto placeOf = [&text](std::string_view look) {
    return std::find_if(text.values.begin(), text.values.end(),
                        [look](const Place& place) { return place.look == &lookNamed(look); });
  };
  const auto turn = placeOf("angle");
  const std::string_view angle = turn->valueOf(line);
  const Decimal shift = (Decimal::read(placeOf("font-size")->valueOf(line)) + Decimal::whole(2)) * number;
  const std::size_t moved = (angle == "-90" || angle == "-270" ? turn - 2 : turn - 1)->element;
  const Decimal place = Decimal::read(line[moved]);
  line.keep(moved, (angle == "-270" ? place - shift : place + shift).text());
}

// Takes a text that is kept, whose size in a byte is given.
std::string_view takeText(const char*& from, char sizeByte) {
  std::size_t size = static_cast<unsigned char>(sizeByte);
  if (size == longText) {
    std::memcpy(&size, from, sizeof(size));
    from += sizeof(size);
  }
  from += size;
  return {from - size, size};
}

// Begins at `start` of the text. What values are made of is kept, with a step to spare behind.
void writeElement(BufferedFile& file, const ElementText& text, std::size_t start, const Record& record, bool isPlain) {
  char* to = file.room(text.mostWritten);
  for (std::size_t index = 0; index < text.values.size(); ++index) {
    const Place& place = text.values[index];
    to = copySteps(to, text.text.data() + start, text.ends[index] - start);
    start = text.ends[index];
    std::string_view value = place.valueOf(record);
    for (; value.size() > longText; value.remove_prefix(longText)) {
      file.filled(putInJson(to, value.substr(0, longText)));
      to = file.room(text.mostWritten);
    }
    if (!isPlain) {
      to = putInJson(to, value);
    } else {
      to = place.look == nullptr ? copySteps(to, value.data(), value.size()) : copyShort(to, value);
    }
  }
  file.filled(copySteps(to, text.text.data() + start, text.size - start));
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
  mostWritten = size + values.size() * longText * longestJsonEscape + copyStep;
  text.append(copyStep, ' ');
}

void ElementText::add(const ShapeMember& member, const std::string& before) {
  text.append(before).append("\":\t\"");
  for (const ShapeMember::Piece& piece : member.pieces) {
    ends.push_back(text.append(piece.before).size());
    values.push_back(piece.place);
    for (const std::size_t from : {piece.place.element, piece.place.fillStyle}) {
      if (from != 0 && std::find(texts.begin(), texts.end(), from) == texts.end()) {
        texts.push_back(from);
      }
    }
  }
  text.append(member.end).append("\"");
}

Layout::Layout(Use use, Elements::In in, std::size_t depth) {
  const bool grouped = in != Elements::In::array;
  for (const Shape& shape : shapes()) {
    if (shape.isFor(use) && (grouped || !shape.isGroup())) {
      elements.emplace_back(shape, grouped && !shape.isGroup() ? depth + 2 : depth);
    }
  }
  groupEnd = grouped ? "]\r\n" + std::string(depth, '\t') + "}" : "";
}

Elements::Elements(Use use, In in, std::size_t depth)
    : layout_(&layoutOf(use, in, depth)), in_(in), open_(in == In::array) {}

bool Elements::add(const Record& record, Encoding encoding) {
  const auto text = std::find_if(layout_->elements.begin(), layout_->elements.end(),
                                 [&record](const ElementText& each) { return each.kind == record.kind(); });
  if (text == layout_->elements.end() || (text->opensGroup ? open_ && in_ == In::group : !open_)) {
    return false;
  }
  const bool wasOpen = open_;
  open_ = !text->opensGroup;
  const bool kept = text->hasLines ? keepLines(*text, record, encoding) : keep(*text, record, encoding);
  open_ = kept || wasOpen;
  return kept;
}

bool Elements::keepLines(const ElementText& text, const Record& record, Encoding encoding) {
  const std::size_t lines = text.values.front().element;
  if (encoding == Encoding::asGiven && !isPlainInJson(record[lines])) {
    return false;
  }
  const std::size_t blocks = blocks_.size();
  const std::size_t used = blocks == 0 ? 0 : blocks_.back().used;
  try {
    std::int64_t number = 0;
    bool kept = true;
    for (std::string_view left = record[lines]; !left.empty();) {
      const std::string_view shown = left.substr(0, left.find(lineSeparator));
      left.remove_prefix(std::min(shown.size() + lineSeparator.size(), left.size()));
      if (shown.empty()) {
        continue;
      }
      Record line(record, lines, shown);
      if (number > 0) {
        moveLine(text, line, number);
      }
      kept = keep(text, line, encoding);
      ++number;
    }
    return kept;
  } catch (...) {
    blocks_.resize(blocks);
    if (blocks > 0) {
      blocks_.back().used = used;
    }
    throw;
  }
}

bool Elements::keep(const ElementText& text, const Record& record, Encoding encoding) {
  std::size_t most = 2 + text.texts.size() * (1 + sizeof(std::size_t)) + copyStep;
  for (const std::size_t index : text.texts) {
    most += record[index].size();
  }
  if (blocks_.empty() || blocks_.back().used + most > blockSize) {
    blocks_.push_back({std::make_unique_for_overwrite<char[]>(std::max(blockSize, most))});
  }
  Block& block = blocks_.back();
  char* to = block.bytes.get() + block.used;
  *to++ = static_cast<char>(&text - layout_->elements.data());
  *to++ = static_cast<char>(encoding);
  char* sizeByte = to;
  to += text.texts.size();
  const char* const start = to;
  for (const std::size_t index : text.texts) {
    const std::size_t size = record[index].size();
    *sizeByte++ = static_cast<char>(std::min(size, longText));
    if (size >= longText) {
      std::memcpy(to, &size, sizeof(size));
      to += sizeof(size);
    }
    to = copyShort(to, record[index]);
  }
  if (encoding == Encoding::asGiven && !isPlainInJson({start, static_cast<std::size_t>(to - start)})) {
    if (block.used == 0) {
      blocks_.pop_back();
    }
    return false;
  }
  block.used = static_cast<std::size_t>(to - block.bytes.get());
  return true;
}

void Elements::writeTo(BufferedFile& file) const {
  Record record{};
  const ElementText* before = nullptr;
  for (const Block& block : blocks_) {
    for (const char* at = block.bytes.get(); at != block.bytes.get() + block.used;) {
      const ElementText& text = layout_->elements[static_cast<unsigned char>(*at++)];
      const bool isPlain = static_cast<Encoding>(*at++) == Encoding::asGiven;
      const char* sizeByte = at;
      at += text.texts.size();
      for (const std::size_t index : text.texts) {
        record.set(index, takeText(at, *sizeByte++));
      }
      const bool isFirst = before == nullptr || (before->opensGroup && !text.opensGroup);
      writeElement(file, text, isFirst ? text.start : 0, record, isPlain);
      before = &text;
    }
  }
  if (!isEmpty()) {
    file.put(layout_->groupEnd);
  }
}

}  // namespace vernoxa::drawing
