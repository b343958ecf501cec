#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "views/controls/AlertSheet.h"
#include "views/controls/CapsulePill.h"
#include "views/controls/Labels.h"
#include "views/controls/Switch.h"
#include "views/look/LookPaint.h"
#include "views/look/Symbols.h"
#include "views/window/StatusLine.h"

namespace tamboro::test {
namespace {

TEST(ElidedLabel, PillKeepsTheEndOfALongPath) {
  CapsulePill pill(QStringLiteral("internaldrive.fill"));
  const QString path = QStringLiteral("/media/ana/A very long name of a volume/counterpart backup/Roland/SPD-SX");
  pill.setText(path);
  pill.resize(pill.sizeHint());
  EXPECT_LE(pill.width(), Look::px(300) + 1);
  EXPECT_TRUE(pill.shownText().startsWith(QChar(0x2026)));
  EXPECT_TRUE(pill.shownText().endsWith(QStringLiteral("/Roland/SPD-SX")));
  EXPECT_EQ(pill.text(), path) << "assistive tools read it whole";
  pill.setText(QStringLiteral("/media/SPD-SX"));
  pill.resize(pill.sizeHint());
  EXPECT_EQ(pill.shownText(), pill.text());
}

TEST(Symbols, EachPaintsInsideItsSquareInItsColour) {
  for (const QString& name : symbolNames()) {
    for (const int side : {12, 14, 16, 22, 44, 96}) {
      QImage image(side + 8, side + 8, QImage::Format_ARGB32_Premultiplied);
      image.fill(Qt::transparent);
      QPainter painter(&image);
      paintSymbol(painter, name, QRectF(4, 4, side, side), Qt::darkBlue);
      painter.end();
      int inside = 0;
      int outside = 0;
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
          const bool isIn = x >= 4 && y >= 4 && x < side + 4 && y < side + 4;
          (isIn ? inside : outside) += qAlpha(image.pixel(x, y)) > 8 ? 1 : 0;
        }
      }
      EXPECT_GT(inside, side) << name.toStdString() << " at " << side;
      EXPECT_EQ(outside, 0) << name.toStdString() << " at " << side;
    }
  }
}

double luminance(const QColor& colour) {
  const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const double high = std::max(luminance(a), luminance(b));
  return (high + 0.05) / (std::min(luminance(a), luminance(b)) + 0.05);
}

TEST(Look, TextAndControlsStandOutOnEveryGround) {
  for (const Look* look : {&Look::light(), &Look::dark()}) {
    for (const QColor& ground : {look->window, look->sidebar, look->bar, look->controlBackground, look->base}) {
      for (const QColor& text : {look->primary, look->secondary, look->tertiary, look->accentText, look->danger})
        EXPECT_GE(contrast(text, ground), 4.5) << text.name().toStdString() << " on " << ground.name().toStdString();
      for (const QColor& mark : {look->focusRing, look->disabledText})
        EXPECT_GE(contrast(mark, ground), 3) << mark.name().toStdString() << " on " << ground.name().toStdString();
    }
    EXPECT_GE(contrast(look->fieldOutline, look->base), 3);
    EXPECT_GE(contrast(Qt::white, look->accent), 4.5);
    EXPECT_GE(contrast(look->tooltipText, look->tooltip), 4.5);
    EXPECT_GE(contrast(look->danger, look->button), 4.5);
    EXPECT_GE(contrast(look->isDark ? QColor(0xE3, 0x05, 0x2B) : QColor(0xFF, 0x94, 0x00), look->plate()), 4.5);
  }
}

TEST(Look, NoTextIsSmallerThanTenPixels) {
  for (const TextStyle style : {TextStyle::padNote, TextStyle::caption2, TextStyle::caption, TextStyle::body}) {
    EXPECT_GE(QFontInfo(Look::font(style)).pixelSize(), 10);
    EXPECT_GE(QFontInfo(Look::monospaced(style)).pixelSize(), 10);
  }
}

TEST(LookStyle, FocusRingTakesNoPlaceInALayout) {
  QWidget window;
  auto* column = new QVBoxLayout(&window);
  column->setContentsMargins(20, 20, 20, 20);
  auto* first = new QPushButton(QStringLiteral("One"));
  auto* second = new QPushButton(QStringLiteral("Two"));
  column->addWidget(first);
  column->addWidget(second);
  window.show();
  EXPECT_EQ(first->height(), Look::px(28) + 2 * ringRoom);
  EXPECT_EQ(second->y() - first->y(), Look::px(28) + Look::px(8)) << "28 high and 8 apart";
  EXPECT_EQ(first->x(), 20 - ringRoom);
}

TEST(LookStyle, WheelChangesOnlyTheControlInUse) {
  QWidget window;
  auto* column = new QVBoxLayout(&window);
  auto* slider = new QSlider(Qt::Horizontal);
  auto* picker = new QComboBox;
  auto* field = new QLineEdit;
  picker->addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
  picker->setCurrentIndex(1);
  slider->setValue(50);
  for (QWidget* widget : {static_cast<QWidget*>(field), static_cast<QWidget*>(slider), static_cast<QWidget*>(picker)})
    column->addWidget(widget);
  window.show();
  window.activateWindow();
  QApplication::processEvents();
  field->setFocus();
  const auto wheel = [](QWidget* target) {
    QWheelEvent event(QPointF(5, 5), target->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &event);
  };
  wheel(slider);
  wheel(picker);
  EXPECT_EQ(slider->value(), 50);
  EXPECT_EQ(picker->currentIndex(), 1);
  EXPECT_TRUE(field->hasFocus());
  slider->setFocus();
  wheel(slider);
  picker->setFocus();
  wheel(picker);
  EXPECT_NE(slider->value(), 50);
  EXPECT_EQ(picker->currentIndex(), 0);
}

