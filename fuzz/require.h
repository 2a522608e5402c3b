#pragma once
// The fuzz targets' assertion: a broken property aborts, which libFuzzer reports as a finding
// with the input that broke it (assert() would vanish in a release build).

#include <cstdlib>

namespace wakeline::fuzz {

inline void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

}  // namespace wakeline::fuzz
