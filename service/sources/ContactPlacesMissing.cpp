// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/ContactPlaces.h"

// Replaces ContactPlaces.cpp in a build without KContacts. The program refuses a folder of contacts in such a build.

namespace formats
{

class VCard
{};

} // namespace formats

namespace placesd
{

Contact::Contact(const QByteArray & /*card*/) {}

Contact::~Contact() = default;

QString Contact::name() const
{
    return {};
}

QString Contact::uid() const
{
    return {};
}

bool Contact::isRoom() const
{
    return false;
}

std::vector<FoundPlace> Contact::places(int /*id*/, const Geocode & /*geocode*/) const
{
    return {};
}

} // namespace placesd
