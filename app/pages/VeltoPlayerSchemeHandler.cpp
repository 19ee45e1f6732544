#include "app/pages/VeltoPlayerSchemeHandler.h"

#include "app/launch/PlayerUrl.h"
#include "app/pages/PlayerPage.h"

namespace velto {

namespace {

void answerNotFound(UrlSchemeTask& task) {
  task.respond(404, {{"Content-Type", "text/plain; charset=utf-8"}}, "Not found");
}

}  // namespace

void VeltoPlayerSchemeHandler::startTask(WebView&, std::unique_ptr<UrlSchemeTask> task) {
  const auto url = task->url();
  if (!url || !isPlayerURL(*url)) {
    answerNotFound(*task);
    return;
  }
  try {
    task->respond(200, {{"Content-Type", "text/html; charset=utf-8"}, {"Cache-Control", "no-store"}},
                  files_.read(resources_ / PlayerPage::kResource));
  } catch (const FileError& error) {
    if (error.kind() == FileError::Kind::notFound) {
      answerNotFound(*task);
    } else {
      task->fail(error.what());
    }
  }
}

}  // namespace velto