TEST(LookStyle, SliderKnobGoesWhereItIsClicked) {
  for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QSlider slider(Qt::Horizontal);
    slider.setLayoutDirection(direction);
    slider.setRange(0, 100);
    slider.resize(222, 22);
    slider.show();
    QTest::mouseClick(&slider, Qt::LeftButton, {}, {slider.width() * 3 / 4, 11});
    EXPECT_NEAR(slider.value(), direction == Qt::LeftToRight ? 77 : 23, 4);
  }
}

TEST(Switch, AnswersToSpaceAndClicksAnywhereOnIt) {
  Switch control;
  control.resize(control.sizeHint());
  control.show();
  QTest::keyClick(&control, Qt::Key_Space);
  EXPECT_TRUE(control.isChecked());
  QTest::mouseClick(&control, Qt::LeftButton, {}, {control.width() - 4, control.height() / 2});
  EXPECT_FALSE(control.isChecked());
}

TEST(AlertSheet, KeepsTheOrderAndNeverDestroysByReturnOrEscape) {
  using Role = AlertButton::Role;
  const Alert question{QStringLiteral("Delete?"),
                       QStringLiteral("Text"),
                       {{QStringLiteral("Delete"), Role::destructive}, {QStringLiteral("Cancel"), Role::cancel}}};
  const auto answer = [&](const Alert& alert, Qt::Key key) {
    AlertSheet sheet(alert, nullptr);
    sheet.setAttribute(Qt::WA_DeleteOnClose, false);
    int pressed = -1;
    QObject::connect(&sheet, &QDialog::finished, [&](int position) { pressed = position; });
    sheet.open();
    sheet.activateWindow();
    QApplication::processEvents();
    const QList<QPushButton*> buttons = sheet.findChildren<QPushButton*>();
    for (qsizetype i = 1; i < buttons.size(); ++i)
      EXPECT_GT(buttons[i]->x(), buttons[i - 1]->x());
    for (const QPushButton* button : buttons)
      EXPECT_GE(button->width(), Look::px(76));
    QTest::keyClick(sheet.focusWidget(), key);
    return pressed;
  };
  EXPECT_EQ(answer(question, Qt::Key_Escape), 1);
  EXPECT_EQ(answer(question, Qt::Key_Space), 1) << "the focus starts on Cancel";
#ifndef Q_OS_MACOS
  EXPECT_EQ(answer(question, Qt::Key_Return), 1) << "as Space does";
#endif
  EXPECT_NE(answer(question, Qt::Key_Return), 0);
  EXPECT_EQ(answer({QStringLiteral("Couldn't Save"), QStringLiteral("Why")}, Qt::Key_Return), 0);
}

TEST(AlertSheet, ShowsLongTextsWhole) {
  const QString path = QStringLiteral("/media/ana/") + QString(40, QLatin1Char('x')) + QStringLiteral("/kick.wav");
  AlertSheet sheet({QStringLiteral("Couldn't Save"), path + QStringLiteral(" can't be read. ").repeated(9)}, nullptr);
  sheet.setAttribute(Qt::WA_DeleteOnClose, false);
  sheet.open();
  const auto* text = sheet.findChild<QLabel*>(QStringLiteral("alertText"));
  EXPECT_LE(QFontMetrics(text->font()).horizontalAdvance(path), text->width());
  EXPECT_GE(text->height(), text->heightForWidth(text->width()));

  const QString word(200, QLatin1Char('M'));
  const AlertSheet wide({QStringLiteral("Couldn't Save"), word}, nullptr);
  const auto* lines = wide.findChild<QLabel*>(QStringLiteral("alertText"));
  EXPECT_GT(lines->height(), 3 * lines->fontMetrics().height()) << "a word wider than the sheet goes on below";
  EXPECT_EQ(lines->accessibleName(), word) << "and is read as one";
}

TEST(AlertSheet, KeepsItsButtonsInSightUnderATextOfAThousandLines) {
  AlertSheet sheet({QStringLiteral("LiveSet1 – pad 1, ").repeated(3000), {}}, nullptr);
  sheet.setAttribute(Qt::WA_DeleteOnClose, false);
  sheet.open();
  const auto* text = sheet.findChild<QLabel*>(QStringLiteral("alertTitle"));
  EXPECT_LT(sheet.height(), 500);
  EXPECT_GE(text->height(), text->heightForWidth(text->width())) << "and the text can be scrolled to its end";
}

TEST(Labels, SpokenKeysNameTheKeysOfThisKeyboard) {
#ifndef Q_OS_MACOS
  EXPECT_EQ(spokenKeys(QStringLiteral("Redo (⇧⌘Z)")), QStringLiteral("Redo (Ctrl+Shift+Z)"));
  EXPECT_EQ(spokenKeys(QStringLiteral("Manage sample tags (⌘T)")), QStringLiteral("Manage sample tags (Ctrl+T)"));
#endif
}

TEST(StatusLine, NounTakesAnSUnlessThereIsExactlyOne) {
  EXPECT_EQ(countText(0, QStringLiteral("kit")), QStringLiteral("0 kits"));
  EXPECT_EQ(countText(1, QStringLiteral("kit")), QStringLiteral("1 kit"));
  EXPECT_EQ(countText(12345, QStringLiteral("sample")), QStringLiteral("12345 samples"));
}

}  // namespace
}  // namespace tamboro::test
