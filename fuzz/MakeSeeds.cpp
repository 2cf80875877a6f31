// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/AuxiliaryDataRequest.h"
#include "places/SearchRule.h"
#include "places/SortRule.h"
#include "protocol/PlacesAPIEncoder.h"
#include "support/SamplePlace.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>

using namespace wire;
using namespace vela::platform::places;
using orix_places_protocol::PlacesAPIEncoder;

namespace
{

void write(const std::filesystem::path &folder, const std::string &name, const std::string &bytes)
{
    std::filesystem::create_directories(folder);
    std::ofstream(folder / name, std::ios::binary) << bytes;
}

/// One reply of every kind, as a service gives it.
void writeReplies(const std::filesystem::path &folder)
{
    const Fields more = {flag(true), i32(0), i32(1), i32(2), i32(1), i32(3), i32(4)};
    const struct
    {
        const char *name;
        int type;
        Fields body;
    } replies[] = {
        {"added", 257, {i64(42)}},
        {"terms", 258, texts({"café", "bar"})},
        {"records", 259, sample::auxiliaryFields()},
        {"place", 268, sample::placeFields()},
        {"found", 269, Fields{i32(2)} + sample::headerFields() + sample::placeFields() + more},
        {"unfav", 270, {flag(true)}},
        {"size", 273, {i32(7)}},
        {"providers", 275, Fields{i32(1)} + sample::providerFields()},
        {"header", 276, sample::headerFields()},
    };
    for (const auto &reply : replies)
        write(folder, reply.name, message(Fields{i32(0), i32(reply.type)} + reply.body));
}

/// One request of every kind, as the library sends it.
void writeRequests(const std::filesystem::path &folder)
{
    Place fresh;
    Place stored;
    sample::fill(fresh, -1);
    sample::fill(stored, 1);
    AuxiliaryDataRequest records;
    QSharedPointer<Place> place(new Place);
    sample::fill(*place, 1);
    records.setPlace(place);
    const QString term = QStringLiteral("caf");
    const SearchRule rule =
        SearchRule::createAndRule(SearchRule::createNameRule(SearchOperator::Contains, term),
                                  SearchRule::createOrRule(SearchRule::createTagRule(SearchOperator::Equals, term),
                                                           SearchRule::createRecentlyPickedRule()));
    const SortRule nearest = SortRule::createDistanceSortRule(Coordinates(46.2, 6.15), SortOrder::Ascending);
    const struct
    {
        const char *name;
        std::function<bool(PlacesAPIEncoder &)> encode;
    } requests[] = {
        {"add", [&](auto &request) { return request.encodeAddPlace(fresh); }},
        {"terms", [&](auto &request) { return request.encodeGetRecentSearchTerms("c"); }},
        {"records", [&](auto &request) { return request.encodeGetAuxiliaryData(records); }},
        {"update", [&](auto &request) { return request.encodeUpdatePlace(stored); }},
        {"use", [&](auto &request) { return request.encodeIncUsage(1, "café"); }},
        {"tag", [&](auto &request) { return request.encodeAddTag(1, "beach"); }},
        {"contact", [&](auto &request) { return request.encodeGetPlaceFromContact(1, 2, 3); }},
        {"get", [&](auto &request) { return request.encodeGetPlace(1); }},
        {"find",
         [&](auto &request) {
             return request.encodeFindPlaces(rule, nearest, 0, 20, true, Coordinates(46.2, 6.15), -1, -1);
         }},
        {"size", [&](auto &request) { return request.encodeFindPlacesSize(rule, Coordinates()); }},
        {"suggestion", [&](auto &request) { return request.encodeGetPlaceFromSuggestion("café", Coordinates(1, 2)); }},
        {"header", [&](auto &request) { return request.encodeGetHeaderFromFullPlace(stored); }},
    };
    for (const auto &entry : requests) {
        PlacesAPIEncoder request;
        char *data = nullptr;
        int length = 0;
        if (entry.encode(request) && request.getData(data, length))
            write(folder, entry.name, std::string(data, static_cast<std::size_t>(length)));
    }
}

} // namespace

/// Writes the seeds of the targets that read wire messages, each into a folder of the target's name.
int main(int argc, char **argv)
{
    if (argc != 2) {
        std::cerr << "usage: make_seeds FOLDER\n";
        return EXIT_FAILURE;
    }
    writeReplies(std::filesystem::path(argv[1]) / "reply_fuzz");
    writeRequests(std::filesystem::path(argv[1]) / "request_fuzz");
    return EXIT_SUCCESS;
}
