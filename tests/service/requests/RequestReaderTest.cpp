// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/RequestReader.h"

#include "Limits.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <functional>
#include <msgclient.h>
#include <tuple>

using namespace placesd;
using namespace requests;
using namespace vela::platform::places;
using orix_places_protocol::ReturnCode;
using orix_places_protocol::SortRuleKind;
using testing::HasSubstr;

namespace
{

using Read = std::function<bool(RequestReader &)>;

/// A request without its head, as input of a reader.
struct Bytes
{
    explicit Bytes(std::string request)
        : bytes(std::move(request))
        , message{bytes.data(), static_cast<unsigned int>(bytes.size())}
    {}
    std::string bytes;
    _msgserver_data message;
    RequestReader reader{&message};
};

/// A sort rule. A position or a number of members follows its field.
Fields sort(SortRuleKind kind, int order, int field)
{
    return {i32(static_cast<int>(kind)), i32(order), i32(field)};
}

Fields nested(int depth, const Fields &level, Fields inner)
{
    for (int i = 1; i < depth; ++i)
        inner = level + inner;
    return inner;
}

std::string manyWords(int count)
{
    std::string words;
    for (int i = 0; i < count; ++i)
        words += "w" + std::to_string(i) + " ";
    return words;
}

Fields query(const Fields &searchRule, const Fields &sortRule = UNSORTED)
{
    return Fields{i32(5), i32(6)} + coordinate(1, 2, 3, 4, 5) + Fields{flag(true)} + searchRule + sortRule
           + Fields{i32(7), i32(8)};
}

Fields suggestion(const std::string &term)
{
    return Fields{text(term)} + coordinate(0, 46, 7, 0, 0);
}

/// Reads values and compares them.
template <typename... Values>
Read reads(bool (RequestReader::*read)(Values &...), const Values &...expected)
{
    return [=](RequestReader &reader) {
        std::tuple<Values...> values;
        return std::apply([&](Values &...each) { return (reader.*read)(each...); }, values)
               && values == std::tie(expected...);
    };
}

bool readQuery(RequestReader &reader)
{
    Query query;
    return reader.readQuery(query);
}

bool readTag(RequestReader &reader)
{
    qint64 id = 0;
    QString tag;
    return reader.readIdAndText(id, tag);
}

bool isThere(const Coordinates &centre)
{
    return centre.latitude() == 46 && centre.longitude() == 7;
}

bool readSuggestion(RequestReader &reader)
{
    QString term;
    Coordinates centre;
    return reader.readSuggestion(term, centre) && term == QString::fromUtf8("zür") && isThere(centre);
}

const Fields AUXILIARY = Fields{i64(3), text("name"), text(""), text("")} + coordinate(0, 46, 7, 0, 0) + texts({"a"})
                         + Fields{flag(true), flag(false), i32(1)} + sample::providerFields() + Fields{text("id")}
                         + Fields{text("poi"), flag(true)} + sample::providerFields("other") + Fields{i32(2), i32(9)};

bool readAuxiliary(RequestReader &reader)
{
    AuxiliaryQuery query;
    return reader.readAuxiliaryQuery(query) && query.place == 3 && query.name == QLatin1String("name")
           && isThere(query.coordinates) && query.externalIds.value(sample::provider()) == QLatin1String("id")
           && query.type == QLatin1String("poi") && query.remoteOnly && query.provider.name() == QLatin1String("other")
           && query.offset == 2 && query.limit == 9;
}

} // namespace

TEST(RequestReader, ReadsEachFieldAndRefusesCutOrLongRequests)
{
    const Fields rules = rule(Kind::Or, {rule(Kind::UnaryString, Rules::Name, Operator::Contains, "zür"),
                                         rule(Kind::Disjoint, {EVERYTHING, EVERYTHING})});
    const Fields sorts = sort(SortRuleKind::Combined, 2, 0) + Fields{i32(2)} + sort(SortRuleKind::Distance, 1, 0)
                         + coordinate(1, -20, 30, 4, 5) + sort(SortRuleKind::Simple, 2, 3) + Fields{i32(0)};
    const QString zur = QString::fromUtf8("zür");
    const struct
    {
        const char *name;
        Fields body;
        Read read;
    } cases[] = {
        {"head", head(Type::GetTags, 2, "key"),
         [](RequestReader &reader) {
             RequestHead head;
             return reader.readHead(head) && head.type == 9 && head.perimeter == orix_places_protocol::Perimeter::Work
                    && head.sessionKey == "key" && reader.testBuffer();
         }},
        {"place", sample::placeFields(),
         [](RequestReader &reader) {
             std::unique_ptr<Place> place;
             return reader.readPlace(place) && place->id() == 42;
         }},
        {"id", {i64(1LL << 40)}, reads(&RequestReader::readId, qint64{1} << 40)},
        {"id and text", {i64(5), text("zür")}, reads(&RequestReader::readIdAndText, qint64{5}, zur)},
        {"prefix of terms", {text("z\xFCr")}, reads(&RequestReader::readTermPrefix, zur)},
        {"path", {text("/a/b")}, reads(&RequestReader::readPath, std::string("/a/b"))},
        {"place to fetch",
         {i64(5), text("id"), text("type"), text("z\xFCr")},
         reads(&RequestReader::readGetPlace, qint64{5}, QStringLiteral("id"), QStringLiteral("type"), zur)},
        {"contact", {i32(1), i32(2), i32(3)}, reads(&RequestReader::readContact, 1, 2, 3)},
        {"suggestion", suggestion("zür"), readSuggestion},
        {"auxiliary data", AUXILIARY, readAuxiliary},
        {"find", query(rules, sorts),
         [](RequestReader &reader) {
             Query query;
             return reader.readQuery(query) && query.count == 5 && query.offset == 6 && query.latitude == 2
                    && query.longitude == 3 && query.headerOnly && query.providerPrimaryIndex == 7
                    && query.providerSecondaryIndex == 8 && query.rule.kind == Kind::Or
                    && query.rule.members.at(0).text == QString::fromUtf8("zür")
                    && query.rule.members.at(0).field == Rules::Name
                    && query.rule.members.at(0).op == Operator::Contains && query.rule.members.at(1).members.size() == 2
                    && query.sort.members.at(0).latitude == -20 && query.sort.members.at(0).longitude == 30
                    && query.sort.members.at(1).order == 2 && query.sort.members.at(1).field == 3;
         }},
    };
    for (const auto &row : cases) {
        const std::string whole = message(row.body);
        Bytes all(whole);
        EXPECT_TRUE(row.read(all.reader)) << row.name;
        for (std::size_t size = 0; size < whole.size(); ++size) {
            Bytes cut(whole.substr(0, size));
            EXPECT_FALSE(row.read(cut.reader)) << row.name << size;
            EXPECT_EQ(cut.reader.problem(), Status(ReturnCode::TransportFailed)) << row.name << size;
        }
        Bytes more(whole + "ZZZZ");
        EXPECT_FALSE(row.read(more.reader)) << row.name;
    }
}

