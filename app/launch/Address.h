#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/Url.h"

namespace velto {

/// Which port of this machine serves a ".local" host. The keys are lower-case host names, the ports 1 to
/// 65535.
using LocalDomainPorts = std::map<std::string, std::uint16_t, std::less<>>;

/// The preference that holds the dictionary for `readLocalDomainPorts`.
inline constexpr std::string_view kLocalDomainPortsKey = "localDomainPorts";

/// Reads host names with their ports. A port may be written as a number or as a text; an entry that is no
/// port is left out. Of names that differ in case only, the last in byte order counts.
LocalDomainPorts readLocalDomainPorts(const PropertyList::Dictionary& preference);

/// A ".local" host that has a port becomes "localhost" with that port; all the rest of the URL stays. Any
/// other URL comes back as it is.
Url rewriteLocalDomain(const Url& url, const LocalDomainPorts& ports);

/// The page that a person means by a typed address: a port of this machine, a host with or without port and
/// path, or a URL. Absent when it is none of these; the result always has a host.
std::optional<Url> normalizedAddressURL(std::string_view text, const LocalDomainPorts& ports);

}  // namespace velto
