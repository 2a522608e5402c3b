#include "wind/wind_file.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

#include "base/elapsed_seconds.h"

namespace wakeline {
namespace {

constexpr std::size_t kSlotSize = 18;
constexpr double kOneHourSeconds = 3600.0;

template <typename Unsigned>
void PutLittleEndian(std::string& out, std::size_t at, Unsigned value) {
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
        out[at + i] = static_cast<char>(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

// Bytes beyond the end of `bytes` read as 0.
template <typename Unsigned>
Unsigned GetLittleEndian(std::string_view bytes, std::size_t at) {
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
        const std::size_t index = at + i;
        const auto byte =
            index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : std::uint8_t{0};
        value |= static_cast<Unsigned>(static_cast<Unsigned>(byte) << (8 * i));
    }
    return value;
}

}  // namespace

std::string WindHistoryPath(const std::string& trackDir) {
    return trackDir + "/" + std::string(kWindFileName);
}

std::string EncodeWindData(const WindData& data) {
    std::string out(kWindFileSize, '\0');
    PutLittleEndian(out, 0, std::bit_cast<std::uint16_t>(data.Count));
    for (std::size_t k = 0; k < data.Obs.size(); ++k) {
        const WindObservation& obs = data.Obs[k];
        const std::size_t at = 2 + kSlotSize * k;
        PutLittleEndian(out, at, std::bit_cast<std::uint32_t>(obs.Speed));
        PutLittleEndian(out, at + 4, std::bit_cast<std::uint32_t>(obs.Direction));
        PutLittleEndian(out, at + 8, std::bit_cast<std::uint64_t>(obs.Time));
        PutLittleEndian(out, at + 16, std::bit_cast<std::uint16_t>(obs.Samples));
    }
    return out;
}

WindDecode DecodeWindData(std::string_view bytes) {
    WindDecode result;
    WindData& data = result.data;
    for (std::size_t k = 0; k < data.Obs.size(); ++k) {
        WindObservation& obs = data.Obs[k];
        const std::size_t at = 2 + kSlotSize * k;
        obs.Speed = std::bit_cast<float>(GetLittleEndian<std::uint32_t>(bytes, at));
        obs.Direction = std::bit_cast<float>(GetLittleEndian<std::uint32_t>(bytes, at + 4));
        obs.Time = std::bit_cast<double>(GetLittleEndian<std::uint64_t>(bytes, at + 8));
        obs.Samples = std::bit_cast<std::int16_t>(GetLittleEndian<std::uint16_t>(bytes, at + 16));
    }
    const auto count = std::bit_cast<std::int16_t>(GetLittleEndian<std::uint16_t>(bytes, 0));
    if (count < 0 || count > kWindCapacity) {
        result.problem = "wind history count " + std::to_string(count) + " outside 0..1001";
        return result;
    }
    // A value that is no number would stay in the history for good: a NaN time is never
    // more than an hour old, and a NaN speed spoils every average and graph it enters.
    for (std::int16_t k = 0; k < count; ++k) {
        const WindObservation& obs = data.Obs[k];
        const char* invalid = !std::isfinite(obs.Time)        ? "time"
                              : !std::isfinite(obs.Speed)     ? "speed"
                              : !std::isfinite(obs.Direction) ? "direction"
                                                              : nullptr;
        if (invalid != nullptr) {
            result.problem =
                "wind history observation " + std::to_string(k) + " has no valid " + invalid;
            return result;
        }
    }
    data.Count = count;
    return result;
}

WindHistoryLoad LoadWindHistory(const std::optional<std::string>& fileBytes, DateTime now) {
    WindHistoryLoad load;
    if (!fileBytes) {
        load.outcome = WindLoadOutcome::Missing;
        return load;
    }
    WindDecode decoded = DecodeWindData(*fileBytes);
    load.history = decoded.data;
    if (!decoded.problem.empty()) {
        load.outcome = WindLoadOutcome::Damaged;
        load.problem = std::move(decoded.problem);
        return load;
    }
    WindData& history = load.history;
    if (history.Count > 0 &&
        ElapsedSeconds(history.Obs[history.Count - 1].Time, now) > kOneHourSeconds) {
        ClearWindData(history);
        load.outcome = WindLoadOutcome::TooOld;
        return load;
    }
    load.outcome = WindLoadOutcome::Continued;
    return load;
}

WindHistoryLoad LoadWindHistoryFile(const FileSystem& files, const std::string& path,
                                    DateTime now) {
    if (!files.FileExists(path)) {
        return LoadWindHistory(std::nullopt, now);
    }
    // The record has a fixed size: whatever a damaged or foreign file holds beyond it is
    // never read, however large the file is.
    Result<std::string> bytes = files.ReadFileStart(path, kWindFileSize);
    if (!bytes.Ok()) {
        // There is a history, but not for this run: said like a damaged one, with the reason.
        WindHistoryLoad load;
        load.outcome = WindLoadOutcome::Damaged;
        load.problem = bytes.GetStatus().Message();
        return load;
    }
    return LoadWindHistory(std::move(bytes).Optional(), now);
}

Status SaveWindHistory(FileSystem& files, const std::string& path, const WindData& data) {
    return files.ReplaceFile(path, EncodeWindData(data));
}

}  // namespace wakeline
