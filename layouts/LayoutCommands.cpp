#include "layouts/LayoutCommands.h"

#include <exception>
#include <variant>

#include "layouts/LayoutAlert.h"

namespace velto {
namespace {

/// Reading all layouts must not hold up the first page.
constexpr double kPreparationDelay = 1;

}  // namespace

void LayoutCommands::prepareStore() {
  platform_.mainQueue.after(kPreparationDelay, [store = WeakPtr<LayoutStore>(manager_.store())] {
    if (store) store->prepare();
  });
}

void LayoutCommands::handleCommand(const Url& url) {
  const auto asked = parseLayoutURLCommand(url);
  if (!asked) {
    showLayoutAlert(platform_.application, "That layout command was not understood",
                    "Try velto://layout?action=open&slug=… — or run `velto layouts` instead.");
    return;
  }
  std::visit([this](const auto& command) { execute(command); }, *asked);
}

void LayoutCommands::execute(const OpenLayout& command) {
  const auto layout = resolve(command.address);
  if (!layout) return;
  if (command.copy) {
    manager_.openCopy(*layout);
  } else {
    manager_.open(*layout, command.exact);
  }
}

void LayoutCommands::execute(const SaveLayout& command) {
  try {
    const WallTime now = platform_.clock.now();
    if (const auto known = manager_.store().layoutNamed(command.name)) {
      manager_.update(*known, now);
    } else {
      manager_.save(command.name, now);
    }
  } catch (const std::exception& error) {
    showLayoutAlert(platform_.application, "Could not save the layout", error.what());
  }
}

void LayoutCommands::execute(const RenameLayout& command) {
  const auto layout = resolve(command.address);
  if (!layout) return;
  try {
    manager_.rename(*layout, command.to);
  } catch (const std::exception& error) {
    showLayoutAlert(platform_.application, "Could not rename the layout", error.what());
  }
}

std::optional<Layout> LayoutCommands::resolve(const LayoutAddress& address) {
  const LayoutStore& store = manager_.store();
  auto layout = address.kind == LayoutAddress::Kind::name ? store.layoutNamed(address.value)
                                                          : store.layoutWithSlug(address.value);
  if (!layout) {
    showLayoutAlert(platform_.application, "No layout named “" + address.value + "”",
                    "Run `velto layouts list` to see the layouts on this Mac.");
  }
  return layout;
}

}  // namespace velto
