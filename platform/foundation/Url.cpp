#include "platform/foundation/Url.h"

#include <algorithm>
#include <array>
#include <boost/url/grammar/hexdig_chars.hpp>
#include <boost/url/grammar/lut_chars.hpp>
#include <boost/url/parse.hpp>
#include <boost/url/rfc/pchars.hpp>
#include <boost/url/rfc/sub_delim_chars.hpp>
#include <boost/url/rfc/unreserved_chars.hpp>
#include <boost/url/url_view.hpp>
#include <memory>

#include <unicode/uidna.h>

#include "platform/foundation/Text.h"

namespace velto {
namespace {

namespace urls = boost::urls;
using CharacterSet = urls::grammar::lut_chars;

constexpr std::size_t kMaximumLength = std::size_t{2} * 1024 * 1024;
/// More than any host has; the conversion of hosts in other scripts takes the square of their length.
constexpr std::size_t kMaximumForeignHostLength = 1024;

constexpr CharacterSet kHostCharacters = urls::unreserved_chars + urls::sub_delim_chars;
constexpr CharacterSet kUserCharacters = kHostCharacters + ':';
constexpr CharacterSet kPathCharacters = urls::pchars + '/';
constexpr CharacterSet kQueryCharacters = kPathCharacters + '?';
constexpr CharacterSet kQueryItemCharacters = kQueryCharacters - CharacterSet("=&");
constexpr CharacterSet kFilePathCharacters = kPathCharacters - ';';

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

bool isBlankOrControl(char c) { return static_cast<unsigned char>(c) <= 0x20 || c == 0x7f; }

/// Whether an escape, "%" and two hexadecimal digits, begins at the position.
bool isEscape(std::string_view text, std::size_t at) {
  return at + 2 < text.size() && text[at] == '%' && urls::grammar::hexdig_value(text[at + 1]) >= 0 &&
         urls::grammar::hexdig_value(text[at + 2]) >= 0;
}

void appendEscape(std::string& out, char c) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  out += '%';
  out += kDigits[byte >> 4U];
  out += kDigits[byte & 0xfU];
}

void appendEncoded(std::string& out, std::string_view text, const CharacterSet& allowed) {
  for (const char c : text) {
    if (allowed(c)) {
      out += c;
    } else {
      appendEscape(out, c);
    }
  }
}

void appendKeepingEscapes(std::string& out, std::string_view text, const CharacterSet& allowed) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (allowed(text[i]) || isEscape(text, i)) {
      out += text[i];
    } else {
      appendEscape(out, text[i]);
    }
  }
}

/// The ASCII form of a host that has characters outside ASCII.
std::optional<std::string> asciiHost(std::string_view host) {
  // An escape beside foreign letters would hide characters from the conversion.
  if (host.size() > kMaximumForeignHostLength || host.find('%') != std::string_view::npos)
    return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const std::uint32_t options = UIDNA_NONTRANSITIONAL_TO_ASCII | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ;
  const std::unique_ptr<UIDNA, decltype(&uidna_close)> idna(uidna_openUTS46(options, &status), &uidna_close);
  if (U_FAILURE(status)) return std::nullopt;
  UIDNAInfo info = UIDNA_INFO_INITIALIZER;
  std::array<char, 4 * kMaximumForeignHostLength> buffer{};
  const std::int32_t length =
      uidna_nameToASCII_UTF8(idna.get(), host.data(), static_cast<std::int32_t>(host.size()), buffer.data(),
                             static_cast<std::int32_t>(buffer.size()), &info, &status);
  // Hyphens at the edges of a label are bad style, yet such hosts exist.
  constexpr std::uint32_t kTolerated =
      UIDNA_ERROR_LEADING_HYPHEN | UIDNA_ERROR_TRAILING_HYPHEN | UIDNA_ERROR_HYPHEN_3_4;
  if (U_FAILURE(status) || (info.errors & ~kTolerated) != 0) return std::nullopt;
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

/// The host as it stands in a URL. Whether brackets hold an address is left for the strict parser to judge.
std::optional<std::string> encodedHost(std::string_view host) {
  if (host.size() > 2 && host.starts_with('[') && host.ends_with(']')) {
    const std::string_view address = host.substr(1, host.size() - 2);
    const bool plain = std::all_of(address.begin(), address.end(), kUserCharacters);
    return plain ? std::optional(std::string(host)) : std::nullopt;
  }
  std::string text(host);
  if (!std::all_of(host.begin(), host.end(), isAscii)) {
    std::optional<std::string> ascii = asciiHost(host);
    if (!ascii) return std::nullopt;
    text = std::move(*ascii);
  }
  // Also after the conversion: it turns the full-width forms of "/", "@" and others into the real ones.
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!kHostCharacters(text[i]) && !isEscape(text, i)) return std::nullopt;
  }
  return text;
}

