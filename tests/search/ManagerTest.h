// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/EventLoop.h"
#include "support/FakeChannel.h"
#include "support/FakeSystem.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtTest/QSignalSpy>

#include <memory>

/// A manager with threads of its own on a fake channel, and what it reports by a signal.
template <typename Manager, auto SIGNAL>
class ManagerTest : public testing::Test
{
protected:
    ~ManagerTest() override { channel.release(); } // for a test that has failed before

    /// Waits for so many reports.
    bool arrive(int count)
    {
        return EventLoop::runUntil([&] { return signals.size() >= count; });
    }
    /// Destroys managers at work: no thread and no handle of a channel is left. Returns how many there were.
    template <typename Work>
    int expectNothingLeftBehind(const Work &work)
    {
        const int threads = EventLoop::threads() + 1; // a sanitizer may start one of its own
        for (int i = 0; i < EventLoop::managers(); ++i) {
            Manager busy;
            work(busy);
            if (i % 2 == 1)
                QCoreApplication::processEvents();
        }
        EXPECT_EQ(channel.openHandles(), 0);
        EXPECT_TRUE(EventLoop::runUntil([&] { return EventLoop::threads() <= threads; }));
        return EventLoop::managers();
    }

    EventLoop loop;
    FakeSystem system;
    FakeChannel channel;
    std::unique_ptr<Manager> manager = std::make_unique<Manager>();
    QSignalSpy signals{manager.get(), SIGNAL};
};
