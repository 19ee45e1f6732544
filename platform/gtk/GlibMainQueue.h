#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include <glib.h>

#include "platform/loop/MainQueue.h"

namespace velto {

/// The main queue on GLib's default main context. One source holds what is ready, one holds what is due later
/// and sleeps until the earliest of it, so that an idle program is not woken.
class GlibMainQueue final : public MainQueue {
 public:
  GlibMainQueue();
  GlibMainQueue(const GlibMainQueue&) = delete;
  GlibMainQueue& operator=(const GlibMainQueue&) = delete;
  ~GlibMainQueue() override;

  void async(Task task) override;
  /// Drops everything that has not run yet, at the end of the program: it may hold what must go before the
  /// rest of the platform does.
  void discard();
  [[nodiscard]] Timer every(double seconds, std::function<void()> work) override;

 private:
  struct Deadlines;
  struct Repeat;
  void schedule(double seconds, std::shared_ptr<WorkItem::State> state) override;
  static void plan(const std::shared_ptr<Deadlines>& deadlines, const std::shared_ptr<Repeat>& repeat);
  void runReady();

  std::mutex mutex_;
  std::vector<Task> ready_;
  GSource* readySource_;
  /// Shared with the work items and timers that it gave out, which may outlive it.
  std::shared_ptr<Deadlines> deadlines_;
};

}  // namespace velto
