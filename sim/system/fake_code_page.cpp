#include "system/fake_code_page.h"

#include <array>
#include <map>
#include <new>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace vernoxa {
namespace {

constexpr unsigned literals = 936;
constexpr unsigned utf8Number = 65001;

#ifdef _WIN32

std::string convert(std::string_view text, unsigned from, unsigned to) {
  std::wstring wide(text.size(), L'\0');
  const int units = MultiByteToWideChar(from, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                        static_cast<int>(wide.size()));
  std::string result(static_cast<std::size_t>(units) * 3, '\0');
  const int bytes =
      WideCharToMultiByte(to, 0, wide.data(), units, result.data(), static_cast<int>(result.size()), nullptr, nullptr);
  result.resize(static_cast<std::size_t>(bytes));
  return result;
}

#else

const char* nameOf(unsigned number) {
  switch (number) {
    case 936:
      return "CP936";
    case 950:
      return "CP950";
    case 932:
      return "CP932";
    case 1252:
      return "CP1252";
    default:
      return "UTF-8";
  }
}

// iconv would take what UTF-8 could write behind U+10FFFF; its first byte becomes one that nothing begins with.
std::string withoutWhatIsBeyondUnicode(std::string_view text) {
  std::string result(text);
  for (std::size_t index = 0; index < result.size(); ++index) {
    if (text.substr(index, 2) > "\xF4\x8F\xFF") {
      result[index] = '\xFF';
    }
  }
  return result;
}

std::string convert(std::string_view text, unsigned from, unsigned to) {
  struct Conversion {
    Conversion(unsigned toPage, unsigned fromPage) : handle(iconv_open(nameOf(toPage), nameOf(fromPage))) {}
    ~Conversion() { iconv_close(handle); }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;
    iconv_t handle;
  };
  // Kept, since opening one takes ten times as long as a text.
  thread_local std::map<std::pair<unsigned, unsigned>, Conversion> kept;
  const Conversion& conversion = kept.try_emplace({to, from}, to, from).first->second;
  iconv(conversion.handle, nullptr, nullptr, nullptr, nullptr);
  std::string input = from == utf8Number ? withoutWhatIsBeyondUnicode(text) : std::string(text);
  char* next = input.data();
  std::size_t left = input.size();
  std::string result;
  while (left > 0) {
    std::array<char, 256> buffer{};
    char* output = buffer.data();
    std::size_t space = buffer.size();
    const char* const before = next;
    iconv(conversion.handle, &next, &left, &output, &space);
    result.append(buffer.data(), buffer.size() - space);
    if (next == before && space == buffer.size()) {  // stuck: one bad byte, or one character without a counterpart
      result.append(to == utf8Number ? "\xEF\xBF\xBD" : "?");
      do {
        ++next;
        --left;
      } while (from == utf8Number && left > 0 && (static_cast<unsigned char>(*next) & 0xC0U) == 0x80U);
    }
  }
  return result;
}

#endif

struct Range {
  unsigned char first;
  unsigned char last;
};

// First bytes of double-byte characters (the tables of Windows' code pages).
std::array<Range, 2> leadBytes(unsigned number) {
  switch (number) {
    case 936:
    case 950:
      return {{{0x81, 0xFE}, {0x81, 0xFE}}};
    case 932:
      return {{{0x81, 0x9F}, {0xE0, 0xFC}}};
    default:
      return {{{1, 0}, {1, 0}}};
  }
}

}  // namespace

bool FakeCodePage::isLeadByte(char byte) const {
  const auto value = static_cast<unsigned char>(byte);
  for (const Range& range : leadBytes(number_)) {
    if (value >= range.first && value <= range.last) {
      return true;
    }
  }
  return false;
}

std::string FakeCodePage::toUtf8(std::string_view ansi) const {
  return throwing ? throw std::bad_alloc() : convert(ansi, number_, utf8Number);
}

std::string FakeCodePage::fromUtf8(std::string_view utf8) const {
  return throwing ? throw std::bad_alloc() : convert(utf8, utf8Number, number_);
}

std::optional<std::string> FakeCodePage::nameFromUtf8(std::string_view utf8) const {
  std::string name = fromUtf8(utf8);
  // Some tables give a second character the same bytes, as the yen sign those of the backslash.
  return toUtf8(name) == utf8 ? std::optional(std::move(name)) : std::nullopt;
}

std::string utf8(std::u8string_view text) {
  return {text.begin(), text.end()};
}

FilePath pathOf(std::string_view literal) {
  return FilePath::fromUtf8(convert(literal, literals, utf8Number));
}

std::string literalOf(const FilePath& path) {
  return convert(path.utf8(), utf8Number, literals);
}

}  // namespace vernoxa
