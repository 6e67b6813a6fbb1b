#include "cli/ctl_context.h"

namespace qx9::ctl {

void cmdLight(Context&, const std::vector<std::string>&) { throw UsageError{"not available yet"}; }

}  // namespace qx9::ctl
