#pragma once

#include <optional>

#include "app/windows/HovrelPanel.h"
#include "platform/foundation/Url.h"

namespace velto {

/// Where else on this machine the server of a page may be listening, and how far the search is then. Nothing
/// when all places were tried, or when there is no attempt yet and the host of `url` is not "localhost".
struct LoopbackStep {
  Url candidate;
  LoopbackAttempt attempt;
};
std::optional<LoopbackStep> nextLoopbackCandidate(const std::optional<LoopbackAttempt>& attempt,
                                                  const Url& url);

}  // namespace velto
