// A plain value as JavaScript has them: what scenes are written in and calls are recorded as.
#pragma once

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace macdoubles {

class Value {
 public:
  using List = std::vector<Value>;
  using Object = std::map<std::string, Value>;

  Value() = default;  // null
  Value(bool truth) : data_(truth) {}
  Value(const char* text) : data_(std::string(text)) {}
  Value(std::string text) : data_(std::move(text)) {}
  Value(List list) : data_(std::move(list)) {}
  Value(Object object) : data_(std::move(object)) {}
  template <
      class Number,
      std::enable_if_t<std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>, int> = 0>
  Value(Number number) : data_(static_cast<double>(number)) {}

  bool IsNull() const { return std::holds_alternative<std::monostate>(data_); }
  bool IsTrue() const { return Or<bool>(false); }
  double Number(double otherwise = 0) const { return Or<double>(otherwise); }
  std::string Text(std::string otherwise = {}) const { return Or<std::string>(otherwise); }
  List Items() const { return Or<List>({}); }

  /// A member of an object; null when this is no object or has no such member.
  Value operator[](const std::string& key) const {
    const auto* object = std::get_if<Object>(&data_);
    if (!object) return {};
    const auto found = object->find(key);
    return found == object->end() ? Value() : found->second;
  }

  /// Gives an object a member; anything else stays what it is.
  void Set(const std::string& key, Value value) {
    if (auto* object = std::get_if<Object>(&data_)) (*object)[key] = std::move(value);
  }

  template <class Visitor>
  decltype(auto) Visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), data_);
  }

 private:
  template <class T>
  T Or(T otherwise) const {
    const T* const held = std::get_if<T>(&data_);
    return held ? *held : otherwise;
  }

  std::variant<std::monostate, bool, double, std::string, List, Object> data_;
};

}  // namespace macdoubles
