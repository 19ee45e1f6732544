#include "platform/gtk/PopupProbe.h"

#include <utility>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

GObjectPtr<WebKitWebView> makeRelatedView(WebKitWebView* opener) {
  const auto noChannels = GObjectPtr<WebKitUserContentManager>::adopt(webkit_user_content_manager_new());
  return GObjectPtr<WebKitWebView>::sink(WEBKIT_WEB_VIEW(
      g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings",
                   webkit_web_view_get_settings(opener), "user-content-manager", noChannels.get(), nullptr)));
}

gboolean loadNothing(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType, gpointer) {
  webkit_policy_decision_ignore(decision);
  return TRUE;
}

}  // namespace

PopupProbe::PopupProbe(WebKitWebView* opener, Found found)
    : view_(makeRelatedView(opener)),
      found_(std::move(found)),
      policy_(view_.get(), "decide-policy", G_CALLBACK(loadNothing), nullptr),
      // Before anything else that comes from the page, which goes on to give the window its real frame.
      nextTurn_(g_idle_add_full(G_PRIORITY_HIGH, nextTurn, this, nullptr)) {}

PopupProbe::~PopupProbe() {
  if (nextTurn_ != 0) g_source_remove(nextTurn_);
  gtk_widget_destroy(widget());
}

gboolean PopupProbe::nextTurn(gpointer data) {
  guarded([data] {
    auto& self = *static_cast<PopupProbe*>(data);
    self.nextTurn_ = 0;
    GdkRectangle wanted{};
    webkit_window_properties_get_geometry(webkit_web_view_get_window_properties(self.view_.get()), &wanted);
    const auto found = std::move(self.found_);
    found(self, {wanted.width, wanted.height});
  });
  return G_SOURCE_REMOVE;
}

}  // namespace velto
