#pragma once

#include <QAbstractScrollArea>
#include <map>

#include "library/store/RolandLibrary.h"

class QLabel;

namespace tamboro {

class EditField;

/// A row a tag: its number and a field for its name. Fields exist for the rows in sight and some around them, so that
/// a list of any length opens at once; the one in use stays wherever it is scrolled. Tab, Return, Up and Down walk
/// through all rows.
class TagFieldList : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit TagFieldList(RolandLibrary& store, QWidget* parent = nullptr);

  /// Scrolls to the row and gives its field the keyboard.
  void edit(int row, Qt::FocusReason reason = Qt::OtherFocusReason);
  /// Those that exist, from the first row on.
  QWidgetList fields() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void focusInEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void changeEvent(QEvent* event) override;

 private:
  void refresh();
  QString nameOf(int row);
  void layOut();
  void reveal(int row);
  void placeFields();
  template<class Wanted>
  void dropFields(const Wanted& isWanted);
  EditField* makeField(int row);
  int focusedRow() const;
  int rowHeight() const;
  int numberWidth() const;
  QRect rowRect(int row) const;
  QRect numberRect(int row) const;
  QRect fieldRect(int row) const;
  int rowAt(int y) const;

  RolandLibrary& store_;
  int rowCount_ = 0;
  std::optional<TagList> readList_;  ///< `tags_` come from it; made again when the store's differs
  std::vector<Tag> tags_;
  std::map<int, EditField*> fields_;
  QLabel* noTags_;
};

}  // namespace tamboro
