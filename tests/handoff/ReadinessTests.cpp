#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "handoff/Readiness.h"

namespace velto {
namespace {

class ReadinessTest : public ::testing::Test {
 protected:
  ReadinessTest() {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    reading_ = OwnedDescriptor(ends[0]);
    writing_ = ends[1];
  }
  ~ReadinessTest() override { ::unsetenv(kReadyVariable); }

  static Readiness take(const std::string& value) {
    ::setenv(kReadyVariable, value.c_str(), 1);
    Readiness readiness = Readiness::takeFromEnvironment();
    EXPECT_EQ(std::getenv(kReadyVariable), nullptr);
    return readiness;
  }
  /// All that was said, once the application's end is closed.
  [[nodiscard]] std::string heard() const {
    std::string text;
    for (char byte = 0; ::read(reading_.get(), &byte, 1) == 1;) text.push_back(byte);
    return text;
  }

  OwnedDescriptor reading_;
  int writing_ = -1;
};

TEST_F(ReadinessTest, saysReadyOnceAndClosesThePipe) {
  Readiness readiness = take(std::to_string(writing_));
  EXPECT_NE(::fcntl(writing_, F_GETFD) & FD_CLOEXEC, 0);
  readiness.ready();
  readiness.failed("too late");
  EXPECT_EQ(heard(), "ready\n");
}

TEST_F(ReadinessTest, aReasonIsOneLineOfBoundedLength) {
  take(std::to_string(writing_)).failed("no\ndisplay\x1b[2J" + std::string(100'000, 'x'));
  EXPECT_EQ(heard(), "no display [2J" + std::string(4095 - 14, 'x') + "\n");
}

TEST_F(ReadinessTest, aStarterThatHasGoneEndsNobody) {
  Readiness readiness = take(std::to_string(writing_));
  reading_.close();
  readiness.ready();
}

TEST_F(ReadinessTest, whatIsNoPipeToWriteToIsLeftAlone) {
  const OwnedDescriptor pipe(writing_);
  const OwnedDescriptor file(::open("/dev/null", O_WRONLY | O_CLOEXEC));
  const std::string number = std::to_string(pipe.get());
  for (const std::string& value :
       {std::string("x"), number + " ", "+" + number, std::string("-1"), std::string("1"),
        std::string("99999"), std::string("99999999999999999999"), std::to_string(reading_.get()),
        std::to_string(file.get())}) {
    take(value).ready();
  }
  EXPECT_NE(::fcntl(reading_.get(), F_GETFD), -1);
  EXPECT_NE(::fcntl(file.get(), F_GETFD), -1);
  EXPECT_EQ(::fcntl(reading_.get(), F_SETFL, O_NONBLOCK), 0);
  EXPECT_EQ(heard(), "");
}

}  // namespace
}  // namespace velto
