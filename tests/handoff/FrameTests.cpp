#include <gtest/gtest.h>

#include "handoff/Frame.h"
#include "handoff/HandoffError.h"

namespace velto {
namespace {

using namespace std::string_literals;
using Arguments = std::vector<std::string>;
using State = FrameDecoder::State;

TEST(HandoffFrame, bytesOnTheWire) {
  EXPECT_EQ(encodeFrame({}), "\0\0\0\0"s);
  EXPECT_EQ(encodeFrame({"ab", "", "c"}),
            "\0\0\0\x06"
            "ab\0\0c\0"s);
  EXPECT_EQ(encodeFrame({std::string(0x012345, 'x')}).substr(0, 4), "\x00\x01\x23\x46"s);
}

TEST(HandoffFrame, whatIsEncodedIsReadBackHoweverItIsCut) {
  const std::vector<Arguments> messages{
      {},
      {""},
      {"one", "", "\xff\x01\n", "vier"},
      Arguments(kArgumentLimit, "x"),
      {std::string(kPayloadLimit - 1, 'x')},
  };
  for (const Arguments& message : messages) {
    const std::string frame = encodeFrame(message);
    for (const std::size_t piece : {std::size_t{1}, std::size_t{3}, std::size_t{5}, frame.size()}) {
      if (frame.size() / piece > 100'000) continue;
      FrameDecoder decoder;
      for (std::size_t at = 0; at < frame.size(); at += piece) {
        EXPECT_EQ(decoder.state(), State::wanting);
        decoder.feed(std::string_view(frame).substr(at, piece));
      }
      EXPECT_EQ(decoder.state(), State::complete);
      EXPECT_EQ(decoder.takeArguments(), message);
    }
  }
}

TEST(HandoffFrame, refusals) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"\0\x10\0\x01"s, "a length of 1048577 bytes is announced"},
      {"\xff\xff\xff\xff"s, "a length of 4294967295 bytes is announced"},
      {"\0\0\0\x03"
       "a\0b"s,
       "the last argument has no end"},
      {"\0\0\0\x41"s + std::string(65, '\0'), "there are too many arguments"},
      {"\0\0\0\x02"
       "a\0b"s,
       "bytes follow the message"},
      {"\0\0\0\0\0"s, "bytes follow the message"},
  };
  for (const auto& [bytes, refusal] : cases) {
    FrameDecoder whole;
    EXPECT_EQ(whole.feed(bytes), State::refused) << refusal;
    EXPECT_EQ(whole.refusal(), refusal);
    EXPECT_EQ(whole.feed("more"), State::refused);

    FrameDecoder byByte;
    for (const char byte : bytes) byByte.feed({&byte, 1});
    EXPECT_EQ(byByte.refusal(), refusal);
    EXPECT_TRUE(byByte.takeArguments().empty());
  }
}

TEST(HandoffFrame, whatCannotBeSentIsToldBeforeItIsSent) {
  const auto refusalOf = [](const Arguments& arguments) -> std::string {
    try {
      return encodeFrame(arguments).substr(0, 0);
    } catch (const HandoffError& error) {
      return error.what();
    }
  };
  EXPECT_EQ(refusalOf(Arguments(64, "x")), "");
  EXPECT_EQ(refusalOf(Arguments(65, "x")), "too many arguments (65); give at most 64");
  EXPECT_EQ(refusalOf({std::string(kPayloadLimit, 'x')}),
            "the arguments are too long (1048577 bytes); give at most 1048576 bytes");
  EXPECT_EQ(refusalOf({"a\0b"s}), "an argument contains a zero byte");
}

}  // namespace
}  // namespace velto
