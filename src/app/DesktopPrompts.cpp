#include "app/DesktopPrompts.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QSplitter>
#include <QStandardPaths>

#include "views/controls/AlertSheet.h"

namespace tamboro {

namespace {

/// The toolkit leaves the parts that hold others without names.
void nameForTools(QFileDialog& panel) {
  panel.setSizeGripEnabled(false);  // it has no role that tools know
  for (auto* part : panel.findChildren<QWidget*>()) {
    const bool isHolder =
        qobject_cast<QFrame*>(part) || qobject_cast<QSplitterHandle*>(part) || qobject_cast<QDialogButtonBox*>(part);
    if (isHolder && part->accessibleName().isEmpty() && !qobject_cast<QLabel*>(part))
      part->setAccessibleName(panel.windowTitle());
  }
}

/// One that isn't there would be proposed as a file's name.
QString existing(QStandardPaths::StandardLocation location) {
  const QString folder = QStandardPaths::locate(location, QString(), QStandardPaths::LocateDirectory);
  return folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::HomeLocation) : folder;
}

QFileDialog* makePanel(QWidget* parent, const QString& objectName, const QString& title, const QString& start) {
  auto* panel = new QFileDialog(parent, title, start);
  panel->setObjectName(objectName);
  panel->setAttribute(Qt::WA_DeleteOnClose);
  panel->setWindowModality(Qt::WindowModal);
  nameForTools(*panel);
  return panel;
}

}  // namespace

std::filesystem::path pathOf(const QString& text) {
  return QFile::encodeName(text).toStdString();
}

void DesktopPrompts::alert(QWidget* parent, const Alert& alert, std::function<void(std::size_t)> answer) {
  auto* sheet = new AlertSheet(alert, parent ? parent->window() : nullptr);
  QObject::connect(sheet, &QDialog::finished, sheet,
                   [answer = std::move(answer)](int position) { answer(static_cast<std::size_t>(position)); });
  sheet->open();
}

void openFolderPanel(QWidget* parent, const FolderQuestion& question, const QString& start, bool makesFolders,
                     std::function<void(std::optional<std::filesystem::path>)> answer) {
  QFileDialog* panel =
      makePanel(parent ? parent->window() : nullptr, QStringLiteral("folderPanel"), question.message, start);
  panel->setFileMode(QFileDialog::Directory);
  panel->setOption(QFileDialog::ShowDirsOnly);
  panel->setOption(QFileDialog::ReadOnly, !makesFolders);
  panel->setLabelText(QFileDialog::Accept, question.prompt);
  QObject::connect(panel, &QDialog::finished, panel, [panel, answer = std::move(answer)](int result) {
    const QStringList chosen = panel->selectedFiles();
    answer(result == QDialog::Accepted && !chosen.isEmpty() ? std::optional(pathOf(chosen.first())) : std::nullopt);
  });
  panel->open();
}

void DesktopPrompts::chooseFolder(QWidget* parent, const FolderQuestion& question,
                                  std::function<void(std::optional<std::filesystem::path>)> answer) {
  openFolderPanel(parent, question, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), true,
                  std::move(answer));
}

void DesktopPrompts::chooseFiles(QWidget* parent, const FilesQuestion& question,
                                 std::function<void(std::vector<std::filesystem::path>)> answer) {
  QFileDialog* panel = makePanel(parent ? parent->window() : nullptr, QStringLiteral("filePanel"), question.title,
                                 existing(QStandardPaths::MusicLocation));
  panel->setFileMode(QFileDialog::ExistingFiles);
  panel->setNameFilters(question.nameFilters);
  QObject::connect(panel, &QDialog::finished, panel, [panel, answer = std::move(answer)](int result) {
    std::vector<std::filesystem::path> files;
    if (result == QDialog::Accepted)
      for (const QString& file : panel->selectedFiles())
        files.push_back(pathOf(file));
    answer(std::move(files));
  });
  panel->open();
}

}  // namespace tamboro
