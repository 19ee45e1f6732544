#pragma once

#include <memory>
#include <string>
#include <utility>

#include <glib-object.h>

namespace velto {

/// Frees what GLib allocated.
struct GFree {
  void operator()(void* memory) const { g_free(memory); }
};

using GCharPtr = std::unique_ptr<char, GFree>;

/// The text, or an empty one for null.
inline std::string textOf(const char* text) { return text == nullptr ? std::string() : std::string(text); }

/// An owned `GError`; pass `out()` to a GLib call.
class GErrorPtr {
 public:
  GErrorPtr() = default;
  GErrorPtr(const GErrorPtr&) = delete;
  GErrorPtr& operator=(const GErrorPtr&) = delete;
  ~GErrorPtr() { g_clear_error(&error_); }
  [[nodiscard]] GError** out() {
    g_clear_error(&error_);
    return &error_;
  }
  [[nodiscard]] const GError* get() const { return error_; }
  const GError* operator->() const { return error_; }
  explicit operator bool() const { return error_ != nullptr; }

 private:
  GError* error_ = nullptr;
};

/// One reference to a GObject, or none.
template <class T>
class GObjectPtr {
 public:
  GObjectPtr() = default;
  GObjectPtr(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): absence reads as nullptr
  GObjectPtr(const GObjectPtr& other) : object_(other.object_) { ref(); }
  GObjectPtr(GObjectPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  GObjectPtr& operator=(GObjectPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~GObjectPtr() { unref(); }

  /// Takes over a reference that the caller owns ("transfer full").
  [[nodiscard]] static GObjectPtr adopt(T* object) { return GObjectPtr(object); }
  /// Adds a reference of its own ("transfer none").
  [[nodiscard]] static GObjectPtr retain(T* object) {
    GObjectPtr made(object);
    made.ref();
    return made;
  }
  /// Takes over the floating reference of a new widget, or adds one.
  [[nodiscard]] static GObjectPtr sink(T* object) {
    if (object != nullptr) g_object_ref_sink(object);
    return GObjectPtr(object);
  }

  [[nodiscard]] T* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  bool operator==(const GObjectPtr& other) const { return object_ == other.object_; }
  void reset() { *this = GObjectPtr(); }
  /// Gives the reference away.
  [[nodiscard]] T* release() { return std::exchange(object_, nullptr); }

 private:
  explicit GObjectPtr(T* object) : object_(object) {}
  void ref() {
    if (object_ != nullptr) g_object_ref(object_);
  }
  void unref() {
    if (object_ != nullptr) g_object_unref(object_);
  }

  T* object_ = nullptr;
};

/// A connected signal handler. It is disconnected when this object goes, and it does no harm when the emitter
/// went first.
class SignalConnection {
 public:
  SignalConnection() = default;
  /// `data` is handed to the callback as its last argument.
  SignalConnection(gpointer object, const char* signal, GCallback callback, gpointer data)
      : object_(G_OBJECT(object)), id_(g_signal_connect(object, signal, callback, data)) {
    g_object_add_weak_pointer(object_, reinterpret_cast<gpointer*>(&object_));
  }
  SignalConnection(SignalConnection&& other) noexcept { take(other); }
  SignalConnection& operator=(SignalConnection&& other) noexcept {
    if (this != &other) {
      disconnect();
      take(other);
    }
    return *this;
  }
  ~SignalConnection() { disconnect(); }

  void disconnect() {
    if (object_ == nullptr) return;
    GObject* object = object_;
    forget();
    // The emitter drops its handlers on its own when it is disposed.
    if (g_signal_handler_is_connected(object, id_) != FALSE) g_signal_handler_disconnect(object, id_);
  }
  [[nodiscard]] bool isConnected() const { return object_ != nullptr; }

 private:
  void forget() {
    g_object_remove_weak_pointer(object_, reinterpret_cast<gpointer*>(&object_));
    object_ = nullptr;
  }
  void take(SignalConnection& other) {
    object_ = other.object_;
    id_ = other.id_;
    if (object_ == nullptr) return;
    other.forget();
    g_object_add_weak_pointer(object_, reinterpret_cast<gpointer*>(&object_));
  }

  GObject* object_ = nullptr;
  gulong id_ = 0;
};

}  // namespace velto
