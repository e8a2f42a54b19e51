// Plays metafiles that were looked through (metafile_check.h).
#pragma once

#include <windows.h>

namespace vernoxa {

// Draws it over that rectangle. A record that cannot be drawn, or would draw far beyond any picture, is left out: what
// the others draw is a picture still.
void playMetafile(HDC context, HENHMETAFILE metafile, const RECT& whole);

}  // namespace vernoxa
