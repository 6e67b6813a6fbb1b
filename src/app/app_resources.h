#pragma once

namespace qx9 {

// Registers the application's images (":/images/…"); safe to call more than once.
void initAppResources();

}  // namespace qx9
