#include "app/app_options.h"

namespace qx9 {

bool parseAppOptions(int argc, char** argv, AppOptions& options, std::string& error) {
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--virtual") {
            options.virtualKeyboard = true;
        } else if (a.rfind("--virtual=", 0) == 0) {
            options.virtualKeyboard = true;
            options.virtualState = a.substr(10);
        } else if (a == "--db" && i + 1 < argc) {
            options.database = argv[++i];
        } else if (a == "--no-monitor") {
            options.noMonitor = true;
        } else if (a.rfind("-", 0) == 0 && a.rfind("-platform", 0) != 0 && a.rfind("-style", 0) != 0) {
            error = "unknown option " + a;
            return false;
        }
    }
    return true;
}

}  // namespace qx9
