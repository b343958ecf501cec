#include "views/kits/KitListRules.h"

#include <algorithm>

#include "views/controls/CardText.h"

namespace tamboro {

std::vector<KitRowValues> kitRowValues(const std::vector<Kit>& kits, const std::vector<KitRowValues>& old,
                                       DottedI dottedI) {
  std::vector<KitRowValues> values;
  values.reserve(kits.size());
  for (const Kit& kit : kits) {
    const KitRowValues* known = findKitRow(old, kit.slot);
    if (known && known->node == kit.node) {
      values.push_back(*known);
    } else {
      const std::string name = kit.name();
      const std::string subName = kit.subName();
      values.push_back({.slot = kit.slot,
                        .node = kit.node,
                        .name = visibleText(cardText(name)),
                        .subName = visibleText(cardText(subName)),
                        .foldedName = searchFold(name, dottedI),
                        .foldedSubName = searchFold(subName, dottedI)});
    }
    values.back().isDirty = kit.isDirty;
  }
  return values;
}

QString kitSlotText(Slot slot) {
  return QString::asprintf("%03lld", static_cast<long long>(slot));
}

QString kitDisplayName(const QString& name) {
  return name.isEmpty() ? QStringLiteral("(untitled)") : name;
}

QString kitChoiceText(Slot slot, const QString& name) {
  return kitSlotText(slot) + QStringLiteral(" – ") + quotedText(kitDisplayName(name));
}

QString kitSpokenText(const KitRowValues& kit) {
  QString text = QStringLiteral("Kit ") + QString::number(kit.slot) + QStringLiteral(", ") + kitDisplayName(kit.name);
  if (!kit.subName.isEmpty()) text += QStringLiteral(", Kit subtitle: ") + kit.subName;
  if (kit.isDirty) text += QStringLiteral(", Unsaved changes");
  return text;
}

QString kitDeleteTitle(const QString& name) {
  return QStringLiteral("Delete kit \"") + quotedText(kitDisplayName(name)) + QStringLiteral("\"?");
}

QString kitExportFolderName(Slot slot, const QString& name) {
  QString folder = name;
  folder.replace(QLatin1Char('/'), QLatin1Char('_')).replace(QChar(0), QLatin1Char('_'));
  if (!folder.isEmpty() && folder != QStringLiteral(".") && folder != QStringLiteral("..")) return folder;
  return QStringLiteral("Kit ") + QString::number(static_cast<quint64>(slot) + 1);
}

std::vector<Slot> filteredKits(const std::vector<KitRowValues>& kits, const QString& searchText, DottedI dottedI) {
  const std::string wanted = searchFold(searchText.toStdString(), dottedI);
  std::vector<Slot> slots;
  for (const KitRowValues& kit : kits) {
    if (searchText.isEmpty() || kit.foldedName.find(wanted) != std::string::npos ||
        kit.foldedSubName.find(wanted) != std::string::npos || kitSlotText(kit.slot).contains(searchText))
      slots.push_back(kit.slot);
  }
  return slots;
}

std::vector<Slot> recentKits(const std::vector<KitRowValues>& kits, const std::vector<Slot>& recentSlots,
                             const QString& searchText) {
  std::vector<Slot> slots;
  if (!searchText.isEmpty()) return slots;
  for (const Slot slot : recentSlots) {
    if (findKitRow(kits, slot)) slots.push_back(slot);
  }
  return slots;
}

const KitRowValues* findKitRow(const std::vector<KitRowValues>& kits, Slot slot) {
  const auto place = std::lower_bound(kits.begin(), kits.end(), slot,
                                      [](const KitRowValues& kit, Slot wanted) { return kit.slot < wanted; });
  return place != kits.end() && place->slot == slot ? &*place : nullptr;
}

}  // namespace tamboro
