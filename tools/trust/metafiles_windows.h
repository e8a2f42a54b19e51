// Tcl commands that put metafiles on the clipboard.
#pragma once

struct Tcl_Interp;

// `putMetafile sound NUMBER` puts that sample there, `putMetafile spoilt SEED` a broken one. Both answer what it is
// made of; the answer is empty, and nothing was put, when there is no such sample or the system itself refuses it.
// `drawingHandles` answers a number that grows by one for each drawing object that was not freed.
void createMetafileCommands(Tcl_Interp* interp);
