#include "platform/console/paths.h"

#include <algorithm>
#include <array>

namespace firmlane {

namespace {

constexpr std::array kControlProperties{"caption", "text",  "visible",   "enabled", "value",
                                        "max",     "lines", "listindex", "picture", "height"};
constexpr std::array kFormProperties{"caption", "loaded", "visible"};

template <typename Names>
bool contains(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

template <typename Names>
Json allOf(const PropertyOwner& owner, const Names& names) {
  std::vector<std::pair<std::string, Json>> members;
  for (const char* name : names) {
    if (const PropertyBase* property = owner.property(name)) {
      members.emplace_back(name, jsonOf(property->value()));
    }
  }
  return jsonObject(members);
}

template <typename Names>
Paths::Reading oneOf(const PropertyOwner& owner, const Names& names, const std::string& name) {
  const PropertyBase* property = contains(names, name) ? owner.property(name) : nullptr;
  if (property == nullptr) {
    return {std::nullopt, "no such field"};
  }
  return {jsonOf(property->value()), {}};
}

}  // namespace

Control* Paths::control(const std::string& path) const {
  const std::size_t point = path.find('.');
  const Form* form = host_.form(path.substr(0, point));
  return form == nullptr || point == std::string::npos ? nullptr : form->control(path.substr(point + 1));
}

Paths::Reading Paths::read(const std::string& path) const {
  const std::size_t point = path.find('.');
  const std::string first = path.substr(0, point);
  const std::string rest = point == std::string::npos ? std::string() : path.substr(point + 1);
  if (first == "RunState") {
    if (const auto value = runStateField(state_, rest)) {
      return {jsonOf(*value), {}};
    }
    return {std::nullopt, "no such field"};
  }
  const Form* form = host_.form(first);
  if (form == nullptr || rest.empty()) {
    return {std::nullopt, "no such control"};
  }
  if (const Control* whole = form->control(rest)) {
    return {allOf(*whole, kControlProperties), {}};
  }
  const std::size_t last = rest.rfind('.');
  if (last != std::string::npos) {
    if (const Control* owner = form->control(rest.substr(0, last))) {
      return oneOf(*owner, kControlProperties, rest.substr(last + 1));
    }
    return {std::nullopt, "no such control"};
  }
  if (contains(kFormProperties, rest)) {
    return oneOf(*form, kFormProperties, rest);
  }
  return {std::nullopt, "no such control"};
}

Json Paths::dump(const Form& form) {
  std::vector<std::pair<std::string, Json>> members;
  for (const Control* control : form.controls()) {
    members.emplace_back(form.name() + "." + control->name(), allOf(*control, kControlProperties));
  }
  return jsonObject(members);
}

}  // namespace firmlane
