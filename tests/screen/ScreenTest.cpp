// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Screen.h"
#include "support/Terminal.h"

#include <stdexcept>

TEST(ScreenTest, AnExceptionThatNobodyCatchesLeavesTheTerminalAsItWas)
{
    Terminal terminal([] {
        tool::Screen screen;
        screen.write(0, QStringLiteral("drawn"), tool::Style::Plain);
        screen.show(0, 0);
        const auto uncaught = [](void (*call)()) noexcept { call(); };
        uncaught([] { throw std::runtime_error("nobody catches this"); });
    });
    ASSERT_TRUE(terminal.shows("drawn"));
    const int status = terminal.wait();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
    EXPECT_TRUE(terminal.isRestored());
    EXPECT_TRUE(terminal.shows("\x1b[?1049l")) << terminal.output();
}
