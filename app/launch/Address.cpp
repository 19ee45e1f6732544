#include "app/launch/Address.h"

#include "platform/foundation/Text.h"

namespace velto {
namespace {

std::optional<std::uint16_t> portFrom(std::optional<std::int64_t> number) {
  if (!number || *number < 1 || *number > 65535) return std::nullopt;
  return static_cast<std::uint16_t>(*number);
}

std::optional<std::uint16_t> portFrom(const PropertyList& value) {
  if (const auto* text = value.as<std::string>()) return portFrom(parseInteger(trimWhitespace(*text)));
  return portFrom(value.asInteger());
}

std::string_view firstPiece(std::string_view text, char separator) {
  const auto pieces = splitOmittingEmpty(text, separator);
  return pieces.empty() ? text : pieces.front();
}

/// Whether the address, which has no scheme, names a host that is expected to speak plain HTTP. An IPv6
/// address is not among them: its colons read as the start of a port.
bool namesPlainHttpHost(std::string_view address) {
  const std::string text = lowercased(address);
  const std::string_view host = firstPiece(firstPiece(text, '/'), ':');
  return host == "localhost" || host == "127.0.0.1" || host == "0.0.0.0" || host.ends_with(".local");
}

/// The trimmed address spelled out with its scheme; empty when it has a blank where none can be.
std::string withScheme(std::string_view address) {
  if (address.find("://") != std::string_view::npos) return std::string(address);
  if (address.find(' ') != std::string_view::npos) return {};
  if (const auto port = portFrom(parseInteger(address))) return "http://localhost:" + std::to_string(*port);
  return (namesPlainHttpHost(address) ? "http://" : "https://") + std::string(address);
}

}  // namespace

LocalDomainPorts readLocalDomainPorts(const PropertyList::Dictionary& preference) {
  LocalDomainPorts ports;
  for (const auto& [host, value] : preference) {
    if (const auto port = portFrom(value)) ports.insert_or_assign(lowercased(host), *port);
  }
  return ports;
}

Url rewriteLocalDomain(const Url& url, const LocalDomainPorts& ports) {
  const auto host = url.lowercasedHost();
  if (!host || !host->ends_with(".local")) return url;
  const auto entry = ports.find(*host);
  if (entry == ports.end()) return url;
  return url.withHostAndPort("localhost", entry->second).value_or(url);
}

std::optional<Url> normalizedAddressURL(std::string_view text, const LocalDomainPorts& ports) {
  const std::string_view address = trimWhitespaceAndNewlines(text);
  if (address.empty()) return std::nullopt;
  const auto url = Url::parse(withScheme(address));
  if (!url || !url->host()) return std::nullopt;
  return rewriteLocalDomain(*url, ports);
}

}  // namespace velto
