#pragma once
// The one QCoreApplication of the Qt adapter tests, made on first use.

#include <QCoreApplication>

namespace zv::test {

inline QCoreApplication& qtApp()
{
    static int argc = 1;
    static char name[] = "test_platform_qt";
    static char* argv[] = { name, nullptr };
    static QCoreApplication app(argc, argv);
    return app;
}

} // namespace zv::test
