// All that the plug-in needs of the operating system, passed in: real in the DLL, stand-ins in tests.
#pragma once

namespace vernoxa {

class Clock;
class CodePage;
class Files;
class GuidSource;
class LockSource;
class Processes;
class RandomNumbers;
class Sockets;
class StandardOutput;
class UserMessages;

struct World {
  Clock& clock;
  CodePage& codePage;
  Files& files;
  GuidSource& guids;
  LockSource& locks;
  Processes& processes;
  RandomNumbers& random;
  Sockets& sockets;
  StandardOutput& output;
  UserMessages& messages;
};

}  // namespace vernoxa
