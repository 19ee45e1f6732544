#include <algorithm>
#include <csignal>
#include <fstream>
#include <map>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>

#include "handoff/Claim.h"
#include "handoff/Frame.h"
#include "handoff/HandoffClient.h"
#include "handoff/HandoffError.h"
#include "tests/handoff/HandoffTesting.h"

namespace velto {
namespace {

using namespace std::chrono_literals;
using testing::Arguments;

struct Pipe {
  Pipe() {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    reading = OwnedDescriptor(ends[0]);
    writing = OwnedDescriptor(ends[1]);
  }
  OwnedDescriptor reading;
  OwnedDescriptor writing;
};

void tell(const OwnedDescriptor& pipe, const std::string& line) {
  [[maybe_unused]] const auto written = ::write(pipe.get(), (line + "\n").data(), line.size() + 1);
}

std::string hear(const OwnedDescriptor& pipe) {
  std::string line;
  for (char byte = 0; ::read(pipe.get(), &byte, 1) == 1 && byte != '\n';) line.push_back(byte);
  return line;
}

class ClaimTest : public testing::HandoffTest {
 protected:
  /// A start in a process of its own: says on `said` what it became and which messages reached it, and, when
  /// it listens, stays until `quit` is closed.
  pid_t start(const std::string& name, Pipe& go, Pipe& said, Pipe& quit) const {
    const pid_t process = ::fork();
    if (process != 0) return process;
    go.writing.close();
    quit.writing.close();
    hear(go.reading);
    try {
      Claim claim = claimOrHandOver(directory(), {name});
      if (auto* server = std::get_if<std::unique_ptr<HandoffServer>>(&claim)) {
        (*server)->serve([&](const Arguments& arguments) { tell(said.writing, "took " + arguments.at(0)); });
        tell(said.writing, "listens " + name);
        hear(quit.reading);
        server->reset();
      } else {
        tell(said.writing, "handed " + name);
      }
    } catch (const HandoffError& error) {
      tell(said.writing, error.what());
    }
    ::_exit(0);
  }
};

TEST_F(ClaimTest, ofManyStartsAtOnceOneListensAndAllMessagesArrive) {
  constexpr int kStarts = 8;
  for (int round = 0; round < 5; ++round) {
    Pipe go;
    Pipe said;
    Pipe quit;
    std::vector<pid_t> processes;
    for (int each = 0; each < kStarts; ++each) {
      processes.push_back(start("start" + std::to_string(each), go, said, quit));
    }
    go.writing.close();
    std::map<std::string, std::vector<std::string>> names;
    for (int line = 0; line < 1 + 2 * (kStarts - 1); ++line) {
      const std::string text = hear(said.reading);
      const std::size_t blank = text.find(' ');
      names[text.substr(0, blank)].push_back(text.substr(blank + 1));
    }
    EXPECT_EQ(names["listens"].size(), 1U);
    std::sort(names["took"].begin(), names["took"].end());
    std::sort(names["handed"].begin(), names["handed"].end());
    EXPECT_EQ(names["handed"].size(), kStarts - 1U);
    EXPECT_EQ(names["took"], names["handed"]);
    quit.writing.close();
    for (const pid_t process : processes) ::waitpid(process, nullptr, 0);
    EXPECT_FALSE(std::filesystem::exists(socketPath()));
  }
}

TEST_F(ClaimTest, aKilledListenersSocketIsTakenOver) {
  Pipe go;
  Pipe said;
  Pipe quit;
  const pid_t killed = start("first", go, said, quit);
  go.writing.close();
  ASSERT_EQ(hear(said.reading), "listens first");
  ::kill(killed, SIGKILL);
  ::waitpid(killed, nullptr, 0);
  ASSERT_TRUE(std::filesystem::exists(socketPath()));

  Claim claim = claimOrHandOver(directory(), {"second"});
  auto* server = std::get_if<std::unique_ptr<HandoffServer>>(&claim);
  ASSERT_NE(server, nullptr);
  testing::Mailbox mailbox;
  (*server)->serve([&](Arguments arguments) { mailbox.put(std::move(arguments)); });
  EXPECT_TRUE(std::holds_alternative<HandedOver>(claimOrHandOver(directory(), {"third"})));
  EXPECT_EQ(mailbox.await(1), std::vector<Arguments>{{"third"}});
}

TEST_F(ClaimTest, aFileInTheSocketsPlaceIsReplaced) {
  std::ofstream(std::filesystem::path(directory().path()) / kSocketName) << "not a socket";
  EXPECT_FALSE(std::holds_alternative<HandedOver>(claimOrHandOver(directory(), {})));
}

TEST_F(ClaimTest, meetingOneThatQuitsMakesItTheFirst) {
  auto quitting = std::get<std::unique_ptr<HandoffServer>>(claimOrHandOver(directory(), {}));
  std::thread quitter([&] {
    std::this_thread::sleep_for(100ms);
    quitting.reset();
  });
  const Claim claim = claimOrHandOver(directory(), {"x"});
  quitter.join();
  EXPECT_FALSE(std::holds_alternative<HandedOver>(claim));
}

TEST_F(ClaimTest, aHeldLockIsWaitedForAndThenReported) {
  const RuntimeDirectory here = directory();
  const ElectionLock held(here);
  EXPECT_THROW(ElectionLock(here, 30ms), HandoffError);

  const std::string path = here.path() + "/lock";
  std::filesystem::remove(path);
  const ElectionLock another(here, 30ms);
  EXPECT_TRUE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace velto
