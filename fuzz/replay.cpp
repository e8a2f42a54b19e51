// Runs kept inputs through their targets: vernoxa_fuzz_replay CORPUS-FOLDER, or vernoxa_fuzz_replay TARGET FILE...
// Each kept input is also cut at every length and has every byte set to a few values that mean something to a reader.
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "target.h"

namespace {

using vernoxa::fuzz::Target;

constexpr std::size_t longestVaried = 160;
constexpr std::array<char, 7> telling = {'\0', '\\', '"', '[', '{', ';', '\xE4'};

std::size_t replay(const Target& target, const std::filesystem::path& file, bool varied) {
  std::ifstream stream(file, std::ios::binary);
  const std::string input(std::istreambuf_iterator<char>(stream), {});
  target.run(input);
  if (!varied || input.size() > longestVaried) {
    return 1;
  }
  for (std::size_t index = 0; index < input.size(); ++index) {
    target.run(std::string_view(input).substr(0, index));
    std::string changed = input;
    changed[index] = telling[index % telling.size()];
    target.run(changed);
  }
  return 1 + 2 * input.size();
}

// Every target has its folder.
void replayCorpora(const std::filesystem::path& root) {
  for (const Target& target : vernoxa::fuzz::targets()) {
    std::size_t inputs = 0;
    for (const auto& file : std::filesystem::directory_iterator(root / target.name)) {
      inputs += replay(target, file.path(), true);
    }
    std::printf("%-18s %6zu inputs\n", target.name, inputs);
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + count);
  if (words.size() == 1) {
    replayCorpora(words.front());
    return 0;
  }
  const Target* const target = words.empty() ? nullptr : vernoxa::fuzz::findTarget(words.front());
  if (target == nullptr) {
    std::fputs("usage: vernoxa_fuzz_replay CORPUS-FOLDER | TARGET FILE...\n", stderr);
    return 2;
  }
  for (std::size_t index = 1; index < words.size(); ++index) {
    replay(*target, words[index], false);
  }
  return 0;
}
