#include "platform/widgets/display_text.h"

#include <QStringDecoder>

namespace firmlane {

QString displayText(const std::string& text) {
  QStringDecoder utf8(QStringConverter::Utf8);
  QString shown = utf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  if (utf8.hasError()) {
    shown = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
  }
  shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return shown;
}

QString buttonText(const std::string& text) { return displayText(text).replace(QLatin1Char('&'), QLatin1String("&&")); }

std::string typedText(const QString& text) { return text.toLatin1().toStdString(); }

}  // namespace firmlane
