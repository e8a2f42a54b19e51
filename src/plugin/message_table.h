// The messages that the plug-in sends without being asked.
#pragma once

#include <span>

#include "dispatch/description.h"

namespace vernoxa::plugin {

enum class MessageWay {
  hostsConnection,  // the one between the host's scripts and the companion
  ownConnection,    // opened for one question and closed after its answer
};

// One form of a message. All texts are in the code page.
struct MessageRow {
  const char* name;
  const char* form;             // tells the forms of one name apart; "" if there is only one
  Few<const char*, 4> senders;  // the Tcl commands that send it, or answer it as a packet text to be sent
  const char* envelope;         // its members in their order, with spaces between them
  Few<Member, 8> data;
  const char* purpose;         // one sentence
  Few<Member, 2> answer = {};  // what the plug-in reads in "Data" of the companion's answer, if it expects one
  MessageWay way = MessageWay::hostsConnection;
  bool formatted = false;  // printed with tabs and line ends
};

std::span<const MessageRow> messageTable();

}  // namespace vernoxa::plugin
