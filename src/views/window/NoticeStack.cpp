#include "views/window/NoticeStack.h"

#include <QVBoxLayout>
#include <algorithm>

namespace tamboro {

NoticeStack::NoticeStack(QWidget* parent) : QWidget(parent), rows_(new QVBoxLayout(this)) {
  setObjectName(QStringLiteral("notices"));
  setAccessibleName(QStringLiteral("Notices"));
  rows_->setSpacing(0);
  hide();
}

void NoticeStack::put(const QString& key, Notice notice) {
  const auto place = find(key) - lines_.begin();
  remove(key);  // a new line, so that it is announced anew
  auto* line = new NoticeLine(key, notice);
  connect(line, &NoticeLine::closed, this, [this, key] { remove(key); });
  connect(line, &NoticeLine::chosen, this, [this, key, actions = std::move(notice.actions)](std::size_t action) {
    const auto run = actions[action].run;  // the line, which goes, holds the others
    remove(key);
    if (run) run();
  });
  lines_.insert(lines_.begin() + place, {key, line});
  rows_->insertWidget(static_cast<int>(place), line);
  line->show();
  show();
  orderTabs();
}

void NoticeStack::remove(const QString& key) {
  const auto found = find(key);
  if (found == lines_.end()) return;
  NoticeLine* line = found->second;
  lines_.erase(found);
  line->hide();  // hands the focus on
  rows_->removeWidget(line);
  line->deleteLater();
  setVisible(!lines_.empty());
}

bool NoticeStack::holds(const QString& key) const {
  return find(key) != lines_.end();
}

NoticeStack::Lines::const_iterator NoticeStack::find(const QString& key) const {
  return std::ranges::find(lines_, key, &Lines::value_type::first);
}

/// The Tab key goes by the order in which controls are made; these come late and stand high.
void NoticeStack::orderTabs() {
  QWidget* before = previousInFocusChain();
  while (before != this && (before->focusPolicy() == Qt::NoFocus || isAncestorOf(before)))
    before = before->previousInFocusChain();
  for (const auto& [key, line] : lines_) {
    for (QWidget* button : line->buttons()) {
      setTabOrder(before, button);
      before = button;
    }
  }
}

}  // namespace tamboro
