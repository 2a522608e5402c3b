#include "seatalk/seatalk_line.h"

#include <gtest/gtest.h>

#include <string>

#include "base/date_time.h"

namespace wakeline {
namespace {

TEST(ComposeSeaTalkLine, BeforeAnyDatagramEveryFieldIsZero) {
    const DateTime now = DateTimeFromFields({2026, 11, 15, 23, 42, 16});
    const SeaTalkLine composed = ComposeSeaTalkLine(SeaTalkValues{}, now);
    // Mag and Mer carry the fixed variation -0.03875, DBT the 0.3 m; the last eight are empty.
    EXPECT_EQ(composed.line,
              "000.0000,000.0000,00.00,00.00,-00.04,-00.04,00.30,00.00,00.00,00.00,00.00,00.00,"
              "00.00,00.00,00.00,,,,,,,,\r\n");
    EXPECT_EQ(composed.timeStamp, "15-11-2026 23:42:16 (CZ)");
}

TEST(ComposeSeaTalkLine, AFullLineWithAWaypoint) {
    SeaTalkValues v;
    v.latitude = 52.5;
    v.longitude = -4.25;
    v.speedOverGround = 6;
    v.courseOverGround = 90;      // 1.5707963 rad; Mag 1.5320463
    v.depth = 3;                  // + 0.3
    v.trueWindAngle = 135;        // 2.3561945 rad
    v.apparentWindAngle = 90;     // 1.5707963 rad
    v.trueWindDirection = 225;    // 3.9269908 rad
    v.trueWindSpeed = 8.485281f;  // 4.3652057 m/s
    v.apparentWindSpeed = 6;      // 3.0866667 m/s
    v.heading = 91;               // 1.5882496 rad
    v.speedThroughWater = 5.5f;
    v.crossTrackError = -2.61f;
    v.bearingToWaypoint = 171.5f;  // 2.9932397 rad
    v.distanceToWaypoint = 3.2f;
    v.waypointName = "WP01";
    v.utcDateTime = 45366.0 + 52224.0 / 86400.0;  // 2024-03-15 14:30:24

    const SeaTalkLine composed = ComposeSeaTalkLine(v, 0);
    // Cross-track error, bearing and distance at fields 17 to 19, the name at 21.
    EXPECT_EQ(composed.line,
              "052.5000,-004.2500,06.00,01.57,01.53,-00.04,03.30,02.36,01.57,03.93,04.37,03.09,"
              "00.00,01.59,05.50,,,-002.6,003.0,003.2,,WP01,\r\n");
    // Seconds where the minutes would be, then the month again.
    EXPECT_EQ(composed.timeStamp, "2024 03 15 14:24:03");
}

}  // namespace
}  // namespace wakeline
