// What records draw, as lines that can be read: tag, [text], name=value|...
#pragma once

#include <gtest/gtest.h>

#include <utility>

#include "drawing/page_text.h"
#include "system/buffered_file.h"
#include "text/json.h"
#include "text/text.h"

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

// A file's content: it is written as cJSON prints it, but for the line ends.
inline Json parsedFile(const std::string& file) {
  Json document = Json::parse(file).document;
  EXPECT_EQ(withDosLineEnds(document.printFormatted()), file);
  return document;
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

// A record that keeps its words, or those that stand between the semicolons of a text.
class WordRecord : public Record {
 public:
  explicit WordRecord(std::vector<std::string> words) : Record{}, words_(std::move(words)) {
    for (std::size_t index = 0; index < words_.size(); ++index) {
      set(index, words_[index]);
    }
  }
  explicit WordRecord(std::string_view text) : WordRecord(splitFields(text, ';')) {}

 private:
  const std::vector<std::string> words_;
};

inline std::string drawn(Use use, const Record& record) {
  Elements elements(use, Elements::In::array, 2);
  elements.add(record, Encoding::utf8);
  return drawn(elements);
}

}  // namespace vernoxa::drawing
