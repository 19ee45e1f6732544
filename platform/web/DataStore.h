#pragma once

#include <functional>
#include <vector>

#include "platform/foundation/HttpCookie.h"

namespace velto {

/// The cookies of a data store. Answers come on the main queue. Main thread only.
class CookieStore {
 public:
  virtual ~CookieStore() = default;
  /// The completion comes whether or not the cookie could be set.
  virtual void setCookie(const HttpCookie& cookie, std::function<void()> completion) = 0;
  virtual void allCookies(std::function<void(std::vector<HttpCookie>)> completion) = 0;
};

/// Where web views keep cookies, storage and caches. Shared by the web views that were made with it.
class DataStore {
 public:
  virtual ~DataStore() = default;
  /// A store that is not persistent leaves nothing on disk and is gone with its last web view.
  [[nodiscard]] virtual bool isPersistent() const = 0;
  virtual CookieStore& cookieStore() = 0;
};

}  // namespace velto
