#include "system/whole_file.h"

#include <string>

#include "system/log.h"
#include "system/system.h"
#include "system/temporary_file.h"

namespace vernoxa::inline system {
namespace {

enum class Written { whole, partly, notBegun };

// Removes the file again unless all of it was written.
Written write(Files& files, const FilePath& path, const WriteContent& content) {
  auto file = files.create(path);
  if (!file) {
    return Written::notBegun;
  }
  TemporaryFile unfinished(files, path);
  const bool whole = content(*file);
  file.reset();  // Windows does not remove an open file
  if (whole) {
    unfinished.keep();
  }
  return whole ? Written::whole : Written::partly;
}

// A short name that no page or library has. The process id keeps two editors apart.
FilePath besideName(Processes& processes, const FilePath& path) {
  return path.folder() / ("~" + std::to_string(processes.ownId()) + ".tmp");
}

}  // namespace

bool writeWholeFile(Files& files, Processes& processes, const FilePath& path, WhenHeld whenHeld,
                    const WriteContent& content) {
  const FilePath beside = besideName(processes, path);
  const Written written = write(files, beside, content);
  if (written == Written::partly) {
    return false;
  }
  if (written == Written::whole) {
    TemporaryFile temporary(files, beside);
    if (files.replaceFile(beside, path)) {
      temporary.keep();
      return true;
    }
  }
  // If not even the temporary file could be created, writing in place might fail too and destroy the former file.
  const bool inPlaceIsSafe = written == Written::whole || !files.exists(path);
  return whenHeld == WhenHeld::writeInPlace && inPlaceIsSafe && write(files, path, content) == Written::whole;
}

void writeWholeFile(Files& files, Processes& processes, const FilePath& path, WhenHeld whenHeld,
                    const WriteContent& content, const Logs& logs) {
  if (!writeWholeFile(files, processes, path, whenHeld, content)) {
    logs.openTraffic().writeLine("not written: " + path.utf8());
  }
}

}  // namespace vernoxa::inline system
