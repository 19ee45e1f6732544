#include "platform/headless/HeadlessSchemeTask.h"

#include <utility>

namespace velto {

HeadlessSchemeTask::HeadlessSchemeTask(std::string_view urlText, std::optional<Url> mainDocumentUrl,
                                       Answer answer, IsStopped isStopped)
    : url_(Url::parse(urlText)),
      mainDocumentUrl_(std::move(mainDocumentUrl)),
      answer_(std::move(answer)),
      isStopped_(std::move(isStopped)) {}

HeadlessSchemeTask::~HeadlessSchemeTask() { fail("The request was not answered"); }

void HeadlessSchemeTask::respond(int status, const std::map<std::string, std::string>& headers,
                                 std::string body) {
  answer({status, headers, std::move(body), std::nullopt});
}

void HeadlessSchemeTask::fail(std::string_view reason) { answer({0, {}, "", std::string(reason)}); }

void HeadlessSchemeTask::answer(SchemeResponse response) {
  if (const Answer first = std::exchange(answer_, nullptr)) first(std::move(response));
}

}  // namespace velto
