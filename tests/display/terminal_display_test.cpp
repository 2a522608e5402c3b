#include "display/terminal_display.h"

#include <gtest/gtest.h>

namespace wakeline {
namespace {

TEST(TerminalDisplay, RowsUpToTheLastRowThenStatusLines) {
    FieldTable table;
    InitFieldTable(table);
    std::array<std::string, kFieldCount> captions;
    captions[0] = "052 30.000 N";
    captions[22] = "HOME\r\n";
    const std::vector<std::string> status = {"waiting for Seaclear input\r\nsee tooltip", ""};

    const std::string short14 = RenderTerminalDisplay(table, captions, 14, status);
    EXPECT_EQ(short14.substr(0, 22), "Lat      052 30.000 N\n");
    EXPECT_EQ(short14.find("Lat WP"), std::string::npos);
    EXPECT_NE(short14.find("\nSPD      \nwaiting for Seaclear input\nsee tooltip\n"),
              std::string::npos);

    const std::string full = RenderTerminalDisplay(table, captions, 22, {});
    // The code "Name WP " keeps its blank and pads to the same column as the others.
    EXPECT_NE(full.find("\nName WP  HOME\n"), std::string::npos);
    EXPECT_EQ(full.back(), '\n');
}

}  // namespace
}  // namespace wakeline
