// What belongs to the host's thread cannot be named by a function of the link thread.
#include "plugin/run.h"

namespace vernoxa {

#if CASE == 0
void watch(ProjectFolder&, const FileStatus&, Clock&);
#else
void watch(ProjectFolder&, OpenDesigns&, Clock&);
#endif

void start(Session& session) {
  runOnLinkThread<watch>(session.shared());
}

}  // namespace vernoxa
