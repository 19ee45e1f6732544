#pragma once

#include <cstdio>
#include <exception>

namespace velto {

/// Runs work that C code called: an exception ends here, with a line on stderr, and the program goes on.
template <class Work>
void guarded(Work&& work) noexcept {
  try {
    work();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "velto: a task failed: %s\n", error.what());
  } catch (...) {
    std::fputs("velto: a task failed\n", stderr);
  }
}

}  // namespace velto
