#include "base/elapsed_seconds.h"

#include <cmath>

namespace wakeline {

double ElapsedSeconds(DateTime from, DateTime to) {
    return std::round((to - from) * kSecondsPerDay * 1000.0) / 1000.0;
}

}  // namespace wakeline
