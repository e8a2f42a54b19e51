// What records draw, as lines that can be read: tag, [text], name=value|...
#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "drawing/page_text.h"
#include "system/buffered_file.h"
#include "text/json.h"

namespace vernoxa::drawing {

// A group's elements follow it.
inline std::string drawn(JsonView elements) {
  std::string lines;
  for (const JsonView element : elements) {
    lines += element.member("name").text().value_or("");
    if (const auto shown = element.member("value").text()) {
      lines.append(" [").append(*shown).append("]");
    }
    const char* separator = " ";
    for (const JsonView attribute : element.member("attr")) {
      lines.append(std::exchange(separator, "|")).append(attribute.name()).append("=");
      lines += attribute.text().value_or("");
    }
    lines += '\n' + drawn(element.member("children"));
  }
  return lines;
}

// What a document writes, read back.
template <class Write>
Json written(const Write& write) {
  class Kept final : public OutputFile {
   public:
    bool write(std::string_view bytes) override {
      text += bytes;
      return true;
    }
    std::string text;
  } kept;
  return write(kept) ? Json::parse(kept.text).document : Json();
}

inline std::string drawn(const Elements& elements) {
  const Json array = written([&elements](OutputFile& output) {
    BufferedFile file(output);
    file.put("[");
    elements.writeTo(file);
    file.put("]");
    return file.finish();
  });
  return drawn(array.view());
}

// A record of words.
class WordRecord : public Record {
 public:
  WordRecord(std::initializer_list<std::string_view> words) : Record(words) {}
  explicit WordRecord(const std::vector<std::string_view>& words) : Record(Words{words}) {}

 private:
  struct Words {
    const std::vector<std::string_view>& words;
    std::size_t texts(const char** starts, std::size_t* sizes, std::size_t most) const {
      std::size_t index = 0;
      for (; index < std::min(words.size(), most); ++index) {
        starts[index] = words[index].data();
        sizes[index] = words[index].size();
      }
      return index;
    }
  };
};

inline std::string drawn(Use use, const Record& record) {
  Elements elements(use, Elements::In::array, 2);
  elements.add(record, Encoding::utf8);
  return drawn(elements);
}

}  // namespace vernoxa::drawing
