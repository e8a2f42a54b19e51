// The export of schematic pages: which page is open, and when it becomes a file.
//
// The host's script starts an export, then sends for each page a "Page" record, the symbols that the page uses and its
// objects, and at the end the names of the last page. Records that come at another moment are dropped.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "drawing/page_text.h"
#include "drawing/record.h"

namespace vernoxa::inline system {
class Clock;
class Files;
class OutputFile;
class Processes;
class ProjectFolder;
}  // namespace vernoxa::inline system
namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::drawing {

// What page files are named after, as the host gave it.
struct PageNames {
  std::string schematic;
  std::string page;
  std::string key;  // tells pages of one name apart
};

// One page with the symbols that it uses, until it becomes a file. Texts are UTF-8.
struct PageDocument {
  std::string height;
  std::string width;
  Elements page{Use::page, Elements::In::groups, 2};  // not open without a page: then there is only what all have
  Elements symbols{Use::symbol, Elements::In::groups, 4};

  // False when the file takes no more.
  bool writeTo(OutputFile& file) const;
};

// Host thread only. Records as showInCodePage() leaves them.
class PageExport {
 public:
  PageExport(const ProjectFolder& project, Files& files, Processes& processes, Clock& clock,
             const TextConverter& converter)
      : project_(project), files_(files), processes_(processes), clock_(clock), converter_(converter) {}

  // Empties "\Cache\Output" and begins a document without a page; an open page is dropped unwritten. What a link in the
  // folder leads to is left alone. The schematic's name stays.
  void start();

  // Draws a record on the open page or into the open symbol. False for any other, which changes nothing.
  bool draw(Use use, const Record& record);
  // The same; "Schematic" names the schematic of the pages from now on, "Page" writes the open page and opens the next,
  // "Name" opens the page's next symbol. A page's end may show a message box, which the texts must outlive.
  void addRecord(Use use, const Record& record);

  // Writes the document, also one without a page, as the page of these names; afterwards none of it is open.
  void finish(const PageNames& names);

  // Whether the host is an old one, once it was asked; forgotten with each start.
  std::optional<bool> oldHost;

 private:
  // Names of its own: the open page's may change meanwhile. False, and unwritten, if the export ended or was renewed.
  bool write(const PageNames& names);

  const ProjectFolder& project_;
  Files& files_;
  Processes& processes_;
  Clock& clock_;
  const TextConverter& converter_;
  std::optional<PageDocument> document_;
  std::uint64_t begun_ = 0;  // documents so far
  std::string schematicName_;
  PageNames openPage_;  // in force when the page began, so that pages of two schematics never share a file
};

}  // namespace vernoxa::drawing
