#include "seatalk/seatalk_input.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace wakeline {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes ReadFixture(const std::string& name) {
    std::ifstream in(std::string(WAKELINE_TEST_DATA) + "/seatalk/" + name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::vector<SeaTalkEvent> FeedInReads(SeaTalkInput& input, const Bytes& stream, std::size_t size) {
    std::vector<SeaTalkEvent> events;
    for (std::size_t at = 0; at < stream.size(); at += size) {
        const std::size_t n = std::min(size, stream.size() - at);
        for (SeaTalkEvent& event : input.Feed({stream.data() + at, n}, 0)) {
            events.push_back(std::move(event));
        }
    }
    for (SeaTalkEvent& event : input.Finish(0)) {
        events.push_back(std::move(event));
    }
    return events;
}

TEST(SeaTalkInput, ARecordedPassageGivesOneLinePerDatagramHoweverItIsRead) {
    const Bytes stream = ReadFixture("short_passage.bin");
    ASSERT_EQ(stream.size(), 51u);
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{7}, stream.size()}) {
        SeaTalkInput input(kSeaTalkModeSC);
        const std::vector<SeaTalkEvent> events = FeedInReads(input, stream, size);
        ASSERT_EQ(events.size(), 8u) << "reads of " << size;
        // The time alone stands on day 0, 1899-12-30: each event's line and stamp are composed
        // from the values as they were after its own datagram, even when one read holds all.
        EXPECT_EQ(events[0].report, "54 81 79 0E " + std::string(18, ' ') + "m:GMT :14:30:24");
        EXPECT_EQ(events[0].timeStamp, "1899 12 30 14:24:12");
        EXPECT_EQ(events[4].report,
                  "00 02 00 FF 00 " + std::string(15, ' ') + "m:DBT 00: 7.65 feet 2");
        EXPECT_EQ(events[7].line,
                  "000.0000,000.0000,00.00,00.00,-00.04,-00.04,07.95,02.18,00.79,03.94,02.22,"
                  "02.57,00.00,01.76,06.00,,,,,,,,\r\n");
        EXPECT_EQ(events[7].timeStamp, "2024 03 15 14:24:03");
        EXPECT_EQ(input.Values().trueWindDirection, 226);
        EXPECT_EQ(input.Frame().lengthErrors, 0);
    }
}

TEST(SeaTalkInput, ThePortWarningIsGivenOnce) {
    SeaTalkInput input(kSeaTalkModeSB);
    EXPECT_EQ(input.TakePortWarning(),
              "SeaTalk option may not work well if other software, esp. hyperterminal, has used "
              "COM port before; you may want to restart your computer before running in this "
              "mode");
    EXPECT_EQ(input.TakePortWarning(), std::nullopt);
}

}  // namespace
}  // namespace wakeline
