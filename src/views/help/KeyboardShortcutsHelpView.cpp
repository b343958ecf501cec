#include "views/help/KeyboardShortcutsHelpView.h"

#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "views/controls/Labels.h"

namespace tamboro {

namespace {

constexpr int keysWidth = 130;

QLayout* makeRow(const KeyboardShortcutsHelpView::Shortcut& shortcut) {
  auto* keys = makeLabel(QStringLiteral("shortcutKeys"), shortcut.keys, TextStyle::caption);
  keys->setFont(Look::monospaced(TextStyle::caption));
  keys->setFixedWidth(Look::px(keysWidth));
  keys->setAccessibleName(spokenKeys(shortcut.keys));
  auto* description = makeLabel(QStringLiteral("shortcutDescription"), shortcut.description, TextStyle::subheadline);
  auto* row = new QHBoxLayout;
  row->setSpacing(8);
  row->addWidget(keys, 0, Qt::AlignBaseline);
  row->addWidget(description, 1, Qt::AlignBaseline);
  return row;
}

QLayout* makeSection(const KeyboardShortcutsHelpView::Section& section) {
  auto* rows = new QVBoxLayout;
  rows->setSpacing(Look::px(6));
  rows->addWidget(makeLabel(QStringLiteral("shortcutSection"), section.first, TextStyle::headline));
  for (const auto& shortcut : section.second)
    rows->addLayout(makeRow(shortcut));
  return rows;
}

QScrollArea* makeTable() {
  auto* content = new QWidget;
  content->setObjectName(QStringLiteral("shortcutTable"));
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(20, 16, 20, 20);
  column->setSpacing(20);
  for (const auto& section : KeyboardShortcutsHelpView::sections())
    column->addLayout(makeSection(section));
  column->addStretch();
  auto* scroller = new QScrollArea;
  scroller->setObjectName(QStringLiteral("shortcutScroller"));
  scroller->setAccessibleName(QStringLiteral("Shortcuts"));
  scroller->setFrameShape(QFrame::NoFrame);
  scroller->setWidgetResizable(true);
  scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroller->setWidget(content);
  scroller->setMinimumWidth(content->sizeHint().width());
  return scroller;
}

}  // namespace

const std::vector<KeyboardShortcutsHelpView::Section>& KeyboardShortcutsHelpView::sections() {
  static const std::vector<Section> all{
      {QStringLiteral("General"),
       {{QStringLiteral("⌘S"), QStringLiteral("Save changes to SPD-SX")},
        {QStringLiteral("⌘Z"), QStringLiteral("Undo")},
        {QStringLiteral("⇧⌘Z"), QStringLiteral("Redo")},
        {QStringLiteral("⌘T"), QStringLiteral("Manage sample tags")},
        {QStringLiteral("⌘N"), QStringLiteral("New kit")},
        {QStringLiteral("⌘,"), QStringLiteral("Preferences")}}},
      {QStringLiteral("Sounds"),
       {{QStringLiteral("Right-click a pad"), QStringLiteral("Copy or paste the sound")},
        {QStringLiteral("Double-click"), QStringLiteral("Rename a sound")},
        {QStringLiteral("Drag"), QStringLiteral("Assign a sound to a pad")}}},
      {QStringLiteral("Navigation"),
       {{QStringLiteral("⌘1 – ⌘9"), QStringLiteral("Jump to kit 1–9")},
        {QStringLiteral("Arrow keys"), QStringLiteral("Move pad selection (and preview the sound)")},
        {QStringLiteral("Click a pad"), QStringLiteral("Select pad")},
        {QStringLiteral("Double-click a pad"), QStringLiteral("Select pad and play the sound")}}}};
  return all;
}

KeyboardShortcutsHelpView::KeyboardShortcutsHelpView(QWidget* parent)
    : Sheet(QStringLiteral("shortcutsHelp"), QStringLiteral("Keyboard Shortcuts"), parent) {
  QPushButton* close = addHeader(windowTitle(), QStringLiteral("Close"));
  close->setDefault(true);
  column()->setContentsMargins(0, 0, 0, 0);
  column()->setSpacing(0);
#ifndef Q_OS_MACOS
  auto* keyboard =
      makeLabel(QStringLiteral("keyboardRemark"), QStringLiteral("On this keyboard, ⌘ is Ctrl and ⇧ is Shift."),
                TextStyle::caption, textRole::secondary);
  keyboard->setContentsMargins(20, 12, 20, 0);
  column()->addWidget(keyboard);
#endif
  QScrollArea* table = makeTable();
  column()->addWidget(table, 1);
  close->setFocus();
  const int others = sizeHint().height() - table->sizeHint().height();
  const int whole = others + table->widget()->sizeHint().height();
  const int room = parent ? std::max(parent->window()->height() - Look::px(60), Look::px(240)) : whole;
  resize(std::max(Look::px(440), sizeHint().width()), std::min(whole, room));
}

}  // namespace tamboro
