#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <variant>

#include "layouts/LayoutURLCommand.h"
#include "platform/foundation/Text.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void requireText(const std::string& text) {
  require(!text.empty() && velto::isValidUtf8(text));
  require(velto::trimWhitespaceAndNewlines(text) == text);
}

void check(const velto::OpenLayout& open) { requireText(open.address.value); }
void check(const velto::SaveLayout& save) { requireText(save.name); }
void check(const velto::ShowLayouts&) {}
void check(const velto::RenameLayout& rename) {
  requireText(rename.address.value);
  requireText(rename.to);
}

}  // namespace

/// The input is taken as a whole URL and as the query of a layout URL.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (const std::string& candidate : {text, "velto://layout?" + text}) {
    const auto url = velto::Url::parse(candidate);
    if (!url) continue;
    const auto command = velto::parseLayoutURLCommand(*url);
    if (command) std::visit([](const auto& each) { check(each); }, *command);
  }
  return 0;
}
