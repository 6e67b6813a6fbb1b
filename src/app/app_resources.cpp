// The images are compiled into the application library; a static library's resources are
// registered explicitly, once, before the first window is built.
#include <QtGlobal>

#include "app/app_resources.h"

static void registerAppResources() { Q_INIT_RESOURCE(app); }

namespace qx9 {

void initAppResources() {
    static const bool done = (registerAppResources(), true);
    (void)done;
}

}  // namespace qx9
