#include "console/activity_fields.h"

#include <algorithm>
#include <iterator>

namespace firmlane {

namespace {

Json seconds(Micros span) { return static_cast<double>(span / kMillisecond) / 1000; }

Json processors(const Activity& activity) {
  Json::Array array;
  for (const ProcessorReport& report : activity.processors()) {
    array.emplace_back(Json::Object{{"name", report.name},
                                    {"number", report.number},
                                    {"state", nameOf(report.state)},
                                    {"before", report.before},
                                    {"wanted", report.wanted},
                                    {"after", report.after}});
  }
  return array;
}

struct Field {
  const char* name;
  Json (*read)(const Activity& activity);
};

constexpr Field kFields[] = {
    {"doing", [](const Activity& activity) { return Json(nameOf(activity.now().doing)); }},
    {"elapsed", [](const Activity& activity) { return seconds(activity.elapsed()); }},
    {"limit", [](const Activity& activity) { return seconds(activity.now().limit); }},
    {"left", [](const Activity& activity) { return seconds(activity.left()); }},
    {"done", [](const Activity& activity) { return Json(static_cast<double>(activity.now().done)); }},
    {"total", [](const Activity& activity) { return Json(static_cast<double>(activity.now().total)); }},
    {"estimate", [](const Activity& activity) { return activity.estimate() ? seconds(*activity.estimate()) : Json(); }},
    {"part", [](const Activity& activity) { return Json(activity.now().part); }},
    {"parts", [](const Activity& activity) { return Json(activity.now().parts); }},
    {"processors", processors},
};

}  // namespace

std::function<Json()> activityField(const Activity& activity, const std::string& name) {
  if (name.empty()) {
    return [&activity] {
      Json::Object members;
      for (const Field& field : kFields) {
        members.emplace_back(field.name, field.read(activity));
      }
      return Json(std::move(members));
    };
  }
  const auto* found = std::find_if(std::begin(kFields), std::end(kFields), [&name](const Field& f) { return name == f.name; });
  if (found == std::end(kFields)) {
    return {};
  }
  return [&activity, read = found->read] { return read(activity); };
}

}  // namespace firmlane
