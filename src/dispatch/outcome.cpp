#include "dispatch/outcome.h"

#include "wire/envelope.h"

namespace vernoxa {

std::string replyText(const std::string& command, Reply reply) {
  Json message = Json::object();
  message.add("Data", std::move(reply.data));
  message.add("Command", command + std::string(replySuffix));
  message.add("Result", reply.result);
  if (reply.errInfo) {
    message.add("ErrInfo", *reply.errInfo);
  }
  return message.printUnformatted();
}

}  // namespace vernoxa
