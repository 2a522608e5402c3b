#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "performance/table_defaults.h"
#include "performance/wind_correction.h"

namespace wakeline {
namespace {

// Wind speeds 6 and 12 kt; classes up to 45, 90 and 150 degrees.
//   angle corrections  45: 3.0 2.0   90: 1.0 0.5   150: -1.0 -1.5
//   corr kt 0.5 1.0, corr angle 120 150
CorrectionTable TwoSpeedTable() {
    CorrectionTable c;
    c.SpeedCount = 2;
    c.ClassCount = 3;
    c.WindSpeed = {0, 6, 12};
    c.ClassAngle = {0, 45, 90, 150};
    c.AngleCorrection[1] = {0, 3.0f, 1.0f, -1.0f};
    c.AngleCorrection[2] = {0, 2.0f, 0.5f, -1.5f};
    c.SpeedCorrectionKt = {0, 0.5f, 1.0f};
    c.SpeedCorrectionAngle = {0, 120, 150};
    return c;
}

struct Row {
    float angle, speed, expected;
    const char* legend;
};

TEST(WindCorrection, TheDefaultTableCorrectsNothing) {
    const CorrectionTable defaults = DefaultCorrectionTable();
    for (float angle : {-40.0f, 0.0f, 120.0f, 200.0f}) {
        for (float speed : {0.0f, 17.5f, 45.0f}) {
            EXPECT_EQ(AngleCorrectionAt(angle, speed, defaults), 0.0f) << angle << " " << speed;
            EXPECT_EQ(SpeedCorrectionAt(angle, speed, defaults), 0.0f) << angle << " " << speed;
        }
    }
}

TEST(WindCorrection, AngleCorrectionIsBilinearFromZero) {
    const CorrectionTable c = TwoSpeedTable();
    const std::vector<Row> rows = {
        {-45, 6, -3.0f, "port side mirrors"},
        // fx = (90-56.25)/45 = 0.75 on class 45, fy = (12-7.5)/6 = 0.75 on speed 6:
        // 2*0.25*0.75 + 3*0.75*0.75 + 1*0.25*0.75 + 0.5*0.25*0.25 = 2.28125
        {56.25f, 7.5f, 2.28125f, "between four nodes"},
        // fx = (45-22.5)/45 = 0.5 and fy = (6-3)/6 = 0.5 towards the zero corner: 3*0.25
        {22.5f, 3, 0.75f, "below the first nodes"},
        {170, 20, -1.5f, "clamped to 150 and 12"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(AngleCorrectionAt(row.angle, row.speed, c), row.expected) << row.legend;
    }
    // An angle of 0 also takes the negated value (visible only with a value in class 0).
    CorrectionTable zeroClass = c;
    zeroClass.AngleCorrection[1][0] = 2.0f;
    EXPECT_EQ(AngleCorrectionAt(0, 6, zeroClass), -2.0f);
}

TEST(WindCorrection, SpeedCorrectionWorksOffTheWindOnly) {
    const CorrectionTable c = TwoSpeedTable();
    const std::vector<Row> rows = {
        {105, 6, 0.25f, "(105-90)/(120-90) of 0.5"},
        // g = (12-9)/6 = 0.5: limit 135, kt 0.75; (112.5-90)/45 = 0.5
        {112.5f, 9, 0.375f, "between speeds"},
        {180, 3, 0.25f, "below the first speed: (1 - (6-3)/6) * 0.5"},
        {150, 20, 1.0f, "clamped to 12 kt, limit 150"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(SpeedCorrectionAt(row.angle, row.speed, c), row.expected) << row.legend;
    }
}

TEST(WindCorrection, ArithmeticFaultsGiveNoValue) {
    CorrectionTable limit90 = TwoSpeedTable();
    limit90.SpeedCorrectionAngle[1] = 90;
    EXPECT_EQ(SpeedCorrectionAt(90, 6, limit90), std::nullopt);  // 0 / 0

    CorrectionTable overrun = TwoSpeedTable();
    overrun.SpeedCount = 12;  // as a file with twelve wind speeds leaves it
    EXPECT_EQ(AngleCorrectionAt(45, 6, overrun), std::nullopt);
    EXPECT_EQ(SpeedCorrectionAt(100, 20, overrun), std::nullopt);
}

TEST(WindCorrection, DampingFactorText) {
    const std::pair<const char*, float> rows[] = {{" .75", 0.75f}, {"1.5", 1.0f}, {"-0.2", 0.0f}};
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(ParseDampingFactor(text), expected) << text;
    }
}

}  // namespace
}  // namespace wakeline
