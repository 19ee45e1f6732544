#include "app/pages/LoopbackCandidates.h"

#include <array>
#include <string_view>

namespace velto {

std::optional<LoopbackStep> nextLoopbackCandidate(const std::optional<LoopbackAttempt>& attempt,
                                                  const Url& url) {
  constexpr std::array<std::string_view, 2> kHosts{"127.0.0.1", "[::1]"};
  if (!attempt && url.lowercasedHost() != "localhost") return std::nullopt;
  const Url& original = attempt ? attempt->original : url;
  const std::size_t tried = attempt ? attempt->tried : 0;
  if (tried >= kHosts.size()) return std::nullopt;
  const auto candidate = original.withHost(kHosts.at(tried));
  if (!candidate) return std::nullopt;
  return LoopbackStep{*candidate, {original, tried + 1}};
}

}  // namespace velto
