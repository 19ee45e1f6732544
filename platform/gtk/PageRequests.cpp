#include "platform/gtk/PageRequests.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/Text.h"
#include "platform/gtk/Guard.h"
#include "platform/gtk/ScriptDialog.h"

namespace velto {

namespace {

/// Windows whose size is found out, in a second. A page that opens more has no say in the size of the others.
constexpr int kMostProbes = 10;

PageRequests& requestsOf(gpointer self) { return *static_cast<PageRequests*>(self); }

/// A page's text in a length that a person could read.
std::string readable(const char* text) {
  constexpr std::size_t kLongest = 10'000;
  std::string_view bytes = text == nullptr ? "" : text;
  if (bytes.size() <= kLongest) return repairUtf8(bytes);
  std::size_t end = kLongest;
  const auto continues = [&](std::size_t at) {
    return (static_cast<unsigned char>(bytes[at]) & 0xc0) == 0x80;
  };
  while (end > kLongest - 3 && continues(end)) --end;
  return repairUtf8(bytes.substr(0, end)) + "…";
}

/// The page that the action leads to. Absent when it is none, or one that only its opener has.
std::optional<Url> pageOf(WebKitNavigationAction* action) {
  auto url = Url::parse(textOf(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action))));
  if (!url) return std::nullopt;
  const std::string scheme = url->lowercasedScheme();
  if (scheme == "javascript" || scheme == "data" || scheme == "blob") return std::nullopt;
  return url;
}

std::optional<double> wanted(int points) {
  return points > 0 ? std::make_optional<double>(points) : std::nullopt;
}

OpenPanel panelFrom(WebKitFileChooserRequest* request) {
  OpenPanel panel;
  panel.allowsMultipleSelection = webkit_file_chooser_request_get_select_multiple(request) != FALSE;
  const gchar* const* types = webkit_file_chooser_request_get_mime_types(request);
  for (; types != nullptr && *types != nullptr; ++types) panel.mimeTypes.push_back(repairUtf8(*types));
  return panel;
}

using ChosenFiles = std::optional<std::vector<std::filesystem::path>>;

void giveFiles(WebKitFileChooserRequest* request, const ChosenFiles& chosen) {
  if (!chosen || chosen->empty()) return webkit_file_chooser_request_cancel(request);
  std::vector<const gchar*> names;
  for (const auto& path : *chosen) names.push_back(path.c_str());
  names.push_back(nullptr);
  webkit_file_chooser_request_select_files(request, names.data());
}

}  // namespace

PageRequests::PageRequests(MainQueue& queue, WebView& webView, WebKitWebView* view)
    : queue_(queue), webView_(webView), view_(view) {
  const auto connect = [this](const char* signal, GCallback callback) {
    connections_.emplace_back(view_, signal, callback, this);
  };
  connect("script-dialog", G_CALLBACK(+[](WebKitWebView*, WebKitScriptDialog* dialog, gpointer self) {
            bool handled = false;
            guarded([&] { handled = requestsOf(self).runScriptDialog(dialog); });
            return handled ? TRUE : FALSE;
          }));
  connect("create", G_CALLBACK(+[](WebKitWebView*, WebKitNavigationAction* action, gpointer self) {
            GtkWidget* opened = nullptr;
            guarded([&] { opened = requestsOf(self).openWindow(action); });
            return opened;
          }));
  connect("run-file-chooser",
          G_CALLBACK(+[](WebKitWebView*, WebKitFileChooserRequest* request, gpointer self) {
            guarded([&] { requestsOf(self).chooseFiles(request); });
            return TRUE;
          }));
  refuseTheRest();
}

void PageRequests::disconnect() {
  invalidateWeakReferences();
  connections_.clear();
  probes_.clear();
  nextSecond_.cancel();
}

void PageRequests::refuseTheRest() {
  const auto refuse = [this](const char* signal, GCallback callback) {
    connections_.emplace_back(view_, signal, callback, nullptr);
  };
  refuse("permission-request",
         G_CALLBACK(+[](WebKitWebView*, WebKitPermissionRequest* request, gpointer) -> gboolean {
           webkit_permission_request_deny(request);
           return TRUE;
         }));
  refuse("show-notification",
         G_CALLBACK(+[](WebKitWebView*, WebKitNotification*, gpointer) -> gboolean { return TRUE; }));
  refuse("print",
         G_CALLBACK(+[](WebKitWebView*, WebKitPrintOperation*, gpointer) -> gboolean { return TRUE; }));
}

