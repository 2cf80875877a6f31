// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <slog2.h>

#include <cstdlib>

namespace
{

int log(slog2_buffer_t buffer, std::uint8_t severity, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int result = vslog2f(buffer, 0, severity, format, arguments);
    va_end(arguments);
    return result;
}

} // namespace

TEST(Slog, WritesWhatIsSevereEnoughUnderTheNameOfItsSet)
{
    ::setenv("VELA_LOG", "stderr", 1);
    slog2_buffer_set_config_t config = {};
    config.num_buffers = 2;
    config.buffer_set_name = "my-set";
    config.verbosity_level = SLOG2_INFO;
    config.buffer_config[0] = {"fast", 2};
    config.buffer_config[1] = {"slow", 1};
    slog2_buffer_t buffers[2] = {};
    ASSERT_EQ(slog2_register(&config, buffers, 0), 0);

    testing::internal::CaptureStderr();
    EXPECT_EQ(log(buffers[1], SLOG2_WARNING, "number %d", 7), 0);
    EXPECT_EQ(log(buffers[0], SLOG2_DEBUG1, "too much"), 0);
    EXPECT_EQ(log(buffers[0], SLOG2_INFO, "%s", std::string(10000, 'x').c_str()), 0);
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_THAT(written, testing::StartsWith("my-set warning: number 7\nmy-set info: xxx"));
    EXPECT_THAT(written, testing::Not(testing::HasSubstr("too much")));
    EXPECT_LT(written.size(), 5000U);
    EXPECT_EQ(log(nullptr, SLOG2_INFO, "before registration"), -1);
    EXPECT_EQ(log(buffers[0], SLOG2_DEBUG2 + 1, "no severity"), -1);
    EXPECT_EQ(slog2_register(nullptr, buffers, 0) + slog2_register(&config, nullptr, 0), -2);
    for (const int count : {0, SLOG2_MAX_BUFFERS + 1}) {
        config.num_buffers = count;
        EXPECT_EQ(slog2_register(&config, buffers, 0), -1) << count;
    }
    config.num_buffers = 1;
    config.buffer_set_name = nullptr;
    EXPECT_EQ(slog2_register(&config, buffers, 0), -1);
}
