#include "metafiles_windows.h"

#include <windows.h>
// after windows.h
#include <tcl.h>

#include <string>

#include "support/handle_probe_windows.h"
#include "support/sample_metafiles.h"

namespace {

bool putOnClipboard(const std::string& bytes) {
  const HENHMETAFILE metafile =
      SetEnhMetaFileBits(static_cast<UINT>(bytes.size()), reinterpret_cast<const BYTE*>(bytes.data()));
  if (metafile == nullptr || OpenClipboard(nullptr) == FALSE) {
    DeleteEnhMetaFile(metafile);
    return false;
  }
  EmptyClipboard();
  const bool taken = SetClipboardData(CF_ENHMETAFILE, metafile) != nullptr;
  CloseClipboard();
  return taken;
}

vernoxa::SampleMetafile chosen(const std::string& kind, int number) {
  if (kind == "spoilt") {
    return vernoxa::spoiltMetafile(static_cast<std::uint32_t>(number));
  }
  const auto samples = vernoxa::sampleMetafiles();
  const auto index = static_cast<std::size_t>(number);
  return index < samples.size() ? samples[index] : vernoxa::SampleMetafile{};
}

int putMetafile(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const* words) {
  int number = 0;
  if (count != 3 || Tcl_GetIntFromObj(interp, words[2], &number) != TCL_OK) {
    return TCL_ERROR;
  }
  const vernoxa::SampleMetafile metafile = chosen(Tcl_GetString(words[1]), number);
  Tcl_SetObjResult(interp, Tcl_NewStringObj(putOnClipboard(metafile.bytes) ? metafile.name : "", -1));
  return TCL_OK;
}

int drawingHandles(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  Tcl_SetObjResult(interp, Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(vernoxa::HandleProbe::take().drawing)));
  return TCL_OK;
}

}  // namespace

void createMetafileCommands(Tcl_Interp* interp) {
  Tcl_CreateObjCommand(interp, "putMetafile", putMetafile, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "drawingHandles", drawingHandles, nullptr, nullptr);
}
