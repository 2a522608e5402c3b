#include <gtest/gtest.h>
#include "display/number_format.h"
TEST(Smoke, Builds) {
    EXPECT_EQ(wakeline::FormatToWidth(7.26f, "0.0", 4), " 7.3");
}
