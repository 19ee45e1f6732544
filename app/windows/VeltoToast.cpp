#include "app/windows/VeltoToast.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/ui/Drawing.h"

namespace velto {

namespace {

constexpr double kHeight = 40;
constexpr double kMinimumWidth = 160;
constexpr double kMaximumWidth = 520;
/// On both sides of the text together.
constexpr double kRoomBesideText = 40;
/// From the top of the screen's visible area to the toast's.
constexpr double kDropFromTop = 48;
constexpr double kCornerRadius = 10;
constexpr Font kFont{.size = 13, .weight = Font::Weight::medium};
constexpr Color kTextColor{1, 1, 1};
constexpr Rect kAssumedVisibleFrame{{0, 0}, {1440, 900}};

/// Nearly black, with a rim that keeps it apart from a page as dark as itself.
class ToastBackground : public View {
 public:
  using View::View;
  void draw(const Cairo::RefPtr<Cairo::Context>& context) override {
    constexpr double kRim = 1;
    roundedRectangle(context, bounds(), kCornerRadius);
    context->set_source_rgba(0.11, 0.11, 0.12, 0.94);
    context->fill();
    roundedRectangle(context, bounds().inset(kRim / 2, kRim / 2), kCornerRadius - kRim / 2);
    context->set_line_width(kRim);
    context->set_source_rgba(1, 1, 1, 0.16);
    context->stroke();
  }
};

}  // namespace

VeltoToast::VeltoToast(Application& application, const Clock& clock, MainQueue& mainQueue)
    : application_(application),
      mainQueue_(mainQueue),
      fade_(
          Animator(clock, mainQueue, application.windowSystem()), mainQueue,
          [this](double alpha) { panel_->setAlpha(alpha); }, [this] { panel_->orderOut(); }) {}

void VeltoToast::show(const std::string& text, const Window* window) {
  if (std::this_thread::get_id() != mainThread_) {
    mainQueue_.async([self = WeakPtr<VeltoToast>(*this), text] {
      if (self) self->show(text);
    });
    return;
  }
  if (!panel_ || panel_->isClosed()) makePanel();
  label_->setText(text);
  const double width =
      std::clamp(label_->fittingSize().width + kRoomBesideText, kMinimumWidth, kMaximumWidth);
  const Rect area = visibleFrame(window);
  panel_->setFrame({{area.midX() - width / 2, area.maxY() - kHeight - kDropFromTop}, {width, kHeight}});
  if (!panel_->isVisible()) panel_->setAlpha(0);
  panel_->orderFrontRegardless();
  fade_.show(panel_->alpha());
}

void VeltoToast::makePanel() {
  const Rect frame{{0, 0}, {kMinimumWidth, kHeight}};
  panel_ = std::make_unique<Panel>(application_, frame, style_mask::kNonactivatingPanel);
  panel_->setIdentifier("velto-toast");
  panel_->setLevel(kFloatingWindowLevel);
  panel_->setCollectionBehavior(collection_behavior::kCanJoinAllSpaces | collection_behavior::kStationary |
                                collection_behavior::kIgnoresCycle |
                                collection_behavior::kFullScreenAuxiliary);
  panel_->setHasShadow(true);
  panel_->setOpaque(false);
  panel_->setIgnoresMouseEvents(true);

  auto background = std::make_unique<ToastBackground>(frame);
  auto label = std::make_unique<Label>("", kFont, kTextColor);
  label->setAlignment(Label::Alignment::center);
  label->setFrame(background->bounds().inset(kRoomBesideText / 2, 0));
  label->autoresizing = {.width = true, .height = true};
  label_ = background->addSubview(std::move(label));
  panel_->setContentView(std::move(background));
}

Rect VeltoToast::visibleFrame(const Window* window) const {
  const Window* concerned = window != nullptr ? window : application_.keyWindow();
  auto screen = concerned != nullptr ? concerned->screen() : std::nullopt;
  if (!screen) screen = application_.mainScreen();
  return screen ? screen->visibleFrame : kAssumedVisibleFrame;
}

}  // namespace velto
