#include "helper_windows.h"
// after windows.h
#include <winsock2.h>
// after winsock2.h
#include <iphlpapi.h>
#include <tlhelp32.h>
#include <wincrypt.h>

#include <array>
#include <string_view>
#include <vector>

namespace {

// The whole path of a program, "" when the system does not tell.
std::string programOf(DWORD process) {
  const HANDLE handle = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
  if (handle == nullptr) {
    return "";
  }
  std::array<wchar_t, 1024> path{};
  DWORD size = path.size();
  const bool told = QueryFullProcessImageNameW(handle, 0, path.data(), &size) != FALSE;
  CloseHandle(handle);
  return told ? utf8Of(path.data()) : "";
}

int windowsVersion(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  using VersionOf = LONG(WINAPI*)(OSVERSIONINFOW*);
  using WineVersion = const char*(CDECL*)();
  const HMODULE system = GetModuleHandleW(L"ntdll.dll");
  // GetVersionEx answers what the program's manifest names, this what runs.
  const auto versionOf = reinterpret_cast<VersionOf>(reinterpret_cast<void*>(GetProcAddress(system, "RtlGetVersion")));
  const auto wine = reinterpret_cast<WineVersion>(reinterpret_cast<void*>(GetProcAddress(system, "wine_get_version")));
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  versionOf(&version);
  const std::string number = std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) +
                             "." + std::to_string(version.dwBuildNumber);
  Tcl_SetObjResult(interp, listOf({textOf(number), textOf(wine != nullptr ? wine() : "")}));
  return TCL_OK;
}

int dotsPerInch(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  const HDC screen = GetDC(nullptr);
  Tcl_SetObjResult(interp, Tcl_NewIntObj(GetDeviceCaps(screen, LOGPIXELSX)));
  ReleaseDC(nullptr, screen);
  return TCL_OK;
}

int languages(ClientData, Tcl_Interp* interp, int, Tcl_Obj* const*) {
  ULONG count = 0;
  ULONG size = 0;
  GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &size);
  std::vector<wchar_t> names(size + 2);
  GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &size);
  Tcl_Obj* const all = Tcl_NewListObj(0, nullptr);
  for (const wchar_t* name = names.data(); *name != L'\0'; name += std::wstring_view(name).size() + 1) {
    Tcl_ListObjAppendElement(interp, all, textOf(utf8Of(name)));
  }
  Tcl_SetObjResult(interp, all);
  return TCL_OK;
}

int portOwner(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const* words) {
  int port = 0;
  if (count != 2 || Tcl_GetIntFromObj(interp, words[1], &port) != TCL_OK) {
    return failed(interp, "portOwner PORT");
  }
  ULONG size = 0;
  GetExtendedTcpTable(nullptr, &size, FALSE, AF_INET, TCP_TABLE_OWNER_PID_ALL, 0);
  size += 100 * sizeof(MIB_TCPROW_OWNER_PID);  // those that begin to listen meanwhile
  std::vector<std::byte> bytes(size);
  if (GetExtendedTcpTable(bytes.data(), &size, FALSE, AF_INET, TCP_TABLE_OWNER_PID_ALL, 0) != NO_ERROR) {
    return failed(interp, "Windows does not tell who listens");
  }
  const auto& table = *reinterpret_cast<const MIB_TCPTABLE_OWNER_PID*>(bytes.data());
  for (DWORD index = 0; index < table.dwNumEntries; ++index) {
    const MIB_TCPROW_OWNER_PID& row = table.table[index];
    const DWORD local =
        ((row.dwLocalPort & 0xFFU) << 8U) | ((row.dwLocalPort >> 8U) & 0xFFU);  // in the network's order
    if (row.dwState == MIB_TCP_STATE_LISTEN && local == static_cast<DWORD>(port)) {
      Tcl_SetObjResult(interp, listOf({Tcl_NewWideIntObj(row.dwOwningPid), textOf(programOf(row.dwOwningPid))}));
      return TCL_OK;
    }
  }
  return TCL_OK;
}