TEST(RequestReader, RefusesRequestsBeyondALimit)
{
    const Fields leaf = rule(Kind::UnaryString, Rules::Owner, Operator::Contains, "x");
    const Fields level = rule(Kind::Disjoint, 0, Operator::None, "", 1);
    const Fields sortLevel = sort(SortRuleKind::Combined, 1, 0) + Fields{i32(1)};
    const auto named = [](int op, const std::string &term, int field = Rules::Name) {
        return query(rule(Kind::UnaryString, field, op, term));
    };
    const std::string longest(limits::TEXT_LENGTH, 'x');
    // Two rules always exist: the search rule itself and the sort rule.
    const auto wide = [&](int members) {
        return query(rule(Kind::Or, std::vector<Fields>(std::size_t(members), leaf)));
    };
    constexpr auto BEYOND = ReturnCode::LimitExceeded;
    constexpr auto BROKEN = ReturnCode::TransportFailed;
    const struct
    {
        const char *name;
        Fields body;
        ReturnCode code;
        const char *reason;
        bool (*read)(RequestReader &) = readQuery;
    } cases[] = {
        {"the deepest rule", query(nested(limits::RULE_DEPTH, level, leaf)), ReturnCode::Success, ""},
        {"a deeper rule", query(nested(limits::RULE_DEPTH + 1, level, leaf)), BEYOND, "more than 16 levels deep"},
        {"the deepest sort rule", query(leaf, nested(limits::RULE_DEPTH, sortLevel, UNSORTED)), ReturnCode::Success,
         ""},
        {"a deeper sort rule", query(leaf, nested(limits::RULE_DEPTH + 1, sortLevel, UNSORTED)), BEYOND, "levels deep"},
        {"the widest rule", wide(limits::RULE_COUNT - 2), ReturnCode::Success, ""},
        {"a wider rule", wide(limits::RULE_COUNT - 1), BEYOND, "more than 500 nodes"},
        {"missing members", query(rule(Kind::And, 0, 1, "", 0x7fffffff)), BROKEN, "not valid"},
        {"negative count of members", query(rule(Kind::And, 0, 1, "", -1)), BROKEN, "the last"},
        {"negative count of sort members", query(leaf, sort(SortRuleKind::Combined, 1, 0) + Fields{i32(-1)}), BROKEN,
         "last 8"},
        {"the longest text", named(Operator::Equals, longest), ReturnCode::Success, ""},
        {"a longer text", named(Operator::Equals, longest + "x"), BEYOND, "4097 UTF-16 units; the maximum is 4096"},
        {"as many words", named(Operator::Contains, manyWords(limits::TERM_WORDS)), ReturnCode::Success, ""},
        {"too many words", named(Operator::Contains, manyWords(limits::TERM_WORDS + 1)), BEYOND, "more than 64"},
        {"words that are not searched", named(Operator::Equals, manyWords(65)), ReturnCode::Success, ""},
        {"words for a provider", named(Operator::Equals, manyWords(65), Rules::POIName), BEYOND, "different words"},
        {"a long suggestion", suggestion(longest + "x"), BEYOND, "UTF-16 units", readSuggestion},
        {"a suggestion of many words", suggestion(manyWords(65)), BEYOND, "different words", readSuggestion},
        {"a long tag", {i64(1), text(longest + "x")}, BEYOND, "UTF-16 units", readTag},
        {"negative count of ids", Fields(AUXILIARY.begin(), AUXILIARY.begin() + 13) + Fields{i32(-1)}, BROKEN,
         "ends before", readAuxiliary},
    };
    for (const auto &row : cases) {
        Bytes bytes(message(row.body));
        EXPECT_EQ(row.read(bytes.reader), row.code == ReturnCode::Success) << row.name;
        if (row.code != ReturnCode::Success) {
            EXPECT_EQ(bytes.reader.problem(), Status(row.code)) << row.name;
            EXPECT_THAT(bytes.reader.problem().reason, HasSubstr(row.reason)) << row.name;
        }
    }
}
