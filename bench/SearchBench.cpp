// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "FixedServer.h"
#include "places/InternalPlaceManager.h"
#include "places/SearchManager.h"
#include "Ratios.h"
#include "support/SamplePlace.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>

using namespace vela::platform::places;

namespace
{

const QString TERM = QStringLiteral("caf");

/// From the call of a search, as for a keystroke, to the first local results in the calling thread.
void keystrokeToFirstGroup(benchmark::State &state)
{
    SearchManager manager;
    QEventLoop loop;
    int id = 0;
    QObject::connect(&manager, &SearchManager::resultAvailable, &loop, &QEventLoop::quit);
    for (auto _ : state) {
        manager.search(TERM, Coordinates(), ++id, {SearchResultGroup::Local});
        loop.exec();
    }
}
BENCHMARK(keystrokeToFirstGroup)->UseRealTime();

/// The same search as a blocking call on one thread.
void oneRoundTrip(benchmark::State &state)
{
    const InternalPlaceManager manager;
    for (auto _ : state) {
        Error::Type error = Error::Success;
        benchmark::DoNotOptimize(
            manager.findPlacesByGroup(SearchResultGroup::Local, &error, nullptr, TERM, 0, 20, Coordinates()));
        if (error != Error::Success)
            state.SkipWithError("the search failed");
    }
}
BENCHMARK(oneRoundTrip)->UseRealTime();

/// Twenty headers and the paging state, after their length.
std::string foundReply()
{
    using namespace wire;
    Fields fields = {i32(0), i32(269), i32(20)};
    for (int i = 0; i < 20; ++i)
        fields = fields + sample::headerFields(i + 1);
    const std::string reply = message(fields + Fields{flag(false), i32(0), i32(-1), i32(-1)});
    return raw(static_cast<unsigned>(reply.size())).bytes + reply;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const bench::FixedServer server(foundReply());
    return bench::runAndPrint(
        argc, argv,
        {{"keystroke to first local group / one round trip", "keystrokeToFirstGroup", "oneRoundTrip", 2.0}});
}
