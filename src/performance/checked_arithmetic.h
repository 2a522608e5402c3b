#pragma once
// Arithmetic of the table lookups that stops at the first fault instead of clamping: an index
// outside an array, a division by zero, a value that is not a number, or a result that does
// not fit a 32-bit float. The lookups catch LookupFault at their top and answer "no value",
// which the live display reports as its own error. Internal to the performance folder.

#include <cmath>
#include <cstddef>
#include <limits>

namespace wakeline::performance_detail {

struct LookupFault {};

template <typename Array>
auto At(const Array& array, long index) -> decltype(array[0]) {
    if (index < 0 || static_cast<std::size_t>(index) >= array.size()) {
        throw LookupFault{};
    }
    return array[static_cast<std::size_t>(index)];
}

inline double Divide(double numerator, double denominator) {
    if (denominator == 0.0) {
        throw LookupFault{};
    }
    return numerator / denominator;
}

inline void RequireNumber(double value) {
    if (std::isnan(value)) {
        throw LookupFault{};
    }
}

inline float ToSingle(double value) {
    if (!(std::fabs(value) <= static_cast<double>(std::numeric_limits<float>::max()))) {
        throw LookupFault{};
    }
    return static_cast<float>(value);
}

}  // namespace wakeline::performance_detail
