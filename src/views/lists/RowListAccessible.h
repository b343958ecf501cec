#pragma once

namespace tamboro {

/// Lets assistive tools see a RowList as one element a cell, each with the role, texts and actions that its model
/// tells, and the open editors behind them. May be called any number of times.
void installRowListAccessible();

}  // namespace tamboro
