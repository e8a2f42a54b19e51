// One record of the host: a flat list of texts whose first is the record's kind.
#pragma once

#include <algorithm>
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
  static constexpr std::size_t size = 12;  // no kind has more

  Record() { clear(0); }
  // The texts of a TclList or of a PassingList.
  template <class List>
  explicit Record(const List& list) {
    take(list);
  }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  std::string_view kind() const { return (*this)[0]; }
  std::string_view operator[](std::size_t index) const { return {starts_[index], sizes_[index]}; }
  // The text as it came, whatever was made of it since: what a file is named after.
  std::string_view given(std::size_t index) const;
  void set(std::size_t index, std::string_view text) {
    starts_[index] = text.data();
    sizes_[index] = text.size();
  }
  // The same with a text that the record owns.
  void keep(std::size_t index, std::string text);
  // The texts of a TclList anew, after what may have changed them.
  template <class List>
  void take(const List& list) {
    clear(list.texts(starts_.data(), sizes_.data(), size));
  }
  // The texts of another record, which must outlive this one.
  void show(const Record& other) {
    starts_ = other.starts_;
    sizes_ = other.sizes_;
  }

  // Puts each text through the code page and back, since a drawing shows what the code page can hold; what is no UTF-8
  // is read as the code page. The lines of a "Text" are put through only when `convertLines` says so, else a line that
  // is valid UTF-8 stays. Afterwards all texts are UTF-8.
  void showInCodePage(const TextConverter& converter, bool convertLines);

  // Makes each text of Tcl's plain UTF-8; one in the code page stays as it is.
  void takeAsUtf8();

 private:
  struct Kept {
    std::size_t index;
    std::string_view given;
    std::string text;
  };

  void clear(std::size_t from) {
    std::fill(starts_.begin() + static_cast<std::ptrdiff_t>(from), starts_.end(), "");
    std::fill(sizes_.begin() + static_cast<std::ptrdiff_t>(from), sizes_.end(), 0);
  }

  std::array<const char*, size> starts_;  // not views, which would be cleared before they are set
  std::array<std::size_t, size> sizes_;
  std::forward_list<Kept> kept_;
};

}  // namespace vernoxa
