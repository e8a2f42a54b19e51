#include "checks/report_commands.h"

#include "checks/check_message.h"
#include "checks/package_report.h"
#include "dispatch/companion_sender.h"
#include "dispatch/services.h"
#include "system/log.h"
#include "text/code_page.h"

namespace vernoxa {
namespace {

CommandResult sendReport(CommandCall& call, const Services& services, const std::string& message) {
  const std::string answer = sendToCompanion(call.host, services, message).text;
  services.logs.openTraffic().writeLine("sendPacketGlobalHandle \"" + answer + "\"");
  return {};
}

CommandResult sendCheck(const DesignCheck& check, CommandCall& call, const Services& services) {
  if (call.arguments.count() < 2) {
    return sendReport(call, services, checkEndMessage(check));
  }
  const int last = check.takesKind() ? 1 : 0;
  const auto argument = [&](int position) { return call.arguments.text(last + position); };
  const Finding finding{check.takesKind() ? call.arguments.text(1) : std::string_view(),
                        argument(1),
                        argument(2),
                        argument(3),
                        argument(4),
                        argument(5),
                        argument(6)};
  const auto message = findingMessage(check, finding, services.text);
  return message ? sendReport(call, services, *message) : CommandResult{};
}

CommandResult sendPackages(const PackageReport& report, CommandCall& call, const Services& services) {
  PackageReportText text(report);
  const TclList properties = call.arguments.list(1);
  for (int index = 0; index < properties.size(); ++index) {
    const TclList property = properties.list(index);
    if (property.size() >= 2) {
      text.add(property.text(0), property.text(1), index + 1 == properties.size());
    }
  }
  return sendReport(call, services, services.text.utf8ToAnsi(text.finished()));
}

}  // namespace

CommandResult sendRefRepetition(CommandCall& call, Services& services) {
  return sendCheck(referenceCheck, call, services);
}

CommandResult sendIllegalChar(CommandCall& call, Services& services) {
  return sendCheck(illegalCharacterCheck, call, services);
}

CommandResult sendPinNc(CommandCall& call, Services& services) {
  return sendCheck(unconnectedPinCheck, call, services);
}

CommandResult sendNetlist(CommandCall& call, Services& services) {
  return sendCheck(netlistCheck, call, services);
}

CommandResult sendDsnPackageInfo(CommandCall& call, Services& services) {
  return sendPackages(designReport, call, services);
}

CommandResult sendOlbObjectPackageInfo(CommandCall& call, Services& services) {
  return sendPackages(libraryObjectReport, call, services);
}

CommandResult sendOlbPackageInfo(CommandCall& call, Services& services) {
  return sendPackages(libraryReport, call, services);
}

}  // namespace vernoxa