bool PageRequests::runScriptDialog(WebKitScriptDialog* dialog) {
  switch (webkit_script_dialog_get_dialog_type(dialog)) {
    case WEBKIT_SCRIPT_DIALOG_ALERT: {
      const auto answer = scriptDialogAnswer<bool>(dialog, queue_, true, [](auto*, bool) {});
      if (UIDelegate* person = webView_.uiDelegate()) {
        person->runJavaScriptAlertPanel(webView_, readable(webkit_script_dialog_get_message(dialog)),
                                        [answer] { answer(true); });
      }
      return true;
    }
    case WEBKIT_SCRIPT_DIALOG_CONFIRM:
      confirm(dialog);
      return true;
    case WEBKIT_SCRIPT_DIALOG_PROMPT:
      prompt(dialog);
      return true;
    default:
      return false;
  }
}

void PageRequests::confirm(WebKitScriptDialog* dialog) {
  const auto give = [](WebKitScriptDialog* asked, bool confirmed) {
    webkit_script_dialog_confirm_set_confirmed(asked, confirmed ? TRUE : FALSE);
  };
  const auto answer = scriptDialogAnswer<bool>(dialog, queue_, false, give);
  if (UIDelegate* person = webView_.uiDelegate()) {
    person->runJavaScriptConfirmPanel(webView_, readable(webkit_script_dialog_get_message(dialog)), answer);
  }
}

void PageRequests::prompt(WebKitScriptDialog* dialog) {
  using Text = std::optional<std::string>;
  const auto give = [](WebKitScriptDialog* asked, const Text& text) {
    // The default is what the engine answers otherwise.
    webkit_script_dialog_prompt_set_text(asked, text ? text->c_str() : nullptr);
  };
  const auto answer = scriptDialogAnswer<Text>(dialog, queue_, std::nullopt, give);
  if (UIDelegate* person = webView_.uiDelegate()) {
    person->runJavaScriptTextInputPanel(webView_, readable(webkit_script_dialog_get_message(dialog)),
                                        readable(webkit_script_dialog_prompt_get_default_text(dialog)),
                                        answer);
  }
}

GtkWidget* PageRequests::openWindow(WebKitNavigationAction* action) {
  PageWindowRequest request{.url = pageOf(action),
                            .width = {},
                            .height = {},
                            .isUserGesture = webkit_navigation_action_is_user_gesture(action) != FALSE};
  if (!mayProbe()) {
    queue_.async([self = WeakPtr<PageRequests>(*this), request = std::move(request)] {
      if (self) self->tellOfWindow(request);
    });
    return nullptr;
  }
  probes_.push_back(std::make_unique<PopupProbe>(
      view_, [this, request](const PopupProbe& done, PopupProbe::WantedSize size) {
        PageWindowRequest sized = request;
        sized.width = wanted(size.width);
        sized.height = wanted(size.height);
        std::erase_if(probes_, [&](const auto& probe) { return probe.get() == &done; });
        tellOfWindow(sized);
      }));
  return probes_.back()->widget();
}

bool PageRequests::mayProbe() {
  if (probesMade_ == 0) nextSecond_ = queue_.after(1, [this] { probesMade_ = 0; });
  if (probesMade_ == kMostProbes) return false;
  ++probesMade_;
  return true;
}

void PageRequests::tellOfWindow(const PageWindowRequest& request) {
  if (UIDelegate* person = webView_.uiDelegate()) person->createWebView(webView_, request);
}

void PageRequests::chooseFiles(WebKitFileChooserRequest* request) {
  const auto give = [&queue = queue_, kept = GObjectPtr<WebKitFileChooserRequest>::retain(request)](
                        const ChosenFiles& chosen) {
    queue.async([kept, chosen] { giveFiles(kept.get(), chosen); });
  };
  const auto pending = std::make_shared<PendingAnswer<ChosenFiles>>(std::nullopt, give);
  if (UIDelegate* person = webView_.uiDelegate()) {
    person->runOpenPanel(webView_, panelFrom(request),
                         [pending](ChosenFiles chosen) { pending->answer(std::move(chosen)); });
  }
}

}  // namespace velto
