#include "system/whole_file.h"

#include <string>

#include "system/system.h"
#include "system/temporary_file.h"

namespace vernoxa::inline system {
namespace {

enum class Written { whole, partly, notBegun };

// Gone again unless it was written whole.
Written write(Files& files, const FilePath& path, const WriteContent& content) {
  auto file = files.create(path);
  if (!file) {
    return Written::notBegun;
  }
  TemporaryFile unfinished(files, path);
  const bool whole = content(*file);
  file.reset();  // what is open goes only when it is closed
  if (whole) {
    unfinished.keep();
  }
  return whole ? Written::whole : Written::partly;
}

// Short, and not the name of any page or library; another editor writes under another one.
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
  // What cannot even be begun beside it may not fit in its place either, which would cost the former one.
  const bool canCostNothing = written == Written::whole || !files.exists(path);
  return whenHeld == WhenHeld::writeInPlace && canCostNothing && write(files, path, content) == Written::whole;
}

}  // namespace vernoxa::inline system
