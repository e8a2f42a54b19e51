// A shared module as it is read for a placement. Anybody may have written it: a member that is missing or of another
// type reads as empty.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "system/file_path.h"
#include "text/json.h"

namespace vernoxa::inline system {
class Files;
class Logs;
}  // namespace vernoxa::inline system

namespace vernoxa::modules {

// Width and height as decimal texts.
struct ViewBox {
  std::string width;
  std::string height;
};

// The text of a member; empty if it is missing or not text.
std::string_view textOf(JsonView object, std::string_view member);
// A member that is an object or an array; an empty view if it is missing or of another type.
JsonView objectIn(JsonView object, std::string_view member);
JsonView arrayIn(JsonView object, std::string_view member);
// The name of a part, element or object: "Name", in older modules and for schematic objects "name".
std::string_view nameOf(JsonView object);

// Texts are UTF-8; views are valid as long as this object.
class ModuleFile {
 public:
  // Gives a module without a root if the file cannot be read, is not valid JSON, or is beyond the limits (the traffic
  // log says so).
  static ModuleFile read(Files& files, const Logs& logs, const FilePath& path);

  bool hasRoot() const { return static_cast<bool>(root_); }
  bool hasLibrary() const { return static_cast<bool>(library()); }
  JsonView library() const { return arrayIn(root_.view(), "lib"); }
  JsonView objects() const { return arrayIn(root_.view(), "children"); }
  // "Name" of the library's first part.
  std::string_view firstPartName() const;
  // From "BoundingBox": two numbers as they are, or the differences of four; `nullopt` for anything else.
  std::optional<ViewBox> viewBox() const;

 private:
  Json root_;
};

}  // namespace vernoxa::modules
