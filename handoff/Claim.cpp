#include "handoff/Claim.h"

#include <chrono>
#include <optional>
#include <thread>

#include "handoff/ElectionLock.h"
#include "handoff/Frame.h"
#include "handoff/HandoffClient.h"
#include "handoff/HandoffError.h"

namespace velto {

namespace {

// The one that was running may be met while it quits, or while the system clears up after it was killed.
constexpr int kAttempts = 10;
constexpr std::chrono::milliseconds kBetweenAttempts{20};

}  // namespace

Claim claimOrHandOver(RuntimeDirectory directory, const std::vector<std::string>& arguments) {
  const std::string frame = encodeFrame(arguments);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (attempt > 0) std::this_thread::sleep_for(kBetweenAttempts);
    std::optional<HandoffClient> client;
    {
      const ElectionLock lock(directory);
      client = HandoffClient::connect(directory);
      if (!client) return std::make_unique<HandoffServer>(std::move(directory), lock);
    }
    if (client->deliver(frame)) return HandedOver{};
  }
  throw HandoffError("Velto is running but takes no arguments; end it and try again");
}

}  // namespace velto
