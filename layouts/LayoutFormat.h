#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "layouts/Layout.h"
#include "platform/foundation/JsonRecord.h"

/// The records as they stand in files, and what is checked in a layout's file before it is used.

namespace velto {

/// Whether an identifier may be part of a file's name: 1 to 128 of A-Z a-z 0-9 "." "_" "-", and neither "."
/// nor "..".
bool isSafeIdentifier(std::string_view identifier);

/// The file of a layout that cannot be used; `what()` is the reason as the person reads it.
class UnreadableLayout : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The format of a record that a later Velto wrote; nothing when this one understands it or there is no
/// telling.
std::optional<std::int64_t> newerSchemaVersion(const JsonElement& record);

/// The layout in the bytes of its file. Its identifier is safe, its format is not below 1, and each thumbnail
/// is "thumbs/<safe identifier>.png". Throws `UnreadableLayout`.
Layout decodeLayout(JsonParser& parser, std::string_view bytes);

template <>
struct JsonFields<LayoutRect> {
  static constexpr std::array kFields = {
      jsonField<&LayoutRect::x>("x"),
      jsonField<&LayoutRect::y>("y"),
      jsonField<&LayoutRect::w>("w"),
      jsonField<&LayoutRect::h>("h"),
  };
};

template <>
struct JsonFields<LayoutNormalizedRect> {
  static constexpr std::array kFields = {
      jsonField<&LayoutNormalizedRect::x>("x"),
      jsonField<&LayoutNormalizedRect::y>("y"),
      jsonField<&LayoutNormalizedRect::w>("w"),
      jsonField<&LayoutNormalizedRect::h>("h"),
  };
};

template <>
struct JsonFields<LayoutSize> {
  static constexpr std::array kFields = {
      jsonField<&LayoutSize::w>("w"),
      jsonField<&LayoutSize::h>("h"),
  };
};

template <>
struct JsonFields<LayoutScroll> {
  static constexpr std::array kFields = {
      jsonField<&LayoutScroll::x>("x"),
      jsonField<&LayoutScroll::y>("y"),
  };
};

template <>
struct JsonFields<LayoutAnchors> {
  static constexpr std::array kFields = {
      jsonField<&LayoutAnchors::left>("left"),       jsonField<&LayoutAnchors::right>("right"),
      jsonField<&LayoutAnchors::top>("top"),         jsonField<&LayoutAnchors::bottom>("bottom"),
      jsonField<&LayoutAnchors::centerX>("centerX"), jsonField<&LayoutAnchors::centerY>("centerY"),
  };
};

template <>
struct JsonFields<LayoutDisplay> {
  static constexpr std::array kFields = {
      jsonField<&LayoutDisplay::key>("key"),
      jsonField<&LayoutDisplay::name>("name"),
      jsonField<&LayoutDisplay::frame>("frame"),
      jsonField<&LayoutDisplay::visibleFrame>("visibleFrame"),
      jsonField<&LayoutDisplay::backingScaleFactor>("backingScaleFactor"),
      jsonField<&LayoutDisplay::isMain>("isMain"),
  };
};

template <>
struct JsonFields<LayoutWindow> {
  static constexpr std::array kFields = {
      jsonField<&LayoutWindow::id>("id"),
      jsonField<&LayoutWindow::url>("url"),
      jsonField<&LayoutWindow::title>("title"),
      jsonField<&LayoutWindow::displayKey>("displayKey"),
      jsonField<&LayoutWindow::rect>("rect"),
      jsonField<&LayoutWindow::normalized>("normalized"),
      jsonField<&LayoutWindow::anchors>("anchors"),
      jsonField<&LayoutWindow::zoom>("zoom"),
      jsonField<&LayoutWindow::chromeless>("chromeless"),
      jsonField<&LayoutWindow::pinned>("pinned"),
      jsonField<&LayoutWindow::thumbnail>("thumbnail"),
      jsonField<&LayoutWindow::scroll>("scroll"),
      jsonField<&LayoutWindow::noFocus>("noFocus"),
      jsonField<&LayoutWindow::capturedAt>("capturedAt"),
  };
};

template <>
struct JsonFields<Layout> {
  static constexpr std::array kFields = {
      jsonField<&Layout::schemaVersion>("schemaVersion"),
      jsonField<&Layout::id>("id"),
      jsonField<&Layout::name>("name"),
      jsonField<&Layout::createdAt>("createdAt"),
      jsonField<&Layout::updatedAt>("updatedAt"),
      jsonField<&Layout::displays>("displays"),
      jsonField<&Layout::windows>("windows"),
  };
};

}  // namespace velto
