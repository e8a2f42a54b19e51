#include "plugin/misc_commands.h"

#include "plugin/companion_launch.h"
#include "system/user_messages.h"
#include "text/text.h"

namespace vernoxa::plugin {

CommandResult execTool(CommandCall&, Processes& processes, Files& files, const Directories& directories) {
  launchCompanion(processes, files, directories.baseDirectory);
  return {};
}

CommandResult getGenerateGuid(CommandCall&, GuidSource& guids) {
  return {guidText(guids)};
}

CommandResult outputWarming(CommandCall&, UserMessages& messages) {
  messages.show(u8"请先选中器件", MessageIcon::information);
  return {};
}

}  // namespace vernoxa::plugin
