// Tests on a fake world and a fake host.
#pragma once

#include <gmock/gmock.h>

#include "support/fake_script_host.h"
#include "system/fake_world.h"
#include "text/gbk_literal.h"
#include "text/text.h"

namespace vernoxa {

class SessionTest : public testing::Test, protected FakeSession {
 protected:
  // What a folder holds, as literals of the tests.
  std::vector<std::string> namesIn(std::string_view folder) {
    std::vector<std::string> names;
    for (const FolderEntry& entry : fake.files.entries(folder)) {
      names.push_back(literalOf(FilePath::fromUtf8(entry.name)));
    }
    return names;
  }

  FakeScriptHost host_;
};

}  // namespace vernoxa
