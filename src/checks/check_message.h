// The messages of the design checks.
//
// They are put together from pieces of text: values are not escaped, so a double quote in a value makes the message
// invalid JSON. Companions know them in this form.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::checks {

enum class ActualValue {
  first,
  second,
  firstDotSecond,       // U3.7
  secondInParentheses,  // U3(10k)
};

// One kind of finding. Texts in the code page.
struct FindingKind {
  std::string_view name;  // empty: the only kind of its check, whose command has no kind argument
  ActualValue actual;
  bool commentNamesFirst;  // the first value stands before the comment
  std::string_view comment;
};

struct DesignCheck {
  std::string_view id;
  std::span<const FindingKind> kinds;

  bool takesKind() const { return !kinds.front().name.empty(); }
};

extern const DesignCheck referenceCheck;
extern const DesignCheck illegalCharacterCheck;
extern const DesignCheck unconnectedPinCheck;
extern const DesignCheck netlistCheck;

// A finding as the host's script reports it, UTF-8.
struct Finding {
  std::string_view kind;
  std::string_view first;   // reference, or name of a property
  std::string_view second;  // pin, value or second reference
  std::string_view schematic;
  std::string_view page;
  std::string_view x;
  std::string_view y;
};

// "DsnCheck_Result" for one finding; `nullopt` for a kind that the check does not know. Schematic and page name are in
// the code page unless they look like UTF-8 Chinese, which stays (readers rely on it); the other values keep their
// bytes.
std::optional<std::string> findingMessage(const DesignCheck& check, const Finding& finding,
                                          const TextConverter& converter);

// "DsnCheck_EndResult": the check has no further findings.
std::string checkEndMessage(const DesignCheck& check);

}  // namespace vernoxa::checks
