#include "platform/foundation/UserDefaults.h"

#include <array>
#include <charconv>

namespace velto {
namespace {

std::string numberText(double value) {
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), result.ptr};
}

}  // namespace

UserDefaults::UserDefaults(FileManager& files, std::filesystem::path file)
    : files_(files), file_(std::move(file)) {}

std::optional<PropertyList> UserDefaults::value(std::string_view key) const {
  if (!loaded_) load();
  const auto found = values_.find(std::string(key));
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<bool> UserDefaults::boolean(std::string_view key) const {
  const std::optional<PropertyList> found = value(key);
  return found ? found->asBool() : std::nullopt;
}

std::optional<std::string> UserDefaults::string(std::string_view key) const {
  const std::optional<PropertyList> found = value(key);
  if (!found) return std::nullopt;
  if (const auto* text = found->as<std::string>()) return *text;
  if (const auto* flag = found->as<bool>()) return *flag ? "1" : "0";
  if (const auto* integer = found->as<std::int64_t>()) return std::to_string(*integer);
  const auto* real = found->as<double>();
  return real == nullptr ? std::nullopt : std::optional(numberText(*real));
}

std::optional<WallTime> UserDefaults::date(std::string_view key) const {
  const std::optional<PropertyList> found = value(key);
  const auto* date = found ? found->as<WallTime>() : nullptr;
  return date == nullptr ? std::nullopt : std::optional(*date);
}

PropertyList::Dictionary UserDefaults::dictionary(std::string_view key) const {
  const std::optional<PropertyList> found = value(key);
  const auto* dictionary = found ? found->as<PropertyList::Dictionary>() : nullptr;
  return dictionary == nullptr ? PropertyList::Dictionary() : *dictionary;
}

void UserDefaults::set(std::string_view key, PropertyList value) {
  change(std::string(key), std::move(value));
}

void UserDefaults::remove(std::string_view key) { change(std::string(key), std::nullopt); }

void UserDefaults::removeAll() {
  load();
  values_.clear();
  unsaved_.clear();
  try {
    if (mayReplaceFile_) files_.remove(file_);
  } catch (const FileError&) {
    // It was not there, or it stays until the next change replaces it.
  }
  seen_ = files_.info(file_);
}

void UserDefaults::change(std::string key, std::optional<PropertyList> value) {
  load();
  const auto current = values_.find(key);
  const bool same = value ? current != values_.end() && current->second == *value : current == values_.end();
  if (same && unsaved_.empty()) return;
  unsaved_.insert_or_assign(std::move(key), std::move(value));
  applyUnsaved();
  store();
}

void UserDefaults::applyUnsaved() const {
  for (const auto& [key, value] : unsaved_) {
    if (value) {
      values_.insert_or_assign(key, *value);
    } else {
      values_.erase(key);
    }
  }
}

void UserDefaults::load() const {
  const std::optional<FileInfo> now = files_.info(file_);
  // A link tells nothing about the file that it leads to.
  const bool isLink = now && now->type == FileInfo::Type::symbolicLink;
  if (loaded_ && mayReplaceFile_ && now == seen_ && !isLink) return;
  loaded_ = true;
  seen_ = now;
  try {
    const std::string bytes = files_.read(file_);
    const std::optional<PropertyList> contents = readPropertyList(bytes);
    const auto* dictionary = contents ? contents->as<PropertyList::Dictionary>() : nullptr;
    values_ = dictionary == nullptr ? PropertyList::Dictionary() : *dictionary;
    mayReplaceFile_ = dictionary != nullptr || moveAside();
  } catch (const FileError& error) {
    mayReplaceFile_ = error.kind() == FileError::Kind::notFound;
    if (mayReplaceFile_) values_.clear();
  }
  applyUnsaved();
}

bool UserDefaults::moveAside() const {
  std::filesystem::path aside = file_;
  aside += ".damaged";
  for (int number = 2; files_.exists(aside); ++number) {
    aside = file_;
    aside += ".damaged-" + std::to_string(number);
  }
  try {
    files_.rename(file_, aside);
  } catch (const FileError&) {
    return false;
  }
  seen_.reset();
  return true;
}

void UserDefaults::store() {
  if (!mayReplaceFile_) return;
  try {
    files_.createDirectory(file_.parent_path());
    files_.writeAtomically(file_, writePropertyList(values_));
  } catch (const FileError&) {
    return;
  }
  unsaved_.clear();
  seen_ = files_.info(file_);
}

}  // namespace velto
