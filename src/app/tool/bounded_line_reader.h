#pragma once
// Text lines from a stream for the tools: a line ends at LF, CR LF or CR and the ending is not
// part of it. Input that never ends a line must not grow memory without bound, so a line
// longer than the limit is consumed up to its end and reported as too long instead.

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace wakeline::tool {

class BoundedLineReader {
  public:
    enum class Kind { Line, TooLong, End };
    struct Result {
        Kind kind = Kind::End;
        std::string_view line;  // valid until the next call; empty unless kind is Line
    };

    // `in` must stay open while the reader is used; it is not closed here.
    BoundedLineReader(std::FILE* in, std::size_t maxLength);

    // The next line. A last line without an ending counts; an ending at the very end of the
    // input adds no empty line. A read error ends the input.
    Result Next();

  private:
    bool Fill();

    std::FILE* in_;
    std::size_t maxLength_;
    std::vector<char> buffer_;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
    std::string line_;
    bool skipLineFeed_ = false;  // a CR ended the last line; an LF right after belongs to it
};

}  // namespace wakeline::tool
