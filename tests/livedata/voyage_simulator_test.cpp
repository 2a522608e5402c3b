#include "livedata/voyage_simulator.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace wakeline {
namespace {

std::vector<std::string> Split(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream in(line + ",");  // the extra comma keeps an empty last field
    for (std::string field; std::getline(in, field, ',');) {
        fields.push_back(field);
    }
    return fields;
}

TEST(VoyageSimulatorTest, LinesHaveTheDataLineFormAndRepeatForTheSameSecond) {
    VoyageSimulator voyage;
    const std::vector<std::string> first = Split(voyage.DataLine(0));
    EXPECT_EQ(first[0], "54.100000");
    EXPECT_EQ(first[5], "-0.0349");  // two degrees west in radians
    for (std::int64_t t = 0; t < 7200; t += 7) {
        const std::vector<std::string> f = Split(voyage.DataLine(t));
        ASSERT_EQ(f.size(), 23u) << t;
        for (std::size_t i = 0; i <= 14; ++i) {
            const std::size_t point = f[i].find('.');
            EXPECT_TRUE(point != std::string::npos && point > 0 && point + 1 < f[i].size() &&
                        f[i].find_first_not_of("0123456789.", f[i][0] == '-') == std::string::npos)
                << t << " field " << i << " '" << f[i] << "'";
        }
        // The waypoint part appears after the first minute.
        for (std::size_t i = 15; i <= 22; ++i) {
            EXPECT_EQ(f[i].empty(), t < 60) << t << " field " << i;
        }
    }
    // Going back starts over and gives the same lines; so does a second simulator.
    const std::string late = voyage.DataLine(5000);
    const std::string early = voyage.DataLine(120);
    VoyageSimulator other;
    EXPECT_EQ(other.DataLine(120), early);
    EXPECT_EQ(other.DataLine(5000), late);
    EXPECT_NE(early, late);
}

}  // namespace
}  // namespace wakeline
