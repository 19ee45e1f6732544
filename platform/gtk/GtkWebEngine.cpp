#include "platform/gtk/GtkWebEngine.h"

#include <stdexcept>
#include <utility>

#include "platform/gtk/GtkWebView.h"

namespace velto {

namespace {

/// From the last page that came to rest, or from the start, to the making of a spare.
constexpr double kRest = 0.5;
/// For a page that does not come to rest.
constexpr double kLongestLoad = 5;

}  // namespace

GtkWebEngine::GtkWebEngine(const Clock& clock, MainQueue& queue, BackgroundQueue& background,
                           FileManager& files, const Environment& environment,
                           std::vector<std::string> ownSchemes)
    : clock_(clock),
      queue_(queue),
      background_(background),
      files_(files),
      environment_(environment),
      ownSchemes_(std::move(ownSchemes)),
      mainFrameScripts_(MainFrameProof::Scripts::read(environment.resourcesDirectory)),
      spare_(queue, [this] { return defaultStore()->makeEngineView(); }),
      firstLoads_(queue) {
  spare_.prepareAfter(kRest);
}

std::unique_ptr<WebView> GtkWebEngine::makeWebView(const Rect& frame, WebViewConfiguration configuration) {
  auto store = std::dynamic_pointer_cast<GtkDataStore>(configuration.dataStore);
  // What was to be private must not end up in the persistent store.
  if (configuration.dataStore && !store) throw std::invalid_argument("the data store is not of this engine");
  if (!store) store = defaultStore();
  GObjectPtr<WebKitWebView> view;
  if (store == defaultStore_) view = spare_.take();
  if (!view) view = store->makeEngineView();
  spare_.prepareAfter(kLongestLoad);
  return std::make_unique<GtkWebView>(*this, std::move(store), std::move(view), frame,
                                      std::move(configuration));
}

std::shared_ptr<DataStore> GtkWebEngine::makeNonPersistentDataStore() {
  return GtkDataStore::makeNonPersistent(queue_, ownSchemes_);
}

void GtkWebEngine::pageCameToRest() {
  spare_.prepareAfter(kRest);
  firstLoads_.pageCameToRest();
}

const std::shared_ptr<GtkDataStore>& GtkWebEngine::defaultStore() {
  if (!defaultStore_) {
    defaultStore_ = GtkDataStore::makePersistent(environment_, files_, queue_, background_, ownSchemes_);
  }
  return defaultStore_;
}

}  // namespace velto
