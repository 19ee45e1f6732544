#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <stdlib.h>

namespace velto::test {

/// A folder on the disk that goes at the end, with all that is in it.
struct TemporaryFolder {
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "velto-test-XXXXXX").native();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path); }

  std::filesystem::path path;
};

}  // namespace velto::test
