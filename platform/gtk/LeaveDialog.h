#pragma once

#include <webkit2/webkit2.h>

#include <functional>
#include <utility>

namespace velto {

/// A page's question whether it may be left, which its script waits for. One that is dropped stays.
class LeaveDialog {
 public:
  /// `answered` is told the answer after the engine was.
  LeaveDialog(WebKitScriptDialog* dialog, std::function<void(bool)> answered)
      : dialog_(webkit_script_dialog_ref(dialog)), answered_(std::move(answered)) {}
  LeaveDialog(const LeaveDialog&) = delete;
  LeaveDialog& operator=(const LeaveDialog&) = delete;
  ~LeaveDialog() { answer(false); }

  /// Only the first answer counts.
  void answer(bool leave) {
    WebKitScriptDialog* dialog = std::exchange(dialog_, nullptr);
    if (dialog == nullptr) return;
    webkit_script_dialog_confirm_set_confirmed(dialog, leave ? TRUE : FALSE);
    webkit_script_dialog_close(dialog);
    webkit_script_dialog_unref(dialog);
    std::exchange(answered_, nullptr)(leave);
  }

 private:
  WebKitScriptDialog* dialog_;
  std::function<void(bool)> answered_;
};

}  // namespace velto
