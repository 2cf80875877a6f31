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

/// Replies of a service, one for each kind of record.
void writeReplies(const std::filesystem::path &folder)
{
    const Fields more = {flag(true), i32(0), i32(1), i32(2), i32(1), i32(3), i32(4)};
    const struct
    {
        const char *name;
        int type;
        Fields body;
    } replies[] = {
        {"records", 259, sample::auxiliaryFields()},
        {"found", 269, Fields{i32(2)} + sample::headerFields() + sample::placeFields() + more},
        {"providers", 275, Fields{i32(1)} + sample::providerFields()},
    };
    for (const auto &reply : replies)
        write(folder, reply.name, message(Fields{i32(0), i32(reply.type)} + reply.body));
}

/// The largest requests, as sent by the library.
void writeRequests(const std::filesystem::path &folder)
{
    const sample::FullPlace fresh(-1);
    AuxiliaryDataRequest records;
    records.setPlace(QSharedPointer<sample::FullPlace>::create(1));
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
        {"records", [&](auto &request) { return request.encodeGetAuxiliaryData(records); }},
        {"find",
         [&](auto &request) {
             return request.encodeFindPlaces(rule, nearest, 0, 20, true, Coordinates(46.2, 6.15), -1, -1);
         }},
        {"suggestion", [&](auto &request) { return request.encodeGetPlaceFromSuggestion("café", Coordinates(1, 2)); }},
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

/// Writes the seeds of the targets for wire messages, each into a folder with the target's name.
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
