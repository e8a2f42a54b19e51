// The main program of tests under Wine. Tells its status first: Wine may end the process by a death of its own.
#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

int main(int count, char** words) {
  testing::InitGoogleMock(&count, words);
  const int status = RUN_ALL_TESTS();
  if (const char* const ended = std::getenv("VERNOXA_ENDED")) {
    std::ofstream(ended) << status;
  }
  return status;
}
