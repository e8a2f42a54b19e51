// What the companion's messages set for a later placement.
#pragma once

#include <string>

namespace vernoxa::modules {

// Rows of requests keep their members here; host thread only. Texts in the code page, as the packets brought them.
struct PlacementContext {
  std::string dsnDatPath;  // module file to place, and last module file written
  std::string uploadResId;
  std::string uploadUserId;
  std::string selfModule = "0";  // the designator as well
  std::string PartIndex;         // the cached user id as well: the companion knows the two as one
  std::string package;
  std::string packageName;
  std::string PartName;
  std::string PartNumber;
  std::string prefix;
  std::string value;
  int placeState = 0;  // 1: one catalogue part is being placed; 0: a shared module, or nothing
};

}  // namespace vernoxa::modules
