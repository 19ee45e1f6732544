#include "app/pages/FailurePage.h"

#include "app/pages/PageTemplate.h"
#include "platform/foundation/Text.h"

namespace velto {

namespace {

constexpr int kFrameLoadInterrupted = 102;

struct FailureText {
  std::string heading;
  std::string body;
};

std::string quoted(std::string_view text) { return "“" + std::string(text) + "”"; }

std::string displayText(const std::optional<Url>& url) {
  constexpr std::string_view kPlainWeb = "http://";
  if (!url) return "that address";
  const std::string& text = url->absoluteString();
  return text.starts_with(kPlainWeb) ? text.substr(kPlainWeb.size()) : text;
}

std::size_t lengthOfFirstCharacter(std::string_view utf8) {
  constexpr unsigned kContinuationMask = 0xC0;
  constexpr unsigned kContinuation = 0x80;
  std::size_t length = utf8.empty() ? 0 : 1;
  while (length < utf8.size() &&
         (static_cast<unsigned char>(utf8[length]) & kContinuationMask) == kContinuation) {
    ++length;
  }
  return length;
}

/// What follows "because".
std::string reasonFor(const WebError& error) {
  const std::string repaired = repairUtf8(error.localizedDescription);
  const std::string_view text = trimWhitespaceAndNewlines(repaired);
  if (text.empty()) return "of an unknown error.";
  const std::size_t first = lengthOfFirstCharacter(text);
  return lowercased(text.substr(0, first)) + std::string(text.substr(first));
}

FailureText otherFailure(const std::string& cannotOpen, const WebError& error) {
  return {"Velto can’t open the page", cannotOpen + reasonFor(error)};
}

FailureText failureText(const std::optional<Url>& url, const WebError& error) {
  const std::string page = quoted(displayText(url));
  const auto host = url ? url->host() : std::nullopt;
  const std::string server = quoted(host.value_or("the server"));
  const std::string cannotOpen = "Velto can’t open the page " + page + " because ";
  if (error.domain != WebError::kUrlDomain) return otherFailure(cannotOpen, error);
  switch (error.code) {
    case -1005:
    case -1004:
      return {"Velto can’t connect to the server",
              cannotOpen + "Velto can’t connect to the server " + server + "."};
    case -1003:
      return {"Velto can’t find the server", cannotOpen + "Velto can’t find the server " + server + "."};
    case -1001:
      return {"The server stopped responding", cannotOpen + "the server " + server + " stopped responding."};
    case -1204:
    case -1203:
    case -1202:
    case -1201:
    case -1200:
      return {"Velto can’t establish a secure connection",
              cannotOpen + "Velto can’t verify the identity of the server " + server + "."};
    case -1009:
      return {"You are not connected to the Internet",
              cannotOpen + "your computer is not connected to the Internet."};
    case -1102:
    case -1100:
      return {"Velto can’t open that file", "Velto runs in the macOS sandbox and can’t read " + page +
                                                ". Serve the folder over http and open the port instead."};
    case -1002:
    case -1000:
      return {"Velto can’t open the page", page + " isn’t an address Velto can open."};
    default:
      return otherFailure(cannotOpen, error);
  }
}

}  // namespace

bool isFailureWorthShowing(const WebError& error) {
  if (error.domain == WebError::kUrlDomain) return error.code != WebError::kCancelled;
  return error.domain != WebError::kWebKitDomain || error.code != kFrameLoadInterrupted;
}

bool isConnectionFailure(const WebError& error) {
  if (error.domain != WebError::kUrlDomain) return false;
  return error.code == -1005 || error.code == -1004 || error.code == -1003 || error.code == -1001;
}

bool canBeRetried(const Url& url) {
  const std::string scheme = url.lowercasedScheme();
  return scheme != "javascript" && scheme != "data" && scheme != "blob";
}

std::string failurePage(std::string_view pageTemplate, const std::optional<Url>& url, const WebError& error) {
  const FailureText text = failureText(url, error);
  const std::string retry =
      url && canBeRetried(*url)
          ? "<p class=\"retry\"><a href=\"" + escapeHtml(url->absoluteString()) + "\">Try Again</a></p>"
          : "";
  return fillPageTemplate(
      pageTemplate,
      {{"heading", escapeHtml(text.heading)}, {"body", escapeHtml(text.body)}, {"retry", retry}});
}

std::string crashPage(std::string_view pageTemplate, const std::optional<Url>& url) {
  return fillPageTemplate(pageTemplate, {{"url", escapeHtml(url ? url->absoluteString() : "about:blank")}});
}

}  // namespace velto
