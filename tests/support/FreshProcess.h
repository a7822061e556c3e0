#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

/// Runs the body in a process of its own: for what a process decides once and keeps. Its
/// expectations count as the test's own. Such a body must not have run in this process before.
template <typename Body>
void inFreshProcess(Body body) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        body();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "wait status " << status;
}
