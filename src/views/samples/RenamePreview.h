#pragma once

#include <QListView>

#include "views/samples/BatchRename.h"

namespace tamboro {

/// What a batch rename would do, a line a sample: the old name struck through, an arrow, the new name in full. As high
/// as its lines, 160 at most; it scrolls, also sideways to long names.
class RenamePreview : public QListView {
  Q_OBJECT

 public:
  explicit RenamePreview(QWidget* parent = nullptr);

  void setRows(std::vector<RenameRow> rows);
  void setPattern(const RenamePattern& pattern);
  const std::vector<RenameRow>& rows() const;

 protected:
  bool event(QEvent* event) override;

 private:
  class Model;
  class Delegate;
  void fit();

  Model* model_;
  Delegate* delegate_;
};

}  // namespace tamboro
