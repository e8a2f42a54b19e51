#include "wire/envelope.h"

#include <gtest/gtest.h>

namespace vernoxa::inline wire {
namespace {

TEST(Envelope, WhatIsNoMessageSaysWhereAndWhy) {
  const auto failure = std::get<Failure>(parseMessage("{\"Command\":\"a\" nonsense}"));
  EXPECT_EQ(failure.where, Failure::Where::output);
  EXPECT_EQ(failure.what, "Error before: [nonsense}]\n");
  const auto beyond = std::get<Failure>(parseMessage(std::string(1001, '[')));
  EXPECT_EQ(beyond.where, Failure::Where::log);
  EXPECT_EQ(beyond.what, "JSON refused: nested deeper than 1000 levels");
  const auto many = std::get<Failure>(parseMessage("[" + std::string(2'100'000, ',')));
  EXPECT_EQ(many.what, "JSON refused: too many values");
}

}  // namespace
}  // namespace vernoxa::inline wire
