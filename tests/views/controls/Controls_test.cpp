#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "views/controls/AlertSheet.h"
#include "views/controls/Stepper.h"
#include "views/controls/ThrottledSlider.h"
#include "views/look/Look.h"
#include "views/look/Symbols.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void wheel(QWidget& target) {
  QWheelEvent event(QPointF(5, 5), target.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&target, &event);
}

TEST(Symbols, EachPaintsInsideItsSquare) {
  for (const QString& name : symbolNames()) {
    for (const int side : {12, 22, 96}) {
      QImage image(side + 8, side + 8, QImage::Format_ARGB32_Premultiplied);
      image.fill(Qt::transparent);
      QPainter painter(&image);
      paintSymbol(painter, name, QRectF(4, 4, side, side), Qt::darkBlue);
      painter.end();
      int inside = 0;
      int outside = 0;
      for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
          (QRect(4, 4, side, side).contains(x, y) ? inside : outside) += qAlpha(image.pixel(x, y)) > 8 ? 1 : 0;
      EXPECT_GT(inside, side) << name.toStdString() << " at " << side;
      EXPECT_EQ(outside, 0) << name.toStdString() << " at " << side;
    }
  }
}

double luminance(const QColor& colour) {
  const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
  return 0.05 + 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

TEST(Look, TextStandsOutOnEveryGround) {
  for (const Look* look : {&Look::light(), &Look::dark()}) {
    for (const QColor& ground : {look->window, look->sidebar, look->bar, look->controlBackground, look->base}) {
      for (const QColor& text : {look->primary, look->secondary, look->tertiary, look->accentText, look->danger}) {
        const double contrast = luminance(text) / luminance(ground);
        EXPECT_GE(std::max(contrast, 1 / contrast), 4.5) << text.name().toStdString() << " " << look->isDark;
      }
    }
  }
}

TEST(LookStyle, WheelChangesOnlyTheControlInUse) {
  QWidget window;
  auto* column = new QVBoxLayout(&window);
  auto* field = new QLineEdit;
  auto* picker = new QComboBox;
  picker->addItems({q("a"), q("b")});
  picker->setCurrentIndex(1);
  column->addWidget(field);
  column->addWidget(picker);
  window.show();
  window.activateWindow();
  settle();
  field->setFocus();
  wheel(*picker);
  EXPECT_EQ(picker->currentIndex(), 1);
  picker->setFocus();
  wheel(*picker);
  EXPECT_EQ(picker->currentIndex(), 0);
}

/// A slider over 0 to 100 that lists what it reports.
struct Slider {
  std::vector<double> commits;
  ThrottledSlider slider{q("test"),
                         {.title = q("Test"),
                          .format = [](double value) { return QString::number(value); },
                          .commit = [this](double value) { commits.push_back(value); }}};
  QSlider& track = *slider.findChild<QSlider*>();
  QLabel& text = *slider.findChild<QLabel*>(q("testValue"));

  Slider() {
    slider.resize(300, 40);
    slider.show();
    slider.setValue(50);
    settle();
  }
  QPoint at(int percent, int off = 0) { return {11 + (track.width() - 22) * percent / 100 + off, track.height() / 2}; }
  void press(int percent, int off = 0) { QTest::mousePress(&track, Qt::LeftButton, {}, at(percent, off)); }
  void drag(int percent) {
    QMouseEvent move(QEvent::MouseMove, at(percent), track.mapToGlobal(at(percent)), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&track, &move);
  }
  void release(int percent, int off = 0) { QTest::mouseRelease(&track, Qt::LeftButton, {}, at(percent, off)); }
};

TEST(ThrottledSlider, ReportsOnceADrag) {
  Slider s;
  s.press(50, 5);
  s.release(50, 5);
  EXPECT_THAT(s.commits, IsEmpty()) << "a press anywhere on the knob leaves it";
  s.press(50);
  s.drag(80);
  s.slider.setValue(10);  // another edit comes in
  EXPECT_EQ(s.text.text(), QString::number(*s.slider.liveValue()));
  s.drag(90);
  EXPECT_THAT(s.commits, IsEmpty());
  s.release(90);
  EXPECT_THAT(s.commits, ElementsAre(testing::DoubleNear(90, 2)));
  EXPECT_EQ(s.slider.liveValue(), std::nullopt);
  s.press(20);
  s.drag(25);
  s.release(25);
  EXPECT_EQ(s.commits.size(), 2U) << "a press on the groove begins a drag";
  s.press(25);
  s.drag(70);
  s.slider.cancelDrag();
  s.slider.setValue(30);
  s.drag(80);
  s.release(80);
  EXPECT_EQ(s.commits.size(), 2U) << "a dropped drag";
  EXPECT_EQ(s.track.value(), 30);
}

TEST(ThrottledSlider, ReportsEachStepAndKeepsAValueBeyondItsRange) {
  Slider s;
  s.slider.activateWindow();
  s.track.setFocus();
  QTest::keyClick(&s.track, Qt::Key_Right);
  wheel(s.track);
  EXPECT_EQ(s.commits.size(), 2U);
  s.slider.setValue(150);
  EXPECT_EQ(s.text.text(), q("150"));
  QTest::keyClick(&s.track, Qt::Key_Right);
  EXPECT_EQ(s.commits.size(), 2U);
}

TEST(Stepper, StepsIntoItsRangeFromWhereverTheValueStands) {
  QWidget window;
  Stepper stepper(&window);
  stepper.setRange(200, 4000);
  stepper.setStep(10);
  std::vector<std::int64_t> edits;
  QObject::connect(&stepper, &Stepper::edited, [&](std::int64_t value) {
    edits.push_back(value);
    stepper.setValue(value);
  });
  window.show();
  stepper.setValue(150);
  EXPECT_EQ(stepper.text(), q("150"));
  QTest::keyClick(&stepper, Qt::Key_Down);
  stepper.setValue(3995);
  QTest::keyClick(&stepper, Qt::Key_Up);
  QTest::keyClick(&stepper, Qt::Key_PageDown);
  EXPECT_THAT(edits, ElementsAre(200, 4000, 3900)) << "to the nearer bound, whichever way";
  edits.clear();
  QTest::mouseClick(&stepper, Qt::LeftButton, {}, {stepper.width() - 12, stepper.height() / 2 + 6});
  QTest::keyClick(&stepper, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&stepper, q("7"));
  QTest::keyClick(&stepper, Qt::Key_Up);
  EXPECT_EQ(edits.front(), 3890);
  EXPECT_EQ(edits.back(), 210) << "typed, brought into the range, and a step";
}

TEST(NumberField, TakesWhatWasTypedBeforeAnythingElseHappens) {
  QWidget window;
  auto* rows = new QVBoxLayout(&window);
  auto* field = new NumberField(q("number"), q("Number"));
  auto* button = new QPushButton;
  button->setFocusPolicy(Qt::NoFocus);
  rows->addWidget(field);
  rows->addWidget(button);
  std::vector<std::int64_t> edits;
  QObject::connect(field, &NumberField::edited, [&](std::int64_t value) {
    edits.push_back(value);
    field->setValue(value);
  });
  window.show();
  window.activateWindow();
  field->setFocus();
  const auto type = [&](const char* typed) {
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, q(typed));
  };
  for (const char* refused : {"", "12x", "9223372036854775808"}) {
    type(refused);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(field->text(), q("0")) << refused;
  }
  EXPECT_THAT(edits, IsEmpty());
  type("12");
  QTest::keyClick(field, Qt::Key_S, Qt::ControlModifier);
  type("-34");
  QTest::mouseClick(field, Qt::LeftButton);
  EXPECT_THAT(edits, ElementsAre(12)) << "by the key that saves, and not where the cursor was placed";
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_THAT(edits, ElementsAre(12, -34)) << "by a button that leaves the focus where it is";
}

