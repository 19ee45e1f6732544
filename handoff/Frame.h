#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velto {

/// The message between a start and the running application.
///
/// Request: the payload's length in four bytes, most significant first, then the payload: the arguments, each
/// ended by a zero byte. An empty payload is a start without arguments. One message per connection.
/// Answer: one byte, `kAnswerAccepted` or `kAnswerRefused`.
/// Arguments are bytes; nothing here promises that they are UTF-8.
inline constexpr std::size_t kFrameHeaderSize = 4;
inline constexpr std::size_t kPayloadLimit = std::size_t{1} << 20;
inline constexpr std::size_t kArgumentLimit = 64;
inline constexpr char kAnswerAccepted = 0x06;
inline constexpr char kAnswerRefused = 0x15;

/// Throws HandoffError for more arguments or bytes than the limits allow, or a zero byte inside an argument.
[[nodiscard]] std::string encodeFrame(const std::vector<std::string>& arguments);

/// Reads one request from whatever pieces it comes in. Holds no more memory than it was fed, whatever length
/// a header announces. The outcome depends on the bytes only, not on how they were cut.
class FrameDecoder {
 public:
  enum class State { wanting, complete, refused };

  /// Takes the next bytes. A refusal is final; bytes behind a complete message refuse it.
  State feed(std::string_view bytes);

  [[nodiscard]] State state() const { return state_; }
  /// The message's arguments, once, when it is complete.
  [[nodiscard]] std::vector<std::string> takeArguments() { return std::move(arguments_); }
  /// Why the message was refused, for a log.
  [[nodiscard]] const std::string& refusal() const { return refusal_; }

 private:
  std::string_view keep(std::string_view bytes, std::size_t upTo);
  State finish();
  State refuse(std::string reason);

  State state_ = State::wanting;
  std::string buffer_;
  std::vector<std::string> arguments_;
  std::string refusal_;
};

}  // namespace velto
