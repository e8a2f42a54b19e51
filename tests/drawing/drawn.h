// What records draw, as lines that can be read: tag, [text], name=value|...
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "drawing/page_text.h"
#include "system/files.h"
#include "text/json.h"

namespace vernoxa {

// Read back from their text in a file.
inline std::string drawn(const Elements& elements) {
  class Kept final : public OutputFile {
   public:
    bool write(std::string_view bytes) override {
      text += bytes;
      return true;
    }
    std::string text;
  } kept;
  JsonFile file(kept);
  file.put("[");
  elements.writeTo(file, 2);
  file.put("]");
  std::string lines;
  const Json parsed = file.finish() ? Json::parse(kept.text).document : Json();
  for (const JsonView element : parsed.view()) {
    lines += element.member("name").text().value_or("");
    if (const auto shown = element.member("value").text()) {
      lines.append(" [").append(*shown).append("]");
    }
    const char* separator = " ";
    for (const JsonView attribute : element.member("attr")) {
      lines.append(std::exchange(separator, "|")).append(attribute.name()).append("=");
      lines += attribute.text().value_or("");
    }
    lines += '\n';
  }
  return lines;
}

// A record of words.
class WordRecord : public Record {
 public:
  WordRecord(std::initializer_list<std::string_view> words) : WordRecord(std::vector<std::string_view>(words)) {}
  explicit WordRecord(const std::vector<std::string_view>& words) {
    std::size_t index = 0;
    for (const std::string_view word : words) {
      set(index++, word);
    }
  }
};

// What a record draws; another text when it makes a difference that it can be drawn at once.
inline std::string drawn(Use use, const Record& record) {
  Elements elements;
  Elements plain;
  elements.add(use, record);
  const bool atOnce = plain.addPlain(use, record);
  return drawn(elements) + (atOnce && drawn(plain) != drawn(elements) ? "at once: " + drawn(plain) : "");
}

}  // namespace vernoxa
