#include "core/log.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <exception>

#include "core/clock.h"
#include "core/files.h"

namespace vernoxa {
namespace {

constexpr std::size_t formattedBytes = 4096;  // with the terminating NUL

std::string stamp(const LocalTime& time) {
  std::array<char, 128> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "[Time]:%d-%d-%d %d:%d:%d:%d.", time.year, time.month, time.day,
                time.hour, time.minute, time.second, time.milliseconds);
  return buffer.data();
}

}  // namespace

LogWriter::LogWriter(Clock& clock, std::unique_ptr<OutputFile> file) : clock_(clock), file_(std::move(file)) {}

LogWriter::LogWriter(LogWriter&&) noexcept = default;

LogWriter::~LogWriter() = default;

void LogWriter::writeLine(std::string_view message) noexcept {
  if (!enabled()) {
    return;
  }
  try {
    file_->write(withDosLineEnds(stamp(clock_.localTime()).append(message).append("\n")));
  } catch (const std::exception&) {
    file_.reset();  // no memory for a line: the operation that is being logged matters more
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

Logs::Logs(Clock& clock, Files& files, FilePath pluginFolder)
    : clock_(clock), files_(files), pluginFolder_(std::move(pluginFolder)) {}

Logs::Logs(const Logs& other, FilePath logDirectory)
    : clock_(other.clock_),
      files_(other.files_),
      pluginFolder_(other.pluginFolder_),
      logDirectory_(std::move(logDirectory)) {}

LogWriter Logs::openTraffic() const noexcept {
  return {clock_, openTrafficFile()};
}

std::unique_ptr<OutputFile> Logs::openTrafficFile() const noexcept {
  try {
    if (!logDirectory_.empty() && files_.isFolder(logDirectory_)) {
      return files_.openForAppending(logDirectory_ / "schLog.txt");
    }
  } catch (const std::exception&) {
    return nullptr;
  }
  return nullptr;
}

void Logs::reportCrash(std::string_view operation) const noexcept {
  try {
    const FilePath folder = pluginFolder_ / "catchLog";
    if (!files_.exists(folder)) {
      files_.createFolder(folder);
    }
    LogWriter(clock_, files_.openForAppending(folder / "log.txt")).writeLine(operation);
  } catch (const std::exception&) {
    return;  // the report is for developers; there is nobody left to tell
  }
}

void Logs::resetTraffic() const {
  if (files_.isFolder(logDirectory_)) {
    files_.removeFile(logDirectory_ / "SchLog.txt");
  }
}

}  // namespace vernoxa
