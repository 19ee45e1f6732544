#include "platform/headless/HeadlessDataStore.h"

#include <algorithm>
#include <utility>

#include "platform/web/CookieRules.h"

namespace velto {

void HeadlessCookieStore::setCookie(const HttpCookie& cookie, std::function<void()> completion) {
  Waiting waiting{cookie, std::move(completion)};
  if (held_) {
    waiting_.push_back(std::move(waiting));
  } else {
    perform(std::move(waiting));
  }
}

bool HeadlessCookieStore::completeOne() {
  if (waiting_.empty()) return false;
  Waiting waiting = std::move(waiting_.front());
  waiting_.pop_front();
  perform(std::move(waiting));
  return true;
}

void HeadlessCookieStore::completeAll() {
  while (completeOne()) {
  }
}

void HeadlessCookieStore::perform(Waiting waiting) {
  put(waiting.cookie);
  if (waiting.completion) loop_.async(std::move(waiting.completion));
}

void HeadlessCookieStore::put(const HttpCookie& cookie) {
  if (!mayBeStored(cookie)) return;
  const auto same = std::find_if(cookies_->begin(), cookies_->end(), [&](const HttpCookie& other) {
    return other.name == cookie.name && other.domain == cookie.domain && other.path == cookie.path;
  });
  const bool expired = cookie.expires && *cookie.expires <= loop_.now();
  if (same == cookies_->end()) {
    if (!expired) cookies_->push_back(cookie);
  } else if (expired) {
    cookies_->erase(same);
  } else {
    const auto created = same->created;
    *same = cookie;
    if (!same->created) same->created = created;
  }
}

void HeadlessCookieStore::allCookies(std::function<void(std::vector<HttpCookie>)> completion) {
  loop_.async([cookies = cookies_, completion = std::move(completion)] { completion(*cookies); });
}

}  // namespace velto
