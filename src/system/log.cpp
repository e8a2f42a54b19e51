#include "system/log.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <exception>

#include "system/clock.h"
#include "system/code_page.h"
#include "system/files.h"

namespace vernoxa::inline system {
namespace {

constexpr std::size_t formattedBytes = 4096;  // with the terminating NUL

std::string stamp(const LocalTime& time) {
  std::array<char, 128> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "[Time]:%d-%d-%d %d:%d:%d:%d.", time.year, time.month, time.day,
                time.hour, time.minute, time.second, time.milliseconds);
  return buffer.data();
}

// A line can hold text in both encodings, so each piece between quotes or semicolons is checked by itself. Neither of
// them is ever the second byte of a double-byte character.
std::string inCodePage(const CodePage& codePage, std::string_view line) {
  constexpr std::string_view separators = "\";";
  if (isAscii(line)) {
    return std::string(line);
  }
  std::string converted;
  for (std::size_t start = 0; start < line.size();) {
    const std::size_t separator = line.find_first_of(separators, start);
    const std::size_t end = separator == std::string_view::npos ? line.size() : separator + 1;
    const std::string_view text = line.substr(start, end - start);
    converted.append(isUtf8WithThreeByteSequence(text) ? codePage.fromUtf8(text) : std::string(text));
    start = end;
  }
  return converted;
}

}  // namespace

void LogWriter::writeLine(std::string_view message) noexcept {
  if (!enabled()) {
    return;
  }
  try {
    const std::string line = stamp(clock_.localTime()).append(inCodePage(codePage_, message)).append("\n");
    if (const auto file = files_.openForAppending(file_)) {
      file->write(withDosLineEnds(line));
    }
  } catch (const std::exception&) {
    return;  // no memory for a line: the operation that is being logged matters more
  }
}

void LogWriter::writeFormatted(const char* format, ...) noexcept {
  if (!enabled()) {
    return;
  }
  std::array<char, formattedBytes> buffer{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  va_end(arguments);
  writeLine(buffer.data());
}

Logs::Logs(Clock& clock, const CodePage& codePage, Files& files, FilePath pluginFolder)
    : clock_(clock), codePage_(codePage), files_(files), pluginFolder_(std::move(pluginFolder)) {}

Logs::Logs(const Logs& other, FilePath logDirectory)
    : clock_(other.clock_),
      codePage_(other.codePage_),
      files_(other.files_),
      pluginFolder_(other.pluginFolder_),
      logDirectory_(std::move(logDirectory)) {}

LogWriter Logs::openTraffic() const noexcept {
  return {clock_, codePage_, files_, trafficFile()};
}

FilePath Logs::trafficFile() const noexcept {
  try {
    return !logDirectory_.empty() && files_.isFolder(logDirectory_) ? logDirectory_ / "schLog.txt" : FilePath();
  } catch (const std::exception&) {
    return {};
  }
}

void Logs::reportCrash(std::string_view operation) const noexcept {
  try {
    const FilePath folder = pluginFolder_ / "catchLog";
    if (!files_.exists(folder)) {
      files_.createFolder(folder);
    }
    LogWriter(clock_, codePage_, files_, folder / "log.txt").writeLine(operation);
  } catch (const std::exception&) {
    return;  // the report is for developers; there is nobody left to tell
  }
}

void Logs::resetTraffic() const {
  if (files_.isFolder(logDirectory_)) {
    files_.removeFile(logDirectory_ / "SchLog.txt");
  }
}

}  // namespace vernoxa::inline system
