#include "livedata/link_endpoint.h"

namespace wakeline {

std::optional<LinkEndpoint> ParseLinkEndpoint(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view host = text.substr(0, colon);
    const std::string_view port = text.substr(colon + 1);
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
        host = host.substr(1, host.size() - 2);
    } else if (host.find(':') != std::string_view::npos) {
        return std::nullopt;  // an IPv6 address without brackets is ambiguous
    }
    if (host.empty() || port.empty() || port.size() > 5) {
        return std::nullopt;
    }
    unsigned value = 0;
    for (const char c : port) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        value = value * 10 + static_cast<unsigned>(c - '0');
    }
    if (value < 1 || value > 65535) {
        return std::nullopt;
    }
    return LinkEndpoint{std::string(host), static_cast<std::uint16_t>(value)};
}

}  // namespace wakeline
