#include "text/path_text.h"

#include "dispatch/services.h"
#include "system/files.h"
#include "system/log.h"
#include "system/world.h"
#include "text/code_page.h"
#include "text/text.h"

namespace vernoxa {

std::string pathText(const Services& services, const FilePath& path) {
  if (const auto name = services.text.nameInCodePage(path)) {
    return *name;
  }
  const FilePath shortPath = services.world.files.shortPath(path);
  if (const auto name = services.text.nameInCodePage(shortPath); name && !name->empty()) {
    return *name;
  }
  if (isUtf8WithThreeByteSequence(path.utf8())) {
    return path.utf8();
  }
  services.logs.openTraffic().writeLine("no name in the code page: " + services.text.utf8ToAnsi(path.utf8()));
  return {};
}

}  // namespace vernoxa
