#include "drawing/page_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "drawing/style_tables.h"
#include "system/files.h"
#include "text/decimal.h"

namespace vernoxa {
namespace {

constexpr std::size_t textX = 1;
constexpr std::size_t textY = 2;
constexpr std::size_t textFont = 6;
constexpr std::size_t textRotation = 7;

// Most symbols fit into a first block, large pages fill many of the last size.
constexpr std::size_t firstBlock = 1024;
constexpr std::size_t largestBlock = std::size_t{64} * 1024;

constexpr std::size_t longestShort = 64;  // a value that is longer is not checked and copied at once

// Nearly all texts are so short that a call costs more than the copy. What is ours has so many bytes to spare behind it
// that copies in steps of this size may go beyond its end.
constexpr std::size_t step = 16;

char* copySteps(char* to, const char* from, std::size_t size) {
  for (std::size_t done = 0; done < size; done += step) {
    std::memcpy(to + done, from + done, step);
  }
  return to + size;
}

// Copies the host's text, behind which nothing may be read.
[[gnu::always_inline]] inline char* copyShort(char* to, std::string_view text) {
  const char* const from = text.data();
  const std::size_t size = text.size();
  const auto copyBothEnds = [&](auto word) {
    std::memcpy(to, from, sizeof(word));
    std::memcpy(to + size - sizeof(word), from + size - sizeof(word), sizeof(word));
  };
  if (size > 2 * sizeof(std::uint64_t)) {
    std::memcpy(to, from, size);
  } else if (size >= sizeof(std::uint64_t)) {
    copyBothEnds(std::uint64_t());
  } else if (size >= sizeof(std::uint32_t)) {
    copyBothEnds(std::uint32_t());
  } else if (size > 0) {
    to[0] = from[0];
    to[size / 2] = from[size / 2];
    to[size - 1] = from[size - 1];
  }
  return to + size;
}

// Whether all bytes up to `end` are ASCII and stand in JSON as they are. Writes spaces behind them.
bool isPlain(const char* from, char* end) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  std::memset(end, ' ', sizeof(ones));
  std::uint64_t found = 0;  // in each byte's highest bit
  for (; from < end; from += sizeof(ones)) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, from, sizeof(bytes));
    const std::uint64_t quotes = bytes ^ '"' * ones;
    const std::uint64_t backslashes = bytes ^ '\\' * ones;
    found |=
        bytes | ((bytes - ' ' * ones) & ~bytes) | ((quotes - ones) & ~quotes) | ((backslashes - ones) & ~backslashes);
  }
  return (found & 0x80 * ones) == 0;
}

// The length of a value: bytes that are added up, the last of them less than 255.
void appendLength(std::string& to, std::size_t size) {
  to.append(size / 255, '\xFF') += static_cast<char>(size % 255);
}

std::size_t takeLength(const char*& from) {
  std::size_t size = 0;
  unsigned char byte = 0;
  do {
    byte = static_cast<unsigned char>(*from++);
    size += byte;
  } while (byte == 255);
  return size;
}

// Appends the inside of a string. Bytes above 7F pass as they are; the text ends at its first NUL byte, as it does
// wherever it is read.
void appendEscaped(std::string& out, std::string_view text) {
  constexpr std::string_view escaped = "\b\f\n\r\t\"\\";
  constexpr std::string_view letters = "bfnrt\"\\";
  constexpr std::string_view digits = "0123456789abcdef";
  for (const char byte : text.substr(0, text.find('\0'))) {
    const auto value = static_cast<unsigned char>(byte);
    if (value >= 0x20 && byte != '"' && byte != '\\') {
      out += byte;
    } else if (const std::size_t index = escaped.find(byte); index != std::string_view::npos) {
      out.append({'\\', letters[index]});
    } else {
      out.append("\\u00").append({digits[value >> 4U], digits[value & 15U]});
    }
  }
}

// What all elements of a shape have in common, as the file has it: the text before each value, and behind the last.
class CommonText {
 public:
  CommonText(const Shape& shape, std::size_t depth) {
    const std::string line = "\r\n" + std::string(depth, '\t');
    text_.append(elementSeparator).append("{").append(line).append("\t\"name\":\t\"").append(shape.name).append("\"");
    auto member = shape.members.begin();
    if (member->name.empty()) {
      add(*member++, "," + line + "\t\"value");
    }
    text_.append(",").append(line).append("\t\"attr\":\t{");
    for (const char* separator = ""; member != shape.members.end(); separator = ",") {
      add(*member, separator + line + "\t\t\"" + std::string(member->name));
      ++member;
    }
    text_.append(line).append("\t}").append(line).append("}");
    ends_.push_back(text_.size());
    text_.append(step, ' ');
  }

