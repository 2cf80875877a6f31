// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "auxdata/AuxiliaryDataPrivate.h"
#include "places/Place.h"
#include "server/Program.h"
#include "support/SamplePlace.h"

#include <stdexcept>
#include <thread>

/// A placesd with one provider more, "guide", that does what the first word of a term tells it to:
/// "fail" answers with code 67, "throw" throws, "slow" takes half a second, "stuck" all the time there is, "many" gives
/// 250 places, and anything else three; 30 at a time. It finds places by their ids, and an image of each.
namespace
{

using namespace placesd;
using namespace vela::platform::places;
using orix_places_protocol::ReturnCode;

constexpr int PAGE = 30;

class Guide : public PlaceProvider
{
public:
    Provider description() const override { return sample::provider(); }

    ProviderAnswer search(const ProviderSearch &search) override
    {
        ProviderAnswer answer;
        answer.code = obey(search.term, search.deadline);
        const int all = search.term.startsWith(QLatin1String("many")) ? 250 : 3;
        const int end = std::min(all, search.position + std::min(search.count, PAGE));
        for (int i = search.position; i < end && answer.code == ReturnCode::Success; ++i)
            answer.places.push_back(place(search.term, i));
        answer.hasMore = end < all;
        return answer;
    }

    ProviderAnswer resolve(const QString &externalId, const Coordinates &, Deadline deadline) override
    {
        ProviderAnswer answer;
        const QStringList parts = externalId.split(QLatin1Char('/'));
        answer.code = obey(parts[0], deadline);
        if (parts.size() == 2 && answer.code == ReturnCode::Success)
            answer.places.push_back(place(parts[0], parts[1].toInt()));
        return answer;
    }

    AuxiliaryAnswer auxiliaryData(const PlaceIdentity &identity, Deadline deadline) override
    {
        AuxiliaryAnswer answer;
        answer.code = obey(identity.name, deadline);
        AuxiliaryData image{QLatin1String(AuxiliaryData::TypeImage)};
        image.setExternalId(QStringLiteral("image of ") + identity.externalId);
        AuxiliaryDataPrivate::fromPublic(image)->setProvider(description());
        if (answer.code == ReturnCode::Success)
            answer.records.append(image);
        return answer;
    }

private:
    static ReturnCode obey(const QString &order, Deadline deadline)
    {
        if (order.startsWith(QLatin1String("throw")))
            throw std::runtime_error("as told");
        if (order.startsWith(QLatin1String("slow")))
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
        while (order.startsWith(QLatin1String("stuck")) && !hasPassed(deadline))
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (order.startsWith(QLatin1String("stuck")))
            return ReturnCode::TookTooLong;
        return order.startsWith(QLatin1String("fail")) ? ReturnCode::ProviderFailed : ReturnCode::Success;
    }

    FoundPlace place(const QString &term, int number) const
    {
        auto place = std::make_shared<Place>();
        place->setName(QStringLiteral("%1 %2").arg(term).arg(number, 3, 10, QLatin1Char('0')));
        Location location;
        location.setCoordinates(Coordinates(number % 90, 0));
        place->addLocation(location);
        AuxiliaryData record(AuxiliaryData::TypePointOfInterest);
        record.setExternalId(QStringLiteral("%1/%2").arg(term).arg(number));
        AuxiliaryDataPrivate::fromPublic(record)->setProvider(description());
        place->addAuxiliaryData(record);
        return place;
    }
};

} // namespace

int main(int argc, char **argv)
{
    Settings settings;
    settings.providers.push_back(std::make_unique<Guide>());
    const int seconds = qEnvironmentVariableIntValue("GUIDE_REQUEST_SECONDS");
    settings.requestTime = std::chrono::seconds(seconds > 0 ? seconds : 2);
    return run(argc, argv, std::move(settings));
}
