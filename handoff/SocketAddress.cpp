#include "handoff/SocketAddress.h"

#include <algorithm>
#include <string>

namespace velto {

SocketAddress::SocketAddress(const RuntimeDirectory& directory) {
  std::string path = directory.path() + "/" + kSocketName;
  if (path.size() >= sizeof address_.sun_path) {
    path = "/proc/self/fd/" + std::to_string(directory.descriptor()) + "/" + kSocketName;
  }
  address_.sun_family = AF_UNIX;
  std::copy(path.begin(), path.end(), address_.sun_path);
}

}  // namespace velto
