// The graphic library of library symbols: a JSON document with the arrays "children", "padstacks" and "lib".
#pragma once

#include <optional>
#include <string>

#include "drawing/element_form.h"
#include "drawing/record.h"
#include "text/json.h"

namespace vernoxa {

class Files;
class Processes;
class ProjectFolder;
class TextConverter;

// Host thread only. Texts stay as Tcl gave them, UTF-8.
class GraphicLibrary final : private ElementSink {
 public:
  GraphicLibrary(const ProjectFolder& project, Files& files, Processes& processes, const TextConverter& text)
      : project_(project), files_(files), processes_(processes), text_(text) {}

  // Begins a document with the eight pin shapes in "padstacks"; the former one is dropped.
  void start();

  // "Name" opens the next entry of "lib"; all others are drawn into it, or into "children" before the first. Without a
  // document nothing happens.
  void addRecord(const Record& record);

  // Writes the document, if one was started, below "\Cache\Library" and drops it. A library that is there already is
  // kept: it never changes under its readers; a file that is none, being empty or cut off, is replaced. Gives the
  // file's path with "/", in UTF-8, written or not. "\" and "/" of the name become "-", plainFileName() does the rest;
  // its bytes name the file as they are.
  std::string finish(std::string_view name);

 private:
  void add(const ElementForm& form, const Record& record) override;

  const ProjectFolder& project_;
  Files& files_;
  Processes& processes_;
  const TextConverter& text_;
  Json document_;
  JsonView libraries_;
  JsonView target_;  // where elements go
};

}  // namespace vernoxa
