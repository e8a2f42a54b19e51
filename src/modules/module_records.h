// The layouts of the records that make up a shared module, as data.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vernoxa {

enum class MemberRule {
  joined,       // the elements as they are, joined by blanks
  placeholder,  // one element; a host's placeholder ("$") becomes empty
  pathStart,    // the first two numbers of the path in the element
};

// A member of "Data".
struct RecordMember {
  const char* key = nullptr;  // none: an unused place in a row
  int first = 0;              // element of the record
  int count = 1;              // elements from there on
  MemberRule rule = MemberRule::joined;
};

struct RecordKind {
  std::string_view kind;     // element 0 of the record
  std::string_view written;  // what the module calls it
  std::array<RecordMember, 8> members;
  bool hasProperties = true;
};

// Row of a kind; nullptr for one that is none of an element of a library part, or of a schematic object.
const RecordKind* libraryElementKind(std::string_view kind);
const RecordKind* schematicObjectKind(std::string_view kind);

}  // namespace vernoxa
