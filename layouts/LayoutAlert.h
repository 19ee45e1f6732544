#pragma once

#include <string>

#include "platform/ui/Application.h"

namespace velto {

/// Tells the person something about layouts that needs no answer but "OK".
void showLayoutAlert(Application& application, const std::string& title, const std::string& text,
                     Alert::Style style = Alert::Style::warning);

}  // namespace velto
