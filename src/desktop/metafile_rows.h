// The kinds of records of an enhanced metafile: how long each is at least, and how its counts and offsets are checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "desktop/metafile_record.h"

namespace vernoxa::desktop {

// What a player remembers while it plays.
struct PlayerState {
  std::vector<bool> objects;      // which of them exist, by number; number 0 is the metafile itself
  std::uint32_t savedStates = 0;  // of the device context
  int depth = 0;                  // metafiles around this one
};

struct RecordRow {
  std::uint32_t type = 0;
  const char* name = nullptr;  // [MS-EMF] 2.1.1, without "EMR_"
  std::size_t fixedBytes = 0;  // without the counted items; the check runs only on a record of at least this size
  Fault (*check)(const MetafileRecord&, PlayerState&) = nullptr;  // null: the record is no longer than that
};

// Null for a number that no kind of record has, and for that of the header, which may only be the first record.
const RecordRow* findRecordRow(std::uint32_t type);

constexpr std::uint32_t endOfFileRecord = 14;
constexpr std::size_t smallestRecord = 8;  // its type and size

}  // namespace vernoxa::desktop
