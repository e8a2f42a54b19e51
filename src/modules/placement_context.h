// What the companion's messages set for a later placement.
#pragma once

#include <string>

namespace vernoxa::modules {

// Rows of the request table store members here; host thread only. Texts are in the code page, as in the packets.
struct PlacementContext {
  std::string dsnDatPath;  // module file to place, and last module file written
  std::string uploadResId;
  std::string uploadUserId;
  std::string selfModule = "0";  // also holds the designator
  std::string PartIndex;         // also holds the cached user id: to the companion the two are one
  std::string package;
  std::string packageName;
  std::string PartName;
  std::string PartNumber;
  std::string prefix;
  std::string value;
  int placeState = 0;  // 1: one catalogue part is being placed; 0: a shared module, or nothing
};

}  // namespace vernoxa::modules
