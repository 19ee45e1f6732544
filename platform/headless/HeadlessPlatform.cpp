#include "platform/headless/HeadlessPlatform.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velto {

namespace {

namespace fs = std::filesystem;

constexpr const char* kDefaultsFile = "com.hovrel.extension.plist";

Environment headlessEnvironment() {
  Environment environment;
  environment.variables["HOME"] = "/home/p";
  environment.processId = 4242;
  environment.applicationSupportDirectory = "/data/Velto";
  environment.preferencesDirectory = "/config/Velto/Preferences";
  environment.cacheDirectory = "/cache/Velto";
  environment.temporaryDirectory = "/cache/Velto/Temporary";
  environment.documentsDirectory = "/home/p/Documents";
#ifdef VELTO_SOURCE_DIR
  environment.resourcesDirectory = fs::path(VELTO_SOURCE_DIR) / "resources";
#else
  environment.resourcesDirectory = "/resources";
#endif
  return environment;
}

/// The files of the real folder, at the same paths in memory; nothing when there is no such folder.
void copyIntoMemory(const fs::path& folder, FileManager& files) {
  files.createDirectory(folder);
  std::error_code missing;
  for (const auto& entry : fs::recursive_directory_iterator(folder, missing)) {
    if (entry.is_directory()) {
      files.createDirectory(entry.path());
    } else if (entry.is_regular_file()) {
      std::ifstream stream(entry.path(), std::ios::binary);
      files.writeAtomically(entry.path(), std::string(std::istreambuf_iterator<char>(stream), {}));
    }
  }
}

void endProcess(const std::string& failure) {
  std::fprintf(stderr, "%s\n", failure.c_str());
  std::abort();
}

}  // namespace

HeadlessPlatform::HeadlessPlatform()
    : onFailure(endProcess),
      environment_(headlessEnvironment()),
      defaults_(files_, environment_.preferencesDirectory / kDefaultsFile),
      windowSystem_(loop_),
      input_(windowSystem_, loop_),
      application_(windowSystem_),
      webEngine_(loop_),
      platform_{environment_, loop_,          loop_,        backgroundQueue_, files_,
                defaults_,    notifications_, application_, webEngine_} {
  windowSystem_.setApplication(application_);
  files_.createDirectory(*environment_.documentsDirectory);
  copyIntoMemory(environment_.resourcesDirectory, files_);
}

HeadlessPlatform::~HeadlessPlatform() {
  for (const std::string& line : windowSystem_.unansweredSheets()) onFailure(line);
  // What is queued may own windows, which need the rest of the platform to go.
  backgroundQueue_.discardAll();
  loop_.discardAll();
}

}  // namespace velto
