#pragma once
// Cuts a byte stream into text lines: the one line reader of the program, for files read whole
// (SplitLines), replays, the tools and the chart plotter link. Bytes arrive in chunks of any
// size, so a line (or the CR LF pair that ends it) may be split across chunks; the reader keeps
// the unfinished line until its end arrives. Lines come out without their ends; every other
// byte, NUL and 8-bit bytes included, passes through unchanged. No I/O: bytes in, lines out.
//
// Over-long lines: input that never ends a line must not make the program grow without limit.
// A line longer than the bound (counted without its end) is dropped whole, up to its end, and
// reported once, by a TooLong event at the point where it passed the bound; an unfinished
// over-long line is not handed out by Finish(). The pending line never holds more than the
// bound, whatever arrives.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wakeline {

// Where lines end.
enum class LineEnds {
    // LF, CR LF or a lone CR ends a line: the rule for text files, replays and the tools' input.
    LfCrLfOrCr,
    // LF ends a line; one CR right before the LF is dropped, any other CR is text. The link's
    // rule: the chart plotter sends one item text per line, ended by LF.
    LfOptionalCr,
};

// The longest streamed line kept, in bytes without its end. A data line is a few hundred bytes.
inline constexpr std::size_t kMaxLineBytes = 64 * 1024;

struct LineEvent {
    enum class Kind {
        Line,     // `text` is a complete line without its end
        TooLong,  // a line passed the bound; it is dropped up to its end (`text` is empty)
    };
    Kind kind = Kind::Line;
    std::string text;
};

class LineReader {
  public:
    // `maxLineBytes` is the bound of the over-long line rule above; it must be at least 1.
    explicit LineReader(LineEnds ends, std::size_t maxLineBytes = kMaxLineBytes);

    // Takes the next chunk of the stream and returns what it completed, in stream order. A CR
    // at the end of one chunk and an LF at the start of the next are one line end.
    std::vector<LineEvent> Feed(std::string_view bytes);

    // End of the stream: the last line when it had no end (empty optional when nothing was
    // pending or the pending line was being dropped), so an end at the very end of the stream
    // adds no empty line. The reader is then ready for a new stream.
    std::optional<std::string> Finish();

    // Bytes of the unfinished line held now, never more than the bound. (A CR that the link
    // rule holds back until it sees whether an LF follows is not yet a byte of the line.)
    std::size_t PendingBytes() const { return pending_.size(); }

  private:
    friend std::vector<std::string> SplitLines(std::string_view text);
    // The rule itself: calls emit(kind, text) for each event, in stream order. Defined and
    // used only in line_reader.cpp, so that Feed and SplitLines share it without a copy.
    template <typename Emit>
    void Scan(std::string_view bytes, Emit&& emit);
    template <typename Emit>
    void Append(std::string_view text, Emit& emit);
    template <typename Emit>
    void EndLine(Emit& emit);

    LineEnds ends_;
    std::size_t maxLineBytes_;
    std::string pending_;
    bool heldCr_ = false;    // LfOptionalCr: a CR that is dropped if an LF follows
    bool afterCr_ = false;   // LfCrLfOrCr: a CR just ended a line; an LF next belongs to it
    bool dropping_ = false;  // the current line passed the bound
};

// The lines of a whole text by the LfCrLfOrCr rule. No line is dropped: the bound is the
// text's own size.
std::vector<std::string> SplitLines(std::string_view text);

}  // namespace wakeline
