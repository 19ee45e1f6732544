#include "platform/gtk/GtkScreens.h"

#include <algorithm>
#include <utility>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>
#include <gdk/gdkx.h>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

XRect rectOf(const GdkRectangle& r) { return {r.x, r.y, r.width, r.height}; }

XRect frameOf(GdkMonitor* monitor) {
  GdkRectangle frame;
  gdk_monitor_get_geometry(monitor, &frame);
  return rectOf(frame);
}

struct XFreeData {
  void operator()(unsigned char* data) const { XFree(data); }
};

std::optional<Edid> readEdid(GdkDisplay* display, RROutput output) {
  constexpr long kLongs = 64;
  Display* const x = gdk_x11_display_get_xdisplay(display);
  const Atom edid = XInternAtom(x, "EDID", True);
  if (edid == None || output == None) return std::nullopt;
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  gdk_x11_display_error_trap_push(display);
  const int failed = XRRGetOutputProperty(x, output, edid, 0, kLongs, False, False, AnyPropertyType, &type,
                                          &format, &count, &rest, &data);
  const int error = gdk_x11_display_error_trap_pop(display);
  const std::unique_ptr<unsigned char, XFreeData> bytes(data);
  if (failed != 0 || error != 0 || format != 8 || !bytes) return std::nullopt;
  return parseEdid({bytes.get(), count});
}

struct XFreeResources {
  void operator()(XRRScreenResources* resources) const { XRRFreeScreenResources(resources); }
};

struct XFreeCrtc {
  void operator()(XRRCrtcInfo* crtc) const { XRRFreeCrtcInfo(crtc); }
};

/// Whether the server has outputs, none of which shows a picture.
bool allOutputsAreOff(GdkDisplay* display) {
  Display* const x = gdk_x11_display_get_xdisplay(display);
  gdk_x11_display_error_trap_push(display);
  const std::unique_ptr<XRRScreenResources, XFreeResources> resources(
      XRRGetScreenResourcesCurrent(x, DefaultRootWindow(x)));
  bool off = resources && resources->noutput > 0;
  for (int i = 0; off && i < resources->ncrtc; ++i) {
    const std::unique_ptr<XRRCrtcInfo, XFreeCrtc> crtc(
        XRRGetCrtcInfo(x, resources.get(), resources->crtcs[i]));
    off = !crtc || crtc->mode == None || crtc->noutput == 0;
  }
  return gdk_x11_display_error_trap_pop(display) == 0 && off;
}

/// GDK never tells of no monitor: with all outputs off it makes one up.
bool isStandIn(GdkDisplay* display, GdkMonitor* monitor) {
  return gdk_x11_monitor_get_output(monitor) == None && allOutputsAreOff(display);
}

}  // namespace

GtkScreens::GtkScreens(GdkDisplay* display, std::function<void()> changed)
    : display_(display), changed_(std::move(changed)), lastPrimary_{0, 0, 1, 1} {
  GdkScreen* const screen = gdk_display_get_default_screen(display);
  monitorsChanged_ = {screen, "monitors-changed", G_CALLBACK(onMonitorsChanged), this};
  sizeChanged_ = {screen, "size-changed", G_CALLBACK(onMonitorsChanged), this};
  static_cast<void>(geometry());
}

void GtkScreens::onMonitorsChanged(GdkScreen*, gpointer self) {
  auto* const screens = static_cast<GtkScreens*>(self);
  screens->edids_.clear();
  guarded(screens->changed_);
}

GdkMonitor* GtkScreens::primary() const {
  if (gdk_display_get_n_monitors(display_) == 0) return nullptr;
  GdkMonitor* const chosen = gdk_display_get_primary_monitor(display_);
  GdkMonitor* const monitor = chosen != nullptr ? chosen : gdk_display_get_monitor(display_, 0);
  return monitor == nullptr || isStandIn(display_, monitor) ? nullptr : monitor;
}

ScreenGeometry GtkScreens::geometry() const {
  if (GdkMonitor* const monitor = primary()) lastPrimary_ = frameOf(monitor);
  return ScreenGeometry(lastPrimary_);
}

std::vector<Screen> GtkScreens::all() const {
  std::vector<Screen> screens;
  GdkMonitor* const first = primary();
  if (first == nullptr) return screens;
  const int count = gdk_display_get_n_monitors(display_);
  for (int i = 0; i < count; ++i) {
    GdkMonitor* const monitor = gdk_display_get_monitor(display_, i);
    if (monitor == nullptr) continue;
    Screen screen = describe(monitor);
    screen.number = i + 1;
    screens.insert(monitor == first ? screens.begin() : screens.end(), std::move(screen));
  }
  return screens;
}

Screen GtkScreens::describe(GdkMonitor* monitor) const {
  const ScreenGeometry convert = geometry();
  GdkRectangle workArea;
  gdk_monitor_get_workarea(monitor, &workArea);
  Screen screen;
  screen.frame = convert.fromX(frameOf(monitor));
  screen.visibleFrame = convert.fromX(rectOf(workArea));
  screen.backingScaleFactor = gdk_monitor_get_scale_factor(monitor);
  screen.name = textOf(gdk_monitor_get_model(monitor));
  if (const auto& edid = edidOf(monitor)) {
    if (!edid->name.empty()) screen.name = edid->name;
    screen.vendor = edid->vendor;
    screen.model = edid->product;
    screen.serial = edid->serial;
  }
  return screen;
}

const std::optional<Edid>& GtkScreens::edidOf(GdkMonitor* monitor) const {
  const unsigned long output = gdk_x11_monitor_get_output(monitor);
  const auto known = edids_.find(output);
  if (known != edids_.end()) return known->second;
  return edids_.emplace(output, readEdid(display_, output)).first->second;
}

}  // namespace velto
