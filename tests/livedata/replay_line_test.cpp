#include <gtest/gtest.h>

#include "livedata/replay_line.h"

namespace wakeline {
namespace {

TEST(ReplayLineTest, StampsAreTakenOnlyWhenCompleteAndValid) {
    using Kind = ReplayLine::Kind;
    // 2026-11-15 is day 46341 since 1899-12-30 (2000-01-01 is 36526, then 26 years with 7 leap
    // days and 304 days to 1 November); 23:42:16 is 85336 s. 2024-02-29 is day 45351.
    const DateTime record = 46341 + 85336 / 86400.0;
    struct Row {
        const char* legend;
        const char* line;
        Kind kind;
        DateTime time;
        const char* text;
    };
    const Row rows[] = {
        {"track record", "20261115 23:42:16 CZ,5230.1,N,", Kind::Stamped, record, "5230.1,N,"},
        {"leap day, nothing after the stamp", "20240229 00:00:00 CZ,", Kind::Stamped, 45351, ""},
        {"29 February of a common year", "20230229 00:00:00 CZ,x", Kind::Plain, 0, nullptr},
        {"31 November", "20261131 23:42:16 CZ,x", Kind::Plain, 0, nullptr},
        {"second 60", "20261115 23:42:60 CZ,x", Kind::Plain, 0, nullptr},
        {"year before 1900", "18991231 23:42:16 CZ,x", Kind::Plain, 0, nullptr},
        {"sign in the time", "20261115 +3:42:16 CZ,x", Kind::Plain, 0, nullptr},
        {"no comma", "20261115 23:42:16 CZ", Kind::Plain, 0, nullptr},
        {"no CZ", "20261115 23:42:16,x", Kind::Plain, 0, nullptr},
        {"note", "/* 20261115 23:42:16 CZ - normal closedown", Kind::Note, 0, nullptr},
        {"no blank after /*", "/*x", Kind::Plain, 0, nullptr},
    };
    for (const Row& row : rows) {
        const ReplayLine got = ClassifyReplayLine(row.line);
        EXPECT_EQ(got.kind, row.kind) << row.legend;
        if (row.kind == Kind::Stamped) {
            EXPECT_DOUBLE_EQ(got.time, row.time) << row.legend;
            EXPECT_EQ(got.text, row.text) << row.legend;
        } else if (row.kind == Kind::Plain) {
            EXPECT_EQ(got.text, row.line) << row.legend;
        }
    }
}

}  // namespace
}  // namespace wakeline
