// Any bytes, cut anywhere: the decoder ends in the same state as when it gets them at once, and what it
// accepts is exactly what the encoder would have sent. The first byte of the input says how the rest is cut.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "handoff/Frame.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t piece = std::size_t{1} + data[0];
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);

  velto::FrameDecoder whole;
  whole.feed(bytes);
  velto::FrameDecoder inPieces;
  for (std::size_t at = 0; at < bytes.size(); at += piece) inPieces.feed(bytes.substr(at, piece));

  require(whole.state() == inPieces.state());
  require(whole.refusal() == inPieces.refusal());
  const auto arguments = whole.takeArguments();
  require(arguments == inPieces.takeArguments());
  if (whole.state() == velto::FrameDecoder::State::complete) {
    require(velto::encodeFrame(arguments) == bytes);
  } else {
    require(arguments.empty());
  }
  return 0;
}
