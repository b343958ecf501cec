#include "views/samples/BatchRenameSheet.h"

#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "views/controls/Labels.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/Stepper.h"
#include "views/look/LookStyle.h"
#include "views/samples/RenamePreview.h"

namespace tamboro {

namespace {

QLineEdit* makePatternField(const QString& pattern) {
  auto* field = new QLineEdit(pattern);
  field->setObjectName(QStringLiteral("namePattern"));
  field->setAccessibleName(QStringLiteral("Name Pattern"));
  field->setPlaceholderText(QStringLiteral("Name Pattern"));
  return field;
}

QString startLabel() {
  return QStringLiteral("Start: ");
}

/// The number alone, too, which is typed over the whole.
std::optional<std::int64_t> startIn(const QString& text) {
  bool isNumber = false;
  const std::int64_t start = text.mid(text.lastIndexOf(QLatin1Char(' ')) + 1).toLongLong(&isNumber);
  return isNumber ? std::optional(start) : std::nullopt;
}

Stepper* makeStartStepper(std::int64_t start) {
  auto* stepper = new Stepper;
  stepper->setObjectName(QStringLiteral("startNumber"));
  stepper->setAccessibleName(QStringLiteral("Start"));
  stepper->setFont(Look::font(TextStyle::body));
  stepper->setRange(1, 9999);
  stepper->setNotation({[](std::int64_t value) { return startLabel() + QString::number(value); }, &startIn});
  stepper->setValue(start);
  return stepper;
}

}  // namespace

BatchRenameSheet::BatchRenameSheet(RolandLibrary& store, std::vector<WaveId> globalIndices,
                                   std::function<void(std::set<WaveId>)> onDone, QWidget* parent)
    : Sheet(QStringLiteral("batchRenameSheet"), QStringLiteral("Rename Sounds"), parent),
      store_(store),
      globalIndices_(std::move(globalIndices)),
      onDone_(std::move(onDone)) {
  column()->addWidget(title_ = makeLabel(QStringLiteral("sheetTitle"), {}, TextStyle::headline));
  column()->addWidget(field_ = makePatternField(pattern_.pattern));
  column()->addWidget(start_ = makeStartStepper(pattern_.startNumber), 0, Qt::AlignLeft);
  auto* previewPart = new QVBoxLayout;
  previewPart->setSpacing(Look::px(6));
  previewPart->addWidget(
      makeLabel(QStringLiteral("previewTitle"), QStringLiteral("Preview"), TextStyle::caption, textRole::secondary));
  previewPart->addWidget(preview_ = new RenamePreview);
  column()->addLayout(previewPart);
  connect(addButton(QStringLiteral("Cancel")), &QPushButton::clicked, this, &QDialog::reject);
  rename_ = addButton(QStringLiteral("Rename"));
  setControlLook(*rename_, ControlLook::prominent);
  rename_->setDefault(true);
  connect(field_, &QLineEdit::textChanged, this, [this](const QString& text) {
    setPattern({text, pattern_.startNumber});
  });
  connect(start_, &Stepper::edited, this, [this](std::int64_t start) { setPattern({pattern_.pattern, start}); });
  connect(rename_, &QPushButton::clicked, this, &BatchRenameSheet::rename);
  preview_->setFixedWidth(Look::px(420) - 2 * 20);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
  setPattern(pattern_);
  field_->selectAll();
  field_->setFocus();
}

void BatchRenameSheet::refresh() {
  preview_->setRows(renameRows(store_.waves(), globalIndices_));
  const QString title = QStringLiteral("Rename %1 Sounds").arg(preview_->rows().size());
  title_->setText(title);
  setWindowTitle(title);
  setAccessibleName(title);
}

void BatchRenameSheet::setPattern(RenamePattern pattern) {
  pattern_ = std::move(pattern);
  preview_->setPattern(pattern_);
  rename_->setEnabled(pattern_.isUsable());
}

/// In one event, and so in one step of the undo.
void BatchRenameSheet::rename() {
  const std::vector<RenameRow>& rows = preview_->rows();
  for (std::size_t row = 0; row < rows.size(); ++row)
    store_.setWaveName(rows[row].id, pattern_.newName(row).toStdString());
  onDone_({});
  accept();
}

}  // namespace tamboro