bool appendAuthority(std::string& out, std::string_view authority) {
  const std::size_t at = authority.rfind('@');
  if (at != std::string_view::npos) {
    appendKeepingEscapes(out, authority.substr(0, at), kUserCharacters);
    out += '@';
    authority.remove_prefix(at + 1);
  }
  const bool bracketed = authority.starts_with('[');
  const std::size_t end = bracketed ? authority.find(']') : authority.find(':');
  const std::size_t hostLength = end == std::string_view::npos ? authority.size() : end + (bracketed ? 1 : 0);
  const std::optional<std::string> host = encodedHost(authority.substr(0, hostLength));
  if (!host) return false;
  out += *host;
  out += authority.substr(hostLength);
  return true;
}

/// The text with everything encoded that can be; whether the rest is a URL is left for the strict parser to
/// judge.
std::optional<std::string> encodeWhereNeeded(std::string_view text) {
  const std::size_t colon = text.find_first_of(":/?#[]@");
  if (colon == std::string_view::npos || text[colon] != ':') return std::nullopt;
  std::string out(text.substr(0, colon + 1));
  out.reserve(text.size());
  text.remove_prefix(colon + 1);
  if (text.starts_with("//")) {
    out += "//";
    text.remove_prefix(2);
    const std::size_t length = std::min(text.find_first_of("/?#"), text.size());
    if (!appendAuthority(out, text.substr(0, length))) return std::nullopt;
    text.remove_prefix(length);
  }
  const std::size_t hash = std::min(text.find('#'), text.size());
  const std::size_t mark = std::min(text.find('?'), hash);
  appendKeepingEscapes(out, text.substr(0, mark), kPathCharacters);
  if (mark < hash) {
    out += '?';
    appendKeepingEscapes(out, text.substr(mark + 1, hash - mark - 1), kQueryCharacters);
  }
  if (hash < text.size()) {
    out += '#';
    appendKeepingEscapes(out, text.substr(hash + 1), kQueryCharacters);
  }
  return out;
}

std::optional<std::string> decodeBytes(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      out += text[i];
      continue;
    }
    if (!isEscape(text, i)) return std::nullopt;
    const int high = urls::grammar::hexdig_value(text[i + 1]);
    const int low = urls::grammar::hexdig_value(text[i + 2]);
    out += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return out;
}

}  // namespace

std::optional<Url> Url::parse(std::string_view text) {
  if (text.size() > kMaximumLength || std::any_of(text.begin(), text.end(), isBlankOrControl) ||
      !isValidUtf8(text)) {
    return std::nullopt;
  }
  std::optional<std::string> encoded = encodeWhereNeeded(text);
  if (!encoded || encoded->size() > kMaximumLength) return std::nullopt;
  return fromEncoded(std::move(*encoded));
}

std::optional<Url> Url::fromEncoded(std::string text) {
  const auto parsed = urls::parse_uri(text);
  if (parsed.has_error()) return std::nullopt;
  const urls::url_view& view = parsed.value();
  const std::string_view path = view.encoded_path();
  // The parser takes what follows a bad port for the path.
  if (view.has_authority() && !path.empty() && path.front() != '/') return std::nullopt;
  const auto span = [&](std::string_view piece, bool present) {
    if (!present) return Span{};
    return Span{static_cast<std::uint32_t>(piece.data() - text.data()),
                static_cast<std::uint32_t>(piece.size()), true};
  };
  Parts parts;
  parts.scheme = span(view.scheme(), true);
  parts.user = span(view.encoded_user(), view.has_userinfo());
  parts.host = span(view.encoded_host(), view.has_authority());
  parts.port = span(view.port(), view.has_port());
  parts.path = span(path, true);
  parts.query = span(view.encoded_query(), view.has_query());
  parts.fragment = span(view.encoded_fragment(), view.has_fragment());
  return Url(std::move(text), parts);
}

Url Url::forFile(std::string_view path) {
  std::string text = "file://";
  appendEncoded(text, path, kFilePathCharacters);
  return *fromEncoded(std::move(text));
}

