#pragma once

#include <gio/gio.h>

#include "platform/gtk/GObject.h"

namespace velto::test {

/// An HTTPS server on a free port of 127.0.0.1 with a certificate that nobody vouches for. It runs on the
/// main loop.
class TlsServer {
 public:
  /// Makes the certificate.
  TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;
  ~TlsServer() { g_socket_service_stop(service_.get()); }

  [[nodiscard]] int port() const { return port_; }

 private:
  static gboolean incoming(GSocketService*, GSocketConnection* peer, GObject*, gpointer self);

  GObjectPtr<GTlsCertificate> certificate_;
  GObjectPtr<GSocketService> service_;
  SignalConnection incoming_;
  int port_ = 0;
};

}  // namespace velto::test
