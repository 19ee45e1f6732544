// velto-open: hands its arguments to the running application, or starts it. Every use of the command waits
// for this program, so it links nothing beyond libc.

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "handoff/ApplicationStart.h"
#include "handoff/Frame.h"
#include "handoff/HandoffClient.h"
#include "handoff/HandoffError.h"
#include "handoff/OneLine.h"
#include "handoff/RuntimeDirectory.h"

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUse = 2;

constexpr char kHelp[] =
    "Usage: velto-open [ARGUMENT...]\n"
    "Hands the arguments, velto:// URLs, to the running Velto, and starts it if it is not running.\n"
    "Without an argument Velto comes forward.\n"
    "\n"
    "  --help     print this\n"
    "  --version  print the version\n";

int complain(const std::string& what, int status) {
  std::fprintf(stderr, "velto-open: %s\n", velto::oneLine(what).c_str());
  return status;
}

/// A descriptor opened later must not become a closed standard stream.
void openStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (::fcntl(stream, F_GETFD) < 0) ::open("/dev/null", O_RDWR);
  }
}

std::string applicationBesideThis() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0) throw velto::HandoffError("cannot find the folder of velto-open; is /proc there?");
  const std::string_view self(path, static_cast<std::size_t>(length));
  return std::string(self.substr(0, self.rfind('/') + 1)) + "velto-app";
}

bool runningApplicationTook(const std::string& frame) {
  const auto directory = velto::RuntimeDirectory::open(std::getenv("XDG_RUNTIME_DIR"), ::geteuid());
  const std::optional<velto::HandoffClient> client = velto::HandoffClient::connect(directory);
  return client && client->deliver(frame);
}

int handOver(const std::vector<std::string>& arguments) try {
  if (!runningApplicationTook(velto::encodeFrame(arguments))) {
    velto::startApplication(applicationBesideThis(), arguments);
  }
  return kDone;
} catch (const std::exception& error) {
  return complain(error.what(), kFailed);
}

}  // namespace

int main(int argc, char** argv) {
  openStandardStreams();
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  for (const std::string& argument : arguments) {
    if (!argument.starts_with('-')) continue;
    if (argument == "--help") return std::fputs(kHelp, stdout) < 0 ? kFailed : kDone;
    if (argument == "--version") return std::puts("velto-open " VELTO_VERSION) < 0 ? kFailed : kDone;
    return complain("unknown option " + argument + "; see velto-open --help", kWrongUse);
  }
  return handOver(arguments);
}
