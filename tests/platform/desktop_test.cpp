#include "platform/desktop.h"

#include <gtest/gtest.h>

#include <cstdlib>

TEST(ProgramFolder, ComesFromZentaviaHomeWhenSet)
{
    ::setenv("ZENTAVIA_HOME", "/opt/zentavia/", 1);
    EXPECT_EQ(zv::platform::programFolder(), "/opt/zentavia/");
    ::unsetenv("ZENTAVIA_HOME");
    EXPECT_FALSE(zv::platform::programFolder().empty());
}
