#pragma once

#include "library/contents/KnownFiles.h"
#include "library/saving/SavePlan.h"

namespace tamboro {

/// Throws CardConflict where carrying out the plan would replace or remove what is not known to be ours. A file that
/// has gone is no conflict. With `replacesChanged` files that were read and have changed since are none either. `card`
/// is rooted in the card.
void requireUntouched(const FileSystem& card, const SavePlan& plan, const KnownFiles& known, bool replacesChanged);

}  // namespace tamboro
