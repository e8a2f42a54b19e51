// Tcl commands for tests that ask after the process that they run in: `processCounts` answers the handles, the threads
// and the committed kilobytes, `processHeaps` the bytes in use in all heaps, or an error when one is damaged. Those of
// metafiles_windows.cpp are here too.
#include <windows.h>
// after windows.h
#include <psapi.h>
#include <tcl.h>
#include <tlhelp32.h>

#include <algorithm>
#include <array>
#include <initializer_list>

#include "metafiles_windows.h"

namespace {

long threadsOfThisProcess() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  long count = 0;
  for (BOOL more = Thread32First(snapshot, &entry); more != FALSE; more = Thread32Next(snapshot, &entry)) {
    count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
  }
  CloseHandle(snapshot);
  return count;
}

// Every handle is a multiple of four; asking for each one's flags tells which are in use.
long handlesOfThisProcess() {
  constexpr ULONG_PTR highest = 0x10000;
  long count = 0;
  for (ULONG_PTR value = 4; value < highest; value += 4) {
    DWORD flags = 0;
    count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE ? 1 : 0;
  }
  return count;
}

int processCounts(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  PROCESS_MEMORY_COUNTERS memory{};
  K32GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
  Tcl_Obj* const counts = Tcl_NewListObj(0, nullptr);
  for (const long count :
       {handlesOfThisProcess(), threadsOfThisProcess(), static_cast<long>(memory.PagefileUsage / 1024)}) {
    Tcl_ListObjAppendElement(interp, counts, Tcl_NewLongObj(count));
  }
  Tcl_SetObjResult(interp, counts);
  return TCL_OK;
}

int processHeaps(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  std::array<HANDLE, 64> heaps{};
  const DWORD count = std::min<DWORD>(GetProcessHeaps(heaps.size(), heaps.data()), heaps.size());
  Tcl_WideInt used = 0;
  for (DWORD index = 0; index < count; ++index) {
    if (HeapValidate(heaps[index], 0, nullptr) == FALSE) {
      Tcl_SetObjResult(interp, Tcl_NewStringObj("a heap is damaged", -1));
      return TCL_ERROR;
    }
    HeapLock(heaps[index]);
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[index], &entry) != FALSE) {
      used += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? static_cast<Tcl_WideInt>(entry.cbData) : 0;
    }
    HeapUnlock(heaps[index]);
  }
  Tcl_SetObjResult(interp, Tcl_NewWideIntObj(used));
  return TCL_OK;
}

}  // namespace

extern "C" __declspec(dllexport) int Counts_Init(Tcl_Interp* interp) {
  if (Tcl_InitStubs(interp, "8.6", 0) == nullptr) {
    return TCL_ERROR;
  }
  Tcl_CreateObjCommand(interp, "processCounts", processCounts, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "processHeaps", processHeaps, nullptr, nullptr);
  createMetafileCommands(interp);
  return TCL_OK;
}
