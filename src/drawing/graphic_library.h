// The graphic library of library symbols: a JSON document with the arrays "children", "padstacks" and "lib".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "drawing/page_text.h"
#include "drawing/record.h"
#include "system/files.h"
#include "system/log.h"
#include "system/shared_path.h"
#include "system/system.h"
#include "text/text_converter.h"

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
  GraphicLibrary(const ProjectFolder& project, Files& files, Processes& processes, const TextConverter& converter,
                 const Logs& logs)
      : project_(project), files_(files), processes_(processes), converter_(converter), logs_(logs) {}

  // Begins a document; the former one is dropped.
  void start();

  // "Name" opens the next entry of "lib"; all others are drawn into it, or into "children" before the first. False
  // without a document, and for what Elements::add() does not take.
  bool draw(const Record& record, Encoding encoding);

  // Writes the document, if one was started, below "\Cache\Library" and drops it; when memory runs out, it stays. A
  // library that is there already is kept: it never changes under its readers; a file that is none, being empty or cut
  // off, is replaced. Gives the file's path with "/", in UTF-8, written or not. "\" and "/" of the name become "-",
  // plainFileName() does the rest; its bytes name the file as they are.
  std::string finish(std::string_view name);

 private:
  const ProjectFolder& project_;
  Files& files_;
  Processes& processes_;
  const TextConverter& converter_;
  const Logs& logs_;
  std::optional<LibraryDocument> document_;
  std::uint64_t begun_ = 0;  // documents so far
};

}  // namespace vernoxa::drawing
