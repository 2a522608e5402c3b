#pragma once
// The chart-plotter link's endpoint as the user gives it: "HOST:PORT", with an IPv6 address
// in brackets ("[::1]:20175").

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace wakeline {

inline constexpr std::string_view kDefaultLinkEndpoint = "127.0.0.1:20175";

struct LinkEndpoint {
    std::string host;
    std::uint16_t port = 0;
    bool operator==(const LinkEndpoint&) const = default;
};

// Empty when the text is not HOST:PORT with a non-empty host and a decimal port 1 to 65535.
std::optional<LinkEndpoint> ParseLinkEndpoint(std::string_view text);

}  // namespace wakeline
