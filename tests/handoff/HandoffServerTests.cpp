#include <atomic>
#include <ctime>
#include <fstream>
#include <optional>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "handoff/Claim.h"
#include "handoff/Frame.h"
#include "handoff/HandoffClient.h"
#include "handoff/HandoffError.h"
#include "handoff/HandoffServer.h"
#include "tests/handoff/HandoffTesting.h"

namespace velto {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::Arguments;
using testing::RawPeer;

const std::string kAccepted(1, kAnswerAccepted);
const std::string kRefused(1, kAnswerRefused);

HandoffLimits withPatience(std::chrono::milliseconds patience) {
  HandoffLimits limits;
  limits.patience = patience;
  return limits;
}

class HandoffServerTest : public testing::HandoffTest {
 protected:
  std::unique_ptr<HandoffServer> listen(const HandoffLimits& limits = withPatience(1min)) {
    const ElectionLock lock(directory());
    return std::make_unique<HandoffServer>(directory(), lock, limits);
  }
  std::unique_ptr<HandoffServer> serve(const HandoffLimits& limits = withPatience(1min)) {
    auto server = listen(limits);
    server->serve([this](Arguments arguments) { mailbox_.put(std::move(arguments)); });
    return server;
  }
  bool deliver(const Arguments& arguments) const {
    const auto client = HandoffClient::connect(directory());
    return client && client->deliver(encodeFrame(arguments));
  }

