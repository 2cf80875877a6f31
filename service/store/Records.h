// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Place.h"
#include "places/PlaceHeader.h"

#include <QtCore/QByteArray>

#include <memory>
#include <string>

/// Conversion between places and their wire records, which are also the stored form.
namespace placesd
{

std::string fullRecordOf(const vela::platform::places::Place &place);
std::string headerOf(const vela::platform::places::Place &place);

/// Throws UnreadablePlace for an invalid record.
std::unique_ptr<vela::platform::places::Place> decodePlace(const std::string &record);
std::unique_ptr<vela::platform::places::PlaceHeader> decodeHeader(const std::string &record);
/// The place of a header. Of the tags, a header contains only "favourite".
std::unique_ptr<vela::platform::places::Place> placeOfHeader(const std::string &header);

/// Sets the search term of a full or header record that has none. Invalid records are not changed.
void addSearchTerm(std::string &record, const QByteArray &utf8);

} // namespace placesd
