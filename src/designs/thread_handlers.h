// The handlers of what the link thread asks of the host.
#pragma once

#include "dispatch/handler.h"

namespace vernoxa {

Outcome creatClient(const Request&, HandlerContext&);
Outcome getNewOpenPath(const Request&, HandlerContext&);
Outcome getNetsList(const Request&, HandlerContext&);
Outcome getDsnPinCount(const Request&, HandlerContext&);
Outcome fileStatus(const Request&, HandlerContext&);

}  // namespace vernoxa
