#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <webkit2/webkit2.h>

#include "platform/loop/MainQueue.h"
#include "platform/web/PendingAnswer.h"

namespace velto {

/// Makes what answers a dialog that a page's script waits for; dropping it cancels. `give` hands the answer
/// to the engine, which does not bear one from within its question, so that comes from the queue; `answered`
/// is told afterwards.
template <class T>
std::function<void(T)> scriptDialogAnswer(WebKitScriptDialog* dialog, MainQueue& queue, T cancelled,
                                          std::function<void(WebKitScriptDialog*, const T&)> give,
                                          std::function<void(const T&)> answered = nullptr) {
  const std::shared_ptr<WebKitScriptDialog> kept(webkit_script_dialog_ref(dialog),
                                                 webkit_script_dialog_unref);
  const auto pass = [kept, &queue, give = std::move(give), answered = std::move(answered)](T value) {
    queue.async([kept, give, answered, value = std::move(value)] {
      give(kept.get(), value);
      webkit_script_dialog_close(kept.get());
      if (answered) answered(value);
    });
  };
  const auto pending = std::make_shared<PendingAnswer<T>>(std::move(cancelled), pass);
  return [pending](T value) { pending->answer(std::move(value)); };
}

}  // namespace velto
