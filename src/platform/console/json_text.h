// JSON as the console writes and reads it. The program's texts are Latin-1 inside; on the line JSON is UTF-8.
#pragma once

#include <QJsonValue>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/property.h"
#include "state/run_state.h"

namespace firmlane {

/// A JSON value as text.
using Json = std::string;

Json jsonText(const std::string& latin1);
Json jsonList(const std::vector<Json>& values);
/// Members in the order given.
Json jsonObject(const std::vector<std::pair<std::string, Json>>& members);
Json jsonOf(const PropertyValue& value);
Json jsonOf(const RunStateValue& value);

/// Reads any JSON value, scalars too; nothing when the text is none.
std::optional<QJsonValue> parseJson(const std::string& utf8);

/// A text of JSON as the program holds it; characters that it cannot hold become "?".
std::string latin1Of(const QJsonValue& text);

}  // namespace firmlane
