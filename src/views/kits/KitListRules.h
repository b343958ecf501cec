#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "model/Kit.h"
#include "text/Unicode.h"

namespace tamboro {

/// What the list shows of a kit and compares with a search: plain values, made again only when the kit's tree differs.
struct KitRowValues {
  Slot slot = 0;
  SpdNode node;  ///< the tree the names were read from
  QString name, subName;
  std::string foldedName, foldedSubName;
  bool isDirty = false;
};

/// Values for these kits, in their order; what `old` (ascending by slot) holds of the same tree is taken over.
std::vector<KitRowValues> kitRowValues(const std::vector<Kit>& kits, const std::vector<KitRowValues>& old,
                                       DottedI dottedI);

/// Three digits with leading zeros.
QString kitSlotText(Slot slot);
/// The name, or "(untitled)".
QString kitDisplayName(const QString& name);
/// "003 – 808 Trap"
QString kitChoiceText(Slot slot, const QString& name);
/// A whole row as assistive tools read it: slot, name, subtitle and the mark of unsaved changes.
QString kitSpokenText(const KitRowValues& kit);
QString kitDeleteTitle(const QString& name);
/// The folder that an export makes in the chosen one: the kit's name, else "Kit " and the slot number plus 1. What no
/// folder can be called is replaced.
QString kitExportFolderName(Slot slot, const QString& name);

/// The slots whose name or subtitle contains the text, in any case, or whose slot text contains it; in the order of
/// `kits`. An empty text keeps all.
std::vector<Slot> filteredKits(const std::vector<KitRowValues>& kits, const QString& searchText, DottedI dottedI);
/// The recently used slots that are among `kits`, in the order of use; none while a search text stands.
std::vector<Slot> recentKits(const std::vector<KitRowValues>& kits, const std::vector<Slot>& recentSlots,
                             const QString& searchText);

/// The kit of that slot in values that ascend by slot.
const KitRowValues* findKitRow(const std::vector<KitRowValues>& kits, Slot slot);

}  // namespace tamboro