TEST(AlertSheet, NeverDestroysByReturnOrEscape) {
  using Role = AlertButton::Role;
  const Alert question{q("Delete?"), q("Text"), {{q("Delete"), Role::destructive}, {q("Cancel"), Role::cancel}}};
  const auto answer = [](const Alert& alert, Qt::Key key) {
    AlertSheet sheet(alert, nullptr);
    sheet.setAttribute(Qt::WA_DeleteOnClose, false);
    int pressed = -1;
    QObject::connect(&sheet, &QDialog::finished, [&](int position) { pressed = position; });
    sheet.open();
    sheet.activateWindow();
    QApplication::processEvents();
    QTest::keyClick(sheet.focusWidget(), key);
    return pressed;
  };
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Space, Qt::Key_Return})
    EXPECT_EQ(answer(question, key), 1) << key;
  EXPECT_EQ(answer({q("Couldn't Save"), q("Why")}, Qt::Key_Return), 0);
}

TEST(AlertSheet, ShowsLongTextsWholeAndItsButtonsInSight) {
  const QString word(200, QLatin1Char('M'));
  for (const Alert& alert : {Alert{q("LiveSet1 – pad 1, ").repeated(3000), {}}, Alert{q("Couldn't Save"), word}}) {
    AlertSheet sheet(alert, nullptr);
    sheet.setAttribute(Qt::WA_DeleteOnClose, false);
    sheet.open();
    EXPECT_LT(sheet.height(), 500);
    const auto* text = sheet.findChild<QLabel*>(alert.text.isEmpty() ? q("alertTitle") : q("alertText"));
    EXPECT_GE(text->height(), text->heightForWidth(text->width()));
    EXPECT_GT(text->height(), 3 * text->fontMetrics().height()) << "a word wider than the sheet goes on below";
  }
}

}  // namespace
}  // namespace tamboro::test
