#include "platform/gtk/SchemeTask.h"

#include <memory>
#include <utility>

#include <libsoup/soup.h>

#include "platform/gtk/GtkWebView.h"
#include "platform/gtk/Guard.h"

namespace velto {

namespace {

void finishWithError(WebKitURISchemeRequest* request, WebKitNetworkError code, const std::string& reason) {
  GError* error = g_error_new_literal(WEBKIT_NETWORK_ERROR, code, reason.c_str());
  webkit_uri_scheme_request_finish_error(request, error);
  g_error_free(error);
}

/// The engine reads a few kilobytes at a time, in the loop that also draws the windows. Memory itself would
/// answer each read at once and leave no turn to the drawing; through a buffer a thread answers.
GObjectPtr<GInputStream> streamOf(std::string body) {
  constexpr gsize kBufferSize = 65536;
  auto* kept = new std::string(std::move(body));
  GBytes* bytes = g_bytes_new_with_free_func(
      kept->data(), kept->size(), [](gpointer text) { delete static_cast<std::string*>(text); }, kept);
  const auto memory = GObjectPtr<GInputStream>::adopt(g_memory_input_stream_new_from_bytes(bytes));
  g_bytes_unref(bytes);
  return GObjectPtr<GInputStream>::adopt(g_buffered_input_stream_new_sized(memory.get(), kBufferSize));
}

/// Absent when there is none.
std::optional<std::string> contentTypeIn(const std::map<std::string, std::string>& headers) {
  for (const auto& [name, value] : headers) {
    if (g_ascii_strcasecmp(name.c_str(), "Content-Type") == 0) return value;
  }
  return std::nullopt;
}

SoupMessageHeaders* soupHeadersFrom(const std::map<std::string, std::string>& headers) {
  SoupMessageHeaders* made = soup_message_headers_new(SOUP_MESSAGE_HEADERS_RESPONSE);
  for (const auto& [name, value] : headers) soup_message_headers_append(made, name.c_str(), value.c_str());
  return made;
}

void schemeRequested(WebKitURISchemeRequest* request, gpointer) {
  guarded([request] {
    GtkWebView* webView = GtkWebView::of(webkit_uri_scheme_request_get_web_view(request));
    if (webView == nullptr || !webView->startSchemeTask(request)) {
      finishWithError(request, WEBKIT_NETWORK_ERROR_FILE_DOES_NOT_EXIST, "Nothing answers at this address");
    }
  });
}

}  // namespace

SchemeTask::~SchemeTask() { fail("The request was not answered"); }

std::optional<Url> SchemeTask::url() const {
  if (!request_) return std::nullopt;
  return Url::parse(textOf(webkit_uri_scheme_request_get_uri(request_.get())));
}

bool SchemeTask::isStopped() const {
  return request_ && webkit_uri_scheme_request_get_web_view(request_.get()) == nullptr;
}

void SchemeTask::respond(int status, const std::map<std::string, std::string>& headers, std::string body) {
  if (!request_) return;
  const auto length = static_cast<gint64>(body.size());
  const auto stream = streamOf(std::move(body));
  const auto response =
      GObjectPtr<WebKitURISchemeResponse>::adopt(webkit_uri_scheme_response_new(stream.get(), length));
  webkit_uri_scheme_response_set_status(response.get(), static_cast<guint>(status), nullptr);
  if (const auto type = contentTypeIn(headers)) {
    webkit_uri_scheme_response_set_content_type(response.get(), type->c_str());
  }
  webkit_uri_scheme_response_set_http_headers(response.get(), soupHeadersFrom(headers));
  const auto request = std::exchange(request_, nullptr);
  webkit_uri_scheme_request_finish_with_response(request.get(), response.get());
}

void SchemeTask::fail(std::string_view reason) {
  if (!request_) return;
  const auto request = std::exchange(request_, nullptr);
  finishWithError(request.get(), WEBKIT_NETWORK_ERROR_FAILED, std::string(reason));
}

void registerOwnSchemes(WebKitWebContext* context, const std::vector<std::string>& schemes) {
  WebKitSecurityManager* security = webkit_web_context_get_security_manager(context);
  for (const std::string& scheme : schemes) {
    webkit_web_context_register_uri_scheme(context, scheme.c_str(), schemeRequested, nullptr, nullptr);
    webkit_security_manager_register_uri_scheme_as_secure(security, scheme.c_str());
    webkit_security_manager_register_uri_scheme_as_cors_enabled(security, scheme.c_str());
  }
}

}  // namespace velto
