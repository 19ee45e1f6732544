#include "layouts/VeltoSession.h"

namespace velto {

std::optional<VeltoSession> decodeSession(std::string_view bytes) {
  JsonParser parser;
  try {
    const JsonElement& record = parser.parse(bytes);
    if (newerSchemaVersion(record)) return std::nullopt;
    auto session = decodeJson<VeltoSession>(record);
    for (LayoutWindow& window : session.windows) window.thumbnail.reset();
    return session;
  } catch (const JsonError&) {
    return std::nullopt;
  }
}

}  // namespace velto
