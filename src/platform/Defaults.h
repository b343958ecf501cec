#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tamboro {

/// The per-user settings. Each value keeps its kind; a stored value of another kind than the asked one counts as
/// absent (an integer is a real too, a whole real is an integer, a boolean is neither). Main thread only.
class Defaults {
 public:
  Defaults() = default;
  Defaults(const Defaults&) = delete;
  Defaults& operator=(const Defaults&) = delete;
  virtual ~Defaults() = default;

  virtual std::optional<QByteArray> bytes(const QString& key) const = 0;
  virtual std::optional<bool> boolean(const QString& key) const = 0;
  virtual std::optional<double> real(const QString& key) const = 0;
  virtual std::optional<std::int64_t> integer(const QString& key) const = 0;
  /// Absent where any element isn't an integer.
  virtual std::optional<std::vector<std::int64_t>> integers(const QString& key) const = 0;

  virtual void setBytes(const QString& key, const QByteArray& value) = 0;
  virtual void setBoolean(const QString& key, bool value) = 0;
  virtual void setReal(const QString& key, double value) = 0;
  virtual void setInteger(const QString& key, std::int64_t value) = 0;
  virtual void setIntegers(const QString& key, const std::vector<std::int64_t>& value) = 0;
};

/// The settings file `tamboro/tamboro.json` below the user's configuration folder: QSettings over a JSON format,
/// because an INI file keeps no kinds.
std::unique_ptr<Defaults> makeUserDefaults();
/// The same over a file of the caller's.
std::unique_ptr<Defaults> makeDefaults(const QString& file);

}  // namespace tamboro