std::string_view Url::piece(Span span) const {
  return std::string_view(text_).substr(span.start, span.length);
}

std::optional<std::string> Url::pieceIfPresent(Span span) const {
  if (!span.present) return std::nullopt;
  return std::string(piece(span));
}

std::string Url::scheme() const { return std::string(piece(parts_.scheme)); }

std::string Url::lowercasedScheme() const { return lowercased(piece(parts_.scheme)); }

std::optional<std::string> Url::host() const {
  std::string_view host = piece(parts_.host);
  if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
  if (host.empty()) return std::nullopt;
  return std::string(host);
}

std::optional<std::string> Url::lowercasedHost() const {
  const std::optional<std::string> given = host();
  if (!given) return std::nullopt;
  return lowercased(*given);
}

std::optional<std::int64_t> Url::port() const { return parseInteger(piece(parts_.port)); }

std::optional<std::string> Url::user() const {
  if (!parts_.user.present) return std::nullopt;
  return percentDecode(piece(parts_.user)).value_or(std::string(piece(parts_.user)));
}

std::string Url::encodedPath() const { return std::string(piece(parts_.path)); }

std::optional<std::string> Url::filePath() const {
  const std::string_view encoded = piece(parts_.path);
  if (lowercasedScheme() != "file" || !encoded.starts_with('/')) return std::nullopt;
  std::optional<std::string> path = decodeBytes(encoded);
  if (!path || path->find('\0') != std::string::npos) return std::nullopt;
  if (std::count(path->begin(), path->end(), '/') != std::count(encoded.begin(), encoded.end(), '/')) {
    return std::nullopt;
  }
  path->erase(std::max<std::size_t>(path->find_last_not_of('/') + 1, 1));
  return path;
}

std::optional<std::string> Url::query() const { return pieceIfPresent(parts_.query); }

std::optional<std::string> Url::fragment() const { return pieceIfPresent(parts_.fragment); }

std::vector<QueryItem> Url::queryItems() const {
  std::vector<QueryItem> items;
  std::string_view rest = piece(parts_.query);
  if (rest.empty()) return items;
  for (bool more = true; more;) {
    const std::size_t end = rest.find('&');
    const std::string_view item = rest.substr(0, end);
    const std::size_t equals = item.find('=');
    QueryItem& added = items.emplace_back();
    added.name = percentDecode(item.substr(0, equals)).value_or("");
    if (equals != std::string_view::npos) added.value = percentDecode(item.substr(equals + 1));
    more = end != std::string_view::npos;
    if (more) rest.remove_prefix(end + 1);
  }
  return items;
}

std::optional<std::string> Url::queryValue(std::string_view name) const {
  for (QueryItem& item : queryItems()) {
    if (item.name == name) return std::move(item.value);
  }
  return std::nullopt;
}

Url Url::withoutFragment() const {
  if (!parts_.fragment.present) return *this;
  Parts parts = parts_;
  parts.fragment = {};
  return {text_.substr(0, parts_.fragment.start - 1), parts};
}

std::optional<Url> Url::replacingAuthority(std::string_view host, std::string_view portText) const {
  const std::optional<std::string> newHost = encodedHost(host);
  const std::string_view path = piece(parts_.path);
  if (!newHost || !(path.empty() || path.front() == '/')) return std::nullopt;
  std::string text = parts_.host.present ? text_.substr(0, parts_.host.start) : scheme() + "://";
  text += *newHost;
  text += portText;
  text += std::string_view(text_).substr(parts_.path.start);
  return parse(text);
}

std::optional<Url> Url::withHostAndPort(std::string_view host, std::optional<std::int64_t> port) const {
  return replacingAuthority(host, port ? ":" + std::to_string(*port) : "");
}

std::optional<Url> Url::withHost(std::string_view host) const {
  return replacingAuthority(host, parts_.port.present ? ":" + std::string(piece(parts_.port)) : "");
}

std::string encodeQuery(const std::vector<QueryItem>& items) {
  std::string out;
  for (const QueryItem& item : items) {
    if (&item != &items.front()) out += '&';
    appendEncoded(out, item.name, kQueryItemCharacters);
    if (!item.value) continue;
    out += '=';
    appendEncoded(out, *item.value, kQueryItemCharacters);
  }
  return out;
}

std::optional<std::string> percentDecode(std::string_view text) {
  std::optional<std::string> decoded = decodeBytes(text);
  if (!decoded || !isValidUtf8(*decoded)) return std::nullopt;
  return decoded;
}

}  // namespace velto
