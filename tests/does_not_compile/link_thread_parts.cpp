// What belongs to the host's thread cannot be named by a function of the link thread, and the other way round.
#include "plugin/run.h"

namespace vernoxa::plugin {

#if CASE != 1
void watch(ProjectFolder&, const link::FileStatus&, Clock&);
#else
void watch(ProjectFolder&, designs::OpenDesigns&, Clock&);
#endif

void start(Session& session) {
  runOnLinkThread<watch>(session.linkThread());
#if CASE == 2
  session.part<link::SocketClient>();
#endif
}

}  // namespace vernoxa::plugin
