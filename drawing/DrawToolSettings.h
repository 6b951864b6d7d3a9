// The drawing tool's settings in the configuration. The chosen tool and whether drawing is on are not kept:
// each start begins with the pencil. Any thread.
#pragma once

#include "platform/DrawToolState.h"

namespace Corvanta::Drawing {

// Fills all but enabled, each field with its default where the configuration has no good value. The family's
// text that stands in the record is released (delete[]), so it must be null or come from here; the new one
// (new char[]) belongs to the caller.
void LoadDrawToolSettings(DrawToolState& state);
// Every field is tried. A null family counts as an empty text.
void StoreDrawToolSettings(const DrawToolState& state);

}  // namespace Corvanta::Drawing
