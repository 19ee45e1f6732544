#include "platform/gtk/ScriptValue.h"

#include <cstddef>
#include <string_view>

#include "platform/gtk/GObject.h"

namespace velto {

namespace {

constexpr double kMostValues = 20'000;
constexpr double kLongestText = 1024 * 1024;
/// As measured, in seconds.
constexpr double kCostOfValue = 10e-6;
constexpr double kCostOfCharacter = 5e-9;

/// A value can name another one many times over, and its text be longer than it by any measure; so it is
/// counted while it is written. Runs in the context of the application's own process, on data alone.
constexpr const char* kReader = "veltoReadValue";
constexpr const char* kReaderSource = R"js((value, mostValues, longestText) => {
  let values = 1, characters = 0, text;
  const count = (name, value) => {
    characters += name.length;
    if (typeof value === 'string') characters += value.length;
    else if (Array.isArray(value)) values += value.length;
    else if (typeof value === 'object' && value !== null) values += Object.keys(value).length;
    if (values > mostValues || characters > longestText) throw 0;
    return value;
  };
  try { text = JSON.stringify(value, count); } catch {}
  return [text, values, characters];
})js";

GObjectPtr<JSCValue> readerIn(JSCContext* context) {
  auto reader = GObjectPtr<JSCValue>::adopt(jsc_context_get_value(context, kReader));
  if (jsc_value_is_function(reader.get()) != FALSE) return reader;
  reader = GObjectPtr<JSCValue>::adopt(jsc_context_evaluate(context, kReaderSource, -1));
  jsc_context_set_value(context, kReader, reader.get());
  return reader;
}

GObjectPtr<JSCValue> itemOf(JSCValue* list, guint index) {
  return GObjectPtr<JSCValue>::adopt(jsc_value_object_get_property_at_index(list, index));
}

double numberIn(JSCValue* list, guint index) { return jsc_value_to_double(itemOf(list, index).get()); }

}  // namespace

ScriptReading readScriptValue(JSCValue* value) {
  if (value == nullptr || jsc_value_is_undefined(value) != FALSE) return {};
  JSCContext* context = jsc_value_get_context(value);
  const auto read = GObjectPtr<JSCValue>::adopt(
      jsc_value_function_call(readerIn(context).get(), JSC_TYPE_VALUE, value, G_TYPE_DOUBLE, kMostValues,
                              G_TYPE_DOUBLE, kLongestText, G_TYPE_NONE));
  // All web views share the context.
  jsc_context_clear_exception(context);
  if (!read || jsc_value_is_array(read.get()) == FALSE) return {};
  const double values = numberIn(read.get(), 1);
  const double characters = numberIn(read.get(), 2);
  ScriptReading reading;
  reading.isTooBig = values > kMostValues || characters > kLongestText;
  reading.cost = values * kCostOfValue + characters * kCostOfCharacter;
  const auto written = itemOf(read.get(), 0);
  if (jsc_value_is_string(written.get()) == FALSE) return reading;
  const GCharPtr text(jsc_value_to_string(written.get()));
  const std::string_view json(text.get());
  if (static_cast<double>(json.size()) <= kLongestText) reading.json = readJson(json);
  return reading;
}

}  // namespace velto
