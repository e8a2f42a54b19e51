// Text in UTF-16, as Windows itself holds it.
#pragma once

#include <string>
#include <string_view>

namespace vernoxa {

// `codePage` as Windows numbers it: CP_ACP for the host's, CP_UTF8. What is no text of it gives replacement
// characters.
std::wstring toWide(std::string_view text, unsigned codePage);

}  // namespace vernoxa
