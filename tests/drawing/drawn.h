// What records draw, as lines that can be read: tag, [text], name=value|...
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "drawing/element_form.h"

namespace vernoxa {

class DrawnElements final : public ElementSink {
 public:
  void add(const ElementForm& form, const Record& record) override {
    text += form.tag();
    if (form.shownText() != nullptr) {
      text.append(" [").append(form.shownText()(record)).append("]");
    }
    const char* separator = " ";
    for (const Attribute& attribute : form.attributes()) {
      text.append(std::exchange(separator, "|")).append(attribute.name).append("=");
      for (const ValuePiece& piece : attribute.pieces) {
        text += piece.value != nullptr ? piece.value(record) : piece.text;
      }
    }
    text += '\n';
  }

  std::string text;
};

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

}  // namespace vernoxa
