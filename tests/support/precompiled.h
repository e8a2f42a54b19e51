// The headers that most tests include and that take longest to read: each test program reads them once for all its
// files. A file includes what it uses all the same; the build for coverage, which has none, finds where it does not.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
