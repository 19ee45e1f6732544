#pragma once

#include "layouts/LayoutSaveSheet.h"
#include "platform/ui/Application.h"

namespace velto {

/// Asks for the name in an alert; all windows go into the layout. Asks again, with the reason, while the name
/// cannot be used.
class LayoutSaveAlert : public LayoutSaveSheet, public Weakable {
 public:
  explicit LayoutSaveAlert(Application& application) : application_(application) {}
  void show(const Request& request, WeakPtr<Window> sheetOn, Completion completion) override;

 private:
  void ask(const Request& request, const WeakPtr<Window>& sheetOn, const Completion& completion,
           const std::string& name, const std::optional<std::string>& warning);
  void answered(const AlertAnswer& answer, const Request& request, const WeakPtr<Window>& sheetOn,
                const Completion& completion);

  Application& application_;
};

}  // namespace velto
