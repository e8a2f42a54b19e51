// Tcl commands for what Windows knows and Tcl does not tell. Texts are UTF-8; a command that fails ends in an error
// whose text says why, unless it says otherwise.
#pragma once

#include <windows.h>
// after windows.h
#include <tcl.h>

#include <initializer_list>
#include <string>

// A list of texts as the command's result.
inline Tcl_Obj* textOf(const std::string& text) {
  return Tcl_NewStringObj(text.data(), static_cast<int>(text.size()));
}

inline Tcl_Obj* listOf(std::initializer_list<Tcl_Obj*> elements) {
  return Tcl_NewListObj(static_cast<int>(elements.size()), elements.begin());
}

inline int failed(Tcl_Interp* interp, const char* why) {
  Tcl_SetObjResult(interp, Tcl_NewStringObj(why, -1));
  return TCL_ERROR;
}

std::string utf8Of(const wchar_t* text);
std::wstring wideOf(const char* utf8);

// onBox SCRIPT: from now on each message box or dialog that this thread shows has SCRIPT evaluated inside its event
// loop, with the box's text appended, and is answered with OK then, a dialog with its first row. A box that SCRIPT
// itself leads to is answered in the same way.
// boxTexts: within SCRIPT, the caption of the box, then the texts of its labels and the rows of its lists
void createBoxCommands(Tcl_Interp* interp);

// keepClipboard        takes a copy of what the user has on the clipboard; an error when that cannot be copied
// restoreClipboard     puts the copy there again; an error that names the formats that are refused, after all others
// clipboardText        the text that is on it
// putPicture           puts a metafile of a rectangle on it
void createClipboardCommands(Tcl_Interp* interp);

// windowsVersion       {MAJOR.MINOR.BUILD, Wine's version or "" on a real Windows}
// dotsPerInch          of the screen
// languages            those that the user prefers, best first
// portOwner PORT       {PID PROGRAM} of who listens on it, PROGRAM the whole path or "" when that is not told; or {}
// modulesNamed NAME    a list {PID PROGRAM PATH} for each process in which a module of that file name is loaded
// fileStream FILE NAME the bytes of a file's second stream, "" without one
// fileDigest FILE      its SHA-256 in hexadecimal digits
// fileVersion FILE     what its version resource says, as MAJOR.MINOR.PATCH; "" without one
void createMachineCommands(Tcl_Interp* interp);
