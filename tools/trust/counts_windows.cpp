// A Tcl command for the load test: `processCounts` answers the handles, the threads and the committed kilobytes of the
// process that it runs in.
#include <windows.h>
// after windows.h
#include <psapi.h>
#include <tcl.h>
#include <tlhelp32.h>

#include <initializer_list>

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

}  // namespace

extern "C" __declspec(dllexport) int Counts_Init(Tcl_Interp* interp) {
  if (Tcl_InitStubs(interp, "8.6", 0) == nullptr) {
    return TCL_ERROR;
  }
  Tcl_CreateObjCommand(interp, "processCounts", processCounts, nullptr, nullptr);
  return TCL_OK;
}
