// SPDX-License-Identifier: MIT
#include "inspect/json_members.h"

#include <gtest/gtest.h>

namespace quorvel::inspect {

namespace {

template <class Value> std::string written(Value const& value) {
    std::string line;
    JsonMembers members(line);
    members("name", value);
    members.finish();
    return line;
}

} // namespace

TEST(JsonMembers, MakesOneObjectALine) {
    std::string line = "before\n";
    JsonMembers members(line);
    members("i", 7U);
    members("hex", std::string_view("8D"));
    members("crc_ok", true);
    members.finish();
    EXPECT_EQ(line, "before\n{\"i\":7,\"hex\":\"8D\",\"crc_ok\":true}\n");
}

TEST(JsonMembers, WritesNumbersInTheShortestFormThatReadsAsTheSame) {
    EXPECT_EQ(written(0.1), "{\"name\":0.1}\n");
    EXPECT_EQ(written(359.82421875), "{\"name\":359.82421875}\n");
    EXPECT_EQ(written(-1000.0), "{\"name\":-1000}\n");
    EXPECT_EQ(written(0.1 + 0.2), "{\"name\":0.30000000000000004}\n");
    EXPECT_EQ(written(-64), "{\"name\":-64}\n");
}

TEST(JsonMembers, TellsFlagsFromNumbers) {
    EXPECT_EQ(written(false), "{\"name\":false}\n");
    EXPECT_EQ(written(0), "{\"name\":0}\n");
}

TEST(JsonMembers, ListsRegistersByName) {
    airspace::RegisterNumbers numbers;
    EXPECT_EQ(written(numbers), "{\"name\":[]}\n");
    numbers.append(0x0A);
    numbers.append(0x50);
    EXPECT_EQ(written(numbers), "{\"name\":[\"0,A\",\"5,0\"]}\n");
}

} // namespace quorvel::inspect
