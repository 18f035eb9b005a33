// Properties of forms and controls: values that handlers set and read back as state, and that tell the screen when they change.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace firmlane {

/// A property's value as a screen or a script sees it. Texts are 8-bit, CR and LF as held.
using PropertyValue = std::variant<bool, int, std::string, std::vector<std::string>>;

class PropertyBase;

/// What has properties: a control or a form. It is told of every change.
class PropertyOwner {
 public:
  explicit PropertyOwner(std::string name) : name_(std::move(name)) {}
  PropertyOwner(const PropertyOwner&) = delete;
  PropertyOwner& operator=(const PropertyOwner&) = delete;
  virtual ~PropertyOwner() = default;

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const std::vector<PropertyBase*>& properties() const { return properties_; }
  /// The property of that name, or null.
  [[nodiscard]] const PropertyBase* property(std::string_view name) const;
  /// Gives every property its value at start.
  void resetProperties();

 protected:
  friend class PropertyBase;
  virtual void propertyChanged() = 0;

 private:
  std::string name_;
  std::vector<PropertyBase*> properties_;
};

class PropertyBase {
 public:
  PropertyBase(PropertyOwner& owner, std::string name) : owner_(owner), name_(std::move(name)) {
    owner.properties_.push_back(this);
  }
  PropertyBase(const PropertyBase&) = delete;
  PropertyBase& operator=(const PropertyBase&) = delete;
  virtual ~PropertyBase() = default;

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] virtual PropertyValue value() const = 0;
  virtual void reset() = 0;

 protected:
  void changed() { owner_.propertyChanged(); }

 private:
  PropertyOwner& owner_;
  std::string name_;
};

inline const PropertyBase* PropertyOwner::property(std::string_view name) const {
  for (const PropertyBase* property : properties_) {
    if (property->name() == name) {
      return property;
    }
  }
  return nullptr;
}

inline void PropertyOwner::resetProperties() {
  for (PropertyBase* property : properties_) {
    property->reset();
  }
}

/// One property. Assign to it and read it like a plain value; it remembers its value at start.
template <typename T>
class Property : public PropertyBase {
 public:
  Property(PropertyOwner& owner, std::string name, T atStart)
      : PropertyBase(owner, std::move(name)), atStart_(atStart), value_(std::move(atStart)) {}

  Property(const Property&) = delete;
  ~Property() override = default;

  Property& operator=(T value) {
    assign(std::move(value));
    return *this;
  }
  Property& operator=(const Property& other) {
    if (this != &other) {
      assign(other.value_);
    }
    return *this;
  }

  operator const T&() const { return value_; }  // NOLINT(google-explicit-constructor): reads like the value it is
  [[nodiscard]] const T& get() const { return value_; }
  friend bool operator==(const Property& property, const T& value) { return property.value_ == value; }

  [[nodiscard]] PropertyValue value() const override { return value_; }
  void reset() override { store(atStart_); }

  /// Changes the value that a reset gives. For forms that set up their controls as they are built.
  void setAtStart(T value) {
    atStart_ = value;
    store(std::move(value));
  }

 protected:
  virtual void assign(T value) { store(std::move(value)); }
  void store(T value) {
    if (value_ != value) {
      value_ = std::move(value);
      changed();
    }
  }

 private:
  T atStart_;
  T value_;
};

}  // namespace firmlane
