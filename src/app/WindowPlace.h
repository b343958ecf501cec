#pragma once

class QMainWindow;

namespace tamboro {

class ColumnSplitter;
class Defaults;

/// The window's size, place and state, its columns and whether the kit list shows, as they were when the program ended.
/// Settings `MainWindow.geometry` (the toolkit's own bytes, which never lead off the screens that are there),
/// `MainWindow.columns` (pixels of the left and the right column) and `MainWindow.kitListShown`.
void restoreWindowPlace(const Defaults& defaults, QMainWindow& window, ColumnSplitter& columns);
void rememberWindowPlace(Defaults& defaults, const QMainWindow& window, const ColumnSplitter& columns);

}  // namespace tamboro
