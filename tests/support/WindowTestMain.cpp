#include "Application.h"

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    setenv("QT_QPA_PLATFORM", "offscreen", 1); // no screen is needed
    setenv("LC_ALL", "C.UTF-8", 1);
    const platform::Application application(argc, argv);
    return RUN_ALL_TESTS();
}
