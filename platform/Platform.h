#pragma once

#include "platform/foundation/Environment.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/UserDefaults.h"
#include "platform/loop/Clock.h"
#include "platform/loop/MainQueue.h"
#include "platform/ui/Application.h"
#include "platform/web/WebView.h"

namespace velto {

/// Everything that the application stands on, made once by a backend and handed down. A class takes from it
/// only what it uses. The backend outlives all that it is handed to.
struct Platform {
  const Environment& environment;
  Clock& clock;
  MainQueue& mainQueue;
  BackgroundQueue& backgroundQueue;
  FileManager& files;
  UserDefaults& defaults;
  NotificationCenter& notifications;
  Application& application;
  WebEngine& webEngine;
};

}  // namespace velto
