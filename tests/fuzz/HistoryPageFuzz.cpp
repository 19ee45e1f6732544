#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "browsing/history/HistoryPage.h"
#include "platform/foundation/JsonParser.h"
#include "platform/foundation/JsonRecord.h"

namespace velto {

template <>
struct JsonFields<HistoryPage::Row> {
  static constexpr std::array kFields = {
      jsonField<&HistoryPage::Row::u>("u"), jsonField<&HistoryPage::Row::t>("t"),
      jsonField<&HistoryPage::Row::d>("d"), jsonField<&HistoryPage::Row::s>("s")};
};

}  // namespace velto

namespace {

using velto::HistoryPage;

void require(bool condition) {
  if (!condition) std::abort();
}

/// What the page gets is what the rows are, whatever stands in addresses and titles.
void checkRows(std::string_view text, const std::optional<std::string>& domain) {
  const std::string title(text);
  const std::vector<velto::HistoryEntry> own = {{"https://a.example/" + title, title, {2}}, {title, "", {1}}};
  const auto rows = HistoryPage::rows(own, own, domain);
  const std::string json = HistoryPage::encodedRows(own, own, domain);
  velto::JsonParser parser;
  std::vector<HistoryPage::Row> read;
  decodeJson(parser.parse(json), read);
  require(read.size() == rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) require(read[i].d == rows[i].d && read[i].s == rows[i].s);
}

}  // namespace

/// The input is the URL of a request, and behind the first line end the page that asks.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string_view asked = text.substr(0, text.find('\n'));
  const std::string_view asking = text.substr(std::min(asked.size() + 1, text.size()));
  const auto request = velto::Url::parse(asked);
  const auto document = velto::Url::parse(asking);
  const auto route = HistoryPage::routeOf(request, document);
  if (route == HistoryPage::Route::data) {
    require(document && document->lowercasedScheme() == "velto-history");
    require(request->lowercasedHost() == "history" && request->encodedPath() == "/data.json");
  }
  const auto domain = request ? request->queryValue("domain") : std::nullopt;
  require(velto::Url::parse(HistoryPage::url(domain).absoluteString()) == HistoryPage::url(domain));
  checkRows(asking, domain);
  return 0;
}
