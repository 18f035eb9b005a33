#include "console/json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <algorithm>
#include <array>
#include <charconv>

namespace firmlane {

namespace {

constexpr char kFirstPrintable = 0x20;
constexpr char32_t kLastLatin1 = 0xFF;

struct Escape {
  char character;
  const char* text;
};
constexpr std::array<Escape, 7> kEscapes = {
    {{'"', "\\\""}, {'\\', "\\\\"}, {'\b', "\\b"}, {'\f', "\\f"}, {'\n', "\\n"}, {'\r', "\\r"}, {'\t', "\\t"}}};

void appendString(std::string& text, const std::string& utf8) {
  text += '"';
  for (const char c : utf8) {
    const auto* escape = std::find_if(kEscapes.begin(), kEscapes.end(), [c](const Escape& e) { return e.character == c; });
    if (escape != kEscapes.end()) {
      text += escape->text;
    } else if (c >= 0 && c < kFirstPrintable) {
      constexpr const char* kDigits = "0123456789abcdef";
      text += std::string("\\u00") + kDigits[c / 16] + kDigits[c % 16];
    } else {
      text += c;
    }
  }
  text += '"';
}

void appendNumber(std::string& text, double number) {
  // Not in the shortest form: a serial number of 100000 must not read 1e+05. The smallest numbers have 323 zeros and 17 digits.
  std::array<char, 352> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
  text.append(digits.data(), error == std::errc() ? end : digits.data());
}

Json fromQt(const QJsonValue& value) {
  switch (value.type()) {
    case QJsonValue::Bool:
      return value.toBool();
    case QJsonValue::Double:
      return value.toDouble();
    case QJsonValue::String:
      return value.toString().toStdString();
    case QJsonValue::Array: {
      Json::Array elements;
      for (const QJsonValue element : value.toArray()) {
        elements.push_back(fromQt(element));
      }
      return elements;
    }
    case QJsonValue::Object: {
      Json::Object members;
      const QJsonObject object = value.toObject();
      for (auto member = object.begin(); member != object.end(); ++member) {
        members.emplace_back(member.key().toStdString(), fromQt(member.value()));
      }
      return members;
    }
    default:
      return {};
  }
}

bool sameMembers(const Json::Object& a, const Json::Object& b) {
  return a.size() == b.size() && std::all_of(a.begin(), a.end(), [&b](const Json::Member& member) {
           return std::find(b.begin(), b.end(), member) != b.end();
         });
}

QByteArrayView view(std::string_view text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

}  // namespace

std::optional<Json> Json::parse(const std::string& utf8) {
  const QJsonArray values = QJsonDocument::fromJson(QByteArray::fromStdString("[" + utf8 + "]")).array();
  if (values.size() != 1) {
    return std::nullopt;
  }
  return fromQt(values.first());
}

std::string Json::text() const {
  std::string text;
  append(text);
  return text;
}

void Json::append(std::string& text) const {
  if (const auto* array = std::get_if<Array>(&value_)) {
    text += '[';
    for (const Json& element : *array) {
      text += &element == array->data() ? "" : ",";
      element.append(text);
    }
    text += ']';
  } else if (const auto* object = std::get_if<Object>(&value_)) {
    text += '{';
    for (const auto& [name, value] : *object) {
      text += text.back() == '{' ? "" : ",";
      appendString(text, name);
      text += ':';
      value.append(text);
    }
    text += '}';
  } else if (const std::string* utf8 = string()) {
    appendString(text, *utf8);
  } else if (const double* number = this->number()) {
    appendNumber(text, *number);
  } else if (const bool* flag = std::get_if<bool>(&value_)) {
    text += *flag ? "true" : "false";
  } else {
    text += "null";
  }
}

bool operator==(const Json& a, const Json& b) {
  const auto* members = std::get_if<Json::Object>(&a.value_);
  const auto* others = std::get_if<Json::Object>(&b.value_);
  if (members != nullptr && others != nullptr) {
    return sameMembers(*members, *others);
  }
  const auto* elements = std::get_if<Json::Array>(&a.value_);
  const auto* otherElements = std::get_if<Json::Array>(&b.value_);
  if (elements != nullptr && otherElements != nullptr) {
    return *elements == *otherElements;
  }
  if (a.value_.index() != b.value_.index() || members != nullptr || elements != nullptr) {
    return false;
  }
  const auto same = [](const auto* x, const auto* y) { return x != nullptr && *x == *y; };
  return same(a.string(), b.string()) || same(a.number(), b.number()) ||
         same(std::get_if<bool>(&a.value_), std::get_if<bool>(&b.value_)) || std::holds_alternative<std::nullptr_t>(a.value_);
}

std::string heldAsUtf8(std::string_view held) { return QString::fromLatin1(view(held)).toStdString(); }

bool isUtf8(std::string_view text) { return view(text).isValidUtf8(); }

std::string shownAsUtf8(std::string_view text) { return isUtf8(text) ? std::string(text) : heldAsUtf8(text); }

std::string utf8AsHeld(const std::string& utf8) {
  std::string held;
  for (const char32_t character : QString::fromStdString(utf8).toStdU32String()) {
    held += character <= kLastLatin1 ? static_cast<char>(character) : '?';
  }
  return held;
}

}  // namespace firmlane