  std::size_t size() const { return ends_.back(); }
  std::size_t places() const { return ends_.size() - 1; }

  // Copies an element from that byte of the text on; its values follow each other.
  void copy(char* to, std::size_t from, const char* values, const std::size_t* sizes) const {
    for (std::size_t place = 0; place < places(); ++place) {
      to = copySteps(to, text_.data() + from, ends_[place] - from);
      to = copySteps(to, values, sizes[place]);
      values += sizes[place];
      from = ends_[place];
    }
    copySteps(to, text_.data() + from, size() - from);
  }

 private:
  void add(const ShapeMember& member, const std::string& start) {
    text_.append(start).append("\":\t\"");
    for (const ShapeMember::Piece& piece : member.pieces) {
      text_.append(piece.text);
      if (piece.place) {
        ends_.push_back(text_.size());
      }
    }
    text_.append("\"");
  }

  std::string text_;
  std::vector<std::size_t> ends_;
};

std::vector<CommonText> commonTexts(std::size_t depth) {
  std::vector<CommonText> texts;
  for (const Shape& shape : shapes()) {
    texts.emplace_back(shape, depth);
  }
  return texts;
}

// By the rows of the table. Elements stand at three depths: before the entries of a library, in those and on pages, and
// in the symbols of a page.
const std::vector<CommonText>& commonTextsAt(std::size_t depth) {
  static const std::array<std::vector<CommonText>, 3> texts = {commonTexts(2), commonTexts(4), commonTexts(6)};
  return texts.at(depth / 2 - 1);
}

void moveLine(Record& line, std::int64_t number) {
  const std::string_view angle = rotationAngle(line[textRotation]);
  const Decimal shift = (Decimal::read(fontSize(line[textFont])) + Decimal::whole(2)) * number;
  if (angle == "-90") {
    line.keep(textX, (Decimal::read(line[textX]) + shift).text());
  } else if (angle == "-270") {
    line.keep(textX, (Decimal::read(line[textX]) - shift).text());
  } else {
    line.keep(textY, (Decimal::read(line[textY]) + shift).text());
  }
}

}  // namespace

JsonFile::JsonFile(OutputFile& file) : file_(file), buffer_(std::make_unique_for_overwrite<char[]>(size + step)) {}

void JsonFile::put(std::string_view text) {
  if (char* const place = room(text.size())) {
    text.copy(place, text.size());
  } else {
    failed_ = failed_ || !file_.write(text);
  }
}

void JsonFile::put(std::string_view lines, std::size_t depth, std::initializer_list<std::string_view> values) {
  std::string text;
  text.reserve(2 * lines.size());
  const auto* value = values.begin();
  for (const auto* at = lines.begin(); at != lines.end();) {
    const auto* const end = std::find_if(at, lines.end(), [](char byte) { return byte == '%' || byte == '\n'; });
    text.append(at, end);
    if (end == lines.end()) {
      break;
    }
    if (*end == '%') {
      appendEscaped(text, *value++);
    } else {
      text.append("\r\n").append(depth, '\t');
    }
    at = end + 1;
  }
  put(text);
}

char* JsonFile::room(std::size_t count) {
  if (count > size - used_) {
    finish();
  }
  char* const place = buffer_.get() + used_;
  used_ += count <= size ? count : 0;
  return count <= size ? place : nullptr;
}

bool JsonFile::finish() {
  failed_ = failed_ || !file_.write({buffer_.get(), used_});
  used_ = 0;
  return !failed_;
}

void Elements::add(Use use, const Record& record) {
  const Shape* const shape = shapeOf(use, record.kind());
  if (shape == nullptr) {
    return;
  }
  std::string elements;
  if (record.kind() == textKind) {
    appendLines(elements, *shape, record);
  } else {
    append(elements, *shape, record);
  }
  elements.copy(room(elements.size()), elements.size());
}

