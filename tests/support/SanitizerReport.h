// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <string>

/// Fails the test when the output contains a report of a sanitizer. The exit status does not show it when the program
/// was killed or when a test ignores the status.
inline void expectNoSanitizerReport(const std::string &output)
{
    for (const char *report : {"Sanitizer: ", "runtime error: "})
        EXPECT_EQ(output.find(report), std::string::npos) << output;
}
