// The reference pages, out of the tables that the plug-in runs on.
#pragma once

#include <string>

namespace vernoxa {

std::string messagePage();
std::string commandPage();

}  // namespace vernoxa
