// What nearly every operation of a load needs, in one parcel.
#pragma once

namespace vernoxa {

struct GlobalState;
class Logs;
class TextConverter;
struct World;

struct Services {
  World& world;
  const Logs& logs;
  GlobalState& state;
  const TextConverter& text;
};

}  // namespace vernoxa
