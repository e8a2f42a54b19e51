#include "checks/report_commands.h"

#include "checks/check_message.h"
#include "checks/package_report.h"
#include "dispatch/companion_sender.h"
#include "text/text_converter.h"

namespace vernoxa::checks {
namespace {

CommandResult sendCheck(const DesignCheck& check, CommandCall& call, const TextConverter& converter,
                        const CompanionSender& sender) {
  if (call.arguments.count() < 2) {
    sender.sendLogged(call.host, checkEndMessage(check));
    return {};
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
  if (const auto message = findingMessage(check, finding, converter)) {
    sender.sendLogged(call.host, *message);
  }
  return {};
}

CommandResult sendPackages(const PackageReport& report, CommandCall& call, const TextConverter& converter,
                           const CompanionSender& sender) {
  PackageReportText built(report);
  const TclList properties = call.arguments.list(1);
  for (int index = 0; index < properties.size(); ++index) {
    const TclList property = properties.list(index);
    if (property.size() >= 2) {
      built.add(property.text(0), property.text(1), index + 1 == properties.size());
    }
  }
  sender.sendLogged(call.host, converter.utf8ToAnsi(built.finished()));
  return {};
}

}  // namespace

CommandResult sendRefRepetition(CommandCall& call, const TextConverter& converter, const CompanionSender& sender) {
  return sendCheck(referenceCheck, call, converter, sender);
}

CommandResult sendIllegalChar(CommandCall& call, const TextConverter& converter, const CompanionSender& sender) {
  return sendCheck(illegalCharacterCheck, call, converter, sender);
}

CommandResult sendPinNc(CommandCall& call, const TextConverter& converter, const CompanionSender& sender) {
  return sendCheck(unconnectedPinCheck, call, converter, sender);
}

CommandResult sendNetlist(CommandCall& call, const TextConverter& converter, const CompanionSender& sender) {
  return sendCheck(netlistCheck, call, converter, sender);
}

CommandResult sendDsnPackageInfo(CommandCall& call, const TextConverter& converter, const CompanionSender& sender) {
  return sendPackages(designReport, call, converter, sender);
}

CommandResult sendOlbObjectPackageInfo(CommandCall& call, const TextConverter& converter,
                                       const CompanionSender& sender) {
  return sendPackages(libraryObjectReport, call, converter, sender);
}

CommandResult sendOlbPackageInfo(CommandCall& call, const TextConverter& converter, const CompanionSender& sender) {
  return sendPackages(libraryReport, call, converter, sender);
}

}  // namespace vernoxa::checks
