#include "platform/gtk/WebErrors.h"

#include <string>
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
constexpr int kNotConnectedToInternet = -1009;
constexpr int kFileDoesNotExist = -1100;
constexpr int kFileIsDirectory = -1101;
constexpr int kNoPermissionsToReadFile = -1102;
constexpr int kSecureConnectionFailed = -1200;
constexpr int kServerCertificateUntrusted = -1202;
constexpr int kCannotUseRestrictedPort = 103;

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
    case G_IO_ERROR_CANCELLED:
      return WebError::kCancelled;
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

int codeInUrlDomain(const GError& error, bool readableUrl) {
  if (error.domain == G_IO_ERROR) return codeOfIoError(error.code);
  if (error.domain == G_RESOLVER_ERROR) return kCannotFindHost;
  if (error.domain == WEBKIT_NETWORK_ERROR) return codeOfNetworkError(error.code);
  if (error.domain == G_TLS_ERROR) {
    return error.code == G_TLS_ERROR_BAD_CERTIFICATE ? kServerCertificateUntrusted : kSecureConnectionFailed;
  }
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
  std::string description = repairUtf8(error.message == nullptr ? "" : error.message);
  if (description.empty()) description = "The page could not be loaded";
  // Both families number these alike.
  if (error.domain == WEBKIT_POLICY_ERROR && error.code != WEBKIT_POLICY_ERROR_CANNOT_SHOW_URI) {
    return {WebError::kWebKitDomain, error.code, description, std::move(url)};
  }
  int code = codeInUrlDomain(error, url.has_value());
  if (code == kUnknown && url && url->lowercasedScheme() == "file") code = kNoPermissionsToReadFile;
  return urlError(code, description, std::move(url));
}

WebError cancelledError(std::optional<Url> failingUrl) {
  return urlError(WebError::kCancelled, "The load was cancelled", std::move(failingUrl));
}

WebError timedOutError(std::optional<Url> failingUrl) {
  return urlError(kTimedOut, "The request timed out", std::move(failingUrl));
}

WebError restrictedPortError(std::optional<Url> failingUrl) {
  return {WebError::kWebKitDomain, kCannotUseRestrictedPort, "Not allowed to use restricted network port",
          std::move(failingUrl)};
}

}  // namespace velto
