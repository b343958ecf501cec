#pragma once

#include <QString>
#include <optional>
#include <set>
#include <vector>

#include "model/Kit.h"
#include "model/TagList.h"
#include "model/Wave.h"
#include "model/WaveUsage.h"
#include "text/Unicode.h"
#include "views/controls/CardText.h"

namespace tamboro {

/// What the list shows of a sample and compares with a search: plain values, made again only when the tree differs.
struct WaveRowValues {
  WaveId id = 0;
  SpdNode node;         ///< the tree the values were read from
  std::string sortKey;  ///< the name in UTF-8, whose order of bytes is that of code points
  std::string foldedName;
  std::int64_t tag = 0;
  bool isFactory = false;
  bool hasMeasure = false;
  bool isPending = false;

  QString name() const { return visibleText(cardText(sortKey)); }
};

/// The values of all samples, by id and by name. Ten thousand are filtered at every keystroke: names are folded and
/// sorted when a sample changes, not when the search does.
class WaveRows {
 public:
  explicit WaveRows(DottedI dottedI) : dottedI_(dottedI) {}

  /// Takes samples that ascend by id; the ids whose values are new or other than before.
  std::set<WaveId> read(const std::vector<Wave>& waves);
  std::size_t size() const { return values_.size(); }
  const WaveRowValues* find(WaveId id) const;
  /// Those with this tag, or any, whose name contains the text in any case: by name, equal names by id.
  std::vector<WaveId> filtered(const QString& searchText, std::optional<std::int64_t> selectedTag) const;

 private:
  WaveRowValues made(const Wave& wave) const;
  void sortByName();

  DottedI dottedI_;
  std::vector<WaveRowValues> values_;
  std::vector<std::size_t> byName_;
};

/// The selection after the user selected `shownSelected` among the rows that are shown. An addition keeps what a filter
/// hides; anything else replaces that too.
std::set<WaveId> waveSelection(const std::set<WaveId>& before, std::vector<WaveId> shown,
                               const std::set<WaveId>& shownSelected, bool isAddition);

/// Each tag's name, or "Tag " and its index where the name is empty.
std::vector<QString> waveTagTitles(const std::optional<TagList>& tags);
/// The title of a sample's tag; "Tag " and the number for one that isn't in the list.
QString waveTagText(const std::vector<QString>& titles, std::int64_t tag);
/// "[205]"
QString waveNumberText(WaveId id);
/// A whole row as assistive tools read it: name, tag, number and the mark of audio that isn't on the card.
QString waveSpokenText(const WaveRowValues& wave, const QString& tag);
/// `kit` is the one in `slot`, if there is one.
QString waveAddHelp(std::optional<Slot> slot, const Kit* kit, int padIndex);
QString waveDeleteTitle(const QString& name, const std::vector<WaveUsage>& usages);
/// "148 sounds", or with two and more selected "2 selected".
QString waveCountText(std::size_t rows, std::size_t selected);
QString waveImportText(int done, int total);
/// The last failure's own text; of several files it also tells how many and which.
QString waveImportFailureText(const std::vector<QString>& fileNames, const QString& lastFailure);
/// Tenths of a beat per minute as "120.0".
QString waveTempoText(std::int64_t tenths);
/// A typed tempo in tenths, with a point or a comma; nothing where it is no number.
std::optional<std::int64_t> waveTempoIn(const QString& text);

}  // namespace tamboro
