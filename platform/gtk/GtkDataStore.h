#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/foundation/Environment.h"
#include "platform/gtk/GObject.h"
#include "platform/web/DataStore.h"

namespace velto {

/// The cookie jar of a web context, which it keeps alive while an answer is under way.
class GtkCookieStore final : public CookieStore {
 public:
  explicit GtkCookieStore(GObjectPtr<WebKitWebContext> context) : context_(std::move(context)) {}

  void setCookie(const HttpCookie& cookie, std::function<void()> completion) override;
  void allCookies(std::function<void(std::vector<HttpCookie>)> completion) override;

 private:
  [[nodiscard]] WebKitCookieManager* manager() const {
    return webkit_web_context_get_cookie_manager(context_.get());
  }

  GObjectPtr<WebKitWebContext> context_;
};

/// One web context of the engine: the storage, the cookies and the caches of the web views that are made in
/// it.
///
/// Downloads that a page or the context menu starts are called off before a file is made.
class GtkDataStore final : public DataStore {
 public:
  /// Keeps data in `WebKit` below the folder for what the application stores, and what may be lost in
  /// `WebKit` below its cache folder.
  static std::shared_ptr<GtkDataStore> makePersistent(const Environment& environment,
                                                      const std::vector<std::string>& ownSchemes);
  static std::shared_ptr<GtkDataStore> makeNonPersistent(const std::vector<std::string>& ownSchemes);

  GtkDataStore(GObjectPtr<WebKitWebContext> context, const std::vector<std::string>& ownSchemes);

  [[nodiscard]] bool isPersistent() const override;
  CookieStore& cookieStore() override { return cookies_; }

  /// A new engine view in this store, with no parent; its process starts with its first work.
  [[nodiscard]] GObjectPtr<WebKitWebView> makeEngineView() const;

 private:
  GObjectPtr<WebKitWebContext> context_;
  GtkCookieStore cookies_;
  SignalConnection downloadStarted_;
};

}  // namespace velto
