#include "modules/list_text.h"

#include <string>

#include "text/text.h"

namespace vernoxa::modules {
namespace {

std::string escaped(std::string_view value) {
  return replaceAll(replaceAll(doubleBackslashes(value), "[", "\\["), "]", "\\]");
}

}  // namespace

ListText& ListText::literal(Literal text) {
  script_.literal(text);
  return *this;
}

ListText& ListText::bare(std::string_view value) {
  script_.bare(escaped(value));
  return *this;
}

ListText& ListText::quoted(std::string_view value) {
  script_.quoted(escaped(value));
  return *this;
}

ListText& ListText::braced(std::string_view value) {
  script_.braced(doubleBackslashes(value));
  return *this;
}

ListText& ListText::item(std::string_view key, std::string_view value) {
  return literal("[list ").quoted(key).literal(" ").quoted(value).literal("]");
}

ListText& ListText::bareOr(std::string_view value, Literal whenEmpty) {
  return value.empty() ? literal(whenEmpty) : bare(value);
}

}  // namespace vernoxa::modules
