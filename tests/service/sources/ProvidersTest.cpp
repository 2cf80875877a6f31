// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/Providers.h"

#include "places/Place.h"
#include "support/LocalService.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace placesd;
using namespace requests;
using namespace vela::platform::places;
using orix_places_protocol::ReturnCode;
using testing::ElementsAre;

namespace
{

/// Returns numbered places, a few at a time. The terms "fail" and "throw" cause failures.
class Guide : public PlaceProvider
{
public:
    Guide(const char *name, int all, int step, bool hasDetails = true)
        : m_description(sample::provider(QLatin1String(name)))
        , m_all(all)
        , m_step(step)
    {
        ProviderData::fromPublic(m_description)->canRequestAdditionalData = hasDetails;
    }
    Provider description() const override { return m_description; }
    ProviderAnswer search(const ProviderSearch &search) override
    {
        ProviderAnswer answer = obey(search.term);
        const int end = std::min(m_all, search.position + std::min(search.count, m_step));
        for (int i = search.position; i < end; ++i)
            answer.places.push_back(place(i));
        answer.hasMore = search.position + m_step < m_all;
        return answer;
    }
    ProviderAnswer resolve(const QString &externalId, const Coordinates &, Deadline) override
    {
        ProviderAnswer answer = obey(externalId);
        if (externalId.startsWith(m_description.name()))
            answer.places.push_back(place(externalId.right(1).toInt()));
        return answer;
    }
    AuxiliaryAnswer auxiliaryData(const PlaceIdentity &identity, Deadline) override
    {
        AuxiliaryAnswer answer;
        answer.code = obey(identity.name).code;
        for (const char *type : {"poi", "lbs-image"}) {
            AuxiliaryData record{QLatin1String(type)};
            record.setExternalId(m_description.name() + QLatin1Char(' ') + identity.externalId);
            AuxiliaryDataPrivate::fromPublic(record)->setProvider(m_description);
            answer.records.append(record);
        }
        return answer;
    }

private:
    static ProviderAnswer obey(const QString &order)
    {
        if (order == QLatin1String("throw"))
            throw std::runtime_error("as told");
        ProviderAnswer answer;
        answer.code = order == QLatin1String("fail") ? ReturnCode::TookTooLong : ReturnCode::Success;
        return answer;
    }
    FoundPlace place(int number) const
    {
        auto place = std::make_shared<Place>();
        place->setName(m_description.name() + QString::number(number));
        AuxiliaryData record(AuxiliaryData::TypePointOfInterest);
        record.setExternalId(m_description.name() + QString::number(number));
        AuxiliaryDataPrivate::fromPublic(record)->setProvider(m_description);
        place->addAuxiliaryData(record);
        return place;
    }

    Provider m_description;
    const int m_all;
    const int m_step;
};

std::vector<std::unique_ptr<PlaceProvider>> guides()
{
    std::vector<std::unique_ptr<PlaceProvider>> all;
    all.push_back(std::make_unique<Guide>("a", 5, 2));
    all.push_back(std::make_unique<Guide>("b", 3, 9, false));
    return all;
}

ProvidersAnswer ask(const Providers &providers, const char *term, int position, int count)
{
    ProviderSearch search;
    search.term = QLatin1String(term);
    search.position = position;
    search.count = count;
    return providers.search(search);
}

std::vector<std::string> names(const std::vector<FoundPlace> &places)
{
    std::vector<std::string> found;
    for (const FoundPlace &place : places)
        found.push_back(place->name().toStdString());
    return found;
}

} // namespace

