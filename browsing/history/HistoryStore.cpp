#include "browsing/history/HistoryStore.h"

#include <utility>

#include "browsing/history/HistoryFile.h"
#include "platform/foundation/JsonWriter.h"

namespace velto {

HistoryStore::HistoryStore(FileManager& fileManager, std::filesystem::path directory, std::string fileName,
                           bool prettyPrinted)
    : fileManager_(fileManager),
      directory_(std::move(directory)),
      fileName_(std::move(fileName)),
      prettyPrinted_(prettyPrinted) {}

std::vector<HistoryEntry> HistoryStore::load() const { return readHistoryFile(fileManager_, fileURL()); }

void HistoryStore::save(const std::vector<HistoryEntry>& entries) {
  fileManager_.createDirectory(directory_);
  JsonWriter writer;
  writer.beginArray();
  for (const HistoryEntry& entry : entries) {
    writer.beginObject();
    writer.key("url");
    writer.string(entry.url);
    writer.key("title");
    writer.string(entry.title);
    writer.key("timestamp");
    writer.string(formatIso8601(entry.timestamp));
    writer.endObject();
  }
  writer.endArray();
  fileManager_.writeAtomically(fileURL(), writer.text());
}

}  // namespace velto
