#include "designs/file_status.h"

#include "dispatch/services.h"
#include "dispatch/state.h"
#include "system/files.h"
#include "system/log.h"
#include "system/system.h"
#include "system/world.h"
#include "text/code_page.h"
#include "text/path_text.h"
#include "text/text.h"

namespace vernoxa {
namespace {

Json statusData(const Services& services, std::string_view status, std::string_view hostPath) {
  Json data = Json::object();
  data.add("Status", status);
  data.add("FileName", designName(services, hostPath));
  return data;
}

void addHost(Json& data, const Services& services) {
  data.add("Pid", std::to_string(services.world.processes.ownId()));
  data.add("AllegroPath", pathText(services, services.state.hostExecutable.get()));
}

Json fileStatus(Json data) {
  Json message = Json::object();
  message.add("Command", "FileStatus");
  message.add("Result", "0");
  message.add("Data", std::move(data));
  return message;
}

// A short name, which the code page has, opens the same file.
std::string otherName(const Services& services, const std::string& hostPath, const FilePath& path) {
  LinkState& link = services.state.link;
  std::string name = link.otherNameOf(hostPath);
  if (name.empty()) {
    name = services.text.nameInCodePage(services.world.files.shortPath(path)).value_or("");
    if (link.keepOtherName(hostPath, name) && name.empty()) {
      services.logs.openTraffic().writeLine("not reported, no name in the code page: " +
                                            services.text.utf8ToAnsi(hostPath));
    }
  }
  return name;
}

}  // namespace

std::string designName(const Services& services, std::string_view hostPath) {
  const auto plain = utf8OfTcl(hostPath);
  const bool converted = looksLikeUtf8Chinese(hostPath);
  // Other texts stay as they are, but for those that are UTF-8 beyond doubt and that the code page cannot name.
  const bool mayBeNameless = plain && (*plain != hostPath || isUtf8WithThreeByteSequence(hostPath));
  if (!plain || !(converted || mayBeNameless)) {
    return std::string(hostPath);
  }
  const FilePath path = FilePath::fromUtf8(*plain);
  const auto name = services.text.nameInCodePage(path);
  if (!name) {
    return otherName(services, std::string(hostPath), path);
  }
  return converted || *name == *plain ? *name : std::string(hostPath);
}

Json openedMessage(const Services& services, std::string_view hostPath, std::string_view pinCount) {
  Json data = statusData(services, "Open", hostPath);
  addHost(data, services);
  data.add("PinCount", services.text.messageText(pinCount));
  return fileStatus(std::move(data));
}

Json savedMessage(const Services& services, std::string_view hostPath) {
  Json data = statusData(services, "Save", hostPath);
  addHost(data, services);
  return fileStatus(std::move(data));
}

Json closedMessage(const Services& services, std::string_view hostPath) {
  return fileStatus(statusData(services, "Close", hostPath));
}

void followProject(const Services& services, std::string_view path) {
  // The code page bytes of some names are UTF-8 of others: then a folder that is there is meant.
  const FilePath inCodePage = FilePath::fromUtf8(services.text.ansiToUtf8(path));
  const bool inUtf8 = isUtf8WithThreeByteSequence(path) && !services.world.files.isFolder(inCodePage);
  services.state.folder.set(inUtf8 ? services.text.path(path) : inCodePage);
}

bool isDesign(std::string_view path) {
  const auto extension = extensionOf(path);
  return extension == "dsn" || extension == "DSN";
}

std::vector<std::string> designsAmong(std::string_view paths) {
  std::vector<std::string> designs = splitItems(paths, ';');
  std::erase_if(designs, [](const std::string& path) { return !isDesign(path); });
  return designs;
}

}  // namespace vernoxa
