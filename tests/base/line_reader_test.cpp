#include "base/line_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace wakeline {
namespace {

using Lines = std::vector<std::string>;

struct Read {
    Lines lines;
    int tooLong = 0;
    std::optional<std::string> last;
    std::size_t mostPending = 0;
};

Read ReadAll(LineReader& reader, const std::vector<std::string>& chunks) {
    Read read;
    for (const std::string& chunk : chunks) {
        for (LineEvent& event : reader.Feed(chunk)) {
            if (event.kind == LineEvent::Kind::Line) {
                read.lines.push_back(std::move(event.text));
            } else {
                ++read.tooLong;
            }
        }
        read.mostPending = std::max(read.mostPending, reader.PendingBytes());
    }
    read.last = reader.Finish();
    return read;
}

TEST(LineReader, LinesEndWhereTheirRuleSaysWhateverTheChunks) {
    constexpr LineEnds kFile = LineEnds::LfCrLfOrCr;
    constexpr LineEnds kLink = LineEnds::LfOptionalCr;
    struct Row {
        const char* legend;
        LineEnds ends;
        std::size_t bound;
        std::vector<std::string> chunks;
        Lines lines;
        int tooLong;
        std::optional<std::string> last;
    };
    const Row rows[] = {
        {"LF", kFile, 8, {"a\nb\n"}, {"a", "b"}, 0, {}},
        {"CR LF", kFile, 8, {"a\r\nb\r\n"}, {"a", "b"}, 0, {}},
        {"lone CR", kFile, 8, {"a\rb\r"}, {"a", "b"}, 0, {}},
        {"CR at a chunk's end, then LF: one ending", kFile, 8, {"a\r", "\nb\n"}, {"a", "b"}, 0, {}},
        {"empty lines; LF CR and CR CR LF are two endings",
         kFile,
         8,
         {"\n\na\n\rb\r\r\nc\n"},
         {"", "", "a", "", "b", "", "c"},
         0,
         {}},
        {"last line without ending", kFile, 8, {"a\nbc"}, {"a"}, 0, "bc"},
        {"NUL and 8-bit bytes are text",
         kFile,
         8,
         {std::string("a\0\xff\n", 4)},
         {std::string("a\0\xff", 3)},
         0,
         {}},
        {"over-long: exactly the bound is kept", kFile, 4, {"abcd\n"}, {"abcd"}, 0, {}},
        {"over-long: one byte more drops the line to its end, told once",
         kFile,
         4,
         {"abcde", "fgh\nok\n"},
         {"ok"},
         1,
         {}},
        {"over-long: an endless line is not handed out at the end",
         kFile,
         4,
         {"abcd", "efgh", "ijkl"},
         {},
         1,
         {}},
        {"link: CR LF split between chunks",
         kLink,
         8,
         {"ab", "c\r", "\nd", "ef\n"},
         {"abc", "def"},
         0,
         {}},
        {"link: a lone CR is text", kLink, 8, {"a\rb\n"}, {"a\rb"}, 0, {}},
        {"link: only the CR right before LF goes", kLink, 8, {"a\r", "\r", "\n"}, {"a\r"}, 0, {}},
        {"link: a CR at the end of the stream is text", kLink, 8, {"a\nx\r"}, {"a"}, 0, "x\r"},
        {"link: the CR before LF does not count against the bound",
         kLink,
         4,
         {"abcd", "\r", "\n"},
         {"abcd"},
         0,
         {}},
        {"link: a lone CR counts against the bound",
         kLink,
         4,
         {"abcd", "\rq\n", "ok\n"},
         {"ok"},
         1,
         {}},
    };
    for (const Row& row : rows) {
        LineReader reader(row.ends, row.bound);
        const Read read = ReadAll(reader, row.chunks);
        EXPECT_EQ(read.lines, row.lines) << row.legend;
        EXPECT_EQ(read.tooLong, row.tooLong) << row.legend;
        EXPECT_EQ(read.last, row.last) << row.legend;
        EXPECT_LE(read.mostPending, row.bound) << row.legend;

        // The same bytes one at a time, through the reader that Finish() made ready again.
        std::string whole;
        std::vector<std::string> bytes;
        for (const std::string& chunk : row.chunks) {
            whole += chunk;
            for (char c : chunk) {
                bytes.emplace_back(1, c);
            }
        }
        const Read byByte = ReadAll(reader, bytes);
        EXPECT_EQ(byByte.lines, row.lines) << row.legend << ", byte by byte";
        EXPECT_EQ(byByte.tooLong, row.tooLong) << row.legend << ", byte by byte";
        EXPECT_EQ(byByte.last, row.last) << row.legend << ", byte by byte";

        // A whole file split at once keeps every line, the last one included.
        if (row.ends == kFile && row.tooLong == 0) {
            Lines all = row.lines;
            if (row.last) {
                all.push_back(*row.last);
            }
            EXPECT_EQ(SplitLines(whole), all) << row.legend << ", whole";
        }
    }
}

}  // namespace
}  // namespace wakeline
