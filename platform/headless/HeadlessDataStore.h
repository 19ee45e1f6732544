#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <vector>

#include "platform/headless/VirtualLoop.h"
#include "platform/web/DataStore.h"

namespace velto {

/// A cookie jar in memory. One cookie for each name, domain and path; one that has expired takes the old one
/// out. One that is set anew without a date keeps that of the old one.
class HeadlessCookieStore final : public CookieStore {
 public:
  explicit HeadlessCookieStore(VirtualLoop& loop) : loop_(loop) {}

  void setCookie(const HttpCookie& cookie, std::function<void()> completion) override;
  void allCookies(std::function<void(std::vector<HttpCookie>)> completion) override;

  /// Keeps what `setCookie` is asked until the test lets it happen, oldest first.
  void hold(bool held) { held_ = held; }
  /// Sets the oldest held cookie and queues its completion; false when there is none.
  bool completeOne();
  void completeAll();
  /// In the order in which they were first set.
  [[nodiscard]] const std::vector<HttpCookie>& cookies() const { return *cookies_; }

 private:
  struct Waiting {
    HttpCookie cookie;
    std::function<void()> completion;
  };
  void perform(Waiting waiting);
  void put(const HttpCookie& cookie);

  VirtualLoop& loop_;
  bool held_ = false;
  std::deque<Waiting> waiting_;
  /// Shared with answers on their way, which may outlive the jar.
  std::shared_ptr<std::vector<HttpCookie>> cookies_ = std::make_shared<std::vector<HttpCookie>>();
};

class HeadlessDataStore final : public DataStore {
 public:
  HeadlessDataStore(VirtualLoop& loop, bool persistent) : cookies_(loop), persistent_(persistent) {}
  [[nodiscard]] bool isPersistent() const override { return persistent_; }
  HeadlessCookieStore& cookieStore() override { return cookies_; }

 private:
  HeadlessCookieStore cookies_;
  bool persistent_;
};

}  // namespace velto