TEST(Providers, AreAskedUntilThePageIsFull)
{
    const Providers providers(guides());
    const struct
    {
        int position;
        int count;
        std::vector<std::string> found;
        bool hasMore;
    } cases[] = {
        {0, 3, {"a0", "a1", "a2", "b0", "b1", "b2"}, true},
        {0, 9, {"a0", "a1", "a2", "a3", "a4", "b0", "b1", "b2"}, false},
        {3, 2, {"a3", "a4"}, false},
        {9, 2, {}, false},
    };
    for (const auto &row : cases) {
        const ProvidersAnswer answer = ask(providers, "", row.position, row.count);
        EXPECT_EQ(names(answer.places), row.found) << row.position;
        EXPECT_EQ(answer.hasMore, row.hasMore) << row.position;
        EXPECT_EQ(answer.code, ReturnCode::Success);
    }
    EXPECT_EQ(ask(providers, "fail", 0, 3).code, ReturnCode::TookTooLong);
    EXPECT_EQ(ask(providers, "throw", 0, 3).code, ReturnCode::ProviderFailed);
    EXPECT_EQ(ask(Providers({}), "fail", 0, 3).code, ReturnCode::Success) << "no provider can fail";
    EXPECT_THAT(names(providers.resolve(QStringLiteral("b2"), {}, Deadline::max()).places), ElementsAre("b2"));
    const auto give = [&](const char *type, const Provider &only = {}) {
        return providers.providersFor(QLatin1String(type), only).size();
    };
    EXPECT_EQ(give(""), 1U);
    EXPECT_EQ(give("poi"), 1U);
    EXPECT_EQ(give("other"), 0U);
    EXPECT_EQ(give("", sample::provider(QStringLiteral("c"))), 0U);
    EXPECT_EQ(give("", providers.descriptions()[0]), 1U);
}

/// A request for records returns the stored records, and the requested remote ones that are not stored.
TEST(Service, ReturnsAuxiliaryDataOfPlacesAndProviders)
{
    Settings settings;
    settings.providers = guides();
    const Provider guide = settings.providers[0]->description();
    LocalService local(std::move(settings));
    sample::FullPlace place(-1);
    AuxiliaryData &known = place.data().m_auxiliaryData[0];
    AuxiliaryDataPrivate::fromPublic(known)->setProvider(guide);
    known.setExternalId(QStringLiteral("a x"));
    ASSERT_EQ(local.code(store(place)), ReturnCode::Success);
    const struct
    {
        const char *what;
        qint64 place;
        const char *name;
        const char *type;
        bool remoteOnly;
        int offset;
        int limit;
        int count; ///< Negative for a failure.
    } cases[] = {
        {"all", 1, "", "", false, 0, -1, 3},
        {"a page", 1, "", "", false, 1, 1, 1},
        {"none", 1, "", "", false, 0, 0, 0},
        {"before all", 1, "", "", false, -1, 2, 2},
        {"of a type", 1, "", "poi", false, 0, -1, 2},
        {"remote ones", 1, "", "", true, 0, -1, 2},
        {"of none", 1, "", "other", false, 0, -1, 0},
        {"of no stored place", -1, "x", "", false, 0, -1, 2},
        {"a failure", -1, "throw", "", false, 0, -1, -ReturnCode::ProviderFailed},
    };
    for (const auto &row : cases) {
        const std::string reply = local.exchange(
            message(head(Type::GetAuxiliaryData) + Fields{i64(row.place), text(row.name), text(""), text("")}
                    + coordinate(0, 0, 0, 0, 0) + texts({}) + Fields{flag(true), flag(false), i32(0), text(row.type)}
                    + Fields{flag(row.remoteOnly), text(""), text(""), flag(false)} + texts({})
                    + Fields{i32(row.offset), i32(row.limit)}));
        int count = -LocalService::codeIn(reply);
        if (count == 0)
            std::memcpy(&count, reply.data() + 8, sizeof count);
        EXPECT_EQ(count, row.count) << row.what;
    }
    const auto found = [&](const char *id, const char *type) {
        return local.code(message(head(Type::GetPlace) + Fields{i64(-1), text(id), text(type), text("")}));
    };
    EXPECT_EQ(found("a x", "poi"), ReturnCode::Success) << "a stored place is found by its record";
    EXPECT_EQ(found("b1", "poi"), ReturnCode::Success) << "and others are found by their providers";
    EXPECT_EQ(found("b1", "contact"), ReturnCode::NoSuchPlace);
    EXPECT_EQ(found("", "poi"), ReturnCode::NoSuchPlace);
    EXPECT_EQ(found("c1", "poi"), ReturnCode::NoSuchPlace);
    EXPECT_EQ(found("fail", "poi"), ReturnCode::TookTooLong);
}
