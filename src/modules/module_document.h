// The shared-module document while the host's script builds it, record by record. docs/module-format.md shows the
// finished file.
//
// Records are lists of UTF-8 texts whose element 0 is the kind; a missing element reads as the empty text, an unknown
// kind is ignored. Host thread only.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

#include "drawing/record.h"
#include "text/json.h"

namespace vernoxa::modules {

class ModuleDocument {
 public:
  // A fresh document in place of the former one.
  void start();
  bool started() const { return static_cast<bool>(root_); }

  // One record of a library part: first its header "Name", then its elements and properties. If a header repeats the
  // name, index and type of a part, all records up to the next header are dropped, as are records before the first one.
  void addLibraryRecord(const drawing::Record& record);

  // One record of a schematic object.
  void addSchematicRecord(const drawing::Record& record);

  // Ends the document and gives its text, UTF-8, formatted; empty when none was started.
  std::string finish(std::string_view width, std::string_view height);

 private:
  struct Current {
    JsonView properties;           // of the part or object
    JsonView displayedProperties;  // of the part or object
    JsonView children;             // of the part
    JsonView elementProperties;    // of the part's last element
  };

  void startPart(const drawing::Record& record);
  void addProperty(JsonView properties, const drawing::Record& record);

  Json root_;
  JsonView children_;
  JsonView library_;
  std::unordered_set<std::string> partKeys_;  // name, index and type of every part in the library
  Current part_;
  Current object_;
};

}  // namespace vernoxa::modules
