// One record of the host: a flat list of texts whose first is the record's kind.
#pragma once

#include <array>
#include <cstddef>
#include <forward_list>
#include <initializer_list>
#include <string>
#include <string_view>

#include "text/text_converter.h"

namespace vernoxa::drawing {

constexpr std::string_view textKind = "Text";
constexpr std::size_t textLines = 3;  // element of "Text" that holds its lines
constexpr std::string_view lineSeparator = "\r\n";

// Views of the texts as they came, UTF-8 as Tcl holds it, which must outlive the record. A missing text is empty.
class Record {
 public:
  static constexpr std::size_t size = 12;  // no kind has more

  // The texts of a TclList or of a PassingList.
  explicit Record(const auto& list) { clear(list.texts(starts_.data(), sizes_.data(), size)); }
  Record(std::initializer_list<std::string_view> texts) {
    clear(0);
    for (std::size_t index = 0; index < texts.size(); ++index) {
      set(index, texts.begin()[index]);
    }
  }
  // The same texts but one.
  Record(const Record& other, std::size_t index, std::string_view text) : starts_(other.starts_), sizes_(other.sizes_) {
    set(index, text);
  }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  std::string_view kind() const { return (*this)[0]; }
  std::string_view operator[](std::size_t index) const { return {starts_[index], sizes_[index]}; }

  void set(std::size_t index, std::string_view text) {
    starts_[index] = text.data();
    sizes_[index] = text.size();
  }
  // Puts a text of its own in the place of the one that came.
  void keep(std::size_t index, std::string text);

  // Puts each text through the code page and back, since a drawing shows what the code page can hold; what is no UTF-8
  // is read as the code page. The lines of a "Text" are put through only when `convertLines` says so, else a line that
  // is valid UTF-8 stays. Afterwards all texts are UTF-8. A text for which memory runs out on its way back is shown
  // empty, which a message box tells (TextConverter::ansiToUtf8); on its way there the record is lost (std::bad_alloc).
  void showInCodePage(const TextConverter& converter, bool convertLines);

  // Makes each text of Tcl's plain UTF-8; one in the code page stays as it is.
  void takeAsUtf8();

 private:
  void clear(std::size_t from) {
    for (std::size_t index = from; index < size; ++index) {
      set(index, "");
    }
  }

  std::array<const char*, size> starts_;  // not views, which would be cleared before they are set
  std::array<std::size_t, size> sizes_;
  std::forward_list<std::string> kept_;
};

}  // namespace vernoxa::drawing
