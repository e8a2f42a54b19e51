// One record of the host: a flat list of texts whose first is the record's kind.
#pragma once

#include <array>
#include <cstddef>
#include <forward_list>
#include <string>
#include <string_view>

namespace vernoxa {

class TextConverter;

constexpr std::string_view textKind = "Text";
constexpr std::size_t textLines = 3;  // element of "Text" that holds its lines
constexpr std::string_view lineSeparator = "\r\n";

// Views of the texts as they came, UTF-8 as Tcl holds it; their list must outlive the record. A missing text is empty.
class Record {
 public:
  static constexpr std::size_t size = 10;  // no kind has more

  Record() = default;
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  std::string_view kind() const { return texts_[0]; }
  std::string_view operator[](std::size_t index) const { return texts_[index]; }
  // The text as it came, whatever was made of it since: what a file is named after.
  std::string_view given(std::size_t index) const { return given_[index]; }
  void set(std::size_t index, std::string_view text) { texts_[index] = given_[index] = text; }
  // The same with a text that the record owns.
  void keep(std::size_t index, std::string text) { texts_[index] = kept_.emplace_front(std::move(text)); }
  // The texts of another record, which must outlive this one.
  void show(const Record& other) { texts_ = given_ = other.texts_; }

  // Puts each text through the code page and back, since a drawing shows what the code page can hold; what is no UTF-8
  // is read as the code page. The lines of a "Text" are put through only when `convertLines` says so, else a line that
  // is valid UTF-8 stays. Afterwards all texts are UTF-8.
  void showInCodePage(const TextConverter& converter, bool convertLines);

  // Makes each text of Tcl's plain UTF-8; one in the code page stays as it is.
  void takeAsUtf8();

 private:
  std::array<std::string_view, size> texts_;
  std::array<std::string_view, size> given_;
  std::forward_list<std::string> kept_;
};

}  // namespace vernoxa
