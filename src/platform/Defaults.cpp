#include "platform/Defaults.h"

#include <QFileInfo>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>
#include <cmath>

namespace tamboro {

namespace {

const QLatin1String base64Key("base64");

/// JSON has no bytes: they stand as an object of one text. Anything that doesn't decode stays the object it is.
QVariant fromJson(const QJsonValue& value) {
  const QJsonObject object = value.toObject();
  if (object.size() == 1 && object.value(base64Key).isString()) {
    const auto bytes = QByteArray::fromBase64Encoding(object.value(base64Key).toString().toLatin1(),
                                                      QByteArray::AbortOnBase64DecodingErrors);
    if (bytes) return *bytes;
  }
  return value.toVariant();
}

QJsonValue toJson(const QVariant& value) {
  if (value.typeId() != QMetaType::QByteArray) return QJsonValue::fromVariant(value);
  return QJsonObject{{base64Key, QString::fromLatin1(value.toByteArray().toBase64())}};
}

/// A damaged file reads as an empty one, so that settings can be stored again.
bool readJson(QIODevice& device, QSettings::SettingsMap& map) {
  const QJsonObject object = QJsonDocument::fromJson(device.readAll()).object();
  for (auto entry = object.begin(); entry != object.end(); ++entry)
    map.insert(entry.key(), fromJson(entry.value()));
  return true;
}

bool writeJson(QIODevice& device, const QSettings::SettingsMap& map) {
  QJsonObject object;
  for (auto entry = map.begin(); entry != map.end(); ++entry)
    object.insert(entry.key(), toJson(entry.value()));
  const QByteArray text = QJsonDocument(object).toJson();
  return device.write(text) == text.size();
}

QSettings::Format jsonFormat() {
  static const QSettings::Format format =
      QSettings::registerFormat(QStringLiteral("json"), readJson, writeJson, Qt::CaseSensitive);
  return format;
}

std::optional<std::int64_t> integerOf(const QVariant& value) {
  switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
      return value.toLongLong();
    case QMetaType::Double: {
      const double number = value.toDouble();
      constexpr double limit = 9223372036854775808.0;  // 2^63
      if (number != std::trunc(number) || number < -limit || number >= limit) return std::nullopt;
      return static_cast<std::int64_t>(number);
    }
    default:
      return std::nullopt;
  }
}

/// Where the settings are kept: in the file, unless something else stands there. A pipe would be waited for without
/// end, and what isn't ours is left alone; the settings then last as long as the program.
QString storeFor(const QString& file) {
  const QFileInfo there(file);
  return there.exists() && !there.isFile() ? QStringLiteral("/dev/null/tamboro.json") : file;
}

class JsonDefaults : public Defaults {
 public:
  explicit JsonDefaults(const QString& file) : settings_(storeFor(file), jsonFormat()) {}

  std::optional<QByteArray> bytes(const QString& key) const override {
    const QVariant value = settings_.value(key);
    if (value.typeId() != QMetaType::QByteArray) return std::nullopt;
    return value.toByteArray();
  }

  std::optional<bool> boolean(const QString& key) const override {
    const QVariant value = settings_.value(key);
    if (value.typeId() != QMetaType::Bool) return std::nullopt;
    return value.toBool();
  }

  std::optional<double> real(const QString& key) const override {
    const QVariant value = settings_.value(key);
    if (value.typeId() == QMetaType::Double) return value.toDouble();
    if (const auto integer = integerOf(value)) return static_cast<double>(*integer);
    return std::nullopt;
  }

  std::optional<std::int64_t> integer(const QString& key) const override { return integerOf(settings_.value(key)); }

  std::optional<std::vector<std::int64_t>> integers(const QString& key) const override {
    const QVariant value = settings_.value(key);
    if (value.typeId() != QMetaType::QVariantList) return std::nullopt;
    std::vector<std::int64_t> result;
    for (const QVariant& element : value.toList()) {
      const auto number = integerOf(element);
      if (!number) return std::nullopt;
      result.push_back(*number);
    }
    return result;
  }

  void setBytes(const QString& key, const QByteArray& value) override { store(key, value); }
  void setBoolean(const QString& key, bool value) override { store(key, value); }
  void setReal(const QString& key, double value) override { store(key, value); }
  void setInteger(const QString& key, std::int64_t value) override { store(key, static_cast<qlonglong>(value)); }

  void setIntegers(const QString& key, const std::vector<std::int64_t>& value) override {
    QVariantList list;
    for (const std::int64_t number : value)
      list.append(static_cast<qlonglong>(number));
    store(key, list);
  }

 private:
  void store(const QString& key, const QVariant& value) {
    settings_.setValue(key, value);
    settings_.sync();  // at once, so that a crash loses nothing
  }

  QSettings settings_;
};

}  // namespace

std::unique_ptr<Defaults> makeUserDefaults() {
  return makeDefaults(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                      QStringLiteral("/tamboro/tamboro.json"));
}

std::unique_ptr<Defaults> makeDefaults(const QString& file) {
  return std::make_unique<JsonDefaults>(file);
}

}  // namespace tamboro
