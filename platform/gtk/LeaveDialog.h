#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <webkit2/webkit2.h>

#include "platform/loop/MainQueue.h"

namespace velto {

/// A page's question whether it may be left, which its script waits for. One that is dropped stays.
class LeaveDialog {
 public:
  /// `answered` is told the answer after the engine was, always from the queue.
  LeaveDialog(WebKitScriptDialog* dialog, MainQueue& queue, std::function<void(bool)> answered)
      : dialog_(webkit_script_dialog_ref(dialog)), queue_(queue), answered_(std::move(answered)) {}
  LeaveDialog(const LeaveDialog&) = delete;
  LeaveDialog& operator=(const LeaveDialog&) = delete;
  ~LeaveDialog() { answer(false); }

  /// Only the first answer counts. The engine does not bear one from within its question.
  void answer(bool leave) {
    if (!dialog_) return;
    queue_.async([dialog = std::move(dialog_), answered = std::move(answered_), leave] {
      webkit_script_dialog_confirm_set_confirmed(dialog.get(), leave ? TRUE : FALSE);
      webkit_script_dialog_close(dialog.get());
      answered(leave);
    });
  }

 private:
  struct Unref {
    void operator()(WebKitScriptDialog* dialog) const { webkit_script_dialog_unref(dialog); }
  };
  std::unique_ptr<WebKitScriptDialog, Unref> dialog_;
  MainQueue& queue_;
  std::function<void(bool)> answered_;
};

}  // namespace velto
