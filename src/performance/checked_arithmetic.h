#pragma once
// Arithmetic of the table lookups and the polar file that stops at the first fault instead of
// clamping: an index outside an array, a division by zero, a value that is not a number, or a
// result that does not fit a 32-bit float. A fault throws LookupFault deep inside a
// computation; Checked runs the computation and turns the fault into "no value" at its top,
// which the caller reports as its own error. The exception never leaves the performance
// folder. Internal to it.

#include <cmath>
#include <cstddef>
#include <optional>
#include <type_traits>

#include "base/single_precision.h"

namespace wakeline::performance_detail {

struct LookupFault {};

// array[index], or a fault when the index lies outside the array.
template <typename Array>
auto At(Array& array, long index) -> decltype(array[0]) {
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

// The value stored into a float (wakeline::ToSingle's rule), or a fault.
inline float Single(double value) {
    const std::optional<float> single = ToSingle(value);
    if (!single) {
        throw LookupFault{};
    }
    return *single;
}

// compute(), or nothing when it met a fault. Only LookupFault is caught: anything else is a
// programming error and goes on.
template <typename Compute>
auto Checked(Compute&& compute) -> std::optional<std::invoke_result_t<Compute>> {
    try {
        return compute();
    } catch (const LookupFault&) {
        return std::nullopt;
    }
}

}  // namespace wakeline::performance_detail
