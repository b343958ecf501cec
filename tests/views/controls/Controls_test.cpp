#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "views/controls/AlertSheet.h"
#include "views/controls/Stepper.h"
#include "views/controls/ThrottledSlider.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(ThrottledSlider, ReportsOnceADragAndEachStep) {
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
  QTest::keyClick(&s.track, Qt::Key_Right);
  EXPECT_EQ(s.commits.size(), 3U);
}

TEST(Stepper, StepsIntoItsRangeFromWhereverTheValueStands) {
  Stepper stepper;
  stepper.setRange(200, 4000);
  stepper.setStep(10);
  std::vector<std::int64_t> edits;
  QObject::connect(&stepper, &Stepper::edited, [&](std::int64_t value) {
    edits.push_back(value);
    stepper.setValue(value);
  });
  stepper.show();
  stepper.setValue(150);
  QTest::keyClick(&stepper, Qt::Key_Down);
  stepper.setValue(3995);
  QTest::keyClick(&stepper, Qt::Key_Up);
  QTest::mouseClick(&stepper, Qt::LeftButton, {}, {stepper.width() - 12, stepper.height() / 2 + 6});
  QTest::keyClick(&stepper, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&stepper, q("7"));
  QTest::keyClick(&stepper, Qt::Key_Up);
  EXPECT_THAT(edits, ElementsAre(200, 4000, 3990, 200, 210)) << "to the nearer bound, and typed values into the range";
}

TEST(NumberField, TakesWhatWasTypedBeforeAnythingElseHappens) {
  QWidget window;
  auto* field = new NumberField(q("number"), q("Number"), &window);
  auto* button = new QPushButton(&window);
  button->setFocusPolicy(Qt::NoFocus);
  std::vector<std::int64_t> edits;
  QObject::connect(field, &NumberField::edited, [&](std::int64_t value) { edits.push_back(value); });
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
