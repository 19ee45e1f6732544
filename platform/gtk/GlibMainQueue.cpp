#include "platform/gtk/GlibMainQueue.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

gboolean dispatch(GSource*, GSourceFunc callback, gpointer data) { return callback(data); }

/// A source that waits for its ready time alone.
GSource* attachSource(const char* name, GSourceFunc callback, gpointer data) {
  static GSourceFuncs functions = {nullptr, nullptr, dispatch, nullptr, nullptr, nullptr};
  GSource* source = g_source_new(&functions, sizeof(GSource));
  g_source_set_static_name(source, name);
  g_source_set_callback(source, callback, data, nullptr);
  g_source_set_ready_time(source, -1);
  g_source_attach(source, nullptr);
  return source;
}

void removeSource(GSource* source) {
  g_source_destroy(source);
  g_source_unref(source);
}

gint64 microseconds(double seconds) { return static_cast<gint64>(std::ceil(std::min(seconds, 1e9) * 1e6)); }

}  // namespace

struct GlibMainQueue::Deadlines {
  /// When, and the order of the calls among those of the same moment.
  using Key = std::pair<gint64, std::uint64_t>;

  Deadlines() : source(attachSource("velto deadlines", &Deadlines::onDue, this)) {}
  Deadlines(const Deadlines&) = delete;
  Deadlines& operator=(const Deadlines&) = delete;
  ~Deadlines() { removeSource(source); }

  static gboolean onDue(gpointer self) {
    static_cast<Deadlines*>(self)->runDue();
    return G_SOURCE_CONTINUE;
  }

  Key add(gint64 due, Task task) {
    const Key key{due, count++};
    entries.emplace(key, std::move(task));
    arm();
    return key;
  }

  void remove(const Key& key) {
    const auto entry = entries.extract(key);
    arm();
  }

  void arm() { g_source_set_ready_time(source, entries.empty() ? -1 : entries.begin()->first.first); }

  /// One at a time, so that what it queues runs before what is due next.
  void runDue() {
    if (entries.empty() || entries.begin()->first.first > g_get_monotonic_time()) return arm();
    auto entry = entries.extract(entries.begin());
    arm();
    guarded(entry.mapped());
  }

  GSource* source;
  std::map<Key, Task> entries;
  std::uint64_t count = 0;
};

struct GlibMainQueue::Repeat {
  std::function<void()> work;
  gint64 interval;
  gint64 due;
  Deadlines::Key key;
};

GlibMainQueue::GlibMainQueue() {
  // Attached first, so that what is queued runs before what becomes due in the same turn.
  const auto run = [](gpointer self) -> gboolean {
    static_cast<GlibMainQueue*>(self)->runReady();
    return G_SOURCE_CONTINUE;
  };
  readySource_ = attachSource("velto main queue", run, this);
  deadlines_ = std::make_shared<Deadlines>();
}

GlibMainQueue::~GlibMainQueue() { removeSource(readySource_); }

void GlibMainQueue::async(Task task) {
  const std::lock_guard lock(mutex_);
  ready_.push_back(std::move(task));
  if (ready_.size() == 1) g_source_set_ready_time(readySource_, 0);
}

void GlibMainQueue::discard() {
  // What is dropped may queue more on its way out.
  for (bool any = true; any;) {
    std::vector<Task> tasks;
    {
      const std::lock_guard lock(mutex_);
      tasks.swap(ready_);
    }
    const auto entries = std::exchange(deadlines_->entries, {});
    deadlines_->arm();
    any = !tasks.empty() || !entries.empty();
  }
}

void GlibMainQueue::runReady() {
  std::vector<Task> tasks;
  {
    const std::lock_guard lock(mutex_);
    tasks.swap(ready_);
    g_source_set_ready_time(readySource_, -1);
  }
  for (Task& task : tasks) {
    guarded(task);
    task = nullptr;
  }
}

void GlibMainQueue::schedule(double seconds, std::shared_ptr<WorkItem::State> state) {
  const auto key =
      deadlines_->add(g_get_monotonic_time() + microseconds(seconds), [state] { runWorkItem(*state); });
  state->unschedule = [weak = std::weak_ptr(deadlines_), key] {
    if (const auto deadlines = weak.lock()) deadlines->remove(key);
  };
}

Timer GlibMainQueue::every(double seconds, std::function<void()> work) {
  auto repeat = std::make_shared<Repeat>();
  repeat->work = std::move(work);
  repeat->interval = microseconds(seconds > 0.001 ? seconds : 0.001);
  repeat->due = g_get_monotonic_time() + repeat->interval;
  plan(deadlines_, repeat);
  return Timer([weak = std::weak_ptr(deadlines_), repeat] {
    if (const auto deadlines = weak.lock()) deadlines->remove(repeat->key);
  });
}

void GlibMainQueue::plan(const std::shared_ptr<Deadlines>& deadlines, const std::shared_ptr<Repeat>& repeat) {
  const auto fire = [weak = std::weak_ptr(deadlines), repeat] {
    const gint64 late = std::max<gint64>(g_get_monotonic_time() - repeat->due, 0);
    repeat->due += repeat->interval * (late / repeat->interval + 1);
    // Planned before it runs, so that its own work can stop it.
    if (const auto shared = weak.lock()) plan(shared, repeat);
    repeat->work();
  };
  repeat->key = deadlines->add(repeat->due, fire);
}

}  // namespace velto
