#include "layouts/Layout.h"

#include "layouts/DisplayChoice.h"

namespace velto {

const LayoutDisplay* Layout::displayOf(const LayoutWindow& window) const {
  return byKeyElseMain(displays, window.displayKey);
}

}  // namespace velto
