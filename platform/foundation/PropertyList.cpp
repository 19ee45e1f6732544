#include "platform/foundation/PropertyList.h"

#include <cmath>

#include "platform/foundation/PropertyListBinary.h"
#include "platform/foundation/PropertyListXml.h"
#include "platform/foundation/Text.h"

namespace velto {

std::optional<bool> PropertyList::asBool() const {
  if (const auto* flag = as<bool>()) return *flag;
  const auto* integer = as<std::int64_t>();
  const auto* real = as<double>();
  if ((integer != nullptr && *integer == 0) || (real != nullptr && *real == 0)) return false;
  if ((integer != nullptr && *integer == 1) || (real != nullptr && *real == 1)) return true;
  return std::nullopt;
}

std::optional<std::int64_t> PropertyList::asInteger() const {
  if (const auto* flag = as<bool>()) return *flag ? 1 : 0;
  if (const auto* integer = as<std::int64_t>()) return *integer;
  if (const auto* text = as<std::string>()) return parseInteger(*text);
  const auto* real = as<double>();
  constexpr double kBeyond = 9223372036854775808.0;
  if (real == nullptr || !(*real >= -kBeyond && *real < kBeyond) || std::trunc(*real) != *real)
    return std::nullopt;
  return static_cast<std::int64_t>(*real);
}

std::optional<double> PropertyList::asDouble() const {
  if (const auto* flag = as<bool>()) return *flag ? 1 : 0;
  if (const auto* integer = as<std::int64_t>()) return static_cast<double>(*integer);
  if (const auto* text = as<std::string>()) return parseDouble(*text);
  const auto* real = as<double>();
  return real == nullptr ? std::nullopt : std::optional(*real);
}

std::optional<PropertyList> readPropertyList(std::string_view bytes) {
  return bytes.starts_with("bplist0") ? readBinaryPropertyList(bytes) : readXmlPropertyList(bytes);
}

std::string writePropertyList(const PropertyList& value) { return writeXmlPropertyList(value); }

}  // namespace velto