bool Elements::addPlain(Use use, const Record& record) {
  const Shape* const shape = shapeOf(use, record.kind());
  if (shape == nullptr || (record.kind() == textKind && record[textLines].empty())) {
    return false;
  }
  char element[1 + mostPlaces * (1 + 2 * longestShort) + step];
  element[0] = static_cast<char>(shape->number);
  char* const values = element + 1 + shape->places.size();
  char* lengths = element + 1;
  char* end = values;
  for (const Place& place : shape->places) {
    const std::string_view value = place.valueOf(record);
    if (std::max(value.size(), record[place.element].size()) > longestShort) {
      return false;
    }
    *lengths++ = static_cast<char>(value.size());
    end = copyShort(end, value);
  }
  const auto size = static_cast<std::size_t>(end - element);
  // What stands in a code may change on its way through the code page too.
  for (const Place& place : shape->places) {
    end = place.isText() ? end : copyShort(end, record[place.element]);
  }
  if (!isPlain(values, end)) {
    return false;
  }
  copySteps(room(size), element, size);
  return true;
}

// The n-th line that is drawn is moved by n times the font size and 2, in the direction in which lines follow each
// other.
void Elements::appendLines(std::string& elements, const Shape& shape, const Record& record) {
  std::int64_t drawn = 0;
  for (std::string_view left = record[textLines]; !left.empty();) {
    const std::string_view text = left.substr(0, left.find(lineSeparator));
    left.remove_prefix(std::min(text.size() + lineSeparator.size(), left.size()));
    if (text.empty()) {
      continue;
    }
    Record line;
    line.show(record);
    line.set(textLines, text);
    if (drawn > 0) {
      moveLine(line, drawn);
    }
    append(elements, shape, line);
    ++drawn;
  }
}

void Elements::append(std::string& elements, const Shape& shape, const Record& record) {
  elements += static_cast<char>(shape.number);
  std::string values;
  for (const Place& place : shape.places) {
    const std::size_t start = values.size();
    appendEscaped(values, place.valueOf(record));
    appendLength(elements, values.size() - start);
  }
  elements += values;
}

char* Elements::room(std::size_t size) {
  if (blocks_.empty() || blocks_.back().size - blocks_.back().used < size) {
    const std::size_t next = blocks_.empty() ? firstBlock : std::min(2 * blocks_.back().size, largestBlock);
    const std::size_t blockSize = std::max(next, size);
    blocks_.push_back({std::make_unique_for_overwrite<char[]>(blockSize + step), blockSize, 0});
  }
  Block& block = blocks_.back();
  char* const place = block.bytes.get() + block.used;
  block.used += size;
  return place;
}

void Elements::writeTo(JsonFile& file, std::size_t depth) const {
  const std::vector<CommonText>& common = commonTextsAt(depth);
  std::array<std::size_t, mostPlaces> sizes{};
  std::size_t from = elementSeparator.size();  // none before the first
  for (const Block& block : blocks_) {
    for (const char* at = block.bytes.get(); at != block.bytes.get() + block.used; from = 0) {
      const CommonText& text = common[static_cast<unsigned char>(*at++)];
      std::size_t valuesSize = 0;
      for (std::size_t place = 0; place < text.places(); ++place) {
        valuesSize += sizes[place] = takeLength(at);
      }
      const std::size_t size = text.size() - from + valuesSize;
      if (char* const to = file.room(size)) {
        text.copy(to, from, at, sizes.data());
      } else {
        std::string element(size + step, ' ');
        text.copy(element.data(), from, at, sizes.data());
        file.put({element.data(), size});
      }
      at += valuesSize;
    }
  }
}

void Group::writeTo(JsonFile& file, std::size_t depth) const {
  file.put(R"({
	"name":	"g",
	"attr":	{
		"id":	"%"
	},
	"children":	[)",
           depth, {id});
  elements.writeTo(file, depth + 2);
  file.put("]\n}", depth);
}

void drawPinShape(const PinShape& shape, Elements& elements) {
  const auto add = [&](std::string_view part) {
    Record record;
    record.set(0, part);
    record.set(1, shape.lineStart);
    record.set(2, shape.lineEnd);
    elements.add(Use::pin, record);
  };
  if (shape.dot) {
    add("dot");
  }
  add("line");
  if (shape.clock) {
    add("wedge down");
    add("wedge up");
  }
}

}  // namespace vernoxa
