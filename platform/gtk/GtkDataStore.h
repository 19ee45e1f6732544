#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/foundation/Environment.h"
#include "platform/foundation/FileManager.h"
#include "platform/gtk/GObject.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/CookieDates.h"
#include "platform/web/DataStore.h"

namespace velto {

/// The cookie jar of a web context, which it keeps alive while an answer is under way. Only a jar with dates
/// beside it tells when its cookies were set.
class GtkCookieStore final : public CookieStore {
 public:
  GtkCookieStore(GObjectPtr<WebKitWebContext> context, MainQueue& queue, std::unique_ptr<CookieDates> dates)
      : context_(std::move(context)), queue_(queue), dates_(std::move(dates)) {}

  void setCookie(const HttpCookie& cookie, std::function<void()> completion) override;
  void allCookies(std::function<void(std::vector<HttpCookie>)> completion) override;

 private:
  [[nodiscard]] WebKitCookieManager* manager() const {
    return webkit_web_context_get_cookie_manager(context_.get());
  }

  GObjectPtr<WebKitWebContext> context_;
  MainQueue& queue_;
  /// May be null.
  std::unique_ptr<CookieDates> dates_;
};

/// One web context of the engine: the storage, the cookies and the caches of the web views that are made in
/// it.
///
/// Downloads that a page or the context menu starts are called off before a file is made.
class GtkDataStore final : public DataStore {
 public:
  /// Keeps data in `WebKit` below the folder for what the application stores, and what may be lost in
  /// `WebKit` below its cache folder.
  static std::shared_ptr<GtkDataStore> makePersistent(const Environment& environment, FileManager& files,
                                                      MainQueue& queue, BackgroundQueue& background,
                                                      const std::vector<std::string>& ownSchemes);
  static std::shared_ptr<GtkDataStore> makeNonPersistent(MainQueue& queue,
                                                         const std::vector<std::string>& ownSchemes);

  GtkDataStore(GObjectPtr<WebKitWebContext> context, MainQueue& queue, std::unique_ptr<CookieDates> dates,
               const std::vector<std::string>& ownSchemes);

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
