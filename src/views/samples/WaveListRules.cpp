#include "views/samples/WaveListRules.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <future>
#include <span>

#include "views/controls/CardText.h"

namespace tamboro {

namespace {

QString numbered(const char* what, std::int64_t number) {
  return QLatin1String(what) + QString::number(number);
}

/// The first eight bytes as a number of the same order: most names are told apart without being looked up.
std::uint64_t startOf(const std::string& text) {
  std::uint64_t start = 0;
  for (std::size_t place = 0; place < sizeof start; ++place)
    start = start << 8U | (place < text.size() ? static_cast<unsigned char>(text[place]) : 0U);
  return start;
}

/// The trees of an opened card lie all over the memory: to wait for them on two threads takes half the time.
template<typename Work>
void inTwoThreads(std::span<const std::size_t> places, const Work& work) {
  constexpr std::size_t worthAThread = 1000;
  const auto doPart = [&work](std::span<const std::size_t> part) { std::ranges::for_each(part, work); };
  if (places.size() < worthAThread) return doPart(places);
  // Without a further thread to be had, this one does both.
  auto rest = std::async(std::launch::async | std::launch::deferred, doPart, places.subspan(places.size() / 2));
  doPart(places.first(places.size() / 2));
  rest.get();
}

}  // namespace

WaveRowValues WaveRows::made(const Wave& wave) const {
  std::string name = wave.name();
  return {.id = wave.id(),
          .node = wave.node,
          .sortKey = name,
          .foldedName = searchFold(name, dottedI_),
          .tag = wave.tag(),
          .isFactory = wave.isFactory(),
          .hasMeasure = wave.hasMeasure(),
          .isPending = wave.isPending};
}

std::set<WaveId> WaveRows::read(const std::vector<Wave>& waves) {
  std::set<WaveId> changed;
  std::vector<WaveRowValues> values(waves.size());
  std::vector<std::size_t> unknown;
  auto known = values_.begin();
  bool isOrderOther = waves.size() != values_.size();
  for (std::size_t place = 0; place < waves.size(); ++place) {
    const Wave& wave = waves[place];
    const WaveId id = wave.id();
    while (known != values_.end() && known->id < id)
      ++known;
    if (known == values_.end() || known->id != id) {
      unknown.push_back(place);
      changed.insert(changed.end(), id);
    } else if (known->node == wave.node && known->isFactory == wave.isFactory()) {
      if (known->isPending != wave.isPending) changed.insert(changed.end(), id);
      values[place] = std::move(*known++);
      values[place].isPending = wave.isPending;
    } else {
      changed.insert(changed.end(), id);
      values[place] = made(wave);
      isOrderOther = isOrderOther || known->sortKey != values[place].sortKey;
    }
  }
  inTwoThreads(unknown, [&](std::size_t place) { values[place] = made(waves[place]); });
  values_ = std::move(values);
  if (isOrderOther || !unknown.empty()) sortByName();
  return changed;
}

void WaveRows::sortByName() {
  struct Entry {
    std::uint64_t start;
    std::size_t place;
  };
  std::vector<Entry> entries;
  entries.reserve(values_.size());
  for (const WaveRowValues& value : values_)
    entries.push_back({startOf(value.sortKey), entries.size()});
  std::sort(entries.begin(), entries.end(), [this](const Entry& a, const Entry& b) {
    if (a.start != b.start) return a.start < b.start;
    const int order = values_[a.place].sortKey.compare(values_[b.place].sortKey);
    return order != 0 ? order < 0 : a.place < b.place;
  });
  byName_.clear();
  for (const Entry& entry : entries)
    byName_.push_back(entry.place);
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
    const QString name = visibleText(cardText(tag.name()));
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
  QStringList parts{wave.name(), QStringLiteral("Tag: ") + tag, QString::number(wave.id)};
  if (wave.isPending) parts << QStringLiteral("Not saved to the card yet");
  parts.removeAll(QString());
  return parts.join(QStringLiteral(", "));
}

QString waveAddHelp(std::optional<Slot> slot, const Kit* kit, int padIndex) {
  if (!slot) return QStringLiteral("Select a kit and a pad first");
  // In 64 bits: a slot is any number that a file name can hold.
  const QString kitName = kit ? quotedText(cardText(kit->name()))
                              : QStringLiteral("Kit ") + QString::number(static_cast<quint64>(*slot) + 1);
  return QStringLiteral("Assign to pad ") + QString::number(padIndex + 1) + QStringLiteral(" in ") + kitName;
}

QString waveDeleteTitle(const QString& name, const std::vector<WaveUsage>& usages) {
  if (usages.empty())
    return QStringLiteral("Delete \"") + quotedText(name) + QStringLiteral("\"? It isn't used in any kits.");
  QStringList uses;
  for (const WaveUsage& usage : usages) {
    const QString kit = usage.kitName.empty()
                            ? QStringLiteral("Kit ") + QString::number(static_cast<quint64>(usage.kitSlot) + 1)
                            : quotedText(cardText(usage.kitName));
    uses << kit + QStringLiteral(" – pad ") + QString::number(usage.padIndex + 1) +
                (usage.isSub ? QStringLiteral(" (sub)") : QString());
  }
  return QStringLiteral("\"") + quotedText(name) + QStringLiteral("\" is used in: ") + uses.join(QStringLiteral(", ")) +
         QStringLiteral(". Delete anyway?");
}

QString waveCountText(std::size_t rows, std::size_t selected) {
  return selected >= 2 ? QStringLiteral("%1 selected").arg(selected) : QStringLiteral("%1 sounds").arg(rows);
}

QString waveImportText(int done, int total) {
  if (total == 0) return QStringLiteral("Looking for sounds…");
  return QStringLiteral("Importing %1 of %2…").arg(std::min(done + 1, total)).arg(total);
}

QString waveImportFailureText(const std::vector<QString>& fileNames, const QString& lastFailure) {
  constexpr std::size_t most = 20;
  if (fileNames.size() <= 1) return lastFailure;
  QStringList named;
  for (std::size_t i = 0; i < std::min(most, fileNames.size()); ++i)
    named << fileNames[i];
  QString names = named.join(QStringLiteral(", "));
  if (fileNames.size() > most) names += QStringLiteral(" and %1 more").arg(fileNames.size() - most);
  return QStringLiteral("%1 files couldn't be imported: ").arg(fileNames.size()) + names +
         QStringLiteral(". The last failure:\n\n") + lastFailure;
}

QString waveTempoText(std::int64_t tenths) {
  return QString::number(static_cast<double>(tenths) / 10, 'f', 1);
}

std::optional<std::int64_t> waveTempoIn(const QString& text) {
  bool isNumber = false;
  const double beats = QString(text).replace(QLatin1Char(','), QLatin1Char('.')).trimmed().toDouble(&isNumber);
  constexpr double most = 1e15;  // where tenths still are whole numbers
  if (!isNumber || !(std::abs(beats) < most)) return std::nullopt;
  return std::llround(beats * 10);
}

}  // namespace tamboro
