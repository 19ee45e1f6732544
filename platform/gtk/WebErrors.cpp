#include "platform/gtk/WebErrors.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include <gio/gio.h>
#include <webkit2/webkit2.h>

#include "platform/foundation/Text.h"

namespace velto {

namespace {

constexpr int kUnknown = -1;
constexpr int kBadUrl = -1000;
constexpr int kTimedOut = -1001;
constexpr int kUnsupportedUrl = -1002;
constexpr int kCannotFindHost = -1003;
constexpr int kCannotConnectToHost = -1004;
constexpr int kNetworkConnectionLost = -1005;
constexpr int kTooManyRedirects = -1007;
constexpr int kNotConnectedToInternet = -1009;
constexpr int kFileDoesNotExist = -1100;
constexpr int kFileIsDirectory = -1101;
constexpr int kNoPermissionsToReadFile = -1102;
constexpr int kSecureConnectionFailed = -1200;
constexpr int kServerCertificateUntrusted = -1202;
constexpr int kCannotUseRestrictedPort = 103;
/// Those of the web's fetch standard, in order.
constexpr std::array kRestrictedPorts = {
    0,    1,    7,    9,    11,   13,   15,   17,   19,   20,   21,   22,   23,   25,   37,   42,   43,
    53,   69,   77,   79,   87,   95,   101,  102,  103,  104,  109,  110,  111,  113,  115,  117,  119,
    123,  135,  137,  139,  143,  161,  179,  389,  427,  465,  512,  513,  514,  515,  526,  530,  531,
    532,  540,  548,  554,  556,  563,  587,  601,  636,  989,  990,  993,  995,  1719, 1720, 1723, 2049,
    3659, 4045, 4190, 5060, 5061, 6000, 6566, 6665, 6666, 6667, 6668, 6669, 6679, 6697, 10080};

/// Sentences end alike, whoever wrote them.
std::string sentence(std::string text) {
  if (text.empty()) text = "The page could not be loaded";
  if (!std::string_view(".!?").contains(text.back())) text += '.';
  return text;
}

int codeOfIoError(int code) {
  switch (code) {
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_HOST_UNREACHABLE:
      return kCannotConnectToHost;
    case G_IO_ERROR_HOST_NOT_FOUND:
      return kCannotFindHost;
    case G_IO_ERROR_TIMED_OUT:
      return kTimedOut;
    case G_IO_ERROR_NETWORK_UNREACHABLE:
      return kNotConnectedToInternet;
    case G_IO_ERROR_CONNECTION_CLOSED:
    case G_IO_ERROR_PARTIAL_INPUT:
    case G_IO_ERROR_NOT_CONNECTED:
    // The connection's, not the load's, which nobody has called off.
    case G_IO_ERROR_CANCELLED:
      return kNetworkConnectionLost;
    case G_IO_ERROR_NOT_FOUND:
      return kFileDoesNotExist;
    case G_IO_ERROR_IS_DIRECTORY:
      return kFileIsDirectory;
    case G_IO_ERROR_PERMISSION_DENIED:
      return kNoPermissionsToReadFile;
    case G_IO_ERROR_NOT_SUPPORTED:
      return kUnsupportedUrl;
    case G_IO_ERROR_INVALID_ARGUMENT:
      return kBadUrl;
    default:
      return kUnknown;
  }
}

int codeOfNetworkError(int code) {
  switch (code) {
    case WEBKIT_NETWORK_ERROR_CANCELLED:
      return WebError::kCancelled;
    case WEBKIT_NETWORK_ERROR_UNKNOWN_PROTOCOL:
      return kUnsupportedUrl;
    case WEBKIT_NETWORK_ERROR_FILE_DOES_NOT_EXIST:
      return kFileDoesNotExist;
    default:
      return kUnknown;
  }
}

/// The engine's errors about redirections have no domain, and one code. Their texts are not translated.
int codeOfNamelessError(const GError& error) {
  const std::string_view text = error.message == nullptr ? "" : error.message;
  if (text.starts_with("Load cannot follow more than")) return kTooManyRedirects;
  if (text.starts_with("Redirection to URL with a scheme")) return kUnsupportedUrl;
  return kUnknown;
}

int codeInUrlDomain(const GError& error, bool readableUrl) {
  if (error.domain == G_IO_ERROR) return codeOfIoError(error.code);
  if (error.domain == G_RESOLVER_ERROR) return kCannotFindHost;
  if (error.domain == WEBKIT_NETWORK_ERROR) return codeOfNetworkError(error.code);
  if (error.domain == G_TLS_ERROR) {
    return error.code == G_TLS_ERROR_BAD_CERTIFICATE ? kServerCertificateUntrusted : kSecureConnectionFailed;
  }
  if (error.domain == 0 || *g_quark_to_string(error.domain) == '\0') return codeOfNamelessError(error);
  if (error.domain == WEBKIT_POLICY_ERROR) return readableUrl ? kUnsupportedUrl : kBadUrl;
  return kUnknown;
}

WebError urlError(int code, std::string description, std::optional<Url> failingUrl) {
  return {WebError::kUrlDomain, code, std::move(description), std::move(failingUrl)};
}

}  // namespace

WebError webErrorFrom(const GError& error, const char* failingUri) {
  const std::string uri = failingUri == nullptr ? "" : failingUri;
  std::optional<Url> url = Url::parse(uri);
  std::string description = sentence(repairUtf8(error.message == nullptr ? "" : error.message));
  // The engine turns down a certificate and cancels the connection; whichever is noticed first is told.
  const bool isCancelled = g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
  if (isCancelled && url && url->lowercasedScheme() == "https") {
    return urlError(kSecureConnectionFailed, "A secure connection could not be made.", std::move(url));
  }
  const bool isPortError = error.domain == WEBKIT_POLICY_ERROR && error.code == kCannotUseRestrictedPort;
  // The engine says so of all places that servers may not send a load to.
  if (isPortError && !(url && isRestrictedPort(*url))) return refusedRedirectError(std::move(url));
  // Both families number these alike.
  if (error.domain == WEBKIT_POLICY_ERROR && error.code != WEBKIT_POLICY_ERROR_CANNOT_SHOW_URI) {
    return {WebError::kWebKitDomain, error.code, description, std::move(url)};
  }
  int code = codeInUrlDomain(error, url.has_value());
  if (code == kUnknown && url && url->lowercasedScheme() == "file") code = kNoPermissionsToReadFile;
  return urlError(code, description, std::move(url));
}

WebError cancelledError(std::optional<Url> failingUrl) {
  return urlError(WebError::kCancelled, "The load was cancelled.", std::move(failingUrl));
}

WebError timedOutError(std::optional<Url> failingUrl) {
  return urlError(kTimedOut, "The request timed out.", std::move(failingUrl));
}

WebError restrictedPortError(std::optional<Url> failingUrl) {
  return {WebError::kWebKitDomain, kCannotUseRestrictedPort, "Not allowed to use restricted network port.",
          std::move(failingUrl)};
}

WebError refusedRedirectError(std::optional<Url> failingUrl) {
  return urlError(kUnsupportedUrl, "The server sent the page to an address that is not allowed.",
                  std::move(failingUrl));
}

bool isRestrictedPort(const Url& url) {
  const auto port = url.port();
  return port && std::binary_search(kRestrictedPorts.begin(), kRestrictedPorts.end(), *port);
}

}  // namespace velto
