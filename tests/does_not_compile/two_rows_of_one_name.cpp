// Of two requests with one name the second would never be carried out.
#include "dispatch/handler.h"

namespace vernoxa {

using namespace row;

Outcome saveAll(RequestCall&, plugin::Session&);

#if CASE == 0
constexpr const char* second = "SaveEverything";
#else
constexpr const char* second = "SaveAll";
#endif

constexpr HandlerRow table[] = {
    {"SaveAll", saveAll, needs(), calls("saveFile"), answers(), "Saves all designs."},
    {second, saveAll, needs(), calls("saveFile"), answers(), "Saves all designs."},
};
static_assert(namesDiffer(table), "two rows of one name");

}  // namespace vernoxa
