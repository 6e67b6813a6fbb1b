#include <QApplication>

namespace qx9 {
int runKeyboardViewTests(int argc, char** argv);
int runCustomKeyFuncViewTests(int argc, char** argv);
}  // namespace qx9

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int failed =
        qx9::runKeyboardViewTests(argc, argv) + qx9::runCustomKeyFuncViewTests(argc, argv);
    return failed == 0 ? 0 : 1;
}
