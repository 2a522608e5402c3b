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
    bool operator==(const Read&) const = default;
};

void PrintTo(const Read& r, std::ostream* os) {
    *os << ::testing::PrintToString(r.lines) << ", " << r.tooLong << " too long, last "
        << ::testing::PrintToString(r.last);
}

// `mostPending` is the most bytes the reader held between chunks.
Read ReadAll(LineReader& reader, const Lines& chunks, std::size_t& mostPending) {
    Read read;
    for (const std::string& chunk : chunks) {
        for (LineEvent& event : reader.Feed(chunk)) {
            if (event.kind == LineEvent::Kind::Line) {
                read.lines.push_back(std::move(event.text));
            } else {
                ++read.tooLong;
            }
        }
        mostPending = std::max(mostPending, reader.PendingBytes());
    }
    read.last = reader.Finish();
    return read;
}

// Every row is read in its chunks, then byte by byte through the reader that Finish() made
// ready again, and (file rule, no over-long line) whole by SplitLines, which keeps the last line.
TEST(LineReader, LinesEndWhereTheirRuleSaysWhateverTheChunks) {
    constexpr LineEnds kFile = LineEnds::LfCrLfOrCr;
    constexpr LineEnds kLink = LineEnds::LfOptionalCr;
    const struct {
        const char* legend;
        LineEnds ends;
        std::size_t bound;
        Lines chunks;
        Read read;
    } rows[] = {
        // clang-format off
        {"LF, CR LF and a lone CR", kFile, 8, {"a\nb\r\nc\r"}, {{"a", "b", "c"}, 0, {}}},
        {"CR at a chunk's end, then LF: one ending", kFile, 8, {"a\r", "\nb\n"}, {{"a", "b"}, 0, {}}},
        {"empty lines; LF CR and CR CR LF are two endings", kFile, 8, {"\n\na\n\rb\r\r\nc\n"}, {{"", "", "a", "", "b", "", "c"}, 0, {}}},
        {"last line without ending", kFile, 8, {"a\nbc"}, {{"a"}, 0, "bc"}},
        {"NUL and 8-bit bytes are text", kFile, 8, {std::string("a\0\xff\n", 4)}, {{std::string("a\0\xff", 3)}, 0, {}}},
        {"over-long: exactly the bound is kept", kFile, 4, {"abcd\n"}, {{"abcd"}, 0, {}}},
        {"over-long: one byte more drops the line to its end, told once", kFile, 4, {"abcde", "fgh\nok\n"}, {{"ok"}, 1, {}}},
        {"over-long: an endless line is not handed out at the end", kFile, 4, {"abcd", "efgh", "ijkl"}, {{}, 1, {}}},
        {"link: CR LF split between chunks", kLink, 8, {"ab", "c\r", "\nd", "ef\n"}, {{"abc", "def"}, 0, {}}},
        {"link: a lone CR is text", kLink, 8, {"a\rb\n"}, {{"a\rb"}, 0, {}}},
        {"link: only the CR right before LF goes", kLink, 8, {"a\r", "\r", "\n"}, {{"a\r"}, 0, {}}},
        {"link: a CR at the end of the stream is text", kLink, 8, {"a\nx\r"}, {{"a"}, 0, "x\r"}},
        {"link: the CR before LF does not count against the bound", kLink, 4, {"abcd", "\r", "\n"}, {{"abcd"}, 0, {}}},
        {"link: a lone CR counts against the bound", kLink, 4, {"abcd", "\rq\n", "ok\n"}, {{"ok"}, 1, {}}},
        // clang-format on
    };
    for (const auto& row : rows) {
        LineReader reader(row.ends, row.bound);
        std::size_t mostPending = 0;
        EXPECT_EQ(ReadAll(reader, row.chunks, mostPending), row.read) << row.legend;
        EXPECT_LE(mostPending, row.bound) << row.legend;

        std::string whole;
        Lines bytes;
        for (const std::string& chunk : row.chunks) {
            whole += chunk;
            for (char c : chunk) {
                bytes.emplace_back(1, c);
            }
        }
        EXPECT_EQ(ReadAll(reader, bytes, mostPending), row.read) << row.legend << ", byte by byte";
        if (row.ends == kFile && row.read.tooLong == 0) {
            Lines all = row.read.lines;
            if (row.read.last) {
                all.push_back(*row.read.last);
            }
            EXPECT_EQ(SplitLines(whole), all) << row.legend << ", whole";
        }
    }
}

}  // namespace
}  // namespace wakeline
