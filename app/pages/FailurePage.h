#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Url.h"
#include "platform/web/WebTypes.h"

namespace velto {

/// False for what is no failure to the person: a load that another one took the place of, or that became
/// something else than a page.
bool isFailureWorthShowing(const WebError& error);

/// The server was not reached, or was lost.
bool isConnectionFailure(const WebError& error);

/// Whether going to the address again can only ever lead to a page. Scripts and texts in place of an address
/// come from the page that failed and would act in the one that tells of it.
bool canBeRetried(const Url& url);

/// The page that a window shows when the one at the address, if it is known, could not be loaded. The marks
/// of the template are {{heading}}, {{body}} and {{retry}}.
std::string failurePage(std::string_view pageTemplate, const std::optional<Url>& url, const WebError& error);

/// The page that a window shows when the process of its page has died. The mark is {{url}}.
std::string crashPage(std::string_view pageTemplate, const std::optional<Url>& url);

}  // namespace velto
