// Places what the companion sent: a shared module or one catalogue part. Host thread only; the state tells the module
// file and the values.
#pragma once

#include "modules/module_file.h"
#include "system/file_path.h"

namespace vernoxa {

class ScriptHost;
struct Services;

struct PlacedLibrary {
  bool made = false;    // the module's parts stand in the new library
  FilePath newLibrary;  // "/" between folders; made or not
  ModuleFile module;
};

enum class DraggedBox { none, made };

// Has the host write the module's library parts into a temporary library, which becomes the new library. Draws both
// names anew. `DraggedBox::made` adds the part of the module's size that the user drags. The temporary library is gone
// afterwards in every case. Nothing is made, and one line in the traffic log says why, when a library cannot be made or
// the module is unreadable ("root is null", "libItem is null").
PlacedLibrary placeLibrary(ScriptHost& host, Services& services, DraggedBox box);

// The whole placement: the library, then the module's objects or the one part; afterwards the new library and the
// module file are removed. Ends without a word where `placeLibrary` makes nothing; the single-part flag is 0 then too.
void placeModule(ScriptHost& host, Services& services);

}  // namespace vernoxa
