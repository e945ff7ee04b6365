#include "Benchmarks.h"

#include <QApplication>
#include <QIcon>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

// Measures the program side by side with what a user would pick instead. Without arguments everything runs; names of
// single benchmarks choose among them. Run from the root of the project.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    using namespace vormel::bench;
    const std::array<std::pair<const char*, void (*)(Report&)>, 12> benchmarks{{{"window", benchWindow},
                                                                                {"queue", benchQueue},
                                                                                {"groups", benchGroups},
                                                                                {"scroll", benchScroll},
                                                                                {"pages", benchPages},
                                                                                {"premium", benchPremium},
                                                                                {"walk", benchWalk},
                                                                                {"extract", benchExtract},
                                                                                {"small", benchSmallFiles},
                                                                                {"transfer", benchTransfer},
                                                                                {"tls", benchTransferTls},
                                                                                {"cap", benchCap}}};
    const QStringList wanted = QApplication::arguments().mid(1);
    Report report(u"build/bench/results.json"_s);
    for (const auto& [name, run] : benchmarks) {
        if (wanted.isEmpty() || wanted.contains(QLatin1StringView(name)))
            run(report);
        report.write();
    }
    return EXIT_SUCCESS;
}
