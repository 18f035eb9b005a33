#include "platform/widgets/display_text.h"

#include <QByteArrayView>

namespace firmlane {

QString displayText(const std::string& text) {
  const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
  QString shown = bytes.isValidUtf8() ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes);
  shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return shown;
}

QString buttonText(const std::string& text) { return displayText(text).replace(QLatin1Char('&'), QLatin1String("&&")); }

std::string typedText(const QString& text) { return text.toLatin1().toStdString(); }

}  // namespace firmlane
