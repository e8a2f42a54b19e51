// Inputs that are right in form, made from the plug-in's own tables of requests, commands and records: what would take
// a fuzzer long to spell.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vernoxa::fuzz {

// The same for the same seed; empty for a target whose inputs have no such form.
std::string rightInForm(std::string_view target, std::uint32_t seed);

}  // namespace vernoxa::fuzz
