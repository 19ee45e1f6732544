#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "handoff/OwnedDescriptor.h"
#include "handoff/RuntimeDirectory.h"
#include "handoff/SocketAddress.h"
#include "tests/support/TemporaryFolder.h"

namespace velto::testing {

using Arguments = std::vector<std::string>;

/// With a folder of its own in the place of XDG_RUNTIME_DIR.
class HandoffTest : public ::testing::Test {
 protected:
  [[nodiscard]] const std::filesystem::path& root() const { return folder_.path; }
  [[nodiscard]] std::filesystem::path socketPath() const { return root() / "velto" / kSocketName; }
  [[nodiscard]] RuntimeDirectory directory() const {
    return RuntimeDirectory::open(root().c_str(), ::geteuid());
  }

 private:
  const test::TemporaryFolder folder_;
};

/// Receives messages on one thread for a test that waits on another.
class Mailbox {
 public:
  void put(Arguments message) {
    const std::scoped_lock lock(mutex_);
    messages_.push_back(std::move(message));
    changed_.notify_all();
  }
  /// All messages, as soon as there are `count`, or what there is after ten seconds.
  std::vector<Arguments> await(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [&] { return messages_.size() >= count; });
    return messages_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Arguments> messages_;
};

/// A connection that keeps to no protocol.
class RawPeer {
 public:
  explicit RawPeer(const RuntimeDirectory& directory) : RawPeer() { connect(directory); }
  RawPeer() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {}

  void connect(const RuntimeDirectory& directory) const {
    const SocketAddress address(directory);
    EXPECT_EQ(::connect(socket_.get(), address.get(), SocketAddress::size()), 0);
  }
  void send(std::string_view bytes) const {
    [[maybe_unused]] const auto sent = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
  }
  /// Everything until the other side ends.
  [[nodiscard]] std::string answer() const {
    std::string bytes;
    for (char byte = 0; ::recv(socket_.get(), &byte, 1, 0) == 1;) bytes.push_back(byte);
    return bytes;
  }
  void close() { socket_.close(); }

 private:
  OwnedDescriptor socket_;
};

}  // namespace velto::testing
