// Writes JSON as text, byte for byte as cJSON's formatted printer does, but with CR LF between lines as the files have.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vernoxa {

// Appends the inside of a string. Bytes above 7F pass as they are; the text ends at its first NUL byte.
void appendEscaped(std::string& out, std::string_view text);

// Appends to `out`. An object has each member on a line of its own, indented by as many tabs as there are objects and
// arrays around it; the elements of an array follow each other on the line. Member names are written as they are.
class JsonText {
 public:
  // `depth`: how many objects and arrays are open already.
  JsonText(std::string& out, std::size_t depth) : out_(out), depth_(depth) {}

  void openObject();
  void name(std::string_view memberName);  // the value must follow
  void closeObject();
  void openArray();
  void closeArray();

  void member(std::string_view memberName, std::string_view text);

 private:
  void newLine();

  std::string& out_;
  std::size_t depth_;
  bool first_ = true;  // no member yet in the innermost open object
};

constexpr std::string_view elementSeparator = ", ";  // between the elements of an array

}  // namespace vernoxa
