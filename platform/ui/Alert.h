#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velto {

/// A question or message for the person.
struct Alert {
  enum class Style { informational, warning };
  Style style = Style::informational;
  std::string messageText;
  std::string informativeText;
  /// The first is the default. Never empty.
  std::vector<std::string> buttons;
  /// A line of text to be filled in, with what stands in it at first.
  std::optional<std::string> textField;
  /// What Escape and a closing window answer; the last button unless it is another one.
  std::optional<std::size_t> dismissButton = {};

  [[nodiscard]] std::size_t dismissAnswer() const {
    if (dismissButton) return *dismissButton;
    return buttons.empty() ? 0 : buttons.size() - 1;
  }
};

struct AlertAnswer {
  /// Index into the alert's buttons.
  std::size_t button = 0;
  std::string text;
};

/// Names an alert or another question that waits for the person's answer. No number is used twice in a run.
using SheetId = std::uint64_t;

using AlertCompletion = std::function<void(const AlertAnswer&)>;

}  // namespace velto
