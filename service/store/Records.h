// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Place.h"
#include "places/PlaceHeader.h"

#include <QtCore/QByteArray>

#include <memory>
#include <string>

/// Places as the records that stand for them on the wire, which is also how they are stored.
namespace placesd
{

std::string fullRecordOf(const vela::platform::places::Place &place);
std::string headerOf(const vela::platform::places::Place &place);

/// Throws UnreadablePlace for what is no record.
std::unique_ptr<vela::platform::places::Place> decodePlace(const std::string &record);
std::unique_ptr<vela::platform::places::PlaceHeader> decodeHeader(const std::string &record);
/// What a header tells of its place. Of the tags only "favourite" is known.
std::unique_ptr<vela::platform::places::Place> placeOfHeader(const std::string &header);

/// Gives a record, full or header, a search term if it has none. What is no record stays as it is.
void addSearchTerm(std::string &record, const QByteArray &utf8);

} // namespace placesd
