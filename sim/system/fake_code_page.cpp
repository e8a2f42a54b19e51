#include "system/fake_code_page.h"

#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>

#include <array>
#endif

namespace vernoxa {
namespace {

#ifdef _WIN32

// CP_UTF8 or 936, and what stands for a byte or character that has no counterpart.
std::string convert(std::string_view text, UINT from, UINT to) {
  std::wstring wide(text.size(), L'\0');
  const int units = MultiByteToWideChar(from, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                        static_cast<int>(wide.size()));
  std::string result(static_cast<std::size_t>(units) * 3, '\0');
  const int bytes =
      WideCharToMultiByte(to, 0, wide.data(), units, result.data(), static_cast<int>(result.size()), nullptr, nullptr);
  result.resize(static_cast<std::size_t>(bytes));
  return result;
}

std::string ansiToUtf8(std::string_view text) {
  return convert(text, 936, CP_UTF8);
}

std::string utf8ToAnsi(std::string_view text) {
  return convert(text, CP_UTF8, 936);
}

#else

std::string convert(std::string_view text, const char* from, const char* to, std::string_view substitute) {
  struct Conversion {
    iconv_t handle;
    ~Conversion() { iconv_close(handle); }
  } const conversion{iconv_open(to, from)};
  std::string input(text);
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
      result.append(substitute);
      do {
        ++next;
        --left;
      } while (from == std::string_view("UTF-8") && left > 0 && (static_cast<unsigned char>(*next) & 0xC0U) == 0x80U);
    }
  }
  return result;
}

std::string ansiToUtf8(std::string_view text) {
  return convert(text, "CP936", "UTF-8", "\xEF\xBF\xBD");
}

std::string utf8ToAnsi(std::string_view text) {
  return convert(text, "UTF-8", "CP936", "?");
}

#endif

}  // namespace

std::string FakeCodePage::toUtf8(std::string_view ansi) const {
  return throwing ? throw std::bad_alloc() : ansiToUtf8(ansi);
}

std::string FakeCodePage::fromUtf8(std::string_view utf8) const {
  return throwing ? throw std::bad_alloc() : utf8ToAnsi(utf8);
}

std::string utf8(std::u8string_view text) {
  return {text.begin(), text.end()};
}

}  // namespace vernoxa