int modulesNamed(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const* words) {
  if (count != 2) {
    return failed(interp, "modulesNamed NAME");
  }
  const std::wstring name = wideOf(Tcl_GetString(words[1]));
  Tcl_Obj* const found = Tcl_NewListObj(0, nullptr);
  const HANDLE processes = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W process{};
  process.dwSize = sizeof process;
  for (BOOL more = Process32FirstW(processes, &process); more != FALSE; more = Process32NextW(processes, &process)) {
    const HANDLE modules = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, process.th32ProcessID);
    MODULEENTRY32W module{};
    module.dwSize = sizeof module;
    for (BOOL next = Module32FirstW(modules, &module); next != FALSE; next = Module32NextW(modules, &module)) {
      if (_wcsicmp(module.szModule, name.c_str()) == 0) {
        Tcl_ListObjAppendElement(interp, found,
                                 listOf({Tcl_NewWideIntObj(process.th32ProcessID),
                                         textOf(programOf(process.th32ProcessID)), textOf(utf8Of(module.szExePath))}));
      }
    }
    CloseHandle(modules);
  }
  CloseHandle(processes);
  Tcl_SetObjResult(interp, found);
  return TCL_OK;
}

int fileStream(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const* words) {
  if (count != 3) {
    return failed(interp, "fileStream FILE NAME");
  }
  const std::wstring path = wideOf(Tcl_GetString(words[1])) + L":" + wideOf(Tcl_GetString(words[2]));
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return TCL_OK;
  }
  std::array<char, 4096> bytes{};
  DWORD size = 0;
  ReadFile(file, bytes.data(), bytes.size(), &size, nullptr);
  CloseHandle(file);
  Tcl_SetObjResult(interp, textOf(std::string(bytes.data(), size)));
  return TCL_OK;
}

// The system's own cryptography; it takes long to be asked for, so it is kept for the life of the process.
HCRYPTPROV provider() {
  static const HCRYPTPROV one = [] {
    HCRYPTPROV found = 0;
    CryptAcquireContextW(&found, nullptr, nullptr, PROV_RSA_AES, CRYPT_VERIFYCONTEXT);
    return found;
  }();
  return one;
}

// 32 bytes, or nothing when the file cannot be read.
std::vector<BYTE> digestOf(HANDLE file) {
  std::vector<BYTE> digest;
  HCRYPTHASH hash = 0;
  if (CryptCreateHash(provider(), CALG_SHA_256, 0, 0, &hash) != FALSE) {
    std::array<BYTE, 65536> bytes{};
    DWORD size = 0;
    while (ReadFile(file, bytes.data(), bytes.size(), &size, nullptr) != FALSE && size > 0) {
      CryptHashData(hash, bytes.data(), size, 0);
    }
    digest.resize(32);
    size = static_cast<DWORD>(digest.size());
    CryptGetHashParam(hash, HP_HASHVAL, digest.data(), &size, 0);
    CryptDestroyHash(hash);
  }
  return digest;
}

int fileDigest(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const* words) {
  if (count != 2) {
    return failed(interp, "fileDigest FILE");
  }
  const HANDLE file =
      CreateFileW(wideOf(Tcl_GetString(words[1])).c_str(), GENERIC_READ,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return failed(interp, "the file cannot be read");
  }
  const std::vector<BYTE> digest = digestOf(file);
  CloseHandle(file);
  std::string digits;
  for (const BYTE byte : digest) {
    constexpr const char* hexadecimal = "0123456789abcdef";
    digits += {hexadecimal[byte >> 4U], hexadecimal[byte & 0xFU]};
  }
  Tcl_SetObjResult(interp, textOf(digits));
  return TCL_OK;
}

int fileVersion(ClientData, Tcl_Interp* interp, int count, Tcl_Obj* const* words) {
  if (count != 2) {
    return failed(interp, "fileVersion FILE");
  }
  const std::wstring path = wideOf(Tcl_GetString(words[1]));
  std::vector<std::byte> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
  void* fixed = nullptr;
  UINT size = 0;
  if (GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) != FALSE &&
      VerQueryValueW(block.data(), L"\\", &fixed, &size) != FALSE) {
    const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
    Tcl_SetObjResult(interp, textOf(std::to_string(HIWORD(version.dwFileVersionMS)) + "." +
                                    std::to_string(LOWORD(version.dwFileVersionMS)) + "." +
                                    std::to_string(HIWORD(version.dwFileVersionLS))));
  }
  return TCL_OK;
}

}  // namespace

void createMachineCommands(Tcl_Interp* interp) {
  Tcl_CreateObjCommand(interp, "windowsVersion", windowsVersion, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "dotsPerInch", dotsPerInch, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "languages", languages, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "portOwner", portOwner, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "modulesNamed", modulesNamed, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "fileDigest", fileDigest, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "fileVersion", fileVersion, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "fileStream", fileStream, nullptr, nullptr);
}
