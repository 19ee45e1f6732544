#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/foundation/Url.h"

namespace velto::test {

/// The URL of a text that must be one.
inline Url url(std::string_view text) {
  const auto result = Url::parse(text);
  if (!result) throw std::invalid_argument("no URL: " + std::string(text));
  return *result;
}

}  // namespace velto::test
