#include "platform/console/json_text.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace firmlane {

namespace {

Json plain(const QJsonValue& value) {
  // Qt writes documents only; a list of one value is one, and the brackets come off again.
  const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
  return list.mid(1, list.size() - 2).toStdString();
}

template <typename List, typename F>
Json listOf(const List& list, F&& toJson) {
  std::vector<Json> values;
  for (const auto& item : list) {
    values.push_back(toJson(item));
  }
  return jsonList(values);
}

Json joined(const std::vector<Json>& parts, char open, char close) {
  Json text(1, open);
  for (const Json& part : parts) {
    text += (text.size() > 1 ? "," : "") + part;
  }
  return text + close;
}

Json recordJson(const SystemRecord& record) {
  std::vector<std::pair<std::string, Json>> members;
  SystemRecord::forEachField(
      record, [&members](const char* name, const auto& field) { members.emplace_back(name, jsonText(field.text())); });
  return jsonObject(members);
}

struct ToJson {
  Json operator()(bool value) const { return value ? "true" : "false"; }
  Json operator()(int value) const { return std::to_string(value); }
  Json operator()(const std::string& value) const { return jsonText(value); }
  Json operator()(const std::vector<std::string>& value) const { return listOf(value, jsonText); }
  Json operator()(const std::vector<SystemRecord>& value) const { return listOf(value, recordJson); }
};

}  // namespace

Json jsonText(const std::string& latin1) { return plain(QString::fromLatin1(latin1.data(), static_cast<int>(latin1.size()))); }

Json jsonList(const std::vector<Json>& values) { return joined(values, '[', ']'); }

Json jsonObject(const std::vector<std::pair<std::string, Json>>& members) {
  std::vector<Json> parts;
  parts.reserve(members.size());
  for (const auto& [name, value] : members) {
    parts.push_back(jsonText(name) + ":" + value);
  }
  return joined(parts, '{', '}');
}

Json jsonOf(const PropertyValue& value) { return std::visit(ToJson(), value); }

Json jsonOf(const RunStateValue& value) { return std::visit(ToJson(), value); }

std::optional<QJsonValue> parseJson(const std::string& utf8) {
  QJsonParseError error;
  const QJsonDocument list = QJsonDocument::fromJson(QByteArray::fromStdString("[" + utf8 + "]"), &error);
  if (error.error != QJsonParseError::NoError || list.array().size() != 1) {
    return std::nullopt;
  }
  return list.array().first();
}

std::string latin1Of(const QJsonValue& text) { return text.toString().toLatin1().toStdString(); }

}  // namespace firmlane
