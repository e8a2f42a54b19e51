// The plug-in as a host has it: loaded, on a fake world.
#pragma once

#include "plugin/plug_in.h"
#include "plugin/start_up.h"
#include "support/tcl_interp_tcl.h"
#include "system/fake_world.h"

namespace vernoxa {

class LoadedPlugIn {
 public:
  // On that file system instead of the fake one.
  explicit LoadedPlugIn(Files* files = nullptr)
      : plugIn{worldOn(files != nullptr ? *files : fake.files), pathOf("C:\\App\\bin\\Vernoxa64.dll"),
               plugin::crashLogsOf(worldOn(files != nullptr ? *files : fake.files), pathOf("C:\\App\\bin")), nullptr,
               [](std::shared_ptr<plugin::LinkThreadParts> thread) { thread.reset(); }} {}
  ~LoadedPlugIn() { plugin::setActivePlugIn(nullptr); }
  LoadedPlugIn(const LoadedPlugIn&) = delete;
  LoadedPlugIn& operator=(const LoadedPlugIn&) = delete;

  // The folders that an installation has, and a companion that answers.
  void furnish() {
    for (const char* const folder : {"C:\\App\\bin", "C:\\App\\Script\\Log", "C:\\App\\Cache", "C:\\Temp"}) {
      fake.files.addFolder(folder);
    }
    fake.sockets.listen(9601, {{{frameOf(R"({"Result":"0","Data":{"Path":"C:\\x","UserId":"1"}})"), {}}}, {}, {}});
  }
  // A session with a companion, without the start-up.
  void beginSession() {
    plugIn.session =
        std::make_shared<plugin::Session>(plugIn.world, plugIn.crashLogs, plugin::directoriesOf(plugIn.modulePath));
    plugIn.session->part<link::CompanionLink>().setClientCreated(true);
    plugin::setActivePlugIn(&plugIn);
  }
  template <class Part>
  Part& part() {
    return plugIn.session->part<Part>();
  }
  // Operations named in the crash log, one a line.
  std::string crashes() const { return logMessages(fake.files.bytes("C:\\App\\bin\\catchLog\\log.txt")); }

  FakeWorld fake;
  plugin::PlugIn plugIn;

 private:
  plugin::World worldOn(Files& files) {
    return {fake.clock,   fake.codePage, files,         fake.guids,    fake.locks,     fake.processes, fake.random,
            fake.sockets, fake.output,   fake.messages, fake.registry, fake.clipboard, fake.pictures,  fake.desktop};
  }
};

}  // namespace vernoxa
