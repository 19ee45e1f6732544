#include "platform/gtk/PageSettings.h"

#include "platform/gtk/GObject.h"

namespace velto {

namespace {

gboolean toGboolean(bool value) { return value ? TRUE : FALSE; }

}  // namespace

void applySettings(WebKitWebView* view, const WebViewConfiguration& configuration) {
  WebKitSettings* settings = webkit_web_view_get_settings(view);
  webkit_settings_set_javascript_can_open_windows_automatically(
      settings, toGboolean(configuration.javaScriptCanOpenWindowsAutomatically));
  webkit_settings_set_media_playback_requires_user_gesture(
      settings, toGboolean(configuration.mediaPlaybackRequiresUserAction));
  webkit_settings_set_enable_developer_extras(settings, toGboolean(configuration.inspectable));
  webkit_settings_set_enable_back_forward_navigation_gestures(
      settings, toGboolean(configuration.allowsBackForwardGestures));
  if (!configuration.userAgent.empty()) {
    webkit_settings_set_user_agent(settings, configuration.userAgent.c_str());
  }
}

void allowNavigation(WebKitPolicyDecision* decision, const WebViewConfiguration& configuration) {
  const WebKitAutoplayPolicy autoplay =
      configuration.mediaPlaybackRequiresUserAction ? WEBKIT_AUTOPLAY_DENY : WEBKIT_AUTOPLAY_ALLOW;
  const auto policies = GObjectPtr<WebKitWebsitePolicies>::adopt(
      webkit_website_policies_new_with_policies("autoplay", autoplay, nullptr));
  webkit_policy_decision_use_with_policies(decision, policies.get());
}

}  // namespace velto
