#include "browsing/history/VeltoHistorySchemeHandler.h"

#include <exception>
#include <utility>

#include "browsing/history/HistoryPage.h"
#include "platform/foundation/Url.h"

namespace velto {

namespace {

void refuse(UrlSchemeTask& task, int status, const char* reason) {
  HistoryPage::respond(task, status, "text/plain", reason);
}

void answerNotFound(UrlSchemeTask& task) { refuse(task, 404, "Not found"); }

/// Runs in the background.
std::string readRows(const HistoryStore& own, const HistoryStore& imported,
                     const std::optional<std::string>& domain) {
  try {
    return HistoryPage::encodedRows(own.load(), imported.load(), domain);
  } catch (const std::exception&) {
    return "[]";
  }
}

}  // namespace

VeltoHistorySchemeHandler::VeltoHistorySchemeHandler(const FileManager& files, MainQueue& mainQueue,
                                                     BackgroundQueue& backgroundQueue, Sources sources)
    : files_(files), mainQueue_(mainQueue), backgroundQueue_(backgroundQueue), sources_(std::move(sources)) {}

void VeltoHistorySchemeHandler::startTask(WebView&, std::unique_ptr<UrlSchemeTask> task) {
  const auto url = task->url();
  switch (HistoryPage::routeOf(url, task->mainDocumentUrl())) {
    case HistoryPage::Route::notFound:
      return answerNotFound(*task);
    case HistoryPage::Route::page:
      return answerWithPage(*task);
    case HistoryPage::Route::forbidden:
      return refuse(*task, 403, "Forbidden");
    case HistoryPage::Route::data:
      return answerWithData(std::move(task), url->queryValue("domain"));
  }
}

void VeltoHistorySchemeHandler::answerWithPage(UrlSchemeTask& task) const {
  auto html = files_.readIfPossible(sources_.resources / HistoryPage::kResource);
  if (!html) return answerNotFound(task);
  HistoryPage::respond(task, 200, "text/html; charset=utf-8", std::move(*html));
}

void VeltoHistorySchemeHandler::answerWithData(std::unique_ptr<UrlSchemeTask> task,
                                               const std::optional<std::string>& domain) {
  const std::uint64_t number = ++lastNumber_;
  waiting_.emplace(number, std::move(task));
  backgroundQueue_.async([self = WeakPtr<VeltoHistorySchemeHandler>(*this), number, domain,
                          own = sources_.own, imported = sources_.imported, &mainQueue = mainQueue_] {
    mainQueue.async([self, number, json = readRows(*own, *imported, domain)]() mutable {
      if (self) self->finish(number, std::move(json));
    });
  });
}

void VeltoHistorySchemeHandler::finish(std::uint64_t number, std::string json) {
  const std::unique_ptr<UrlSchemeTask> task = std::move(waiting_.extract(number).mapped());
  if (task->isStopped()) return;
  HistoryPage::respond(*task, 200, "application/json", std::move(json));
}

}  // namespace velto
