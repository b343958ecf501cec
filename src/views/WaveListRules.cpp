#include "views/WaveListRules.h"

#include <QStringList>
#include <algorithm>
#include <numeric>

namespace tamboro {

namespace {

QString numbered(const char* what, std::int64_t number) {
  return QLatin1String(what) + QString::number(number);
}

}  // namespace

WaveRowValues WaveRows::made(const Wave& wave) const {
  std::string name = wave.name();
  return {.id = wave.id(),
          .node = wave.node,
          .name = QString::fromStdString(name),
          .sortKey = name,
          .foldedName = searchFold(name, dottedI_),
          .tag = wave.tag(),
          .isFactory = wave.isFactory(),
          .hasMeasure = wave.hasMeasure(),
          .isPending = wave.isPending};
}

std::set<WaveId> WaveRows::read(const std::vector<Wave>& waves) {
  std::set<WaveId> changed;
  std::vector<WaveRowValues> values;
  values.reserve(waves.size());
  auto known = values_.begin();
  bool isOrderOther = waves.size() != values_.size();
  for (const Wave& wave : waves) {
    const WaveId id = wave.id();
    while (known != values_.end() && known->id < id)
      ++known;
    const bool isKnown = known != values_.end() && known->id == id;
    if (isKnown && known->node == wave.node && known->isFactory == wave.isFactory()) {
      if (known->isPending != wave.isPending) changed.insert(changed.end(), id);
      values.push_back(std::move(*known++));
      values.back().isPending = wave.isPending;
    } else {
      changed.insert(changed.end(), id);
      values.push_back(made(wave));
      isOrderOther = isOrderOther || !isKnown || known->sortKey != values.back().sortKey;
    }
  }
  values_ = std::move(values);
  if (isOrderOther) {
    byName_.resize(values_.size());
    std::iota(byName_.begin(), byName_.end(), std::size_t{0});
    std::stable_sort(byName_.begin(), byName_.end(),
                     [this](std::size_t a, std::size_t b) { return values_[a].sortKey < values_[b].sortKey; });
  }
  return changed;
}

const WaveRowValues* WaveRows::find(WaveId id) const {
  const auto place = std::ranges::lower_bound(values_, id, {}, &WaveRowValues::id);
  return place != values_.end() && place->id == id ? &*place : nullptr;
}

std::vector<WaveId> WaveRows::filtered(const QString& searchText, std::optional<std::int64_t> selectedTag) const {
  const std::string wanted = searchFold(searchText.toStdString(), dottedI_);
  std::vector<WaveId> ids;
  ids.reserve(values_.size());
  for (const std::size_t place : byName_) {
    const WaveRowValues& wave = values_[place];
    if (selectedTag && wave.tag != *selectedTag) continue;
    if (searchText.isEmpty() || wave.foldedName.find(wanted) != std::string::npos) ids.push_back(wave.id);
  }
  return ids;
}

std::set<WaveId> waveSelection(const std::set<WaveId>& before, std::vector<WaveId> shown,
                               const std::set<WaveId>& shownSelected, bool isAddition) {
  std::set<WaveId> after = shownSelected;
  if (!isAddition) return after;
  std::ranges::sort(shown);
  std::ranges::set_difference(before, shown, std::inserter(after, after.end()));
  return after;
}

std::vector<QString> waveTagTitles(const std::optional<TagList>& tags) {
  std::vector<QString> titles;
  if (!tags) return titles;
  for (const Tag& tag : tags->tags()) {
    const QString name = QString::fromStdString(tag.name());
    titles.push_back(name.isEmpty() ? numbered("Tag ", tag.index) : name);
  }
  return titles;
}

QString waveTagText(const std::vector<QString>& titles, std::int64_t tag) {
  return tag >= 0 && static_cast<std::uint64_t>(tag) < titles.size() ? titles[static_cast<std::size_t>(tag)]
                                                                     : numbered("Tag ", tag);
}

QString waveNumberText(WaveId id) {
  return QStringLiteral("[%1]").arg(id);
}

QString waveSpokenText(const WaveRowValues& wave, const QString& tag) {
  QStringList parts{wave.name, QStringLiteral("Tag: ") + tag, QString::number(wave.id)};
  if (wave.isPending) parts << QStringLiteral("Not saved to the card yet");
  parts.removeAll(QString());
  return parts.join(QStringLiteral(", "));
}

QString waveAddHelp(std::optional<Slot> slot, const Kit* kit, int padIndex) {
  if (!slot) return QStringLiteral("Select a kit and a pad first");
  // In 64 bits: a slot is any number that a file name can hold.
  const QString kitName = kit ? QString::fromStdString(kit->name())
                              : QStringLiteral("Kit ") + QString::number(static_cast<quint64>(*slot) + 1);
  return QStringLiteral("Assign to pad ") + QString::number(padIndex + 1) + QStringLiteral(" in ") + kitName;
}

QString waveDeleteTitle(const QString& name, const std::vector<WaveUsage>& usages) {
  if (usages.empty()) return QStringLiteral("Delete \"") + name + QStringLiteral("\"? It isn't used in any kits.");
  QStringList uses;
  for (const WaveUsage& usage : usages) {
    const QString kit = usage.kitName.empty()
                            ? QStringLiteral("Kit ") + QString::number(static_cast<quint64>(usage.kitSlot) + 1)
                            : QString::fromStdString(usage.kitName);
    uses << kit + QStringLiteral(" – pad ") + QString::number(usage.padIndex + 1) +
                (usage.isSub ? QStringLiteral(" (sub)") : QString());
  }
  return QStringLiteral("\"") + name + QStringLiteral("\" is used in: ") + uses.join(QStringLiteral(", ")) +
         QStringLiteral(". Delete anyway?");
}

QString waveCountText(std::size_t rows, std::size_t selected) {
  return selected >= 2 ? QStringLiteral("%1 selected").arg(selected) : QStringLiteral("%1 sounds").arg(rows);
}

QString waveImportText(int done, int total) {
  return QStringLiteral("Importing %1 of %2…").arg(std::min(done + 1, total)).arg(total);
}

QString waveTempoText(std::int64_t tenths) {
  return QString::number(static_cast<double>(tenths) / 10, 'f', 1);
}

}  // namespace tamboro
