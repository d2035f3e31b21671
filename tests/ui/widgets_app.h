#pragma once
// The one QApplication of the widget tests (here and in other suites), made on first use.

#include <QApplication>

namespace zv::test {

inline void ensureWidgets()
{
    static int argc = 1;
    static char name[] = "test_ui";
    static char* argv[] = { name, nullptr };
    if (!QApplication::instance())
        new QApplication(argc, argv);
}

} // namespace zv::test
