#pragma once
// Cuts a byte stream into text lines. Bytes arrive in chunks of any size, so a line (or the CR
// LF pair that ends it) may be split across chunks; the splitter keeps the unfinished line
// until its end arrives. Lines come out without their ends; every other byte, NUL and 8-bit
// bytes included, passes through unchanged.
//
// A peer that never sends a line end must not make the program grow without limit: a line
// longer than the bound is dropped whole, up to its end, and reported once. The pending line
// never holds more than the bound, whatever arrives.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wakeline {

// Where lines end.
enum class LineEnds {
    // LF ends a line; one CR right before the LF is dropped, any other CR is text. The link's
    // rule: the chart plotter sends one item text per line.
    LfOptionalCr,
    // LF, CR LF or a lone CR ends a line: the rule for text files read line by line.
    LfCrLfOrCr,
};

// The longest line kept, in bytes without its end. A data line is a few hundred bytes.
inline constexpr std::size_t kMaxLineBytes = 64 * 1024;

struct LineEvent {
    enum class Kind {
        Line,     // `text` is a complete line without its end
        TooLong,  // a line passed the bound; it is dropped up to its end (`text` is empty)
    };
    Kind kind = Kind::Line;
    std::string text;
};

class LineSplitter {
  public:
    explicit LineSplitter(LineEnds ends = LineEnds::LfOptionalCr,
                          std::size_t maxLineBytes = kMaxLineBytes);

    // Takes the next chunk of the stream and returns what it completed, in stream order.
    std::vector<LineEvent> Feed(std::string_view bytes);

    // End of the stream: the last line when it had no end (empty optional when nothing was
    // pending or the pending line was being dropped). The splitter is then ready for a new
    // stream.
    std::optional<std::string> Finish();

    // Bytes of the unfinished line held now (never more than the bound).
    std::size_t PendingBytes() const { return pending_.size() + (heldCr_ ? 1 : 0); }

  private:
    void Append(std::string_view text, std::vector<LineEvent>& events);
    void EndLine(std::vector<LineEvent>& events);

    LineEnds ends_;
    std::size_t maxLineBytes_;
    std::string pending_;
    bool heldCr_ = false;    // LfOptionalCr: a CR that is dropped if an LF follows
    bool afterCr_ = false;   // LfCrLfOrCr: a CR just ended a line; an LF next belongs to it
    bool dropping_ = false;  // the current line passed the bound
};

}  // namespace wakeline
