#include "platform/foundation/PropertyListXml.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include "platform/foundation/Text.h"

namespace velto {
namespace {

constexpr int kMaximumDepth = 128;
constexpr std::size_t kMaximumSize = std::size_t{16} * 1024 * 1024;
constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// ---- Reading

std::string_view nameOf(const xmlNode& node) { return reinterpret_cast<const char*>(node.name); }

bool isElement(const xmlNode& node) { return node.type == XML_ELEMENT_NODE; }

/// The node or the first one after it that is an element.
const xmlNode* elementFrom(const xmlNode* node) {
  while (node != nullptr && !isElement(*node)) node = node->next;
  return node;
}

/// The text of an element that holds nothing else. References to entities of the file's own making are
/// refused: nothing that writes property lists needs them, and they unfold without end.
std::optional<std::string> textOf(const xmlNode& element) {
  std::string text;
  for (const xmlNode* child = element.children; child != nullptr; child = child->next) {
    if (child->type == XML_COMMENT_NODE || child->type == XML_PI_NODE) continue;
    if (child->type != XML_TEXT_NODE && child->type != XML_CDATA_SECTION_NODE) return std::nullopt;
    if (child->content != nullptr) text += reinterpret_cast<const char*>(child->content);
  }
  return text;
}

std::optional<PropertyList> readInteger(const std::string& text) {
  if (const auto decimal = parseInteger(text)) return PropertyList(*decimal);
  std::string_view digits = text;
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
  if (hexadecimal) digits.remove_prefix(2);
  std::uint64_t value = 0;
  const auto* end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, value, hexadecimal ? 16 : 10);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    const auto magnitude = static_cast<std::int64_t>(value);
    return PropertyList(negative ? -magnitude : magnitude);
  }
  return PropertyList(negative ? -static_cast<double>(value) : static_cast<double>(value));
}

std::optional<PropertyList> readReal(const std::string& text) {
  if (const auto decimal = parseDouble(text)) return PropertyList(*decimal);
  std::string word = lowercased(text);
  const bool negative = word.starts_with('-');
  if (negative || word.starts_with('+')) word.erase(0, 1);
  if (word == "nan") return PropertyList(std::numeric_limits<double>::quiet_NaN());
  if (word != "inf" && word != "infinity") return std::nullopt;
  return PropertyList(std::copysign(std::numeric_limits<double>::infinity(), negative ? -1.0 : 1.0));
}

/// Whole groups of four characters; blanks and anything else that is no base64 are skipped.
PropertyList::Data decodeBase64(std::string_view text) {
  PropertyList::Data data;
  std::uint32_t group = 0;
  int count = 0;
  int padding = 0;
  for (const char c : text) {
    const std::size_t digit = kAlphabet.find(c);
    if (digit == std::string_view::npos && c != '=') continue;
    padding = c == '=' ? padding + 1 : 0;
    group = (group << 6U) | static_cast<std::uint32_t>(c == '=' ? 0 : digit);
    if (++count % 4 != 0) continue;
    data.push_back(static_cast<std::uint8_t>(group >> 16U));
    if (padding < 2) data.push_back(static_cast<std::uint8_t>(group >> 8U));
    if (padding < 1) data.push_back(static_cast<std::uint8_t>(group));
  }
  return data;
}

std::optional<PropertyList> readValue(const xmlNode& element, int depth);

std::optional<PropertyList> readArray(const xmlNode& element, int depth) {
  PropertyList::Array array;
  for (const xmlNode* child = elementFrom(element.children); child != nullptr;
       child = elementFrom(child->next)) {
    std::optional<PropertyList> value = readValue(*child, depth);
    if (!value) return std::nullopt;
    array.push_back(std::move(*value));
  }
  return PropertyList(std::move(array));
}

std::optional<PropertyList> readDictionary(const xmlNode& element, int depth) {
  PropertyList::Dictionary dictionary;
  const xmlNode* child = elementFrom(element.children);
  while (child != nullptr) {
    const xmlNode* valueElement = elementFrom(child->next);
    const std::optional<std::string> key = nameOf(*child) == "key" ? textOf(*child) : std::nullopt;
    if (!key || valueElement == nullptr) return std::nullopt;
    std::optional<PropertyList> value = readValue(*valueElement, depth);
    if (!value) return std::nullopt;
    dictionary.insert_or_assign(*key, std::move(*value));
    child = elementFrom(valueElement->next);
  }
  return PropertyList(std::move(dictionary));
}

std::optional<PropertyList> readScalar(std::string_view type, const std::string& text) {
  if (type == "string") return PropertyList(text);
  if (type == "integer") return readInteger(text);
  if (type == "real") return readReal(text);
  if (type == "true") return PropertyList(true);
  if (type == "false") return PropertyList(false);
  if (type == "data") return PropertyList(decodeBase64(text));
  if (type != "date" || !text.ends_with('Z')) return std::nullopt;
  const std::optional<WallTime> date = parseIso8601(text);
  return date ? std::optional<PropertyList>(*date) : std::nullopt;
}

