#include "console/path_reader.h"

#include <algorithm>
#include <array>
#include <span>

#include "console/activity_fields.h"
#include "console/command_line.h"

namespace firmlane {

namespace {

constexpr const char* kNoSuchControl = "no such control";
constexpr const char* kNoSuchField = "no such field";
constexpr const char* kRunState = "RunState";
constexpr const char* kActivity = "Activity";
constexpr const char* kMessageBox = "MessageBox";

// What can be read, in the order in which it is written. A control or form may have more, which concerns its window alone.
constexpr std::array kControlProperties = {"caption", "text",      "visible", "enabled", "value", "max",
                                           "lines",   "listindex", "picture", "height",  "kind"};
constexpr std::array kFormProperties = {"caption", "loaded", "visible"};

using Names = std::span<const char* const>;

/// The part before the first point, and the rest behind it; an empty rest without one.
std::pair<std::string, std::string> splitAtPoint(const std::string& path) {
  const std::size_t point = path.find('.');
  return point == std::string::npos ? std::pair(path, std::string()) : std::pair(path.substr(0, point), path.substr(point + 1));
}

/// What is on a form is text for users; the shared record holds bytes of the line as well, one character for each.
struct ToJson {
  std::string (*utf8)(std::string_view text);

  Json operator()(bool value) const { return value; }
  Json operator()(int value) const { return value; }
  Json operator()(const std::string& text) const { return utf8(text); }
  Json operator()(const std::vector<std::string>& texts) const {
    Json::Array array;
    for (const std::string& text : texts) {
      array.emplace_back(utf8(text));
    }
    return array;
  }
  Json operator()(const std::vector<SystemRecord>& records) const {
    Json::Array array;
    for (const SystemRecord& record : records) {
      Json::Object members;
      SystemRecord::forEachField(record,
                                 [&](const char* name, const auto& field) { members.emplace_back(name, utf8(field.view())); });
      array.emplace_back(std::move(members));
    }
    return array;
  }
};

Json read(const PropertyBase& property) { return std::visit(ToJson{shownAsUtf8}, property.value()); }

const PropertyBase* readableProperty(const PropertyOwner& owner, Names names, const std::string& name) {
  const bool readable = std::find(names.begin(), names.end(), name) != names.end();
  return readable ? owner.property(name) : nullptr;
}

Json allProperties(const PropertyOwner& owner, Names names) {
  Json::Object members;
  for (const char* name : names) {
    if (const PropertyBase* property = owner.property(name)) {
      members.emplace_back(name, read(*property));
    }
  }
  return members;
}

}  // namespace

Form& PathReader::form(const std::string& name) const {
  Form* form = host_.form(name);
  if (form == nullptr) {
    throw Refusal(kNoSuchControl);
  }
  return *form;
}

Control& PathReader::control(const std::string& path) const {
  const auto [formName, controlName] = splitAtPoint(path);
  Control* control = form(formName).control(controlName);
  if (control == nullptr) {
    throw Refusal(kNoSuchControl);
  }
  return *control;
}

std::function<Json()> PathReader::findField(const std::string& name) const {
  if (!runStateField(state_, name)) {
    throw Refusal(kNoSuchField);
  }
  return [this, name] { return std::visit(ToJson{heldAsUtf8}, *runStateField(state_, name)); };
}

std::function<Json()> PathReader::findInBox(const std::string& name) const {
  if (name != "text" && name != "title") {
    throw Refusal(kNoSuchField);
  }
  return [this, text = name == "text"]() -> Json {
    const auto& box = host_.messageBox();
    return box ? shownAsUtf8(text ? box->text : box->title) : std::string();
  };
}

std::function<Json()> PathReader::find(const std::string& path) const {
  const auto [formName, rest] = splitAtPoint(path);
  if (formName == kRunState) {
    return findField(rest);
  }
  if (formName == kActivity) {
    std::function<Json()> field = activityField(activity_, rest);
    return field ? field : throw Refusal(kNoSuchField);
  }
  if (formName == kMessageBox) {
    return findInBox(rest);
  }
  const Form& owner = form(formName);
  if (rest.empty()) {
    return [&owner] { return allProperties(owner, kFormProperties); };
  }
  if (const PropertyBase* property = readableProperty(owner, kFormProperties, rest)) {
    return [property] { return read(*property); };
  }
  const auto [controlName, propertyName] = splitAtPoint(rest);
  const Control& control = this->control(formName + "." + controlName);
  if (propertyName.empty()) {
    return [&control] { return allProperties(control, kControlProperties); };
  }
  const PropertyBase* property = readableProperty(control, kControlProperties, propertyName);
  if (property == nullptr) {
    throw Refusal(kNoSuchField);
  }
  return [property] { return read(*property); };
}

Json PathReader::dump(const Form& form) {
  Json::Object controls;
  for (const Control* control : form.controls()) {
    controls.emplace_back(form.name() + "." + control->name(), allProperties(*control, kControlProperties));
  }
  return controls;
}

Json PathReader::forms() const {
  Json::Array forms;
  for (const Form* form : host_.onScreen()) {
    forms.emplace_back(Json::Object{{"form", form->name()}, {"modal", host_.isModal(*form)}});
  }
  return forms;
}

}  // namespace firmlane
