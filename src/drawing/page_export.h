// The export of schematic pages: which page is open, and when it becomes a file.
//
// The host's script starts an export, then sends for each page a "Page" record, the symbols that the page uses and its
// objects, and at the end the names of the last page. Records that come at another moment are dropped.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "drawing/page_text.h"
#include "drawing/record.h"
#include "system/clock.h"
#include "system/files.h"
#include "system/log.h"
#include "system/shared_path.h"
#include "system/system.h"
#include "tcl/script_host.h"
#include "text/text_converter.h"

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
  bool ended = false;                                // the host went on, but it could not be written yet: takes no more
  Elements page{Use::page, Elements::In::group, 2};  // not open without a page: then there is only what all have
  Elements symbols{Use::symbol, Elements::In::groups, 4};

  // False when the file takes no more.
  bool writeTo(OutputFile& file) const;
};

// Host thread only.
class PageExport {
 public:
  PageExport(const ProjectFolder& project, Files& files, Processes& processes, Clock& clock,
             const TextConverter& converter, const Logs& logs)
      : project_(project), files_(files), processes_(processes), clock_(clock), converter_(converter), logs_(logs) {}

  // Empties "\Cache\Output" and begins a document without a page; an open page is dropped unwritten. What a link in the
  // folder leads to is left alone. The schematic's name stays.
  void start();

  // Draws a record on the open page or into the open symbol, or opens the page's next symbol ("Name"). False for any
  // other, which changes nothing, and for what Elements::add() does not take in this encoding.
  bool draw(Use use, const Record& record, Encoding encoding);
  // The same with a record as showInCodePage() leaves it; "Schematic" names the schematic of the pages from now on,
  // "Page" writes the open page and opens the next; names are taken as given. A page's end may show a message box,
  // which the texts must outlive. When memory runs out meanwhile, the open page takes no more and waits for the next
  // "Page" or the end.
  void addRecord(Use use, const Record& record, const Record& given);

  // Writes the document, also one without a page, as the page of these names; afterwards none of it is open. When
  // memory runs out, all is as before.
  void finish(const PageNames& names);

  // Whether it is a host that gives texts in the code page; asked at most once in an export.
  bool isFromOldHost(ScriptHost& host);

 private:
  void endPage();
  // Names of its own: the open page's may change meanwhile. False, and unwritten, if the export ended or was renewed.
  bool write(const PageNames& names);

  const ProjectFolder& project_;
  Files& files_;
  Processes& processes_;
  Clock& clock_;
  const TextConverter& converter_;
  const Logs& logs_;
  std::optional<PageDocument> document_;
  std::uint64_t begun_ = 0;  // documents so far
  std::optional<bool> isFromOldHost_;
  std::string schematicName_;
  PageNames openPage_;  // in force when the page began, so that pages of two schematics never share a file
};

}  // namespace vernoxa::drawing
