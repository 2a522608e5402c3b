#pragma once
// The alarm's chime: a short sound played from its start each time it is asked for, over the
// one before when that is still sounding.

#include "base/status.h"

namespace wakeline {

class ChimePlayer {
  public:
    virtual ~ChimePlayer() = default;
    // Rewinds the chime and plays it. A failure carries the sound server's own error text,
    // which the alarm window shows once.
    virtual Status PlayChime() = 0;
};

}  // namespace wakeline
