#pragma once

#include <array>

#include <gtk/gtk.h>

#include "platform/gtk/GObject.h"
#include "platform/gtk/NativeWidget.h"
#include "platform/gtk/ViewWidget.h"
#include "platform/ui/View.h"

namespace velto {

/// Where the views of one window send what their widgets are told.
class ViewEventSink {
 public:
  virtual ~ViewEventSink() = default;
  virtual void pointerEvent(View& view, const GdkEvent& event) = 0;
  /// A press on a widget that deals with its own events, before it does.
  virtual void nativeWidgetPressed(const GdkEvent& event) = 0;
};

/// The widget of a view that is shown in a window: a `ViewWidget`, or the view's own widget when it brings
/// one. The view drops its peer when it leaves the window, its subviews later; widgets live on as long as
/// something holds them.
class GtkViewPeer final : public ViewPeer, private ViewWidgetOwner {
 public:
  /// Makes the peer of the view and of all that is below it. Gives the view's widget.
  static GtkWidget* attach(View& view, ViewEventSink& sink);

  ~GtkViewPeer() override;
  GtkViewPeer(const GtkViewPeer&) = delete;
  GtkViewPeer& operator=(const GtkViewPeer&) = delete;

  void frameChanged() override;
  void subviewsChanged() override;
  void appearanceChanged() override;
  void needsDisplay() override;

 private:
  GtkViewPeer(View& view, ViewEventSink& sink);
  static GtkWidget* widgetOf(const View& view);
  static gboolean onNativeEvent(GtkWidget*, GdkEvent* event, gpointer self);
  static gboolean onNativePress(GtkWidget*, GdkEvent* event, gpointer self);
  void watchNativeWidget();

  void drawWidget(cairo_t* context) override;
  void pointerEvent(const GdkEvent& event) override { sink_.pointerEvent(view_, event); }
  GtkAllocation placeOf(GtkWidget* child) override;
  void widgetRealized() override;

  View& view_;
  ViewEventSink& sink_;
  bool native_ = false;
  GObjectPtr<GtkWidget> widget_;
  std::array<SignalConnection, 3> connections_;
};

}  // namespace velto
