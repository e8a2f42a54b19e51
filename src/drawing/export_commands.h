// The Tcl commands of the drawing export.
#pragma once

#include "drawing/graphic_library.h"
#include "drawing/page_export.h"
#include "tcl/command.h"

namespace vernoxa::drawing {

CommandResult initSVGList(CommandCall& call, PageExport& pages);
// One record of a page.
CommandResult addToPageList(CommandCall& call, const TextConverter& converter, PageExport& pages);
// One record of a library symbol that the open page uses.
CommandResult addToLibList(CommandCall& call, const TextConverter& converter, PageExport& pages);
// A list whose elements 0, 1 and 4 name the last page.
CommandResult outputSVGFile(CommandCall& call, PageExport& pages);

CommandResult initGraphicFile(CommandCall& call, GraphicLibrary& library);
CommandResult addGraphicLibList(CommandCall& call, GraphicLibrary& library);
// Answers the path of the file.
CommandResult outputGraphicFile(CommandCall& call, GraphicLibrary& library);

// "1" for a name that is empty or not all ASCII, else "0".
CommandResult checkCharIllegal(CommandCall& call);

}  // namespace vernoxa::drawing
