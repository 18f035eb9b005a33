#include "platform/qt/server_address.h"

#include <QUrl>

namespace firmlane {

std::optional<std::string> serverAddress(const QString& text) {
  const QUrl url(text, QUrl::StrictMode);
  const bool webServer = url.isValid() && !url.host().isEmpty() && (url.scheme() == "http" || url.scheme() == "https");
  const bool hostAlone = (url.path().isEmpty() || url.path() == "/") && !url.hasQuery() && !url.hasFragment();
  if (!webServer || !hostAlone) {
    return std::nullopt;
  }
  return (text.endsWith('/') ? text.chopped(1) : text).toStdString();
}

}  // namespace firmlane
