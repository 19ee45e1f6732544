// firstpixel RRGGBB SECONDS COMMAND [ARGUMENT...]
//
// Starts the command and waits until some pixel of a coarse grid over the screen has the colour. Prints when
// it started the command, in seconds of the monotonic clock, and how many milliseconds later the pixel was
// there. Leaves whatever the command started running. Exits with 1 when the colour did not come in time, and
// with 2 when nothing could be measured.
//
// The grid is fetched as a few rows in one go. That takes the X server some ten microseconds, so that looking
// every two milliseconds leaves the processor to those who are measured.

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kGrid = 64;
constexpr std::uint32_t kColourBits = 0xffffff;
constexpr std::chrono::milliseconds kPause{2};
constexpr int kNeverSeen = 1;
constexpr int kNothingMeasured = 2;

struct Free {
  void operator()(void* block) const { std::free(block); }
};

/// The root window with all that is shown in it; 32 bits to a pixel, in this machine's byte order.
class ScreenWatch {
 public:
  ScreenWatch() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0) return;
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  }

  [[nodiscard]] bool usable() const { return screen_ != nullptr && screen_->root_depth == 24; }

  [[nodiscard]] bool shows(std::uint32_t colour) const {
    std::vector<xcb_get_image_cookie_t> rows;
    for (int y = kGrid / 2; y < screen_->height_in_pixels; y += kGrid) {
      rows.push_back(xcb_get_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, 0,
                                   static_cast<std::int16_t>(y), screen_->width_in_pixels, 1, ~0U));
    }
    bool found = false;
    for (const auto row : rows) found = rowShows(row, colour) || found;
    return found;
  }

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  [[nodiscard]] bool rowShows(xcb_get_image_cookie_t row, std::uint32_t colour) const {
    const std::unique_ptr<xcb_get_image_reply_t, Free> image(
        xcb_get_image_reply(connection_.get(), row, nullptr));
    if (!image) return false;
    const std::uint8_t* data = xcb_get_image_data(image.get());
    const int length = xcb_get_image_data_length(image.get());
    for (int at = kGrid / 2 * 4; at + 4 <= length; at += kGrid * 4) {
      std::uint32_t pixel = 0;
      std::memcpy(&pixel, data + at, sizeof pixel);
      if ((pixel & kColourBits) == colour) return true;
    }
    return false;
  }

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  const xcb_screen_t* screen_ = nullptr;
};

template <typename Number>
std::optional<Number> number(std::string_view text, int base) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

/// In a session of its own and with nothing to say: what it prints is no part of what is measured.
bool start(char** command) {
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t files;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  return posix_spawnp(&child, command[0], &files, &attributes, command, environ) == 0;
}

int fail(const char* what) {
  std::fprintf(stderr, "firstpixel: %s\n", what);
  return kNothingMeasured;
}

}  // namespace

int main(int argc, char** argv) {
  const auto colour = argc > 3 ? number<std::uint32_t>(argv[1], 16) : std::nullopt;
  const auto seconds = argc > 3 ? number<int>(argv[2], 10) : std::nullopt;
  if (!colour || !seconds) return fail("usage: firstpixel RRGGBB SECONDS COMMAND [ARGUMENT...]");
  const ScreenWatch screen;
  if (!screen.usable()) return fail("there is no display with 24 bits of colour");
  if (screen.shows(*colour)) return fail("the colour is on the screen already");

  const auto started = Clock::now();
  if (!start(argv + 3)) return fail("the command cannot be started");
  do {
    std::this_thread::sleep_for(kPause);
    if (!screen.shows(*colour)) continue;
    const std::chrono::duration<double, std::milli> taken = Clock::now() - started;
    std::printf("%.6f %.3f\n", std::chrono::duration<double>(started.time_since_epoch()).count(),
                taken.count());
    return 0;
  } while (Clock::now() - started < std::chrono::seconds(*seconds));
  std::fprintf(stderr, "firstpixel: the colour did not come within %d s\n", *seconds);
  return kNeverSeen;
}
