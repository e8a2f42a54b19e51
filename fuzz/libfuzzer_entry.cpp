// The fuzzer: vernoxa_fuzz --target=NAME [libFuzzer's own options and folders]
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "target.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size, std::size_t most);

namespace {

const vernoxa::fuzz::Target* chosen = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
  constexpr std::string_view option = "--target=";
  for (int index = 1; index < *count; ++index) {
    const std::string_view argument = (*arguments)[index];
    if (argument.starts_with(option)) {
      chosen = vernoxa::fuzz::findTarget(argument.substr(option.size()));
    }
  }
  if (chosen == nullptr) {
    std::fputs("--target=NAME is wanted; each has a folder of its name in fuzz/corpus\n", stderr);
    std::exit(2);
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  chosen->run(std::string_view(reinterpret_cast<const char*>(bytes), size));
  return 0;
}

// One input in four begins from one that is right in form; half of these stay as they are, the rest is spoilt as all
// others are.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size, std::size_t most, unsigned seed) {
  const std::string made = seed % 4 == 0 ? vernoxa::fuzz::rightInForm(chosen->name, seed) : std::string();
  if (!made.empty() && made.size() <= most) {
    std::memcpy(bytes, made.data(), made.size());
    size = made.size();
    if (seed % 8 == 0) {
      return size;
    }
  }
  return LLVMFuzzerMutate(bytes, size, most);
}
