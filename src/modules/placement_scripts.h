// The scripts of a placement: how the host's procedures are told about library parts and schematic objects.
//
// Text of a module is UTF-8, text of `PlacementContext` is in the code page; scripts are UTF-8. Nothing in a module can
// run anything.
#pragma once

#include <string_view>

#include "modules/module_file.h"
#include "tcl/script.h"
#include "text/json.h"

namespace vernoxa::inline text {
class TextConverter;
}  // namespace vernoxa::inline text

namespace vernoxa::modules {

struct PlacementContext;

// `placeLibPart` for one entry of a module's library; `setPinNum` takes the same words. `libraryPath` is UTF-8 with "/"
// between folders.
Script libraryPartScript(std::string_view libraryPath, JsonView entry);

// `placeLibPart` for the part that the user drags in place of the whole module: one box of its size.
Script viewBoxPartScript(std::string_view libraryPath, const ViewBox& box);

// `placePart` for one schematic object of a module.
Script schematicObjectScript(JsonView object, const PlacementContext& placement, const TextConverter& converter);

// `placePart` for the one catalogue part that `placement` describes. `mode` is "Part" or "SetProperty", `package`
// UTF-8.
Script cataloguePartScript(Literal mode, std::string_view package, const PlacementContext& placement,
                           const TextConverter& converter);

}  // namespace vernoxa::modules
