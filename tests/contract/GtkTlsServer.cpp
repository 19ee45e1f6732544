#ifdef VELTO_CONTRACT_GTK

#include "tests/contract/GtkTlsServer.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace velto::test {

namespace {

GObjectPtr<GTlsCertificate> madeCertificate() {
  const TemporaryFolder folder;
  const std::string key = folder.path / "key.pem";
  const std::string certificate = folder.path / "certificate.pem";
  const std::string command =
      "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 -keyout " + key + " -out " +
      certificate + " 2>/dev/null";
  const bool made = std::system(command.c_str()) == 0;  // NOLINT(cert-env33-c): no text from outside
  GErrorPtr error;
  auto read = GObjectPtr<GTlsCertificate>::adopt(
      made ? g_tls_certificate_new_from_files(certificate.c_str(), key.c_str(), error.out()) : nullptr);
  if (!read) throw std::runtime_error("no certificate");
  return read;
}

}  // namespace

TlsServer::TlsServer()
    : certificate_(madeCertificate()),
      service_(GObjectPtr<GSocketService>::adopt(g_socket_service_new())),
      incoming_(service_.get(), "incoming", G_CALLBACK(incoming), this) {
  const auto loopback = GObjectPtr<GInetAddress>::adopt(g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4));
  const auto any = GObjectPtr<GSocketAddress>::adopt(g_inet_socket_address_new(loopback.get(), 0));
  GSocketAddress* bound = nullptr;
  GErrorPtr error;
  if (g_socket_listener_add_address(G_SOCKET_LISTENER(service_.get()), any.get(), G_SOCKET_TYPE_STREAM,
                                    G_SOCKET_PROTOCOL_TCP, nullptr, &bound, error.out()) == FALSE) {
    throw std::runtime_error("no loopback port");
  }
  const auto kept = GObjectPtr<GSocketAddress>::adopt(bound);
  port_ = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(kept.get()));
}

/// The peer is expected to break off when it sees the certificate.
gboolean TlsServer::incoming(GSocketService*, GSocketConnection* peer, GObject*, gpointer self) {
  GErrorPtr error;
  GTlsCertificate* certificate = static_cast<TlsServer*>(self)->certificate_.get();
  GIOStream* secure = g_tls_server_connection_new(G_IO_STREAM(peer), certificate, error.out());
  if (secure == nullptr) return TRUE;
  const auto over = [](GObject* connection, GAsyncResult* result, gpointer) {
    GErrorPtr refused;
    g_tls_connection_handshake_finish(G_TLS_CONNECTION(connection), result, refused.out());
    g_object_unref(connection);
  };
  g_tls_connection_handshake_async(G_TLS_CONNECTION(secure), G_PRIORITY_DEFAULT, nullptr, over, nullptr);
  return TRUE;
}

}  // namespace velto::test

#endif
