#include "layouts/LayoutAlert.h"

namespace velto {

void showLayoutAlert(Application& application, const std::string& title, const std::string& text,
                     Alert::Style style) {
  Alert alert;
  alert.style = style;
  alert.messageText = title;
  alert.informativeText = text;
  alert.buttons = {"OK"};
  application.showAlert(alert, nullptr, [](const AlertAnswer&) {});
}

}  // namespace velto
