// Identifiers.
#pragma once

#include <string>

namespace vernoxa {

class GuidSource;

// A new GUID as 36 characters. The third group is in lower case, all others in upper case: readers compare texts, for
// example 1B4E28BA-2FA1-11d2-883F-0016D3CCA427. Empty when the system gives none.
std::string guidText(GuidSource& source);

}  // namespace vernoxa
