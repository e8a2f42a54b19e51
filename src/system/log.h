// The two logs that the plug-in keeps for its developers: plain text in the code page, CR LF line ends.
//
// Every line is "[Time]:2024-3-5 9:7:2:45.message": local time without padding, a colon before the milliseconds and a
// full stop before the message. Messages from and to the host may hold UTF-8: text that is recognised as UTF-8 is
// converted to the code page. Logging never fails visibly and never throws. Usable from both threads: each line is
// appended to the file in one piece, so lines of two threads may come in any order but never mix.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "system/file_path.h"

namespace vernoxa::inline system {

class Clock;
class CodePage;
class Files;

// Writes lines of one log; short-lived. Each line opens and closes the file, so that a log is created again after the
// user deleted it. Without a file every write does nothing.
class LogWriter {
 public:
  LogWriter(Clock& clock, const CodePage& codePage, Files& files, FilePath file)
      : clock_(clock), codePage_(codePage), files_(files), file_(std::move(file)) {}

  bool enabled() const { return !file_.empty(); }
  void writeLine(std::string_view message) noexcept;
  // printf style; output beyond 4095 bytes is cut off.
  void writeFormatted(const char* format, ...) noexcept __attribute__((format(printf, 2, 3)));

 private:
  Clock& clock_;
  const CodePage& codePage_;
  Files& files_;
  FilePath file_;
};

class Logs {
 public:
  // `pluginFolder` holds the crash log's folder "\catchLog". The traffic log is off until its folder is known.
  Logs(Clock& clock, const CodePage& codePage, Files& files, FilePath pluginFolder);
  Logs(const Logs& other, FilePath logDirectory);

  // Enabled while the log directory exists.
  LogWriter openTraffic() const noexcept;
  // Writes the name of an operation that ended in an exception to the crash log.
  void reportCrash(std::string_view operation) const noexcept;
  // Every run of the host begins a fresh traffic log.
  void resetTraffic() const;

 private:
  FilePath trafficFile() const noexcept;

  Clock& clock_;
  const CodePage& codePage_;
  Files& files_;
  FilePath pluginFolder_;
  FilePath logDirectory_;
};

}  // namespace vernoxa::inline system
