// The graphic library of library symbols: a JSON document with the arrays "children", "padstacks" and "lib".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "drawing/page_text.h"
#include "drawing/record.h"

namespace vernoxa::inline system {
class Files;
class OutputFile;
class Processes;
class ProjectFolder;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::drawing {

// What it holds until it becomes a file. Texts are UTF-8.
struct LibraryDocument {
  Elements children{Use::symbol, Elements::In::array, 2};
  Elements library{Use::symbol, Elements::In::groups, 2};
  bool named = false;  // the first entry was opened

  // False when the file takes no more.
  bool writeTo(OutputFile& file) const;
};

// Host thread only. Texts stay as Tcl gave them, UTF-8.
class GraphicLibrary {
 public:
  GraphicLibrary(const ProjectFolder& project, Files& files, Processes& processes, const TextConverter& converter)
      : project_(project), files_(files), processes_(processes), converter_(converter) {}

  // Begins a document; the former one is dropped.
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
  const ProjectFolder& project_;
  Files& files_;
  Processes& processes_;
  const TextConverter& converter_;
  std::optional<LibraryDocument> document_;
};

}  // namespace vernoxa::drawing
