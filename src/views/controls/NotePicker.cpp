#include "views/controls/NotePicker.h"

#include <QHBoxLayout>

#include "model/Note.h"
#include "views/controls/Labels.h"
#include "views/controls/MenuPicker.h"
#include "views/controls/TitledRow.h"

namespace tamboro {

NotePicker::NotePicker(int titleWidth, int menuWidth, QWidget* parent)
    : QWidget(parent),
      pitch_(new MenuPicker(QStringLiteral("notePitch"), QStringLiteral("Note"))),
      octave_(new MenuPicker(QStringLiteral("noteOctave"), QStringLiteral("Octave"))),
      remark_(makeLabel(QStringLiteral("middleC"), QStringLiteral("(middle C)"), TextStyle::caption2,
                        textRole::secondary)) {
  setObjectName(QStringLiteral("note"));
  for (int pitch = 0; const std::string_view name : pitchNames)
    pitch_->addRow(pitch++, QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
  octave_->addNumbers(-1, 9, QStringLiteral("Octave "));
  for (MenuPicker* menu : {pitch_, octave_})
    menu->setWidth(menuWidth);
  QBoxLayout* line = layOutTitledRow(*this, QStringLiteral("Note"), pitch_, titleWidth);
  for (QWidget* part : {static_cast<QWidget*>(octave_), static_cast<QWidget*>(remark_)}) {
    line->insertSpacing(line->count() - 1, Look::px(8));
    line->insertWidget(line->count() - 1, part);
  }
  connect(pitch_, &MenuPicker::chosen, this, [this](qint64 value) { Q_EMIT pitchChosen(static_cast<int>(value)); });
  connect(octave_, &MenuPicker::chosen, this, [this](qint64 value) { Q_EMIT octaveChosen(static_cast<int>(value)); });
}

void NotePicker::setNote(std::int64_t number) {
  pitch_->setValue(pitchOf(number));
  octave_->setValue(octaveOf(number));
  remark_->setVisible(number == middleC);
}

}  // namespace tamboro
