#pragma once

#include <cmath>
#include <map>
#include <variant>

#include "platform/Defaults.h"

namespace tamboro::test {

/// Settings that live as long as the object.
class MemoryDefaults : public Defaults {
 public:
  using Integers = std::vector<std::int64_t>;

  std::optional<QByteArray> bytes(const QString& key) const override { return get<QByteArray>(key); }
  std::optional<bool> boolean(const QString& key) const override { return get<bool>(key); }
  std::optional<double> real(const QString& key) const override {
    if (const auto whole = get<std::int64_t>(key)) return static_cast<double>(*whole);
    return get<double>(key);
  }
  std::optional<std::int64_t> integer(const QString& key) const override {
    const auto number = get<double>(key);
    if (number && std::trunc(*number) == *number && std::abs(*number) < 0x1p63) return std::llround(*number);
    return get<std::int64_t>(key);
  }
  std::optional<Integers> integers(const QString& key) const override { return get<Integers>(key); }

  void setBytes(const QString& key, const QByteArray& value) override { values_[key] = value; }
  void setBoolean(const QString& key, bool value) override { values_[key] = value; }
  void setReal(const QString& key, double value) override { values_[key] = value; }
  void setInteger(const QString& key, std::int64_t value) override { values_[key] = value; }
  void setIntegers(const QString& key, const Integers& value) override { values_[key] = value; }
  /// A text, which no setting of the program is.
  void setText(const QString& key, const QString& value) { values_[key] = value; }

 private:
  template<typename Kind>
  std::optional<Kind> get(const QString& key) const {
    const auto found = values_.find(key);
    const Kind* value = found == values_.end() ? nullptr : std::get_if<Kind>(&found->second);
    return value == nullptr ? std::nullopt : std::optional<Kind>(*value);
  }

  std::map<QString, std::variant<QByteArray, bool, double, std::int64_t, Integers, QString>> values_;
};

}  // namespace tamboro::test