  testing::Mailbox mailbox_;
};

TEST_F(HandoffServerTest, messagesArriveInOrderAndAreAnswered) {
  const auto server = serve();
  const std::vector<Arguments> sent{{"velto://a", "velto://b"}, {}, {std::string(kPayloadLimit - 1, 'x')}};
  for (const Arguments& arguments : sent) EXPECT_TRUE(deliver(arguments));
  EXPECT_EQ(mailbox_.await(sent.size()), sent);
}

TEST_F(HandoffServerTest, theSocketIsPrivate) {
  const auto server = listen();
  struct stat status {};
  ASSERT_EQ(::lstat(socketPath().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, S_IFSOCK | 0600U);
}

TEST_F(HandoffServerTest, aPathTooLongForASocketAddressWorks) {
  const std::string deep = root() / std::string(200, 'd');
  std::filesystem::create_directory(deep);
  const auto longDirectory = [&] { return RuntimeDirectory::open(deep.c_str(), ::geteuid()); };
  const Claim claim = claimOrHandOver(longDirectory(), {});
  std::get<std::unique_ptr<HandoffServer>>(claim)->serve(
      [this](Arguments arguments) { mailbox_.put(std::move(arguments)); });
  const auto client = HandoffClient::connect(longDirectory());
  ASSERT_TRUE(client);
  EXPECT_TRUE(client->deliver(encodeFrame({"far"})));
}

TEST_F(HandoffServerTest, aMessageFromBeforeServingIsKept) {
  const auto server = listen();
  RawPeer early(directory());
  early.send(encodeFrame({"early"}));
  server->serve([this](Arguments arguments) { mailbox_.put(std::move(arguments)); });
  EXPECT_EQ(early.answer(), kAccepted);
  EXPECT_EQ(mailbox_.await(1), std::vector<Arguments>{{"early"}});
}

TEST_F(HandoffServerTest, theAnswerComesAfterTheCallback) {
  std::atomic<bool> returned = false;
  const auto server = listen();
  server->serve([&](const Arguments&) {
    std::this_thread::sleep_for(20ms);
    returned = true;
  });
  EXPECT_TRUE(deliver({"x"}));
  EXPECT_TRUE(returned);
}

TEST_F(HandoffServerTest, aCallbackThatFailsRefusesThisMessageOnly) {
  const auto server = listen();
  server->serve([](const Arguments& arguments) {
    if (arguments.empty()) throw std::runtime_error("no");
  });
  EXPECT_THROW(deliver({}), HandoffError);
  EXPECT_TRUE(deliver({"x"}));
}

TEST_F(HandoffServerTest, badPeersAreEndedAndTheNextIsServed) {
  const auto server = serve();
  for (const std::string& bytes :
       {"GET / HTTP/1.1\r\n\r\n"s, encodeFrame({"x"}) + "more", std::string(300'000, '\x7f')}) {
    RawPeer peer(directory());
    peer.send(bytes);
    EXPECT_EQ(peer.answer(), kRefused);
  }
  for (const std::string& half : {""s, "\0\0"s, "\0\0\0\x09vel"s}) {
    RawPeer peer(directory());
    peer.send(half);
    peer.close();
  }
  RawPeer hasty(directory());
  hasty.send(encodeFrame({"hasty"}));
  hasty.close();
  EXPECT_TRUE(deliver({"good"}));
  EXPECT_EQ(mailbox_.await(2), (std::vector<Arguments>{{"hasty"}, {"good"}}));
}

TEST_F(HandoffServerTest, aSilentOrDrippingPeerIsDropped) {
  const auto server = serve(withPatience(100ms));
  const RawPeer silent(directory());
  const RawPeer dripping(directory());
  dripping.send("\0\x10\0\0"s);
  std::atomic<bool> dropped = false;
  std::thread drip([&] {
    while (!dropped) {
      dripping.send("x");
      std::this_thread::sleep_for(10ms);
    }
  });
  EXPECT_EQ(silent.answer(), "");
  EXPECT_EQ(dripping.answer(), "");
  dropped = true;
  drip.join();
}

TEST_F(HandoffServerTest, moreSilentPeersThanPlacesKeepNobodyWaiting) {
  HandoffLimits limits = withPatience(1min);
  limits.peers = 2;
  const auto server = serve(limits);
  const RawPeer silent[]{RawPeer(directory()), RawPeer(directory()), RawPeer(directory())};
  silent[2].send("\0\0\0\x09vel"s);
  EXPECT_TRUE(deliver({"good"}));
}

TEST_F(HandoffServerTest, theTimeOfACallbackIsNotHeldAgainstAnotherPeer) {
  const auto server = listen(withPatience(200ms));
  std::atomic<bool> busy = false;
  server->serve([&](const Arguments& arguments) {
    busy = true;
    if (arguments == Arguments{"slow"}) std::this_thread::sleep_for(500ms);
  });
  const RawPeer waiting(directory());
  const RawPeer slow(directory());
  slow.send(encodeFrame({"slow"}));
  while (!busy) std::this_thread::sleep_for(1ms);
  waiting.send(encodeFrame({"quick"}));
  EXPECT_EQ(waiting.answer(), kAccepted);
}

/// Times the server's thread was woken so far.
std::optional<long> wakeUps() {
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string name;
    std::getline(std::ifstream(task.path() / "comm"), name);
    if (name != "velto-handoff") continue;
    std::ifstream status(task.path() / "status");
    for (std::string key; status >> key;) {
      long count = 0;
      if (key == "voluntary_ctxt_switches:" && status >> count) return count;
    }
  }
  return std::nullopt;
}

TEST_F(HandoffServerTest, sleepsWhileNobodyIsConnected) {
  const auto server = serve();
  EXPECT_TRUE(deliver({}));
  std::this_thread::sleep_for(100ms);
  const auto before = wakeUps();
  ASSERT_TRUE(before);
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(wakeUps(), before);
}

TEST_F(HandoffServerTest, withoutDescriptorsItWaitsAndGoesOnLater) {
  const auto server = serve();
  const RuntimeDirectory here = directory();
  const RawPeer peer;
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const int next = ::fcntl(0, F_DUPFD_CLOEXEC, 0);
  ::close(next);
  rlimit none = before;
  none.rlim_cur = static_cast<rlim_t>(next);
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);

  peer.connect(here);
  peer.send(encodeFrame({"late"}));
  const std::clock_t start = std::clock();
  std::this_thread::sleep_for(400ms);
  const std::clock_t spent = std::clock() - start;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_LT(spent, CLOCKS_PER_SEC / 5) << "of the processor's time";
  EXPECT_EQ(peer.answer(), kAccepted);
}

TEST_F(HandoffServerTest, anotherUsersPeerIsDropped) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can become another user";
  const auto server = serve();
  for (const auto& path : {root(), root() / "velto"}) ASSERT_EQ(::chmod(path.c_str(), 0711), 0);
  ASSERT_EQ(::chmod(socketPath().c_str(), 0666), 0);
  const RawPeer peer;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  socketPath().string().copy(address.sun_path, sizeof address.sun_path - 1);

  const pid_t stranger = ::fork();
  if (stranger == 0) {
    const RawPeer other;
    if (::setuid(65534) != 0) ::_exit(2);
    const OwnedDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    if (::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) ::_exit(3);
    const std::string frame = encodeFrame({"foreign"});
    ::send(socket.get(), frame.data(), frame.size(), MSG_NOSIGNAL);
    char byte = 0;
    ::_exit(::recv(socket.get(), &byte, 1, 0) == 1 ? 4 : 0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(stranger, &status, 0), stranger);
  EXPECT_EQ(status, 0);
  for (const auto& path : {root(), root() / "velto"}) ASSERT_EQ(::chmod(path.c_str(), 0700), 0);
  EXPECT_TRUE(deliver({"own"}));
  EXPECT_EQ(mailbox_.await(1), std::vector<Arguments>{{"own"}});
}

TEST_F(HandoffServerTest, endingRemovesItsSocketAndNoOther) {
  listen().reset();
  EXPECT_FALSE(std::filesystem::exists(socketPath()));

  auto first = listen();
  const auto second = listen();
  first.reset();
  EXPECT_TRUE(std::filesystem::exists(socketPath()));
}

TEST_F(HandoffServerTest, endingTellsThoseWhoWaitThatTheyWereNotHeard) {
  auto server = listen();
  const auto client = HandoffClient::connect(directory());
  ASSERT_TRUE(client);
  server.reset();
  EXPECT_FALSE(client->deliver(encodeFrame({"x"})));
  EXPECT_FALSE(HandoffClient::connect(directory()));
}

TEST_F(HandoffServerTest, aStartGivesUpOnAnApplicationThatDoesNotAnswer) {
  const auto server = listen();
  const auto client = HandoffClient::connect(directory(), 50ms);
  ASSERT_TRUE(client);
  EXPECT_THROW((void)client->deliver(encodeFrame({std::string(kPayloadLimit - 1, 'x')})), HandoffError);
}

}  // namespace
}  // namespace velto
