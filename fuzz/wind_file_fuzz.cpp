// Decodes arbitrary bytes as the wind history file "wakeline_wc.bin" and applies start-up's
// rule to them. Beyond the sanitizers' checks it insists that the count stays within the
// buffer, that a file found usable encodes back to 18020 bytes that decode to the same count
// without complaint, and that the start-up rule's outcome agrees with what it kept.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "require.h"
#include "wind/wind_file.h"

using wakeline::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace wakeline;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const WindDecode decoded = DecodeWindData(bytes);
    Require(decoded.data.Count >= 0 && decoded.data.Count <= kWindCapacity);
    if (decoded.problem.empty()) {
        for (std::int16_t k = 0; k < decoded.data.Count; ++k) {
            Require(std::isfinite(decoded.data.Obs[std::size_t(k)].Time));
        }
        const std::string encoded = EncodeWindData(decoded.data);
        Require(encoded.size() == kWindFileSize);
        const WindDecode again = DecodeWindData(encoded);
        Require(again.problem.empty() && again.data.Count == decoded.data.Count);
    }

    const WindHistoryLoad load = LoadWindHistory(bytes, 46000.5);
    Require(load.history.Count >= 0 && load.history.Count <= kWindCapacity);
    if (load.outcome != WindLoadOutcome::Continued) {
        Require(load.history.Count == 0);
    }
    Require((load.outcome == WindLoadOutcome::Damaged) == !load.problem.empty());
    return 0;
}
