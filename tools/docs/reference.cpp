// Prints protocol.json and the reference pages from the tables that the plug-in runs on, or tells which one is stale.
//
//   vernoxa_docs FOLDER          writes them
//   vernoxa_docs --check FOLDER  exit 1 when one differs from what would be written
#include <array>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include "pages.h"
#include "protocol_json.h"

namespace {

struct Document {
  const char* name;
  std::string (*print)();
};

constexpr std::array documents = {
    Document{"protocol.json", vernoxa::protocolJson},
    Document{"messages.md", vernoxa::messagePage},
    Document{"commands.md", vernoxa::commandPage},
};

std::string contentOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

int main(int count, char** arguments) {
  const bool check = count == 3 && std::string_view(arguments[1]) == "--check";
  if (count != 2 && !check) {
    std::cerr << "usage: vernoxa_docs [--check] FOLDER\n";
    return 2;
  }
  const std::string folder = arguments[count - 1];
  bool stale = false;
  for (const Document& document : documents) {
    const std::string file = folder + "/" + document.name;
    if (!check) {
      std::ofstream(file, std::ios::binary) << document.print();
    } else if (contentOf(file) != document.print()) {
      std::cerr << file << " is stale: run ./dev docs\n";
      stale = true;
    }
  }
  return stale ? 1 : 0;
}