std::optional<PropertyList> readValue(const xmlNode& element, int depth) {
  if (depth >= kMaximumDepth) return std::nullopt;
  const std::string_view type = nameOf(element);
  if (type == "array") return readArray(element, depth + 1);
  if (type == "dict") return readDictionary(element, depth + 1);
  const std::optional<std::string> text = textOf(element);
  return text ? readScalar(type, *text) : std::nullopt;
}

// ---- Writing

/// Text as XML can hold it. A carriage return would be read back as a line feed if it stood raw.
std::string escaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  const std::string valid = repairUtf8(text);
  for (std::size_t i = 0; i < valid.size(); ++i) {
    const char c = valid[i];
    const std::string_view three = std::string_view(valid).substr(i, 3);
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else if (c == '\r') {
      out += "&#13;";
    } else if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n') {
      out += "\ufffd";
    } else if (three == "\ufffe" || three == "\uffff") {
      out += "\ufffd";
      i += 2;
    } else {
      out += c;
    }
  }
  return out;
}

std::string formatReal(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-infinity" : "+infinity";
  std::array<char, 32> buffer{};
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, 17);
  return {buffer.data(), result.ptr};
}

std::string formatDate(WallTime time) {
  constexpr double kYearOne = -62135769600;
  constexpr double kEndOfYear9999 = 253402300799;
  return formatIso8601(
      {std::isnan(time.secondsSince1970) ? 0 : std::clamp(time.secondsSince1970, kYearOne, kEndOfYear9999)});
}

std::string encodeBase64(const std::uint8_t* bytes, std::size_t count) {
  std::string out;
  for (std::size_t i = 0; i < count; i += 3) {
    const std::size_t present = std::min<std::size_t>(3, count - i);
    std::uint32_t group = static_cast<std::uint32_t>(bytes[i]) << 16U;
    if (present > 1) group |= static_cast<std::uint32_t>(bytes[i + 1]) << 8U;
    if (present > 2) group |= bytes[i + 2];
    for (std::size_t digit = 0; digit < 4; ++digit) {
      out += digit <= present ? kAlphabet[(group >> (18 - 6 * digit)) & 0x3fU] : '=';
    }
  }
  return out;
}

class Writer {
 public:
  std::string write(const PropertyList& root) {
    out_ =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n";
    append(root);
    out_ += "</plist>\n";
    return std::move(out_);
  }

 private:
  void append(const PropertyList& value) {
    if (const auto* array = value.as<PropertyList::Array>()) {
      appendArray(*array);
    } else if (const auto* dictionary = value.as<PropertyList::Dictionary>()) {
      appendDictionary(*dictionary);
    } else if (const auto* data = value.as<PropertyList::Data>()) {
      appendData(*data);
    } else if (const auto* text = value.as<std::string>()) {
      appendElement("string", escaped(*text));
    } else if (const auto* flag = value.as<bool>()) {
      appendLine(*flag ? "<true/>" : "<false/>");
    } else if (const auto* integer = value.as<std::int64_t>()) {
      appendElement("integer", std::to_string(*integer));
    } else if (const auto* real = value.as<double>()) {
      appendElement("real", formatReal(*real));
    } else if (const auto* date = value.as<WallTime>()) {
      appendElement("date", formatDate(*date));
    }
  }

  void appendArray(const PropertyList::Array& array) {
    if (array.empty()) return appendLine("<array/>");
    appendLine("<array>");
    ++indent_;
    for (const PropertyList& value : array) append(value);
    --indent_;
    appendLine("</array>");
  }

  void appendDictionary(const PropertyList::Dictionary& dictionary) {
    if (dictionary.empty()) return appendLine("<dict/>");
    appendLine("<dict>");
    ++indent_;
    for (const auto& [key, value] : dictionary) {
      appendElement("key", escaped(key));
      append(value);
    }
    --indent_;
    appendLine("</dict>");
  }

  /// Lines of 76 columns, a tab counting as eight of them.
  void appendData(const PropertyList::Data& data) {
    appendLine("<data>");
    const std::size_t lineLength = (76 - 8 * std::min<std::size_t>(indent_, 8)) / 4 * 3;
    for (std::size_t i = 0; i < data.size(); i += lineLength) {
      appendLine(encodeBase64(data.data() + i, std::min(lineLength, data.size() - i)));
    }
    appendLine("</data>");
  }

  void appendElement(std::string_view name, std::string_view content) {
    const std::string tag(name);
    appendLine("<" + tag + ">" + std::string(content) + "</" + tag + ">");
  }

  void appendLine(std::string_view line) {
    out_.append(indent_, '\t');
    out_ += line;
    out_ += '\n';
  }

  std::string out_;
  std::size_t indent_ = 0;
};

}  // namespace

std::optional<PropertyList> readXmlPropertyList(std::string_view bytes) {
  if (bytes.empty() || bytes.size() > kMaximumSize) return std::nullopt;
  const int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT;
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
      xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, options), &xmlFreeDoc);
  if (!document) return std::nullopt;
  const xmlNode* root = elementFrom(document->children);
  if (root != nullptr && nameOf(*root) == "plist") {
    root = elementFrom(root->children);
    if (root != nullptr && elementFrom(root->next) != nullptr) return std::nullopt;
  }
  return root == nullptr ? std::nullopt : readValue(*root, 0);
}

std::string writeXmlPropertyList(const PropertyList& value) { return Writer().write(value); }

}  // namespace velto
