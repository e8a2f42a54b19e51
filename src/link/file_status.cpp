#include "link/file_status.h"

#include "system/files.h"
#include "system/shared_path.h"
#include "system/system.h"
#include "text/message_paths.h"
#include "text/text.h"
#include "text/text_converter.h"

namespace vernoxa::link {
namespace {

Json messageWith(Json data) {
  Json message = Json::object();
  message.add("Command", "FileStatus");
  message.add("Result", "0");
  message.add("Data", std::move(data));
  return message;
}

bool isDesign(std::string_view path) {
  const auto extension = extensionOf(path);
  return extension == "dsn" || extension == "DSN";
}

}  // namespace

bool FileStatus::hasName(std::string_view hostPath) const {
  return !paths_.ofDesign(hostPath).empty();
}

Json FileStatus::data(std::string_view status, std::string_view hostPath) const {
  Json data = Json::object();
  data.add("Status", status);
  data.add("FileName", paths_.ofDesign(hostPath));
  return data;
}

void FileStatus::addHost(Json& data) const {
  data.add("Pid", std::to_string(processes_.ownId()));
  data.add("AllegroPath", paths_.of(host_.get()));
}

Json FileStatus::opened(std::string_view hostPath, std::string_view pinCount) const {
  Json opened = data("Open", hostPath);
  addHost(opened);
  opened.add("PinCount", converter_.messageText(pinCount));
  return messageWith(std::move(opened));
}

Json FileStatus::saved(std::string_view hostPath) const {
  Json saved = data("Save", hostPath);
  addHost(saved);
  return messageWith(std::move(saved));
}

Json FileStatus::closed(std::string_view hostPath) const {
  return messageWith(data("Close", hostPath));
}

void FileStatus::followProject(std::string_view path) const {
  // The code page bytes of some names are UTF-8 of others: then a folder that is there is meant.
  const FilePath inCodePage = FilePath::fromUtf8(converter_.ansiToUtf8(path));
  const bool inUtf8 = isUtf8WithThreeByteSequence(path) && !files_.isFolder(inCodePage);
  project_.set(inUtf8 ? converter_.path(path) : inCodePage);
}

std::vector<std::string> designsAmong(std::string_view paths) {
  std::vector<std::string> designs = splitItems(paths, ';');
  std::erase_if(designs, [](const std::string& path) { return !isDesign(path); });
  return designs;
}

}  // namespace vernoxa::link
