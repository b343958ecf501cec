#pragma once

namespace tamboro {

/// Shows assistive tools what the toolkit keeps from them or shows without role or name: context menus, as parts of
/// their window, plain lists and dividers. May be called any number of times.
void installAccessible();

}  // namespace tamboro
