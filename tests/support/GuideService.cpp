// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Place.h"
#include "server/Program.h"
#include "support/SamplePlace.h"

#include <thread>

/// A placesd with an additional provider, "guide". It uses all available time for the term "stuck", and has one place
/// for any other term.
namespace
{

using namespace placesd;
using namespace vela::platform::places;

class Guide : public PlaceProvider
{
public:
    Provider description() const override { return sample::provider(); }
    ProviderAnswer search(const ProviderSearch &search) override
    {
        return resolve(search.term, search.centre, search.deadline);
    }
    ProviderAnswer resolve(const QString &externalId, const Coordinates &, Deadline deadline) override
    {
        ProviderAnswer answer;
        while (externalId == QLatin1String("stuck") && answer.code == orix_places_protocol::Success) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            if (hasPassed(deadline))
                answer.code = orix_places_protocol::TookTooLong;
        }
        answer.places.push_back(std::make_shared<Place>());
        return answer;
    }
    AuxiliaryAnswer auxiliaryData(const PlaceIdentity &, Deadline) override { return {}; }
};

} // namespace

int main(int argc, char **argv)
{
    Settings settings;
    settings.providers.push_back(std::make_unique<Guide>());
    return run(argc, argv, std::move(settings));
}
