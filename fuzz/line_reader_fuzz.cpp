// Feeds arbitrary bytes to the line reader under either line-end rule and a small bound, once
// as one chunk and once cut at places taken from the input. Beyond the sanitizers' checks it
// insists that the cuts change nothing (same lines, same drops, same last line), that no line
// and no pending line is longer than the bound, and that with a bound out of reach the file
// rule gives exactly the lines a plain split of the whole text gives.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/line_reader.h"
#include "require.h"

using wakeline::fuzz::Require;

namespace {

using namespace wakeline;

struct Outcome {
    std::vector<LineEvent> events;
    std::optional<std::string> last;
};

Outcome ReadInChunks(LineReader& reader, std::string_view text,
                     const std::vector<std::size_t>& cuts, std::size_t bound) {
    Outcome outcome;
    std::size_t at = 0;
    for (std::size_t cut : cuts) {
        const std::size_t end = std::min(text.size(), at + cut);
        for (LineEvent& event : reader.Feed(text.substr(at, end - at))) {
            Require(event.text.size() <= bound);
            outcome.events.push_back(std::move(event));
        }
        Require(reader.PendingBytes() <= bound);
        at = end;
    }
    for (LineEvent& event : reader.Feed(text.substr(at))) {
        outcome.events.push_back(std::move(event));
    }
    outcome.last = reader.Finish();
    Require(!outcome.last || outcome.last->size() <= bound);
    return outcome;
}

bool Same(const Outcome& a, const Outcome& b) {
    if (a.events.size() != b.events.size() || a.last != b.last) {
        return false;
    }
    for (std::size_t i = 0; i < a.events.size(); ++i) {
        if (a.events[i].kind != b.events[i].kind || a.events[i].text != b.events[i].text) {
            return false;
        }
    }
    return true;
}

// The file rule written the plain way, as the reference.
std::vector<std::string> PlainSplit(std::string_view text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\n' && text[at] != '\r') {
            continue;
        }
        lines.emplace_back(text.substr(start, at - start));
        if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n') {
            ++at;
        }
        start = at + 1;
    }
    if (start < text.size()) {
        lines.emplace_back(text.substr(start));
    }
    return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    const LineEnds ends = (data[0] & 1) != 0 ? LineEnds::LfOptionalCr : LineEnds::LfCrLfOrCr;
    const std::size_t bound = 1 + data[1] % 16;
    // Chunk sizes 0..7 from the low bits of a seed byte, walked with a small generator.
    std::uint32_t seed = data[2];
    const std::string_view text(reinterpret_cast<const char*>(data + 3), size - 3);
    std::vector<std::size_t> cuts;
    for (std::size_t covered = 0; covered < text.size();) {
        seed = seed * 1103515245u + 12345u;
        cuts.push_back((seed >> 16) % 8);
        covered += cuts.back();
    }

    LineReader whole(ends, bound);
    const Outcome once = ReadInChunks(whole, text, {}, bound);
    LineReader cut(ends, bound);
    Require(Same(ReadInChunks(cut, text, cuts, bound), once));

    if (ends == LineEnds::LfCrLfOrCr) {
        Require(SplitLines(text) == PlainSplit(text));
    }
    return 0;
}
