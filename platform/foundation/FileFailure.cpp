#include "platform/foundation/FileFailure.h"

#include "platform/foundation/Text.h"

namespace velto {
namespace {

std::string_view outcome(FileOperation operation) {
  switch (operation) {
    case FileOperation::read:
      return "could not be read";
    case FileOperation::write:
      return "could not be written";
    case FileOperation::makeDirectory:
      return "could not be made";
    case FileOperation::remove:
      return "could not be removed";
    case FileOperation::rename:
      return "could not be renamed";
    case FileOperation::list:
      break;
  }
  return "could not be opened";
}

std::string_view reason(FileError::Kind kind, FileOperation operation, std::string_view detail) {
  const bool makes = operation == FileOperation::write || operation == FileOperation::makeDirectory;
  switch (kind) {
    case FileError::Kind::notFound:
      return makes ? "its folder does not exist" : "it does not exist";
    case FileError::Kind::notPermitted:
      return "there is no permission for it";
    case FileError::Kind::alreadyExists:
      return "something with that name is there already";
    case FileError::Kind::isDirectory:
      return "it is a folder";
    case FileError::Kind::notDirectory:
      return "it is not in a folder";
    case FileError::Kind::noSpace:
      return "no space left on the disk";
    case FileError::Kind::other:
      break;
  }
  return detail.empty() ? "the disk gave an error" : detail;
}

}  // namespace

FileError fileFailure(FileError::Kind kind, FileOperation operation, const std::filesystem::path& path,
                      std::string_view detail) {
  const bool named = path.has_filename();
  const std::string name = repairUtf8(named ? path.filename().native() : path.native());
  std::string message = "“" + name + "” ";
  message += outcome(operation);
  message += ": ";
  const bool noFolder = kind == FileError::Kind::notDirectory && operation == FileOperation::list;
  message += noFolder ? "it is not a folder" : reason(kind, operation, detail);
  message += '.';
  return {kind, message};
}

}  // namespace velto
