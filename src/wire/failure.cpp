#include "wire/failure.h"

#include "system/log.h"
#include "system/system.h"

namespace vernoxa {

void say(const Failure& failure, LogWriter& log, StandardOutput& output) {
  if (failure.where == Failure::Where::log) {
    log.writeLine(failure.what);
  } else if (failure.where == Failure::Where::output) {
    output.print(failure.what);
  }
}

}  // namespace vernoxa
