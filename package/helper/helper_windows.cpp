#include "helper_windows.h"

std::string utf8Of(const wchar_t* text) {
  const int needed = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string utf8(needed > 0 ? static_cast<std::size_t>(needed) : 1, '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), needed, nullptr, nullptr);
  utf8.pop_back();
  return utf8;
}

std::wstring wideOf(const char* utf8) {
  const int needed = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, nullptr, 0);
  std::wstring wide(needed > 0 ? static_cast<std::size_t>(needed) : 1, L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide.data(), needed);
  wide.pop_back();
  return wide;
}

extern "C" __declspec(dllexport) int Helper_Init(Tcl_Interp* interp) {
  if (Tcl_InitStubs(interp, "8.6", 0) == nullptr) {
    return TCL_ERROR;
  }
  createBoxCommands(interp);
  createClipboardCommands(interp);
  createMachineCommands(interp);
  return TCL_OK;
}
