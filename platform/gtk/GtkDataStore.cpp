#include "platform/gtk/GtkDataStore.h"

#include <algorithm>
#include <utility>

#include <libsoup/soup.h>

#include "platform/gtk/Guard.h"
#include "platform/gtk/SchemeTask.h"
#include "platform/web/CookieRules.h"

namespace velto {

namespace {

struct SoupCookieFree {
  void operator()(SoupCookie* cookie) const { soup_cookie_free(cookie); }
};
using SoupCookiePtr = std::unique_ptr<SoupCookie, SoupCookieFree>;

struct DateTimeUnref {
  void operator()(GDateTime* time) const { g_date_time_unref(time); }
};
using DateTimePtr = std::unique_ptr<GDateTime, DateTimeUnref>;

/// What an asynchronous call needs when it answers.
template <class Completion>
struct Pending {
  GObjectPtr<WebKitWebContext> context;
  Completion completion;
};

SoupSameSitePolicy samePolicyOf(const std::optional<HttpCookie::SameSite>& sameSite) {
  if (!sameSite) return SOUP_SAME_SITE_POLICY_NONE;
  return *sameSite == HttpCookie::SameSite::strict ? SOUP_SAME_SITE_POLICY_STRICT : SOUP_SAME_SITE_POLICY_LAX;
}

std::optional<HttpCookie::SameSite> sameSiteOf(SoupSameSitePolicy policy) {
  if (policy == SOUP_SAME_SITE_POLICY_STRICT) return HttpCookie::SameSite::strict;
  if (policy == SOUP_SAME_SITE_POLICY_LAX) return HttpCookie::SameSite::lax;
  return std::nullopt;
}

/// The engine keeps 32 bits of it in the file: what ends later would seem to have ended.
constexpr double kLastExpiry = 2147483647.0;

void setExpiry(SoupCookie* cookie, WallTime expires) {
  const double seconds = std::clamp(expires.secondsSince1970, 0.0, kLastExpiry);
  const DateTimePtr time(g_date_time_new_from_unix_utc(static_cast<gint64>(seconds)));
  soup_cookie_set_expires(cookie, time.get());
}

SoupCookiePtr soupCookieFrom(const HttpCookie& cookie) {
  constexpr int kSessionOnly = -1;
  SoupCookiePtr made(soup_cookie_new(cookie.name.c_str(), cookie.value.c_str(), cookie.domain.c_str(),
                                     cookie.path.c_str(), kSessionOnly));
  if (cookie.expires) setExpiry(made.get(), *cookie.expires);
  soup_cookie_set_secure(made.get(), cookie.secure ? TRUE : FALSE);
  soup_cookie_set_http_only(made.get(), cookie.httpOnly ? TRUE : FALSE);
  soup_cookie_set_same_site_policy(made.get(), samePolicyOf(cookie.sameSite));
  return made;
}

HttpCookie cookieFrom(SoupCookie* cookie) {
  HttpCookie made;
  made.name = textOf(soup_cookie_get_name(cookie));
  made.value = textOf(soup_cookie_get_value(cookie));
  made.domain = textOf(soup_cookie_get_domain(cookie));
  made.path = textOf(soup_cookie_get_path(cookie));
  if (GDateTime* expires = soup_cookie_get_expires(cookie)) {
    made.expires = WallTime{static_cast<double>(g_date_time_to_unix(expires))};
  }
  made.secure = soup_cookie_get_secure(cookie) != FALSE;
  made.httpOnly = soup_cookie_get_http_only(cookie) != FALSE;
  made.sameSite = sameSiteOf(soup_cookie_get_same_site_policy(cookie));
  return made;
}

std::vector<HttpCookie> cookiesFrom(GList* list) {
  std::vector<HttpCookie> cookies;
  for (GList* node = list; node != nullptr; node = node->next) {
    const SoupCookiePtr cookie(static_cast<SoupCookie*>(node->data));
    cookies.push_back(cookieFrom(cookie.get()));
  }
  g_list_free(list);
  return cookies;
}

using CookieSet = Pending<std::function<void()>>;
using CookiesRead = Pending<std::function<void(std::vector<HttpCookie>)>>;

void cookieSet(GObject* manager, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<CookieSet> pending(static_cast<CookieSet*>(data));
  GErrorPtr error;
  webkit_cookie_manager_add_cookie_finish(WEBKIT_COOKIE_MANAGER(manager), result, error.out());
  guarded(pending->completion);
}

void cookiesRead(GObject* manager, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<CookiesRead> pending(static_cast<CookiesRead*>(data));
  GErrorPtr error;
  GList* list =
      webkit_cookie_manager_get_all_cookies_finish(WEBKIT_COOKIE_MANAGER(manager), result, error.out());
  guarded([&] { pending->completion(cookiesFrom(list)); });
}

void cancelDownload(WebKitWebContext*, WebKitDownload* download, gpointer) {
  webkit_download_cancel(download);
}

}  // namespace

void GtkCookieStore::setCookie(const HttpCookie& cookie, std::function<void()> completion) {
  if (!mayBeStored(cookie)) {
    if (completion) queue_.async(std::move(completion));
    return;
  }
  // The date comes after the cookie, so that nobody takes it for that of one that is gone.
  const auto dated = [dates = WeakPtr<CookieDates>(dates_.get()), cookie, completion] {
    if (dates) dates->remember(cookie);
    if (completion) completion();
  };
  auto pending = std::make_unique<CookieSet>(CookieSet{context_, dated});
  const SoupCookiePtr made = soupCookieFrom(cookie);
  webkit_cookie_manager_add_cookie(manager(), made.get(), nullptr, cookieSet, pending.release());
}

void GtkCookieStore::allCookies(std::function<void(std::vector<HttpCookie>)> completion) {
  const auto dated = [dates = WeakPtr<CookieDates>(dates_.get()),
                      completion = std::move(completion)](std::vector<HttpCookie> cookies) {
    if (dates) dates->addTo(cookies);
    completion(std::move(cookies));
  };
  auto pending = std::make_unique<CookiesRead>(CookiesRead{context_, dated});
  webkit_cookie_manager_get_all_cookies(manager(), nullptr, cookiesRead, pending.release());
}

GtkDataStore::GtkDataStore(GObjectPtr<WebKitWebContext> context, MainQueue& queue,
                           std::unique_ptr<CookieDates> dates, const std::vector<std::string>& ownSchemes)
    : context_(std::move(context)),
      cookies_(context_, queue, std::move(dates)),
      downloadStarted_(context_.get(), "download-started", G_CALLBACK(cancelDownload), nullptr) {
  registerOwnSchemes(context_.get(), ownSchemes);
}

std::shared_ptr<GtkDataStore> GtkDataStore::makePersistent(const Environment& environment, FileManager& files,
                                                           MainQueue& queue, BackgroundQueue& background,
                                                           const std::vector<std::string>& ownSchemes) {
  const auto data = environment.applicationSupportDirectory / "WebKit";
  const auto cache = environment.cacheDirectory / "WebKit";
  for (const auto& directory : {data, cache}) g_mkdir_with_parents(directory.c_str(), 0700);
  const auto manager = GObjectPtr<WebKitWebsiteDataManager>::adopt(webkit_website_data_manager_new(
      "base-data-directory", data.c_str(), "base-cache-directory", cache.c_str(), nullptr));
  auto context =
      GObjectPtr<WebKitWebContext>::adopt(webkit_web_context_new_with_website_data_manager(manager.get()));
  webkit_cookie_manager_set_persistent_storage(webkit_web_context_get_cookie_manager(context.get()),
                                               (data / "cookies.sqlite").c_str(),
                                               WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
  auto dates = std::make_unique<CookieDates>(files, queue, background, data / "cookie-dates.json");
  return std::make_shared<GtkDataStore>(std::move(context), queue, std::move(dates), ownSchemes);
}

std::shared_ptr<GtkDataStore> GtkDataStore::makeNonPersistent(MainQueue& queue,
                                                              const std::vector<std::string>& ownSchemes) {
  return std::make_shared<GtkDataStore>(
      GObjectPtr<WebKitWebContext>::adopt(webkit_web_context_new_ephemeral()), queue, nullptr, ownSchemes);
}

bool GtkDataStore::isPersistent() const { return webkit_web_context_is_ephemeral(context_.get()) == FALSE; }

GObjectPtr<WebKitWebView> GtkDataStore::makeEngineView() const {
  return GObjectPtr<WebKitWebView>::sink(WEBKIT_WEB_VIEW(webkit_web_view_new_with_context(context_.get())));
}

}  // namespace velto
