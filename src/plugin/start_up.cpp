#include "plugin/start_up.h"

#include <tcl.h>

#include <memory>
#include <string>

#include "designs/host_discovery.h"
#include "plugin/command_table.h"
#include "plugin/companion_launch.h"
#include "plugin/installation.h"
#include "plugin/plug_in.h"
#include "system/files.h"
#include "system/user_messages.h"
#include "tcl/tcl_script_host.h"
#include "text/gbk_literal.h"
#include "text/outside_json.h"
#include "text/text_converter.h"

namespace vernoxa::plugin {
namespace {

constexpr Start script =
    "proc LoadAction { } {\r\n"
    u8"\tRegisterAction \"贴/不贴(澜图助手)  Alt+S\"  \"alwaysEnable\" \"Alt+S\" \"switchStickOrNotStick\" "_gbk
    "\"Schematic\"\r\n"
    "\treturn\r\n"
    "}\r\n"
    "proc unloadAction { } {\r\n"
    u8"\tUnregisterAction \"贴/不贴(澜图助手)  Alt+S\"\r\n"_gbk
    "\treturn\r\n"
    "}\r\n"
    "::capGenerateBOMUtil::init\r\n"
    "RegisterAction \"_cdnOrAtCaptureExit\"  \"alwaysEnable\" \"\" \"exitOpration\" \"\"\r\n"
    "creatServerForPthread\r\n"
    "RegisterAction \"_cdnOrSchViewCmdComplete\" \"alwaysEnable\" \"\" \"MouseClick\" \"\"\r\n"
    u8"InsertXMLMenu [list [list \"澜图助手\"] \"1\" \"澜图助手\" [list \"action\" \"澜图助手\" \"0\" \"Operation\" "_gbk
    "\"ShareModule\"]]\r\n"
    "RegisterAction \"Operation\" \"checkSocketConnect\" \"\" \"ShowMainForm\" \"\"\r\n"
    "RegisterAction \"ShareModule\" \"checkSocketConnect\" \"\" \"checkSocketConnect\" \"\"";

// The former session stays alive for its thread, and for a command that is still running in it.
void replaceSession(PlugIn& plugIn) {
  if (plugIn.session) {
    plugIn.session->linkThread().retire();
    plugIn.session.reset();
  }
  plugIn.session = std::make_shared<Session>(plugIn.world, plugIn.crashLogs, directoriesOf(plugIn.modulePath));
}

void startCompanion(PlugIn& plugIn) {
  try {
    launchCompanion(plugIn.world.processes, plugIn.world.files,
                    plugIn.session->part<const Directories>().baseDirectory);
  } catch (...) {
    plugIn.world.messages.show(u8"澜图助手启动失败", MessageIcon::none);
  }
}

void applyConfiguration(PlugIn& plugIn) {
  const FilePath file = plugIn.session->part<const Directories>().configurationFile;
  const auto configuration =
      parseConfiguration(plugIn.world.files.readStart(file, longestOutsideJson + 1).value_or(std::string()),
                         plugIn.session->part<const Logs>());
  if (configuration && configuration->language) {
    plugIn.session->language = *configuration->language;
  }
  const bool running = processIdFromName(plugIn.world.processes, plugIn.crashLogs, "lantuzs") != 0;
  if (!running && configuration && configuration->startCompanion) {
    startCompanion(plugIn);
  }
}

}  // namespace

Script startUpScript() {
  return Script(script);
}

void startUp(Tcl_Interp* interp, PlugIn& plugIn) noexcept {
  setActivePlugIn(&plugIn);
  Tcl_PkgProvideEx(interp, "Vernoxa", "1.0", nullptr);
  registerCommands(interp);
  try {
    TclScriptHost host(interp);
    const Evaluation result = host.evaluate(startUpScript());
    replaceSession(plugIn);
    // Kept from here on: a script of the host may load the plug-in again meanwhile.
    const std::shared_ptr<Session> session = plugIn.session;
    applyConfiguration(plugIn);
    const auto& logs = session->part<const Logs>();
    designs::setOrcadInstallPath(host, plugIn.world.registry, plugIn.world.files, logs,
                                 session->part<HostExecutable>());
    plugIn.startLinkThread({session, &session->linkThread()});
    logs.resetTraffic();
    logs.openTraffic().writeFormatted("GetACP %u", plugIn.world.codePage.number());
    if (!result.ok) {  // for example because another editor has the port
      logs.openTraffic().writeLine("start-up script: " + result.text);
    }
  } catch (...) {
    plugIn.crashLogs.reportCrash("Vernoxa_Init");
  }
}

}  // namespace vernoxa::plugin
