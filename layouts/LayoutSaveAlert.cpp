#include "layouts/LayoutSaveAlert.h"

#include <utility>

#include "layouts/LayoutNames.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

std::string explanation(const std::vector<WindowSnapshot>& windows,
                        const std::optional<std::string>& warning) {
  std::string text = warning ? *warning + "\n\n" : "";
  text += "The layout keeps the places and pages of " + countedWindows(windows.size()) + ".";
  if (const auto notice = localFileNotice(windows)) text += "\n\n" + *notice;
  return text;
}

}  // namespace

void LayoutSaveAlert::show(const Request& request, WeakPtr<Window> sheetOn, Completion completion) {
  const std::string name = request.prefillName.value_or(uniqueName("Layout", request.existingNames));
  ask(request, sheetOn, completion, name, std::nullopt);
}

void LayoutSaveAlert::ask(const Request& request, const WeakPtr<Window>& sheetOn,
                          const Completion& completion, const std::string& name,
                          const std::optional<std::string>& warning) {
  Alert alert;
  alert.style = warning ? Alert::Style::warning : Alert::Style::informational;
  alert.messageText = "Save as New Layout";
  alert.informativeText = explanation(request.snapshots, warning);
  alert.buttons = {"Save", "Cancel"};
  alert.textField = name;
  application_.showAlert(
      alert, sheetOn,
      [self = WeakPtr<LayoutSaveAlert>(*this), request, sheetOn, completion](const AlertAnswer& answer) {
        if (self) self->answered(answer, request, sheetOn, completion);
      });
}

void LayoutSaveAlert::answered(const AlertAnswer& answer, const Request& request,
                               const WeakPtr<Window>& sheetOn, const Completion& completion) {
  if (answer.button != 0) return completion(std::nullopt);
  const auto taken = request.requiresUniqueName ? request.existingNames : std::vector<std::string>();
  if (const auto warning = saveWarning(answer.text, request.snapshots.size(), taken)) {
    return ask(request, sheetOn, completion, answer.text, warning);
  }
  completion(Result{std::string(trimWhitespaceAndNewlines(answer.text)), request.snapshots});
}

}  // namespace velto
