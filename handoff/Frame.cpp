#include "handoff/Frame.h"

#include <algorithm>
#include <utility>

#include "handoff/HandoffError.h"

namespace velto {

namespace {

std::string header(std::size_t length) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<char>((length >> shift) & 0xff));
  return bytes;
}

std::size_t announcedLength(std::string_view header) {
  std::size_t length = 0;
  for (const char byte : header.substr(0, kFrameHeaderSize)) {
    length = length << 8 | static_cast<unsigned char>(byte);
  }
  return length;
}

}  // namespace

std::string encodeFrame(const std::vector<std::string>& arguments) {
  if (arguments.size() > kArgumentLimit) {
    throw HandoffError("too many arguments (" + std::to_string(arguments.size()) + "); give at most " +
                       std::to_string(kArgumentLimit));
  }
  std::string payload;
  for (const std::string& argument : arguments) {
    if (argument.find('\0') != std::string::npos) throw HandoffError("an argument contains a zero byte");
    payload.append(argument).push_back('\0');
  }
  if (payload.size() > kPayloadLimit) {
    throw HandoffError("the arguments are too long (" + std::to_string(payload.size()) +
                       " bytes); give at most " + std::to_string(kPayloadLimit) + " bytes");
  }
  return header(payload.size()) + payload;
}

FrameDecoder::State FrameDecoder::feed(std::string_view bytes) {
  if (state_ == State::refused || bytes.empty()) return state_;
  bytes = keep(bytes, kFrameHeaderSize);
  if (buffer_.size() < kFrameHeaderSize) return state_;

  const std::size_t length = announcedLength(buffer_);
  if (length > kPayloadLimit) return refuse("a length of " + std::to_string(length) + " bytes is announced");
  bytes = keep(bytes, kFrameHeaderSize + length);
  if (buffer_.size() < kFrameHeaderSize + length) return state_;

  if (state_ == State::wanting) finish();
  if (state_ == State::complete && !bytes.empty()) refuse("bytes follow the message");
  return state_;
}

/// Adds to the buffer what it lacks of `upTo` bytes and gives back the rest.
std::string_view FrameDecoder::keep(std::string_view bytes, std::size_t upTo) {
  const std::size_t lacking = upTo - std::min(upTo, buffer_.size());
  buffer_.append(bytes.substr(0, lacking));
  return bytes.substr(std::min(lacking, bytes.size()));
}

FrameDecoder::State FrameDecoder::finish() {
  std::string_view payload = std::string_view(buffer_).substr(kFrameHeaderSize);
  if (!payload.empty() && payload.back() != '\0') return refuse("the last argument has no end");
  if (std::cmp_greater(std::count(payload.begin(), payload.end(), '\0'), kArgumentLimit)) {
    return refuse("there are too many arguments");
  }
  while (!payload.empty()) {
    const std::size_t end = payload.find('\0');
    arguments_.emplace_back(payload.substr(0, end));
    payload.remove_prefix(end + 1);
  }
  return state_ = State::complete;
}

FrameDecoder::State FrameDecoder::refuse(std::string reason) {
  refusal_ = std::move(reason);
  arguments_.clear();
  buffer_ = {};
  return state_ = State::refused;
}

}  // namespace velto
