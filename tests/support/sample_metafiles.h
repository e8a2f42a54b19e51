// Sound metafiles that together hold every kind of record, and ones that were spoilt.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vernoxa {

struct SampleMetafile {
  const char* name = "";
  std::string bytes;
};

// Each of one kind of records and under 3 KB: kept inputs of the fuzzer. Drawn by the system, each makes a small
// picture.
std::vector<SampleMetafile> sampleMetafiles();

// The bytes of one of them.
std::string sampleMetafile(const std::string& name);

// The 32-bit number at that place; 0 behind the end.
std::uint32_t numberAt(std::string_view bytes, std::size_t place);

// Where a metafile's records begin, by the sizes that they give.
std::vector<std::size_t> recordPlaces(std::string_view metafile);

// Where a metafile's first record of that type begins; npos without one.
std::size_t findRecord(std::string_view metafile, std::uint32_t type);

// 32-bit numbers, their low bytes first.
std::string numbersOf(const std::vector<std::uint32_t>& numbers);

// Another such number at that place.
std::string withNumber(std::string bytes, std::size_t place, std::uint32_t number);

// One of the samples with a few numbers, sizes, records or bytes changed; the same for the same seed. Now and then it
// is still a sound one.
SampleMetafile spoiltMetafile(std::uint32_t seed);

}  // namespace vernoxa
