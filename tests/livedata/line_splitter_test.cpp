#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "livedata/line_splitter.h"

namespace wakeline {
namespace {

struct Fed {
    std::vector<std::string> lines;
    int tooLong = 0;
};

Fed FeedAll(LineSplitter& splitter, const std::vector<std::string>& chunks) {
    Fed fed;
    for (const std::string& chunk : chunks) {
        for (LineEvent& event : splitter.Feed(chunk)) {
            if (event.kind == LineEvent::Kind::Line) {
                fed.lines.push_back(std::move(event.text));
            } else {
                ++fed.tooLong;
            }
        }
    }
    return fed;
}

using Lines = std::vector<std::string>;

TEST(LineSplitterTest, LinesEndWhereTheirRuleSaysWhateverTheChunks) {
    constexpr LineEnds kLink = LineEnds::LfOptionalCr;
    constexpr LineEnds kFile = LineEnds::LfCrLfOrCr;
    struct Row {
        const char* legend;
        LineEnds ends;
        std::vector<std::string> chunks;
        Lines lines;
        std::optional<std::string> last;
    };
    const Row rows[] = {
        {"CR LF split between chunks", kLink, {"ab", "c\r", "\nd", "ef\n"}, {"abc", "def"}, {}},
        {"a lone CR is text", kLink, {"a\rb\n"}, {"a\rb"}, {}},
        {"only the CR right before LF goes", kLink, {"a\r", "\r", "\n"}, {"a\r"}, {}},
        {"a CR at the end of the stream is text", kLink, {"a\nx\r"}, {"a"}, "x\r"},
        {"CR LF split, then an empty line", kFile, {"a\r", "\nb\r", "\r\n"}, {"a", "b", ""}, {}},
        {"LF CR is two ends", kFile, {"a\n\rb\n"}, {"a", "", "b"}, {}},
    };
    // A NUL is a byte of the line like any other.
    LineSplitter withNul;
    EXPECT_EQ(FeedAll(withNul, {std::string("a\0b\n", 4)}).lines, Lines{std::string("a\0b", 3)});
    for (const Row& row : rows) {
        LineSplitter splitter(row.ends);
        const Fed fed = FeedAll(splitter, row.chunks);
        EXPECT_EQ(fed.lines, row.lines) << row.legend;
        EXPECT_EQ(fed.tooLong, 0) << row.legend;
        EXPECT_EQ(splitter.Finish(), row.last) << row.legend;
    }
}

TEST(LineSplitterTest, TheBoundIsTheLineWithoutItsEnd) {
    // Exactly the bound is kept, even with its CR arriving as the byte past the bound.
    LineSplitter splitter;
    const std::string longest(kMaxLineBytes, 'y');
    Fed fed = FeedAll(splitter, {longest, "\r", "\n"});
    ASSERT_EQ(fed.lines.size(), 1U);
    EXPECT_EQ(fed.lines[0], longest);

    // One byte more is dropped, and a lone CR counts as a byte of the line.
    fed = FeedAll(splitter, {longest + "z\nshort\n", longest, "\rq\n", "ok\n"});
    EXPECT_EQ(fed.lines, (Lines{"short", "ok"}));
    EXPECT_EQ(fed.tooLong, 2);

    // An endless line is dropped once, is not kept beyond the bound, and its unfinished rest
    // is not handed out at the end.
    fed = FeedAll(splitter, {longest, longest, longest});
    EXPECT_EQ(fed.tooLong, 1);
    EXPECT_LE(splitter.PendingBytes(), kMaxLineBytes);
    EXPECT_EQ(splitter.Finish(), std::nullopt);
}

}  // namespace
}  // namespace wakeline
