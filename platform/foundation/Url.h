#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velto {

/// One `name=value` of a query, decoded. A name without "=" has no value; bad UTF-8 makes the value absent.
struct QueryItem {
  std::string name;
  std::optional<std::string> value;
  bool operator==(const QueryItem&) const = default;
};

/// An absolute URL (it always has a scheme) after RFC 3986, as an immutable value.
///
/// What people type and pages contain is wider than the grammar: characters that the grammar does not allow
/// are percent-encoded where they stand, hosts in other scripts go through UTS 46, and existing escapes stay.
/// ASCII blanks and control characters, bytes that are not UTF-8, an impossible host or port and more than 2
/// MiB make a text no URL. Nothing is normalised: case, default ports and dot segments stay as they were
/// given, and two URLs are equal when their texts are. The text of every URL is ASCII and reads back as the
/// same URL.
class Url {
 public:
  /// The URL that the text spells, or nothing.
  static std::optional<Url> parse(std::string_view text);
  /// The URL of a file; `path` is absolute and taken byte by byte, so it need not be UTF-8.
  static Url forFile(std::string_view path);

  [[nodiscard]] const std::string& absoluteString() const { return text_; }
  /// As given, never empty.
  [[nodiscard]] std::string scheme() const;
  [[nodiscard]] std::string lowercasedScheme() const;
  /// Without the brackets of an IP literal; absent when it is missing or empty. As given (`xn--` stays).
  [[nodiscard]] std::optional<std::string> host() const;
  [[nodiscard]] std::optional<std::string> lowercasedHost() const;
  /// Absent when missing, empty or too large for 64 bits.
  [[nodiscard]] std::optional<std::int64_t> port() const;
  /// Decoded, or as it stands when that gives no UTF-8; empty for "http://@host/"; absent without an "@".
  [[nodiscard]] std::optional<std::string> user() const;
  /// Still percent-encoded, with its trailing slash; may be empty.
  [[nodiscard]] std::string encodedPath() const;
  /// The file system path of a `file` URL, decoded to bytes, without trailing slashes. Absent for other
  /// schemes, for a path that is not absolute and for one whose escapes spell a NUL or a slash, which no file
  /// name can hold.
  [[nodiscard]] std::optional<std::string> filePath() const;
  /// Still percent-encoded; absent without a "?".
  [[nodiscard]] std::optional<std::string> query() const;
  /// Still percent-encoded; absent without a "#".
  [[nodiscard]] std::optional<std::string> fragment() const;
  /// The query split at "&" and each piece at its first "=", decoded; "+" stays a plus.
  [[nodiscard]] std::vector<QueryItem> queryItems() const;
  /// The value of the first item with exactly this name; absent when there is none or it has no value.
  [[nodiscard]] std::optional<std::string> queryValue(std::string_view name) const;

  [[nodiscard]] Url withoutFragment() const;
  /// Everything else stays. Absent when the host or the port cannot stand in a URL, or when the path cannot
  /// follow a host ("mailto:a@b"). IPv6 addresses come with their brackets. No port removes the one that was
  /// there.
  [[nodiscard]] std::optional<Url> withHostAndPort(std::string_view host,
                                                   std::optional<std::int64_t> port) const;
  [[nodiscard]] std::optional<Url> withHost(std::string_view host) const;

  /// The same text.
  bool operator==(const Url&) const = default;

 private:
  /// Where a component stands in the text.
  struct Span {
    std::uint32_t start = 0;
    std::uint32_t length = 0;
    bool present = false;
    bool operator==(const Span&) const = default;
  };
  struct Parts {
    Span scheme, user, host, port, path, query, fragment;
    bool operator==(const Parts&) const = default;
  };

  Url(std::string text, const Parts& parts) : text_(std::move(text)), parts_(parts) {}
  static std::optional<Url> fromEncoded(std::string text);
  [[nodiscard]] std::string_view piece(Span span) const;
  [[nodiscard]] std::optional<std::string> pieceIfPresent(Span span) const;
  [[nodiscard]] std::optional<Url> replacingAuthority(std::string_view host, std::string_view portText) const;

  std::string text_;
  Parts parts_;
};

/// `name=value` joined with "&"; everything that may not stand raw in a query is encoded, "=" and "&" too. An
/// item without a value is just its name.
std::string encodeQuery(const std::vector<QueryItem>& items);

/// Absent for a bad escape or when the result is not UTF-8.
std::optional<std::string> percentDecode(std::string_view text);

}  // namespace velto
