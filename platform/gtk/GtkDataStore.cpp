#include "platform/gtk/GtkDataStore.h"

#include <algorithm>
#include <utility>

#include <libsoup/soup.h>

#include "platform/gtk/Guard.h"
#include "platform/gtk/SchemeTask.h"

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

/// The last second that the engine's calendar knows, 9999-12-31T23:59:59Z.
constexpr double kLastExpiry = 253402300799.0;

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
  if (pending->completion) guarded(pending->completion);
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
  auto pending = std::make_unique<CookieSet>(CookieSet{context_, std::move(completion)});
  const SoupCookiePtr made = soupCookieFrom(cookie);
  webkit_cookie_manager_add_cookie(manager(), made.get(), nullptr, cookieSet, pending.release());
}

void GtkCookieStore::allCookies(std::function<void(std::vector<HttpCookie>)> completion) {
  auto pending = std::make_unique<CookiesRead>(CookiesRead{context_, std::move(completion)});
  webkit_cookie_manager_get_all_cookies(manager(), nullptr, cookiesRead, pending.release());
}

GtkDataStore::GtkDataStore(GObjectPtr<WebKitWebContext> context, const std::vector<std::string>& ownSchemes)
    : context_(std::move(context)),
      cookies_(context_),
      downloadStarted_(context_.get(), "download-started", G_CALLBACK(cancelDownload), nullptr) {
  registerOwnSchemes(context_.get(), ownSchemes);
}

std::shared_ptr<GtkDataStore> GtkDataStore::makePersistent(const Environment& environment,
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
  return std::make_shared<GtkDataStore>(std::move(context), ownSchemes);
}

std::shared_ptr<GtkDataStore> GtkDataStore::makeNonPersistent(const std::vector<std::string>& ownSchemes) {
  return std::make_shared<GtkDataStore>(
      GObjectPtr<WebKitWebContext>::adopt(webkit_web_context_new_ephemeral()), ownSchemes);
}

bool GtkDataStore::isPersistent() const { return webkit_web_context_is_ephemeral(context_.get()) == FALSE; }

GObjectPtr<WebKitWebView> GtkDataStore::makeEngineView() const {
  return GObjectPtr<WebKitWebView>::sink(WEBKIT_WEB_VIEW(webkit_web_view_new_with_context(context_.get())));
}

}  // namespace velto
